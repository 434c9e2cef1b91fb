// Runs that go through: the progress window's load and activation, the Start method's log
// blocks and result box, cancel, and the export order. (The result box's choice of words is
// tested with the event log.)

#include <gtest/gtest.h>

#include "DriverTestSupport.h"
#include "export/ExportScan.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

using test::DriverTest;
using K = ObjectKind;
using O = OperationKind;
using M = RunMode;
using Lines = std::vector<std::string>;

const std::string kStars(50, '*');
const std::string kDashes(50, '-');

TEST_F(DriverTest, ProductionRunShowsItsWindowAndWritesItsBlock) {
    const std::string csv =
        Csv({"!OU-Start,OU-End,Mirror,description", "# rows", "a,,,", "b,,,", "b,,YES,", "c,,,"});
    EXPECT_EQ(Run(K::OU, O::Add, M::Production, " " + csv + " "), DriverEnd::Completed);
    EXPECT_EQ(op.progressWindows, 1);
    EXPECT_EQ(op.progressTitle, "組織単位の本番追加");
    EXPECT_EQ(op.counterCaption1 + "/" + op.counterCaption2, "成功数/警告数");
    EXPECT_EQ(op.total, 3);
    EXPECT_EQ(op.status, "組織単位の本番追加処理が完了しました。");
    EXPECT_FALSE(op.statusRed);
    EXPECT_EQ(op.commandCaption, "OK");
    // The window starts at zero before the loop moves it, object by object.
    EXPECT_EQ(op.progressValues, (std::vector<int32_t>{0, 1, 1, 2, 3}));
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[0].op, 0);
    EXPECT_EQ(calls[0].line, 3);

    // The log's block, but for its date and time lines.
    Lines log;
    for (const std::string& line : LogLines())
        if (!line.starts_with("日付： ") && !line.starts_with("時刻： ")) log.push_back(line);
    EXPECT_EQ(log,
              (Lines{"", kStars, "処理内容： 組織単位の本番追加", "CSVﾌｧｲﾙﾊﾟｽ： " + csv, kStars,
                     "ｵﾌﾞｼﾞｪｸﾄ総数： 3", "処理完了数： 3", "処理成功数： 3", "処理警告数： 0",
                     "処理失敗数： 0", "ｷｬﾝｾﾙによる中断の有無： 無", kDashes}));
    // A clean run shows no result box: the start question was the only one.
    EXPECT_EQ(BoxTexts(), Lines{"組織単位の本番追加処理を開始してよろしいですか？"});
}

TEST_F(DriverTest, ImitateAndCompareChooseTheirRowOperationsAndCaptions) {
    const std::string csv =
        Csv({"!OU-Start,OU-End,RDN,Mirror,Description", "a,,u,,", "a,,v,,20176"});
    EXPECT_EQ(Run(K::User, O::Mdf, M::Imitate, csv), DriverEnd::Completed);
    EXPECT_EQ(calls.back().op, 7);
    EXPECT_EQ(op.progressTitle, "ﾕｰｻﾞｰの模擬変更");
    EXPECT_EQ(gRun.lngWarningCnt, 1);  // outside Compare, 20176 is a warning
    EXPECT_EQ(op.boxes.back().text,
              "ﾕｰｻﾞｰの模擬変更処理に警告がありました。\rｲﾍﾞﾝﾄﾛｸﾞを開きますか？");

    op.QueueAnswers({MsgAnswer::Yes, MsgAnswer::No});  // start, then the result box
    EXPECT_EQ(Run(K::User, O::Mdf, M::Compare, csv), DriverEnd::Completed);
    EXPECT_EQ(calls.back().op, 11);
    EXPECT_EQ(op.counterCaption1 + "/" + op.counterCaption2, "一致数/相違数");
    EXPECT_EQ(gRun.lngMatchCnt, 1);
    EXPECT_EQ(gRun.lngDiffCnt, 1);
    EXPECT_EQ(op.boxes.back().title, "ﾕｰｻﾞｰ変更のﾃﾞｰﾀ照合");
    EXPECT_EQ(op.boxes.back().text,
              "ﾕｰｻﾞｰ変更のﾃﾞｰﾀ照合処理に相違がありました。\rｲﾍﾞﾝﾄﾛｸﾞを開きますか？");
    EXPECT_EQ(op.commandCaption, "OK");  // No to the result box leaves the window at "OK"

    // The compare of an export file reads the export's columns and runs RowOperation 12.
    calls.clear();
    EXPECT_EQ(Run(K::GpoLink, O::Exp, M::Compare,
                  Csv({"!OU-Start,OU-End,RDN,Mirror,displayName", "a,,{x},,p"})),
              DriverEnd::Completed);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].op, 12);
    EXPECT_EQ(gRun.ColumnNames, ColumnNamesFor(K::GpoLink, O::Exp, true));
    EXPECT_EQ(gRun.ColumnIndex[FindColumnSlot(gRun.ColumnNames, "displayName")], 4);
    EXPECT_EQ(op.status, "GPOﾘﾝｸｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合処理が完了しました。");
}

