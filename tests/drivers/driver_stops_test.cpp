// What stops a driver before the run begins: the inputs, the login, the file, the questions.
// None of these stops writes anything to the event log.

#include <gtest/gtest.h>

#include "DriverTestSupport.h"

namespace orin {
namespace {

using test::DriverTest;

const std::vector<std::string> kGoodCsv = {"!OU-Start,OU-End,Mirror,description", "a,,,", "b,,,"};

class DriverStopTest : public DriverTest {
  protected:
    // The run stopped with exactly these boxes, without a progress window or a log.
    void ExpectStoppedWith(DriverEnd end, const std::vector<std::string>& texts) {
        EXPECT_EQ(end, DriverEnd::Stopped);
        EXPECT_EQ(BoxTexts(), texts);
        EXPECT_EQ(op.progressWindows, 0);
        EXPECT_TRUE(calls.empty());
        EXPECT_FALSE(std::filesystem::exists(LogPath()));
    }
};

TEST_F(DriverStopTest, GetRunInputsChecksPathThenDnsThenNetbios) {
    op.domainFields = {"  ", ""};
    ExpectStoppedWith(Run(ObjectKind::OU, OperationKind::Add, RunMode::Production, "  "),
                      {"CSVﾌｧｲﾙをﾌﾙﾊﾟｽで指定してください。"});
    EXPECT_EQ(op.boxes[0].title, "入力情報不足");
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Exclamation);

    op.boxes.clear();
    const std::string csv = Csv(kGoodCsv);
    EXPECT_EQ(Run(ObjectKind::OU, OperationKind::Add, RunMode::Production, csv),
              DriverEnd::Stopped);
    op.domainFields = {" orin.test ", "　"};  // a full-width blank is not trimmed away
    EXPECT_EQ(Run(ObjectKind::OU, OperationKind::Add, RunMode::Production, csv),
              DriverEnd::Completed);
    EXPECT_EQ(BoxTexts()[0], "ﾄﾞﾒｲﾝの完全なDNS名を入力してください｡");
    EXPECT_EQ(gRun.strDomainDNS, "orin.test");
    EXPECT_EQ(gRun.strDomainNetBIOS, "　");

    op.boxes.clear();
    op.progressWindows = 0;
    calls.clear();
    std::filesystem::remove(LogPath());
    op.domainFields = {"orin.test", " "};
    ExpectStoppedWith(Run(ObjectKind::User, OperationKind::Mdf, RunMode::Compare, csv),
                      {"ﾄﾞﾒｲﾝのNetBIOS名を入力してください｡"});
}

TEST_F(DriverStopTest, FileChecksComeAfterTheConnectionAndBeforeTheQuestions) {
    const std::string title = "組織単位の模擬追加";
    ExpectStoppedWith(
        Run(ObjectKind::OU, OperationKind::Add, RunMode::Imitate, (folder / "none.csv").string()),
        {"CSVﾌｧｲﾙ読込み失敗！\rﾊﾟｽを確認して正しいﾌｧｲﾙ名を入力してください。"});
    EXPECT_EQ(op.boxes[0].title, title);
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);

    // An empty file, and a file whose header is only a comment, have no header line.
    for (const auto& lines : {std::vector<std::string>{}, {"#OU-Start,OU-End,Mirror", "a,,"}}) {
        op.boxes.clear();
        ExpectStoppedWith(Run(ObjectKind::OU, OperationKind::Add, RunMode::Imitate, Csv(lines)),
                          {"CSVﾌｧｲﾙにﾍｯﾀﾞ行が見つかりません！\rﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙを参照しﾍｯﾀﾞを定義"
                           "してください。"});
    }
}

TEST_F(DriverStopTest, NoDataAndNoMirrorStopAfterTheStartQuestion) {
    const std::string question = "ｸﾞﾙｰﾌﾟの本番変更処理を開始してよろしいですか？";
    ExpectStoppedWith(Run(ObjectKind::Group, OperationKind::Mdf, RunMode::Production,
                          Csv({"!OU-Start,OU-End,RDN,Mirror", "# nothing", ",,,"})),
                      {question, "CSVﾌｧｲﾙにﾃﾞｰﾀがありません！"});
    EXPECT_EQ(op.boxes[1].icon, MsgIcon::Exclamation);

    op.boxes.clear();
    ExpectStoppedWith(
        Run(ObjectKind::Group, OperationKind::Mdf, RunMode::Production,
            Csv({"!OU-Start,OU-End,RDN,description", "a,,g,"})),
        {question, "ﾍｯﾀﾞ行にﾍｯﾀﾞ[MIRROR]が見つかりません！このﾍｯﾀﾞを定義してください。"});
    EXPECT_GT(gRun.sngStartTime, 0);
}

