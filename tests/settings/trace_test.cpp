#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "platform/TextFile.h"
#include "run/Trace.h"

namespace fs = std::filesystem;
using namespace orin;

namespace {

// Points the trace at an empty folder of the test's own and restores the globals afterwards.
class TraceTest : public ::testing::Test {
  protected:
    void SetUp() override {
        savedMode_ = TraceMode;
        savedPath_ = TraceFilePath;
        folder_ = fs::temp_directory_path() / "orin_trace_test";
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        TraceFilePath = folder_ / "Debug_test.log";
    }
    void TearDown() override {
        TraceMode = savedMode_;
        TraceFilePath = savedPath_;
        fs::remove_all(folder_);
    }
    std::vector<std::string> Lines() {
        std::vector<std::string> lines;
        platform::ReadAllLines(TraceFilePath, lines);
        return lines;
    }

    fs::path folder_;
    int16_t savedMode_ = 0;
    fs::path savedPath_;
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

TEST(TraceFileName, StampIsAlwaysFifteenCharacters) {
    std::string name = TraceFileName(At(2001, 3, 2, 9, 5, 7));
    EXPECT_EQ(name, "Debug_20010302_090507.log");
    EXPECT_EQ(name.substr(6, name.size() - 6 - 4).size(), 15u);
    EXPECT_EQ(TraceFileName(At(2024, 12, 31, 23, 59, 58)), "Debug_20241231_235958.log");
    EXPECT_EQ(TraceFileName(At(2010, 1, 1, 0, 0, 0)), "Debug_20100101_000000.log");
}

TEST_F(TraceTest, InitPutsTheFileInTheFolderWithoutCreatingIt) {
    InitTraceFilePath(folder_);
    EXPECT_EQ(TraceFilePath.parent_path(), folder_);
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

TEST_F(TraceTest, ModeTwoWritesOnlyEnabledCallsAndModeOneWritesAll) {
    EXPECT_TRUE(WriteTrace(2, false, kTraceSub, "Off", "not written"));
    EXPECT_FALSE(fs::exists(TraceFilePath));

    EXPECT_TRUE(WriteTrace(2, true, kTraceSub, "On", "first"));
    EXPECT_TRUE(WriteTrace(1, false, kTraceFunction, "Any", "second"));
    std::vector<std::string> lines = Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_NE(lines[0].find("【Sub: On】first"), std::string::npos);
    EXPECT_NE(lines[1].find("【Function: Any】second"), std::string::npos);
}

TEST_F(TraceTest, LineIsDateTimeThenProcedureThenTextInCp932) {
    ASSERT_TRUE(WriteTrace(1, true, kTraceSub, "Form_Activate", "Enter"));
    ASSERT_TRUE(WriteTrace(1, true, kTraceSub, "UpdateOptions",
                           "★★★「ｵﾌﾟｼｮﾝ設定」画面の「更新」ﾎﾞﾀﾝが押された★★★"));
    std::vector<std::string> lines = Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(std::regex_match(
        lines[0],
        std::regex(R"(\d{4}/\d{2}/\d{2} \d{1,2}:\d{2}:\d{2}【Sub: Form_Activate】Enter)")))
        << lines[0];
    EXPECT_NE(lines[1].find("】★★★「ｵﾌﾟｼｮﾝ設定」画面の「更新」ﾎﾞﾀﾝが押された★★★"),
              std::string::npos);

    std::ifstream in(TraceFilePath, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(in), {});
    EXPECT_NE(bytes.find("\x81\x79Sub: Form_Activate\x81\x7A"
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
