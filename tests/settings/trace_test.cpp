#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "base/Trace.h"
#include "run/RunTestSupport.h"

namespace fs = std::filesystem;
using namespace orin;

namespace {

// Points the trace at an empty folder of the test's own and restores the globals afterwards.
class TraceTest : public ::testing::Test {
  protected:
    void SetUp() override { TraceFilePath = folder_ / "Debug_test.log"; }
    void TearDown() override {
        TraceMode = savedMode_;
        TraceFilePath = savedPath_;
    }

    test::ScratchFolder folder_;
    int16_t savedMode_ = TraceMode;
    fs::path savedPath_ = TraceFilePath;
};

std::tm At(int year, int month, int day, int hour, int minute, int second) {
    std::tm tm{};
    tm.tm_year = year - 1900;
    tm.tm_mon = month - 1;
    tm.tm_mday = day;
    tm.tm_hour = hour;
    tm.tm_min = minute;
    tm.tm_sec = second;
    return tm;
}

}  // namespace

TEST(TraceFileName, StampHasTwoDigitsForEveryField) {
    EXPECT_EQ(TraceFileName(At(2001, 3, 2, 9, 5, 7)), "Debug_20010302_090507.log");
    EXPECT_EQ(TraceFileName(At(2024, 12, 31, 23, 59, 58)), "Debug_20241231_235958.log");
}

TEST_F(TraceTest, InitPutsTheFileInTheFolderWithoutCreatingIt) {
    InitTraceFilePath(folder_.path());
    EXPECT_EQ(TraceFilePath.parent_path(), folder_.path());
    EXPECT_TRUE(std::regex_match(TraceFilePath.filename().string(),
                                 std::regex(R"(Debug_\d{8}_\d{6}\.log)")));
    EXPECT_FALSE(fs::exists(TraceFilePath));
}

TEST_F(TraceTest, ModeZeroAndUnknownModesWriteNothing) {
    for (int16_t mode : {int16_t{0}, int16_t{3}, int16_t{-1}}) {
        EXPECT_TRUE(WriteTrace(mode, true, kTraceSub, "Form_Activate", "Enter"));
        EXPECT_TRUE(WriteTrace(mode, false, kTraceFunction, "ImportOU_DB", "Exit"));
    }
    EXPECT_FALSE(fs::exists(TraceFilePath));
}

TEST_F(TraceTest, ModeTwoWritesOnlyEnabledCallsAndModeOneAllAsDatedCp932Lines) {
    EXPECT_TRUE(WriteTrace(2, false, kTraceSub, "Off", "not written"));
    EXPECT_FALSE(fs::exists(TraceFilePath));

    EXPECT_TRUE(WriteTrace(2, true, kTraceSub, "Form_Activate", "Enter"));
    EXPECT_TRUE(WriteTrace(1, false, kTraceFunction, "Any", "second"));
    std::vector<std::string> lines = test::ReadLines(TraceFilePath);
    ASSERT_EQ(lines.size(), 2u);
    const std::string stamp = R"(\d{4}/\d{2}/\d{2} \d{1,2}:\d{2}:\d{2})";
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(stamp + "【Sub: Form_Activate】Enter")))
        << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(stamp + "【Function: Any】second")))
        << lines[1];
    EXPECT_NE(test::ReadBytes(TraceFilePath)
                  .find("\x81\x79Sub: Form_Activate\x81\x7A"
                        "Enter\r\n"),
              std::string::npos);
}

TEST_F(TraceTest, UnwritableFolderReturnsFalse) {
    std::ofstream(folder_ / "plain") << "x";
    TraceFilePath = folder_ / "plain" / "Debug_20010302_090507.log";
    EXPECT_FALSE(WriteTrace(1, true, kTraceSub, "Form_Activate", "Enter"));
    // The mode still decides first: a call that writes nothing succeeds.
    EXPECT_TRUE(WriteTrace(0, true, kTraceSub, "Form_Activate", "Enter"));
}