TEST_F(DriverTest, CancelDuringTheStartWaitEndsBeforeTheFirstRow) {
    SetProgressStartWait(0.2);
    op.onYield = [](int n) {
        if (n == 1) gRun.intCancel = 1;
    };
    EXPECT_EQ(Run(K::SharedFolder, O::Add, M::Production,
                  Csv({"!OU-Start,OU-End,RDN,Mirror", "a,,s,", "a,,t,"})),
              DriverEnd::Cancelled);
    EXPECT_TRUE(calls.empty());
    EXPECT_GT(op.yields, 1);  // the wait went on yielding after the press
    EXPECT_EQ(op.status, "共有ﾌｫﾙﾀﾞの本番追加処理がﾕｰｻﾞｰに中断されました。");
    EXPECT_TRUE(op.statusRed);
    EXPECT_EQ(op.commandCaption, "OK");
    const Lines log = LogLines();
    ASSERT_GE(log.size(), 3u);
    EXPECT_EQ(Lines(log.end() - 3, log.end()),
              (Lines{"ｷｬﾝｾﾙによる中断の有無： 有", "ｷｬﾝｾﾙ時の処理済最終行： 0", kDashes}));
}

TEST_F(DriverTest, CancelOnTheLastRowKeepsTheWaitingCaption) {
    op.onYield = [](int n) {
        if (n == 3) gRun.intCancel = 1;  // the wait's yield, then one per row
    };
    EXPECT_EQ(Run(K::OU, O::Mdf, M::Imitate, Csv({"!OU-Start,OU-End,Mirror", "a,,", "b,,"})),
              DriverEnd::Cancelled);
    EXPECT_EQ(calls.size(), 2u);
    EXPECT_EQ(op.status, "組織単位を模擬変更しています。しばらくお待ちください･･･");
    const Lines log = LogLines();
    ASSERT_GE(log.size(), 3u);
    EXPECT_EQ(log[log.size() - 3], "ｷｬﾝｾﾙによる中断の有無： 有");
}

class ExportDriverTest : public DriverTest {
  protected:
    // Export routines of the test's own: the scan finds `objects` objects at `level`; the walk
    // writes one row per object and the line "walk" into the event log, to show the order.
    void Register(K kind, int objects, int16_t level = 1) {
        auto scan = [=] {
            RunExpInfoScan(kind, [=] {
                gRun.lngObjectCnt = objects;
                gRun.intOULevel = level;
            });
        };
        SetExportRoutines(kind, {scan, [=, this](const std::filesystem::path& csv) {
                                     ++walks;
                                     platform::AppendLine(LogPath(), "walk");
                                     for (int i = 0; i < objects; ++i, ++gRun.lngSuccessCnt)
                                         platform::AppendLine(csv, "row");
                                     return true;
                                 }});
    }
    int walks = 0;
};

