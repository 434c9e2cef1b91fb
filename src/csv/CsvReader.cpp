#include "csv/CsvReader.h"

#include <system_error>

#include "base/RunContext.h"
#include "platform/Strings.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

constexpr int kNoColumn = -1;

// Position of the first cell whose trimmed, upper-cased text is "MIRROR", or -1. Unlike the
// header lookup, "!Mirror" in the first cell does not count.
int FindMirrorColumn(std::string_view headerLine) {
    std::vector<std::string> cells = SplitCells(headerLine);
    for (size_t i = 0; i < cells.size() && i <= static_cast<size_t>(kMaxColumnPosition); ++i)
        if (ToUpperAscii(Trim(cells[i])) == "MIRROR") return static_cast<int>(i);
    return kNoColumn;
}

// A data line that holds more than a row of commas: it gets an ordinal.
bool IsDataRow(std::string_view line, std::vector<std::string>& cells) {
    if (ClassifyLine(line) != LineKind::Data) return false;
    cells = SplitCells(line);
    return !IsRowEmpty(cells);
}

// The Mirror cell of a row, trimmed and upper-cased. A row too short for the column reads as
// empty, and so does a row ahead of every header line, where no Mirror position is known yet.
std::string MirrorCell(const std::vector<std::string>& cells, int mirrorColumn) {
    if (mirrorColumn == kNoColumn || static_cast<size_t>(mirrorColumn) >= cells.size()) return {};
    return ToUpperAscii(Trim(cells[static_cast<size_t>(mirrorColumn)]));
}

}  // namespace

LineKind ClassifyLine(std::string_view rawLine) {
    if (!rawLine.empty() && rawLine.front() == '!') return LineKind::Header;
    if (!rawLine.empty() && rawLine.front() == '#') return LineKind::Comment;
    if (Trim(rawLine).empty()) return LineKind::Blank;
    return LineKind::Data;
}

std::vector<std::string> SplitCells(std::string_view line) {
    return Split(line, ',');
}

bool IsRowEmpty(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells)
        if (!Trim(cell).empty()) return false;
    return true;
}

bool HasCell(const std::vector<std::string>& cells, int16_t index) {
    return index >= 0 && static_cast<size_t>(index) < cells.size();
}

std::string CellAt(const std::vector<std::string>& cells, int16_t index) {
    return HasCell(cells, index) ? Trim(cells[static_cast<size_t>(index)]) : std::string();
}

std::string RawCellAt(const std::vector<std::string>& cells, int16_t index) {
    return HasCell(cells, index) ? cells[static_cast<size_t>(index)] : std::string();
}

bool CheckFileOpens(const std::filesystem::path& path) {
    return platform::CanOpenForReading(path);
}

int32_t CheckFileText(const std::filesystem::path& path) {
    return platform::FirstLineNotCp932(path);
}

bool FileExists(const std::filesystem::path& path) {
    std::error_code ec;
    return std::filesystem::exists(path, ec) && !std::filesystem::is_directory(path, ec);
}

bool HasHeaderLine(const std::filesystem::path& path) {
    platform::LineReader reader;
    if (!reader.Open(path)) return false;
    std::string line;
    while (reader.ReadLine(line))
        if (ClassifyLine(line) == LineKind::Header) return true;
    return false;
}

bool ReadHeader(const std::filesystem::path& path, const std::vector<std::string>& names,
                std::vector<int16_t>& index) {
    platform::LineReader reader;
    if (!reader.Open(path)) return false;
    std::string line;
    reader.ReadLine(line);  // an empty file leaves the line empty
    reader.Close();

    std::vector<std::string> cells = SplitCells(line);
    if (cells.size() > static_cast<size_t>(kMaxColumnPosition) + 1)
        cells.resize(static_cast<size_t>(kMaxColumnPosition) + 1);
    for (std::string& cell : cells) cell = ToLowerAscii(Trim(cell));

    index.assign(names.size(), -1);
    for (size_t n = 0; n < names.size(); ++n) {
        // An empty name is a placeholder slot of a list: it names no column.
        if (names[n].empty()) continue;
        const std::string name = ToLowerAscii(names[n]);
        const std::string bangName = "!" + name;
        for (size_t c = 0; c < cells.size(); ++c) {
            if (cells[c] == name || cells[c] == bangName) {
                index[n] = static_cast<int16_t>(c);
                break;
            }
        }
    }
    return true;
}

// Both counters share the rule for data ahead of the first "!" line: with no Mirror position
// known yet, such a row starts an object of its own. CountObjects counts it and
// ReadMirrorFlags flags it "N", so the progress total and the object ends agree; the engines
// then judge the row on the columns that ReadHeader found.
int32_t CountObjects(const std::filesystem::path& path) {
    platform::LineReader reader;
    if (!reader.Open(path)) return 0;
    int mirrorColumn = kNoColumn;
    int32_t count = 0;
    std::string line;
    std::vector<std::string> cells;
    while (reader.ReadLine(line)) {
        if (ClassifyLine(line) == LineKind::Header) {
            mirrorColumn = FindMirrorColumn(line);
            continue;
        }
        if (!IsDataRow(line, cells)) continue;
        if (MirrorCell(cells, mirrorColumn) != "YES") ++count;
    }
    return count;
}

bool ReadMirrorFlags(const std::filesystem::path& path, std::vector<std::string>& flags) {
    std::string line;
    std::vector<std::string> cells;

    // First pass: the number of data rows.
    int32_t rows = 0;
    {
        platform::LineReader reader;
        if (reader.Open(path))
            while (reader.ReadLine(line))
                if (IsDataRow(line, cells)) ++rows;
    }
    gRun.lngDataRowCnt = rows;
    flags.assign(static_cast<size_t>(rows) + 1, std::string());

    // Second pass: one flag per ordinal.
    platform::LineReader reader;
    if (!reader.Open(path)) return true;
    int mirrorColumn = kNoColumn;
    size_t ordinal = 0;
    while (reader.ReadLine(line)) {
        if (ClassifyLine(line) == LineKind::Header) {
            mirrorColumn = FindMirrorColumn(line);
            if (mirrorColumn == kNoColumn) {
                flags.clear();
                return false;
            }
            continue;
        }
        if (!IsDataRow(line, cells)) continue;
        if (++ordinal >= flags.size()) flags.resize(ordinal + 1);  // the file grew meanwhile
        const std::string cell = MirrorCell(cells, mirrorColumn);
        if (cell == "NO" || cell.empty())
            flags[ordinal] = "N";
        else if (cell == "YES")
            flags[ordinal] = "Y";
        else
            flags[ordinal] = "?";
    }
    return true;
}

}  // namespace orin
