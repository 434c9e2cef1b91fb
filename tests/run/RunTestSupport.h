#pragma once
// Shared by the run tests: a scratch folder, a clean run record, and the event log's bytes.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <new>
#include <string>
#include <vector>

#include "base/Messages.h"
#include "base/RunContext.h"
#include "base/Trace.h"
#include "platform/Cp932.h"
#include "platform/TextFile.h"

namespace orin::test {

// A folder of its own for each test and process (tests of several build trees, or several
// scenario runners, may run at once), removed afterwards.
class ScratchFolder {
  public:
    ScratchFolder() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        path_ = std::filesystem::temp_directory_path() / "orin_run_test" /
                (std::string(info->test_suite_name()) + "." + info->name() + "-" +
                 std::to_string(getpid()));
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

// The state a driver leaves before its loop starts, with the log in `folder`: a run record
// as new (RunContext holds atomics, so it is made again in place rather than assigned).
inline void ResetRun(const std::filesystem::path& folder) {
    gRun.~RunContext();
    new (&gRun) RunContext();
    gRun.strEventLogPath = (folder / "Event.log").string();
    TraceMode = 0;
    TraceFilePath = folder / "Debug_test.log";
}

// Mirror flags per ordinal, as ReadMirrorFlags would leave them: {"N", "Y", "Y"}.
inline void SetMirrorFlags(const std::vector<std::string>& flags) {
    gRun.MirrorFlags.assign(1, "");
    gRun.MirrorFlags.insert(gRun.MirrorFlags.end(), flags.begin(), flags.end());
    gRun.lngDataRowCnt = static_cast<int32_t>(flags.size());
}

inline std::string ReadBytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// The bytes a file of these UTF-8 lines has on disk: CP932, each line ended by CR LF.
inline std::string DiskBytes(const std::vector<std::string>& lines) {
    std::string bytes;
    for (const std::string& line : lines) bytes += platform::Utf8ToCp932(line) + "\r\n";
    return bytes;
}

// The lines of a CP932 file, as UTF-8. A line holding "\r\n\t" reads back as two lines.
inline std::vector<std::string> ReadLines(const std::filesystem::path& p) {
    std::vector<std::string> lines;
    platform::ReadAllLines(p, lines);
    return lines;
}

// The line a row event writes, continuations included: "<line>行, <class>, " and the message of
// `code` with the run's arguments in place.
inline std::string RowEvent(int32_t line, const std::string& cls, int32_t code) {
    return std::to_string(line) + "行, " + cls + ", " + MessageText(code).value_or("?");
}

// Writes a CSV file (CP932, CR LF) from UTF-8 lines.
inline void WriteCsv(const std::filesystem::path& p, const std::vector<std::string>& lines) {
    platform::WriteLines(p, lines);
}

}  // namespace orin::test
