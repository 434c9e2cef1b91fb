// What stops a driver before the run begins: the inputs, the file, the questions, a missing
// engine, the login. None of these stops shows the progress window or writes the event log.

#include <gtest/gtest.h>

#include "DriverTestSupport.h"

namespace orin {
namespace {

using test::DriverTest;
using K = ObjectKind;
using O = OperationKind;
using M = RunMode;

const std::vector<std::string> kGoodCsv = {"!OU-Start,OU-End,Mirror,description", "a,,,", "b,,,"};
const std::string kNoFile = "<no such file>";

struct Stop {
    const char* what;
    K kind;
    O op;
    M mode;
    std::vector<std::string> csv;  // the file's lines; {kNoFile} for a path that doesn't exist
    std::vector<MsgAnswer> answers;
    std::vector<std::string> boxes;  // the texts of the boxes shown, in order
    std::string title;               // of the last box
    MsgIcon icon;                    // of the last box
};

const std::string kInputs = "入力情報不足";
const std::string kNoHeader =
    "CSVﾌｧｲﾙにﾍｯﾀﾞ行が見つかりません！\rﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙを参照しﾍｯﾀﾞを定義してください。";
const std::string kNoEngine = "この処理を実行するｴﾝｼﾞﾝが組み込まれていません。";
const std::string kDeleteWarning =
    "ｵﾌﾞｼﾞｪｸﾄの本番削除を実行しようとしています！\r本番削除処理を実行するとｵﾌﾞｼﾞｪｸﾄが"
    "Active Directoryから削除され回復できなくなります。\r本番削除処理を続行しますか？";
const std::string kGrpMdf = "ｸﾞﾙｰﾌﾟの本番変更";

const Stop kStops[] = {
    Stop("no file", K::OU, O::Add, M::Imitate, {kNoFile}, {},
         {"CSVﾌｧｲﾙ読込み失敗！\rﾊﾟｽを確認して正しいﾌｧｲﾙ名を入力してください。"},
         "組織単位の模擬追加", MsgIcon::Critical),
    Stop("empty file", K::OU, O::Add, M::Imitate, {}, {}, {kNoHeader}, "組織単位の模擬追加",
         MsgIcon::Critical),
    Stop("no data rows", K::Group, O::Mdf, M::Production,
         {"!OU-Start,OU-End,RDN,Mirror", "# no", ",,,"}, {},
         {kGrpMdf + "処理を開始してよろしいですか？", "CSVﾌｧｲﾙにﾃﾞｰﾀがありません！"}, kGrpMdf,
         MsgIcon::Exclamation),
    Stop("no Mirror column", K::Group, O::Mdf, M::Production,
         {"!OU-Start,OU-End,RDN,description", "a,,g,"}, {},
         {kGrpMdf + "処理を開始してよろしいですか？",
          "ﾍｯﾀﾞ行にﾍｯﾀﾞ[MIRROR]が見つかりません！このﾍｯﾀﾞを定義してください。"},
         kGrpMdf, MsgIcon::Exclamation),
    Stop("No to the start question", K::Computer, O::Add, M::Production, kGoodCsv, {MsgAnswer::No},
         {"ｺﾝﾋﾟｭｰﾀの本番追加処理を開始してよろしいですか？"}, "ｺﾝﾋﾟｭｰﾀの本番追加",
         MsgIcon::Question),
    Stop("No to the delete warning", K::User, O::Del, M::Production, kGoodCsv, {MsgAnswer::No},
         {kDeleteWarning}, "ﾕｰｻﾞｰの本番削除", MsgIcon::Exclamation),
    Stop("Yes to the warning, No to the start", K::User, O::Del, M::Production, kGoodCsv,
         {MsgAnswer::Yes, MsgAnswer::No},
         {kDeleteWarning, "ﾕｰｻﾞｰの本番削除処理を開始してよろしいですか？"}, "ﾕｰｻﾞｰの本番削除",
         MsgIcon::Question),
    // The imitation of a delete changes nothing, so it asks only the start question.
    Stop("an imitated delete", K::User, O::Del, M::Imitate, kGoodCsv, {MsgAnswer::No},
         {"ﾕｰｻﾞｰの模擬削除処理を開始してよろしいですか？"}, "ﾕｰｻﾞｰの模擬削除", MsgIcon::Question),
    // An export of a kind that has no export routines (none are registered here).
    Stop("no export routines", K::SharedFolder, O::Exp, M::Production, {kNoFile}, {}, {kNoEngine},
         "共有ﾌｫﾙﾀﾞのｴｸｽﾎﾟｰﾄ", MsgIcon::Critical),
};

TEST_F(DriverTest, EachStopShowsItsBoxesAndNothingElse) {
    for (const Stop& stop : kStops) {
        SCOPED_TRACE(stop.what);
        op.boxes.clear();
        for (MsgAnswer answer : stop.answers) op.QueueAnswers({answer});
        const bool noFile = !stop.csv.empty() && stop.csv[0] == kNoFile;
        const std::string path = noFile ? (folder / "none.csv").string() : Csv(stop.csv);
        EXPECT_EQ(Run(stop.kind, stop.op, stop.mode, path), DriverEnd::Stopped);
        EXPECT_EQ(BoxTexts(), stop.boxes);
        ASSERT_FALSE(op.boxes.empty());
        EXPECT_EQ(op.boxes.back().title, stop.title);
        EXPECT_EQ(op.boxes.back().icon, stop.icon);
        EXPECT_EQ(op.boxes.back().buttons,
                  stop.answers.empty() ? MsgButtons::Ok : MsgButtons::YesNo);
        EXPECT_EQ(op.progressWindows, 0);
        EXPECT_TRUE(calls.empty());
        EXPECT_FALSE(std::filesystem::exists(LogPath()));
        EXPECT_TRUE(gSession.Connected);  // a stop keeps the connection
    }
    EXPECT_EQ(op.logins, 0);
}

TEST_F(DriverTest, TheInputsAreCheckedPathThenDnsThenNetbiosAndTrimmed) {
    const std::string csv = Csv(kGoodCsv);
    op.domainFields = {"  ", ""};
    EXPECT_EQ(Run(K::OU, O::Add, M::Production, "  "), DriverEnd::Stopped);
    EXPECT_EQ(Run(K::OU, O::Add, M::Production, csv), DriverEnd::Stopped);
    op.domainFields = {"orin.test", " "};
    EXPECT_EQ(Run(K::User, O::Mdf, M::Compare, csv), DriverEnd::Stopped);
    EXPECT_EQ(BoxTexts(), (std::vector<std::string>{"CSVﾌｧｲﾙをﾌﾙﾊﾟｽで指定してください。",
                                                    "ﾄﾞﾒｲﾝの完全なDNS名を入力してください｡",
                                                    "ﾄﾞﾒｲﾝのNetBIOS名を入力してください｡"}));
    for (const test::ShownBox& box : op.boxes) {
        EXPECT_EQ(box.title, kInputs);
        EXPECT_EQ(box.icon, MsgIcon::Exclamation);
    }
    EXPECT_FALSE(std::filesystem::exists(LogPath()));

    op.domainFields = {" orin.test ", "　"};  // a full-width blank is not trimmed away
    EXPECT_EQ(Run(K::OU, O::Add, M::Production, csv), DriverEnd::Completed);
    EXPECT_EQ(gRun.strDomainDNS, "orin.test");
    EXPECT_EQ(gRun.strDomainNetBIOS, "　");
}

TEST_F(DriverTest, ARunWithoutItsEngineIsRefusedBeforeTheLogin) {
    SetRowEngine(K::Computer, 7, nullptr);  // Imitate Mdf
    gSession.NeverShowAgain = false;
    EXPECT_EQ(Run(K::Computer, O::Mdf, M::Imitate, Csv(kGoodCsv)), DriverEnd::Stopped);
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{kNoEngine});
    EXPECT_EQ(op.boxes[0].title, "ｺﾝﾋﾟｭｰﾀの模擬変更");
    EXPECT_EQ(op.logins, 0);
}

TEST_F(DriverTest, ACancelledLoginStopsBeforeTheFile) {
    gSession.NeverShowAgain = false;  // the login dialog comes up although connected
    op.onLogin = [] { gSession.LoginCancelled = true; };
    EXPECT_EQ(Run(K::OU, O::Mov, M::Production, (folder / "none.csv").string()),
              DriverEnd::NoConnection);
    EXPECT_EQ(op.logins, 1);
    EXPECT_EQ(op.connectWaits, 0);
    EXPECT_TRUE(op.boxes.empty());

    // "Never show again" alone doesn't skip the login while there is no connection.
    gSession.NeverShowAgain = true;
    gSession.Connected = false;
    EXPECT_EQ(Run(K::OU, O::Mov, M::Production, Csv(kGoodCsv)), DriverEnd::NoConnection);
    EXPECT_EQ(op.logins, 2);
    EXPECT_EQ(op.progressWindows, 0);
}

}  // namespace
}  // namespace orin
