#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

#include "RunTestSupport.h"
#include "base/EventLog.h"
#include "support/ScriptedOperator.h"

namespace orin {
namespace {

using test::DiskBytes;
using test::ReadBytes;
using test::ReadLines;

const std::string kStars(50, '*');
const std::string kDashes(50, '-');

class EventLogTest : public ::testing::Test {
  protected:
    void SetUp() override { test::ResetRun(folder.path()); }
    std::filesystem::path Log() const { return gRun.strEventLogPath; }

    test::ScratchFolder folder;
    test::ScriptedOperator screen;
};

std::string Stamp(const char* format, std::time_t t) {
    std::tm tm{};
    localtime_r(&t, &tm);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, format, &tm);
    return buffer;
}

TEST_F(EventLogTest, HeaderBlocksOfACsvRunAGapCodeAndABulkRun) {
    const std::time_t before = std::time(nullptr);
    ASSERT_TRUE(WriteLogHeader(Log(), "C:\\data\\ou.csv", 10));
    const std::time_t after = std::time(nullptr);
    std::vector<std::string> lines = ReadLines(Log());
    ASSERT_EQ(lines.size(), 7u);
    // The date and time are those of the call.
    EXPECT_TRUE(lines[3] == "日付： " + Stamp("%Y/%m/%d", before) ||
                lines[3] == "日付： " + Stamp("%Y/%m/%d", after));
    EXPECT_TRUE(lines[4] == "時刻： " + Stamp("%H:%M:%S", before) ||
                lines[4] == "時刻： " + Stamp("%H:%M:%S", after));
    EXPECT_EQ(ReadBytes(Log()), DiskBytes({"", kStars, "処理内容： 組織単位の本番追加", lines[3],
                                           lines[4], "CSVﾌｧｲﾙﾊﾟｽ： C:\\data\\ou.csv", kStars}));

    // A second block is appended; a code without a title leaves the title empty.
    ASSERT_TRUE(WriteLogHeader(Log(), "a.csv", 19));
    gRun.blnDBMode = true;
    ASSERT_TRUE(WriteLogHeader(Log(), "/srv/domain.mdb", 1));
    lines = ReadLines(Log());
    ASSERT_EQ(lines.size(), 21u);
    EXPECT_EQ(lines[7], "");
    EXPECT_EQ(lines[9], "処理内容： ");
    EXPECT_EQ(lines[16], "処理内容： 一括ｲﾝﾎﾟｰﾄ");
    EXPECT_EQ(lines[19], "ﾃﾞｰﾀﾍﾞｰｽﾌｧｲﾙﾊﾟｽ： /srv/domain.mdb");
    EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(EventLogTest, RowLinesOfACsvRunAndOfABulkRun) {
    // Nothing in a line is escaped; a message's continuation stays CR LF TAB.
    ASSERT_TRUE(WriteRowEvent(Log(), 12, EventClass::Failure, "ｵﾌﾞｼﾞｪｸﾄが存在しません。"));
    ASSERT_TRUE(WriteRowEvent(Log(), 3, EventClass::Warning, "50% done, %1 kept"));
    ASSERT_TRUE(WriteRowEvent(Log(), 7, EventClass::Difference, "一\r\n\t二"));
    // A bulk run names the kind and the object's path instead of a line.
    gRun.blnDBMode = true;
    gRun.BulkKind = ObjectKind::Group;
    gRun.strPubLDAPName = "LDAP://CN=g1,OU=a,DC=example,DC=test";
    ASSERT_TRUE(WriteRowEvent(Log(), 99, EventClass::Warning, "msg"));
    gRun.BulkKind = ObjectKind::OU;
    ASSERT_TRUE(WriteRowEvent(Log(), 0, EventClass::Failure, "m2"));
    EXPECT_EQ(
        ReadBytes(Log()),
        DiskBytes({"12行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しません。", "3行, 警告, 50% done, %1 kept",
                   "7行, 相違, 一\r\n\t二",
                   "警告, 種別: ｸﾞﾙｰﾌﾟ, LDAP名: \"LDAP://CN=g1,OU=a,DC=example,DC=test\", msg",
                   "失敗, 種別: 組織単位, LDAP名: \"LDAP://CN=g1,OU=a,DC=example,DC=test\", m2"}));
}

TEST_F(EventLogTest, SummaryOfAProductionRun) {
    gRun.lngSuccessCnt = 3;
    gRun.lngWarningCnt = 2;
    gRun.lngFailureCnt = 1;
    ASSERT_TRUE(WriteLogSummary(Log(), SummaryKind::RowLoop, 7));
    EXPECT_EQ(ReadBytes(Log()),
              DiskBytes({"ｵﾌﾞｼﾞｪｸﾄ総数： 7", "処理完了数： 6", "処理成功数： 3", "処理警告数： 2",
                         "処理失敗数： 1", "ｷｬﾝｾﾙによる中断の有無： 無", kDashes}));
}

TEST_F(EventLogTest, SummaryOfACancelledCompareRunWithElapsedTime) {
    gRun.blnCompare = true;
    gRun.lngMatchCnt = 4;
    gRun.lngDiffCnt = 5;
    gRun.lngFailureCnt = 1;
    gRun.lngSuccessCnt = 100;  // not a compare counter: must not show
    gRun.blnShowElapsedTime = true;
    gRun.sngStartTime = 10.0;
    gRun.sngEndTime = 3671.4;
    gRun.intCancel = 1;
    gRun.lngCancelLine = 42;
    ASSERT_TRUE(WriteLogSummary(Log(), SummaryKind::RowLoop, 20));
    EXPECT_EQ(ReadLines(Log()),
              (std::vector<std::string>{"ｵﾌﾞｼﾞｪｸﾄ総数： 20", "処理完了数： 10", "一致数： 4",
                                        "相違数： 5", "失敗数： 1", "経過時間： 1時間1分1秒",
                                        "ｷｬﾝｾﾙによる中断の有無： 有", "ｷｬﾝｾﾙ時の処理済最終行： 42",
                                        kDashes}));
}

TEST_F(EventLogTest, CancelledExportHasNoLastLineAndZeroCountersStillShowTheTotal) {
    gRun.intCancel = 1;
    gRun.lngCancelLine = 42;
    ASSERT_TRUE(WriteLogSummary(Log(), SummaryKind::Export, 9));
    EXPECT_EQ(ReadLines(Log()),
              (std::vector<std::string>{"ｵﾌﾞｼﾞｪｸﾄ総数： 9", "処理完了数： 0", "処理成功数： 0",
                                        "処理警告数： 0", "処理失敗数： 0",
                                        "ｷｬﾝｾﾙによる中断の有無： 有", kDashes}));
}

TEST_F(EventLogTest, AnUnwritableLogTellsOnlyAtTheHeader) {
    const std::filesystem::path folderAsLog = folder.path();  // a folder can't be appended to
    EXPECT_FALSE(WriteLogHeader(folderAsLog, "x.csv", 10));
    ASSERT_EQ(screen.boxes.size(), 1u);
    EXPECT_EQ(screen.boxes[0].title, "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成");
    EXPECT_EQ(screen.boxes[0].text,
              "ｲﾍﾞﾝﾄﾛｸﾞﾌｧｲﾙの作成が失敗しました！\r"
              "作成先のﾃﾞｨﾚｸﾄﾘが書込み可能かどうかを確認してください。");
    EXPECT_EQ(screen.boxes[0].icon, MsgIcon::Critical);

    EXPECT_FALSE(WriteRowEvent(folderAsLog, 1, EventClass::Failure, "m"));
    EXPECT_FALSE(WriteLogSummary(folderAsLog, SummaryKind::RowLoop, 1));
    EXPECT_EQ(screen.boxes.size(), 1u);
}

TEST(FormatElapsed, LeavesOutZeroPartsAndNeverOverflows) {
    EXPECT_EQ(FormatElapsed(0), "");
    EXPECT_EQ(FormatElapsed(59), "59秒");
    EXPECT_EQ(FormatElapsed(60), "1分");
    EXPECT_EQ(FormatElapsed(3605), "1時間5秒");
    EXPECT_EQ(FormatElapsed(32767), "9時間6分7秒");
    EXPECT_EQ(FormatElapsed(-5), "");

    EXPECT_EQ(ElapsedSeconds(0, 2.5), 2);  // halves round to even
    EXPECT_EQ(ElapsedSeconds(0, 3.5), 4);
    EXPECT_EQ(ElapsedSeconds(100, 99), 0);
    EXPECT_EQ(ElapsedSeconds(0, 40000), 32767);
    EXPECT_EQ(ElapsedSeconds(0, 1e12), 32767);
}

class ShowRunResultTest : public EventLogTest {
  protected:
    // Runs the closing box with the counters given; the box shown, if any.
    const test::ShownBox* Show(bool compare, int failures, int others) {
        gRun.blnCompare = compare;
        gRun.lngFailureCnt = failures;
        (compare ? gRun.lngDiffCnt : gRun.lngWarningCnt) = others;
        const size_t before = screen.boxes.size();
        ShowRunResult("組織単位の本番追加");
        return screen.boxes.size() > before ? &screen.boxes.back() : nullptr;
    }
};

TEST_F(ShowRunResultTest, FollowsTheDecisionTable) {
    struct Case {
        bool compare;
        int failures, others;
        const char* sentence;
        MsgIcon icon;
    } cases[] = {
        {false, 1, 0, "処理に失敗がありました。", MsgIcon::Critical},
        {false, 0, 2, "処理に警告がありました。", MsgIcon::Exclamation},
        {false, 3, 2, "処理に失敗と警告がありました。", MsgIcon::Critical},
        {true, 1, 0, "処理に失敗がありました。", MsgIcon::Critical},
        {true, 0, 2, "処理に相違がありました。", MsgIcon::Exclamation},
        {true, 3, 2, "処理に失敗と相違がありました。", MsgIcon::Critical},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sentence);
        test::ResetRun(folder.path());
        const test::ShownBox* box = Show(c.compare, c.failures, c.others);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->title, "組織単位の本番追加");
        EXPECT_EQ(box->text,
                  std::string("組織単位の本番追加") + c.sentence + "\rｲﾍﾞﾝﾄﾛｸﾞを開きますか？");
        EXPECT_EQ(box->icon, c.icon);
        EXPECT_EQ(box->buttons, MsgButtons::YesNo);
    }
    EXPECT_TRUE(screen.openedLogs.empty());  // every box was answered No
}

