// Feeds arbitrary bytes to every CSV reader as a file on disk: the text check, the header and
// count readers, the Mirror flags with the three row predicates on every ordinal, and the
// row-by-row split that the row loops do. None of them may crash, hang or read out of bounds
// on any input, no line handed out may hold U+FFFD or a NUL, and the row loop's reading stops
// exactly at the line the driver's text check names.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "base/MirrorChain.h"
#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "platform/TextFile.h"

namespace {

// One scratch file per fuzzing process, removed when the process ends normally.
struct ScratchFile {
    std::filesystem::path path = std::filesystem::temp_directory_path() /
                                 ("orin_csv_fuzz_" + std::to_string(getpid()) + ".csv");
    ~ScratchFile() {
        std::error_code ec;
        std::filesystem::remove(path, ec);
    }
};

const std::filesystem::path& InputPath() {
    static const ScratchFile file;
    return file.path;
}

bool WriteInput(const uint8_t* data, size_t size) {
    std::FILE* f = std::fopen(InputPath().c_str(), "wb");
    if (!f) return false;
    bool ok = size == 0 || std::fwrite(data, 1, size, f) == size;
    return std::fclose(f) == 0 && ok;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace orin;
    if (!WriteInput(data, size)) return 0;
    const std::filesystem::path& path = InputPath();

    CheckFileOpens(path);
    FileExists(path);
    const int32_t badLine = CheckFileText(path);
    HasHeaderLine(path);

    // The user modify list is the longest; the OU add list holds the empty placeholder name.
    for (OperationKind op : {OperationKind::Mdf, OperationKind::Add}) {
        ObjectKind kind = op == OperationKind::Mdf ? ObjectKind::User : ObjectKind::OU;
        PrepareRunColumns(kind, op);
        ReadHeader(path, gRun.ColumnNames, gRun.ColumnIndex);
    }

    gRun.lngObjectCnt = CountObjects(path);
    ReadMirrorFlags(path, gRun.MirrorFlags);
    for (int32_t ordinal = -1; ordinal <= gRun.lngDataRowCnt + 1; ++ordinal) {
        IsObjectEnd(ordinal);
        IsLastMirrorRow(ordinal);
        ChainEnds(ordinal);
    }

    // The row loop's reading: skip ignored lines and blank rows, read every known column.
    platform::LineReader reader(path);
    std::string line;
    size_t cellBytes = 0;
    while (reader.ReadLine(line)) {
        if (line.find("\xEF\xBF\xBD") != std::string::npos) std::abort();
        if (line.find('\0') != std::string::npos) std::abort();
        if (IsIgnoredLine(line)) continue;
        std::vector<std::string> cells = SplitCells(line);
        if (IsRowEmpty(cells)) continue;
        for (int16_t index : gRun.ColumnIndex) {
            cellBytes += CellAt(cells, index).size();
            cellBytes += RawCellAt(cells, index).size();
        }
        cellBytes += CellOf(cells, "Mirror").size();
    }
    if (reader.BadLine() != badLine) std::abort();
    if (cellBytes == SIZE_MAX) std::abort();  // keeps the reads from being optimised away
    return 0;
}
