#pragma once
// Shared by the run tests: a scratch folder, a clean run record, and the event log's bytes.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <vector>

#include "platform/Cp932.h"
#include "platform/TextFile.h"
#include "run/RunContext.h"
#include "run/Trace.h"

namespace orin::test {

// A folder of its own for each test, removed afterwards.
class ScratchFolder {
  public:
    ScratchFolder() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        path_ = std::filesystem::temp_directory_path() / "orin_run_test" /
                (std::string(info->test_suite_name()) + "." + info->name());
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

// The state a driver leaves before its loop starts, with the log in `folder`.
inline void ResetRun(const std::filesystem::path& folder) {
    gRun.strCsvPath.clear();
    gRun.strEventLogPath = (folder / "Event.log").string();
    gRun.blnImitate = gRun.blnCompare = gRun.blnDBMode = false;
    gRun.ColumnNames.clear();
    gRun.ColumnIndex.clear();
    gRun.MirrorFlags.clear();
    gRun.lngDataRowCnt = 0;
    gRun.lngObjectCnt = gRun.lngSuccessCnt = gRun.lngFailureCnt = gRun.lngWarningCnt = 0;
    gRun.lngMatchCnt = gRun.lngDiffCnt = gRun.lngHoldingCnt = gRun.lngCancelLine = 0;
    gRun.sngStartTime = gRun.sngEndTime = 0;
    gRun.blnRowFailed = gRun.blnRowWarned = gRun.blnRowDiffered = false;
    gRun.blnRowCreatedObject = gRun.blnMirrorGroupCreated = gRun.blnUserHomeSet = false;
    gRun.lngLastCreatedLine = 0;
    gRun.MsgArg1.clear();
    gRun.MsgArg2.clear();
    gRun.AceArg.clear();
    gRun.strPubLDAPName.clear();
    gRun.bytEndOfObjData = 0;
    gRun.blnHolding = gRun.blnAlreadyHeld = gRun.blnObjCreated = false;
    gRun.BulkKind = ObjectKind::OU;
    gRun.lngObjectTotal = gRun.lngSuccessTotal = gRun.lngWarningTotal = gRun.lngFailureTotal = 0;
    gRun.intCancel = 0;
    gRun.blnShowElapsedTime = false;
    TraceMode = 0;
    TraceFilePath = folder / "Debug_test.log";
}

// Mirror flags per ordinal, as ReadMirrorFlags would leave them: {"N", "Y", "Y"}.
inline void SetMirrorFlags(std::initializer_list<const char*> flags) {
    gRun.MirrorFlags.assign(1, "");
    for (const char* f : flags) gRun.MirrorFlags.emplace_back(f);
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

// Writes a CSV file (CP932, CR LF) from UTF-8 lines.
inline void WriteCsv(const std::filesystem::path& p, const std::vector<std::string>& lines) {
    platform::WriteLines(p, lines);
}

}  // namespace orin::test