TEST_F(ShowRunResultTest, CleanRunsShowNothingAndYesOpensTheLog) {
    gRun.lngSuccessCnt = 5;
    EXPECT_EQ(Show(false, 0, 0), nullptr);
    // Warnings don't count in a compare run, differences don't in a production run.
    gRun.lngWarningCnt = 4;
    EXPECT_EQ(Show(true, 0, 0), nullptr);
    gRun.lngWarningCnt = 0;
    gRun.lngDiffCnt = 4;
    EXPECT_EQ(Show(false, 0, 0), nullptr);

    screen.QueueAnswers({MsgAnswer::Yes});
    ASSERT_NE(Show(false, 1, 0), nullptr);
    EXPECT_EQ(screen.openedLogs, (std::vector<std::string>{gRun.strEventLogPath}));
}

TEST_F(ShowRunResultTest, BulkRunsUseTheTotals) {
    gRun.blnDBMode = true;
    gRun.lngFailureCnt = 7;  // one kind's counters don't decide
    ShowRunResult("一括ｲﾝﾎﾟｰﾄ");
    EXPECT_TRUE(screen.boxes.empty());
    gRun.lngWarningTotal = 2;
    ShowRunResult("一括ｲﾝﾎﾟｰﾄ");
    ASSERT_EQ(screen.boxes.size(), 1u);
    EXPECT_EQ(screen.boxes[0].text, "一括ｲﾝﾎﾟｰﾄ処理に警告がありました。\rｲﾍﾞﾝﾄﾛｸﾞを開きますか？");
    EXPECT_EQ(screen.boxes[0].icon, MsgIcon::Exclamation);
}

}  // namespace
}  // namespace orin
