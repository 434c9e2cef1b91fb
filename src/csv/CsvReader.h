#pragma once
// The CSV format of a batch: one header line ("!" first), comment lines ("#" first), blank
// lines, and data lines split on every comma with no quoting. Lines are numbered from 1 over
// every physical line; data rows that aren't blank rows are numbered from 1 (the ordinal).
// Each reader opens the file by itself and closes it again.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orin {

enum class LineKind { Header, Comment, Blank, Data };

// Column positions are 16-bit: a cell further right than this can't be addressed, so the
// header readers don't look beyond it.
inline constexpr int16_t kMaxColumnPosition = INT16_MAX;

// Decided on the first character of the raw, untrimmed line: "!" header, "#" comment, then a
// line that trims to empty is blank, anything else data.
LineKind ClassifyLine(std::string_view rawLine);
// True for header, comment and blank lines: the one condition the row loops skip on.
inline bool IsIgnoredLine(std::string_view rawLine) {
    return ClassifyLine(rawLine) != LineKind::Data;
}

// Splits on every comma; cells are not trimmed. "a,,b" gives three cells, "" gives one.
std::vector<std::string> SplitCells(std::string_view line);

// True when every cell trims to empty (a row of commas).
bool IsRowEmpty(const std::vector<std::string>& cells);

// True when the row has a cell at `index` (the column exists and the row is long enough).
bool HasCell(const std::vector<std::string>& cells, int16_t index);
// The trimmed cell at `index`; "" when the index is -1 or the row is too short.
std::string CellAt(const std::vector<std::string>& cells, int16_t index);
// The cell at `index` as it stands, untrimmed (a password is taken so); "" when absent.
std::string RawCellAt(const std::vector<std::string>& cells, int16_t index);

// True when the file can be opened for reading (and closes it again).
bool CheckFileOpens(const std::filesystem::path& path);
// The number of the first line that isn't CP932 text (bytes CP932 doesn't have, a NUL); 0 when
// every line is. The other readers stop at such a line as at the end of the file.
int32_t CheckFileText(const std::filesystem::path& path);
// True when the path names an existing file (a folder doesn't count).
bool FileExists(const std::filesystem::path& path);
// True when some line of the file begins with "!"; stops at the first one.
bool HasHeaderLine(const std::filesystem::path& path);
// Reads the first line only, whatever it is; fills `index` (sized to `names`) with the position
// of the first cell that matches each name, -1 where none does. A cell matches when, trimmed
// and lower-cased, it equals the lower-cased name or "!" and the name. False when the file
// can't be opened (then `index` is left as it was).
bool ReadHeader(const std::filesystem::path& path, const std::vector<std::string>& names,
                std::vector<int16_t>& index);
// The number of objects: data rows that aren't blank rows and aren't Mirror ("YES") rows.
int32_t CountObjects(const std::filesystem::path& path);
// Fills `flags` ("Y", "N", "?" per ordinal, index 0 unused) and sets gRun.lngDataRowCnt.
// False when a header line has no Mirror column (then `flags` is emptied).
bool ReadMirrorFlags(const std::filesystem::path& path, std::vector<std::string>& flags);

}  // namespace orin