TEST_F(DriverStopTest, NoAtTheStartQuestionLeavesNoTraceAndKeepsTheConnection) {
    op.QueueAnswers({MsgAnswer::No});
    ExpectStoppedWith(
        Run(ObjectKind::Computer, OperationKind::Add, RunMode::Production, Csv(kGoodCsv)),
        {"ｺﾝﾋﾟｭｰﾀの本番追加処理を開始してよろしいですか？"});
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Question);
    EXPECT_EQ(op.boxes[0].buttons, MsgButtons::YesNo);
    EXPECT_TRUE(gSession.Connected);
    EXPECT_EQ(op.logins, 0);
}

TEST_F(DriverStopTest, ProductionDeleteAsksTwice) {
    const std::string warning =
        "ｵﾌﾞｼﾞｪｸﾄの本番削除を実行しようとしています！\r本番削除処理を実行するとｵﾌﾞｼﾞｪｸﾄが"
        "Active Directoryから削除され回復できなくなります。\r本番削除処理を続行しますか？";
    const std::string csv = Csv(kGoodCsv);
    op.QueueAnswers({MsgAnswer::No});
    ExpectStoppedWith(Run(ObjectKind::User, OperationKind::Del, RunMode::Production, csv),
                      {warning});
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Exclamation);

    op.boxes.clear();
    op.QueueAnswers({MsgAnswer::Yes, MsgAnswer::No});
    ExpectStoppedWith(Run(ObjectKind::User, OperationKind::Del, RunMode::Production, csv),
                      {warning, "ﾕｰｻﾞｰの本番削除処理を開始してよろしいですか？"});

    // The imitation of a delete changes nothing, so it asks only the start question.
    op.boxes.clear();
    op.QueueAnswers({MsgAnswer::No});
    ExpectStoppedWith(Run(ObjectKind::User, OperationKind::Del, RunMode::Imitate, csv),
                      {"ﾕｰｻﾞｰの模擬削除処理を開始してよろしいですか？"});
}

TEST_F(DriverStopTest, CancelledLoginStopsBeforeTheFile) {
    gSession.NeverShowAgain = false;  // the login dialog comes up although connected
    op.onLogin = [] { gSession.LoginCancelled = true; };
    EXPECT_EQ(Run(ObjectKind::OU, OperationKind::Mov, RunMode::Production,
                  (folder / "none.csv").string()),
              DriverEnd::NoConnection);
    EXPECT_EQ(op.logins, 1);
    EXPECT_EQ(op.connectWaits, 0);
    EXPECT_TRUE(op.boxes.empty());

    // "Never show again" alone doesn't skip the login while there is no connection.
    gSession.NeverShowAgain = true;
    gSession.Connected = false;
    EXPECT_EQ(Run(ObjectKind::OU, OperationKind::Mov, RunMode::Production, Csv(kGoodCsv)),
              DriverEnd::NoConnection);
    EXPECT_EQ(op.logins, 2);
    EXPECT_EQ(op.progressWindows, 0);
}

TEST_F(DriverStopTest, ARunWithoutItsEngineIsRefusedBeforeAnything) {
    SetRowEngine(ObjectKind::Computer, 7, nullptr);  // Imitate Mdf
    op.onLogin = [] { ADD_FAILURE() << "no login for a refused run"; };
    gSession.NeverShowAgain = false;
    ExpectStoppedWith(
        Run(ObjectKind::Computer, OperationKind::Mdf, RunMode::Imitate, Csv(kGoodCsv)),
        {"この処理を実行するｴﾝｼﾞﾝが組み込まれていません。"});
    EXPECT_EQ(op.boxes[0].title, "ｺﾝﾋﾟｭｰﾀの模擬変更");

    // Likewise an export of a kind that has no export routines.
    op.boxes.clear();
    ExpectStoppedWith(Run(ObjectKind::SharedFolder, OperationKind::Exp, RunMode::Production,
                          (folder / "out.csv").string()),
                      {"この処理を実行するｴﾝｼﾞﾝが組み込まれていません。"});
}

}  // namespace
}  // namespace orin