TEST_F(ExportDriverTest, OUWritesItsLogHeaderAfterTheWalkAndOtherKindsBefore) {
    Register(K::OU, 2, 3);
    const std::string out = (folder / "ou.csv").string();
    EXPECT_EQ(Run(K::OU, O::Exp, M::Production, out), DriverEnd::Completed);
    EXPECT_EQ(op.collectWaits, 1);
    EXPECT_EQ(op.progressTitle, "組織単位のｴｸｽﾎﾟｰﾄ");
    EXPECT_EQ(op.status, "組織単位のｴｸｽﾎﾟｰﾄ処理が完了しました。");
    EXPECT_EQ(op.total, 2);
    const Lines file = test::ReadLines(out);
    ASSERT_EQ(file.size(), 4u);  // the two header lines, sized by the scan, then the rows
    EXPECT_EQ(file[0],
              "!OU-Start,,OU-End,Mirror,c,postalCode,st,l,street,description,"
              "MgrOU-Start,MgrOU-End,MgrRDN");
    EXPECT_EQ(file[3], "row");
    Lines log = LogLines();
    EXPECT_EQ(log[0], "walk");
    EXPECT_EQ(log[3], "処理内容： 組織単位のｴｸｽﾎﾟｰﾄ");
    // No result box and no line of the last row read: an export has neither.
    EXPECT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(std::count(log.begin(), log.end(), "ｷｬﾝｾﾙによる中断の有無： 無"), 1);

    std::filesystem::remove(LogPath());  // the other kinds: the header, then the walk
    Register(K::Group, 1);
    EXPECT_EQ(Run(K::Group, O::Exp, M::Production, (folder / "grp.csv").string()),
              DriverEnd::Completed);
    log = LogLines();
    EXPECT_EQ(log[2], "処理内容： ｸﾞﾙｰﾌﾟのｴｸｽﾎﾟｰﾄ");
    EXPECT_EQ(log[7], "walk");
}

TEST_F(ExportDriverTest, StopsBeforeTheRun) {
    Register(K::User, 0);
    const std::string out = Csv({"keep me"}, "users.csv");
    op.QueueAnswers({MsgAnswer::No});
    EXPECT_EQ(Run(K::User, O::Exp, M::Production, out), DriverEnd::Stopped);
    EXPECT_EQ(BoxTexts(), Lines{"同名のCSVﾌｧｲﾙはすでに存在します。\r上書きしますか？"});
    EXPECT_EQ(test::ReadLines(out), Lines{"keep me"});

    // Nothing to export: the scan's box, and no progress window.
    EXPECT_EQ(Run(K::User, O::Exp, M::Production, out), DriverEnd::Stopped);
    EXPECT_EQ(op.boxes.back().text, "ﾕｰｻﾞｰが存在しません。");
    EXPECT_EQ(op.boxes.back().icon, MsgIcon::Information);
    EXPECT_TRUE(gRun.blnNothingToExport);
    EXPECT_FALSE(gSession.CollectPending);

    // Cancel in the collecting window.
    Register(K::User, 5);
    op.onYield = [](int) { gRun.blnWaitCancelled = true; };
    op.boxes.clear();
    EXPECT_EQ(Run(K::User, O::Exp, M::Production, out), DriverEnd::Stopped);
    EXPECT_EQ(op.boxes.size(), 2u);  // overwrite and start questions only
    EXPECT_EQ(op.progressWindows, 0);
    EXPECT_EQ(walks, 0);
    EXPECT_FALSE(std::filesystem::exists(LogPath()));
}

TEST_F(ExportDriverTest, AFileThatCantBeWrittenEndsTheRunWithoutALog) {
    Register(K::Computer, 2);
    EXPECT_EQ(
        Run(K::Computer, O::Exp, M::Production, (folder / "no-such-folder" / "c.csv").string()),
        DriverEnd::Failed);
    EXPECT_EQ(op.boxes.back().title, "ｺﾝﾋﾟｭｰﾀのｴｸｽﾎﾟｰﾄ");
    EXPECT_EQ(op.boxes.back().text,
              "ﾌｧｲﾙへの書込みが失敗しました！\rﾌｧｲﾙが使用中かまたはﾌｧｲﾙやﾃﾞｨﾚｸﾄﾘの書込み権限が"
              "あるかを確認してください。");
    EXPECT_EQ(walks, 0);
    EXPECT_FALSE(std::filesystem::exists(LogPath()));
}

}  // namespace
}  // namespace orin
