#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "RunTestSupport.h"
#include "csv/CsvReader.h"
#include "platform/Strings.h"
#include "run/Outcome.h"
#include "support/ScriptedOperator.h"

namespace orin {
namespace {

// Two sample engines written the way every engine is: straight steps inside EngineRun. The
// cells are: Mirror, name, then the codes to raise one after another. A code written "!1310"
// is a failure after the object was made (blnRowCreatedObject is set first).
std::vector<std::string> journal;

void RaiseCells(const std::vector<std::string>& cells) {
    for (size_t i = 2; i < cells.size(); ++i) {
        std::string cell = Trim(cells[i]);
        if (cell.empty()) continue;
        if (cell[0] == '!') {
            gRun.blnRowCreatedObject = true;
            cell.erase(0, 1);
        }
        journal.push_back("raise " + cell);
        Raise(std::stoi(cell));
        journal.push_back("after " + cell);
    }
}

void SampleAdd(const std::vector<std::string>& cells, int32_t line, int32_t ordinal) {
    EngineRun(line, ordinal, [&](RowScope& row) {
        const std::string mirror = ToUpperAscii(CellAt(cells, 0));
        if (mirror != "YES" && mirror != "NO" && !mirror.empty()) Raise(1031);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const bool isMirrorRow = mirror == "YES";
        const std::string name = CellAt(cells, 1);
        if (!isMirrorRow) journal.push_back("create " + name);
        row.OnFailure([&] {
            if (!gRun.blnRowCreatedObject) return;
            if (!isMirrorRow) journal.push_back("delete " + name);
            if (gRun.blnMirrorGroupCreated) journal.push_back("delete group of " + name);
            gRun.blnRowCreatedObject = false;
        });
        RaiseCells(cells);
        if (!gRun.blnRowWarned && !isMirrorRow) gRun.blnMirrorGroupCreated = true;
        RaiseVerdict();
    });
}

void SampleCompare(const std::vector<std::string>& cells, int32_t line, int32_t ordinal) {
    EngineRun(line, ordinal, [&](RowScope&) {
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        RaiseCells(cells);
        RaiseVerdict();
    });
}

class OutcomeTest : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetRun(folder.path());
        journal.clear();
    }
    // Runs rows through an engine with the physical line numbers 10, 11, ...
    void Rows(void (*engine)(const std::vector<std::string>&, int32_t, int32_t),
              const std::vector<std::string>& rows) {
        for (size_t i = 0; i < rows.size(); ++i) {
            engine(SplitCells(rows[i]), static_cast<int32_t>(10 + i), static_cast<int32_t>(i + 1));
            counts.push_back({gRun.lngSuccessCnt, gRun.lngWarningCnt, gRun.lngFailureCnt,
                              gRun.lngMatchCnt, gRun.lngDiffCnt});
        }
    }
    std::vector<std::string> Log() const { return test::ReadLines(gRun.strEventLogPath); }

    test::ScratchFolder folder;
    test::ScriptedOperator screen;
    // After each row: success, warning, failure, match, difference.
    std::vector<std::vector<int32_t>> counts;
};

TEST(BandOf, SortsCodesByFamily) {
    struct Case {
        int32_t code;
        CodeBand production, compare, bulk;
    } cases[] = {
        {-1, CodeBand::None, CodeBand::None, CodeBand::Failure},
        {999, CodeBand::None, CodeBand::None, CodeBand::Failure},
        {1000, CodeBand::Failure, CodeBand::Failure, CodeBand::Failure},
        {9998, CodeBand::Failure, CodeBand::Failure, CodeBand::Failure},
        {9999, CodeBand::None, CodeBand::None, CodeBand::Failure},
        {10000, CodeBand::Warning, CodeBand::None, CodeBand::Warning},
        {19999, CodeBand::Warning, CodeBand::None, CodeBand::Warning},
        {20000, CodeBand::Warning, CodeBand::Difference, CodeBand::Warning},
        {59999, CodeBand::Warning, CodeBand::Difference, CodeBand::Warning},
        {60000, CodeBand::Verdict, CodeBand::Verdict, CodeBand::Verdict},
        {65534, CodeBand::Verdict, CodeBand::Verdict, CodeBand::Verdict},
        {65535, CodeBand::None, CodeBand::None, CodeBand::Verdict},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(BandOf(c.code, EngineFamily::Production), c.production) << c.code;
        EXPECT_EQ(BandOf(c.code, EngineFamily::Compare), c.compare) << c.code;
        EXPECT_EQ(BandOf(c.code, EngineFamily::Bulk), c.bulk) << c.code;
    }
}

TEST_F(OutcomeTest, AThreeRowObjectFailingOnItsFirstRowCountsOnceAtTheEnd) {
    TraceMode = 1;
    test::SetMirrorFlags({"N", "Y", "Y", "N"});
    Rows(SampleAdd, {"NO,a,!1310", "YES,a,10300", "YES,a", "NO,b"});
    EXPECT_EQ(
        Log(),
        (std::vector<std::string>{"10行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[国/地域]の設定が失敗しました。"}));
    // The failed row cleaned up after itself; the two Mirror rows did no work.
    EXPECT_EQ(journal,
              (std::vector<std::string>{"create a", "raise 1310", "delete a", "create b"}));
    EXPECT_EQ(counts[0][2], 0);
    EXPECT_EQ(counts[1][2], 0);
    EXPECT_EQ(counts[2][2], 1);
    EXPECT_EQ(counts[3], (std::vector<int32_t>{1, 0, 1, 0, 0}));
    EXPECT_FALSE(gRun.blnRowFailed);
    const std::vector<std::string> trace = test::ReadLines(TraceFilePath);
    ASSERT_EQ(trace.size(), 2u);
    EXPECT_TRUE(trace[0].ends_with("【Sub: HandleImportFailure】Enter"));
    EXPECT_TRUE(trace[1].ends_with("【Sub: HandleImportFailure】Exit"));
}

TEST_F(OutcomeTest, AWarningOnAMiddleRowMakesTheObjectAWarning) {
    test::SetMirrorFlags({"N", "Y", "Y"});
    Rows(SampleAdd, {"NO,a", "YES,a,10050", "YES,a"});
    EXPECT_EQ(Log().size(), 1u);
    EXPECT_EQ(
        Log()[0],
        "11行, 警告, OU配下にｵﾌﾞｼﾞｪｸﾄが存在するため、ﾍｯﾀﾞの定義に従い削除処理を中止しました。");
    // A warning goes on with the next statement.
    EXPECT_EQ(journal, (std::vector<std::string>{"create a", "raise 10050", "after 10050"}));
    EXPECT_EQ(counts[1], (std::vector<int32_t>{0, 0, 0, 0, 0}));
    EXPECT_EQ(counts[2], (std::vector<int32_t>{0, 1, 0, 0, 0}));
    EXPECT_FALSE(gRun.blnRowWarned);
}

TEST_F(OutcomeTest, AWarningThenAFailureCountsOnlyTheFailure) {
    test::SetMirrorFlags({"N", "N"});
    Rows(SampleAdd, {"NO,a,10300,!1315,10301", "NO,b"});
    EXPECT_EQ(Log().size(), 2u);
    EXPECT_TRUE(Log()[0].starts_with("10行, 警告, 無期限ﾊﾟｽﾜｰﾄﾞ"));
    EXPECT_TRUE(Log()[1].starts_with("10行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[郵便番号]"));
    EXPECT_EQ(journal, (std::vector<std::string>{"create a", "raise 10300", "after 10300",
                                                 "raise 1315", "delete a", "create b"}));
    EXPECT_EQ(counts[0], (std::vector<int32_t>{0, 0, 1, 0, 0}));
    // The failure cleared the warning: the next object is a plain success.
    EXPECT_EQ(counts[1], (std::vector<int32_t>{1, 0, 1, 0, 0}));
}

TEST_F(OutcomeTest, UnknownCodesWriteNothingButStillDecide) {
    test::SetMirrorFlags({"N", "N"});
    Rows(SampleAdd, {"NO,a,10002", "NO,b,1002"});
    EXPECT_TRUE(Log().empty());
    EXPECT_EQ(counts[0], (std::vector<int32_t>{0, 1, 0, 0, 0}));  // warning without a line
    EXPECT_EQ(counts[1], (std::vector<int32_t>{0, 1, 1, 0, 0}));  // failure without a line
}

TEST_F(OutcomeTest, TheLastDataRowEndsItsObjectWhateverItsFlag) {
    test::SetMirrorFlags({"N", "Y"});
    Rows(SampleAdd, {"NO,a", "YES,a"});
    EXPECT_EQ(counts[0][0], 0);
    EXPECT_EQ(counts[1][0], 1);
    // An invalid Mirror value fails the row and ends its object.
    test::ResetRun(folder.path());
    counts.clear();
    test::SetMirrorFlags({"?", "N"});
    Rows(SampleAdd, {"Y,a", "NO,b"});
    EXPECT_EQ(Log().at(0), "10行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。");
    EXPECT_EQ(counts[0], (std::vector<int32_t>{0, 0, 1, 0, 0}));
    EXPECT_EQ(counts[1], (std::vector<int32_t>{1, 0, 1, 0, 0}));
}

TEST_F(OutcomeTest, MirrorRowFailuresDeleteTheObjectOnlyWhenTheGroupMadeIt) {
    // The first row made the object: a failing Mirror row takes it away.
    test::SetMirrorFlags({"N", "Y"});
    Rows(SampleAdd, {"NO,a", "YES,a,!6006"});
    EXPECT_EQ(journal, (std::vector<std::string>{"create a", "raise 6006", "delete group of a"}));
    EXPECT_EQ(counts[1], (std::vector<int32_t>{0, 0, 1, 0, 0}));
    EXPECT_FALSE(gRun.blnRowCreatedObject);

    // A Mirror row whose group made nothing leaves the directory alone.
    journal.clear();
    gRun.blnMirrorGroupCreated = false;
    test::SetMirrorFlags({"N", "Y"});
    gRun.lngFailureCnt = 0;
    SampleAdd(SplitCells("YES,a,!6006"), 11, 2);
    EXPECT_EQ(journal, (std::vector<std::string>{"raise 6006"}));
}

TEST_F(OutcomeTest, CompareRunsCountDifferencesAndFailures) {
    gRun.blnCompare = true;
    gRun.MsgArg1 = "Tokyo";
    gRun.MsgArg2 = "Osaka";
    test::SetMirrorFlags({"N", "Y", "N", "N"});
    Rows(SampleCompare, {"NO,a,20004,20005", "YES,a", "NO,b,1131", "NO,c"});
    std::vector<std::string> log = Log();
    ASSERT_EQ(log.size(), 5u);  // the first difference spans three lines
    EXPECT_EQ(log[0], "10行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]に相違がありました。");
    EXPECT_EQ(log[1], "\t【ｲﾝﾎﾟｰﾄﾃﾞｰﾀ内のﾌﾟﾛﾊﾟﾃｨ値】：Tokyo");
    EXPECT_EQ(log[2], "\t【ｵﾌﾞｼﾞｪｸﾄ実際のﾌﾟﾛﾊﾟﾃｨ値】：Osaka");
    EXPECT_EQ(log[4], "12行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しません。");
    EXPECT_EQ(counts[0], (std::vector<int32_t>{0, 0, 0, 0, 0}));
    EXPECT_EQ(counts[1], (std::vector<int32_t>{0, 0, 0, 0, 1}));
    EXPECT_EQ(counts[2], (std::vector<int32_t>{0, 0, 1, 0, 1}));
    EXPECT_EQ(counts[3], (std::vector<int32_t>{0, 0, 1, 1, 1}));
    EXPECT_FALSE(gRun.blnRowDiffered);
}

TEST_F(OutcomeTest, NumbersOutsideTheBandsEndTheRowSilently) {
    TraceMode = 1;
    test::SetMirrorFlags({"N", "N", "N"});
    Rows(SampleAdd, {"NO,a,!9999", "NO,b,!65535"});
    gRun.blnCompare = true;
    Rows(SampleCompare, {"NO,c,10300"});  // a warning code in a compare engine
    EXPECT_TRUE(Log().empty());
    // Nothing after the raise ran, no cleanup, nothing counted.
    EXPECT_EQ(journal, (std::vector<std::string>{"create a", "raise 9999", "create b",
                                                 "raise 65535", "raise 10300"}));
    for (const auto& c : counts) EXPECT_EQ(c, (std::vector<int32_t>{0, 0, 0, 0, 0}));
    const std::string trace = test::ReadBytes(TraceFilePath);
    EXPECT_NE(trace.find("code = 9999"), std::string::npos);
    EXPECT_NE(trace.find("code = 10300"), std::string::npos);
}

TEST_F(OutcomeTest, UnexpectedErrorsAndMisplacedRaisesNeverEscape) {
    TraceMode = 1;
    test::SetMirrorFlags({"N"});
    bool cleaned = false;
    RowEnd how = EngineRun(5, 1, [&](RowScope& row) {
        row.OnFailure([&] { cleaned = true; });
        throw std::runtime_error("ldap went away");
    });
    EXPECT_EQ(how, RowEnd::Silent);
    EXPECT_FALSE(cleaned);
    EXPECT_EQ(gRun.lngFailureCnt, 0);
    EXPECT_NE(test::ReadBytes(TraceFilePath).find("ldap went away"), std::string::npos);

    // A cleanup that itself raises or throws ends quietly, and counts nothing twice.
    how = EngineRun(6, 1, [&](RowScope& row) {
        row.OnFailure([] {
            Raise(1110);
            throw std::runtime_error("unreachable");
        });
        Raise(1100);
    });
    EXPECT_EQ(how, RowEnd::Failed);
    EXPECT_EQ(gRun.lngFailureCnt, 1);
    EXPECT_EQ(Log().size(), 1u);

    EXPECT_THROW(Raise(1000), std::logic_error);
    EXPECT_EQ(EngineRun(7, 1, [](RowScope&) {}), RowEnd::Returned);
}

class BulkOutcomeTest : public OutcomeTest {
  protected:
    void SetUp() override {
        OutcomeTest::SetUp();
        gRun.blnDBMode = true;
        gRun.BulkKind = ObjectKind::Group;
        gRun.strPubLDAPName = "LDAP://CN=g,DC=example,DC=test";
        SetHoldingMarkClearer([this] { ++clearedMarks; });
    }
    void TearDown() override { SetHoldingMarkClearer(nullptr); }
    int clearedMarks = 0;
};

TEST_F(BulkOutcomeTest, AFailureCountsOnlyOnTheObjectsLastRow) {
    TraceMode = 1;
    gRun.bytEndOfObjData = 0;
    HandleImportFailure(3110, 0, 0);
    EXPECT_EQ(gRun.lngFailureCnt, 0);
    EXPECT_TRUE(gRun.blnRowFailed);
    EXPECT_EQ(Log().at(0),
              "失敗, 種別: ｸﾞﾙｰﾌﾟ, LDAP名: \"LDAP://CN=g,DC=example,DC=test\", "
              "指定のﾒﾝﾊﾞｰが所在ｺﾝﾃﾅに存在しません。ﾒﾝﾊﾞｰのLDAP名:");

    // The last row of a held object in a retry pass: failed, no longer held.
    gRun.bytEndOfObjData = 1;
    gRun.blnHolding = true;
    gRun.lngHoldingCnt = 2;
    gRun.blnAlreadyHeld = true;
    HandleImportFailure(1700, 0, 0);
    EXPECT_EQ(gRun.lngFailureCnt, 1);
    EXPECT_EQ(gRun.lngHoldingCnt, 1);
    EXPECT_FALSE(gRun.blnRowFailed);
    EXPECT_FALSE(gRun.blnAlreadyHeld);
    EXPECT_EQ(clearedMarks, 1);
    const std::string trace = test::ReadBytes(TraceFilePath);
    EXPECT_NE(trace.find("bytEndOfObjData = 1, lngFailureCnt = 1"), std::string::npos);
    EXPECT_NE(trace.find("bytEndOfObjData = 1, blnHolding = True, lngHoldingCnt = 1"),
              std::string::npos);
}

TEST_F(BulkOutcomeTest, VerdictsCountWithHolding) {
    gRun.bytEndOfObjData = 0;
    HandleWhenFinished(ERRNUM_60_001, 0, 0);
    EXPECT_EQ(gRun.lngSuccessCnt, 0);

    gRun.bytEndOfObjData = 1;
    gRun.blnObjCreated = true;
    HandleWhenFinished(ERRNUM_60_005, 0, 0);
    EXPECT_EQ(gRun.lngHoldingCnt, 1);
    EXPECT_FALSE(gRun.blnObjCreated);

    gRun.blnHolding = true;  // retry pass
    gRun.blnAlreadyHeld = true;
    HandleWhenFinished(ERRNUM_60_001, 0, 0);
    EXPECT_EQ(gRun.lngSuccessCnt, 1);
    EXPECT_EQ(gRun.lngHoldingCnt, 0);
    EXPECT_FALSE(gRun.blnAlreadyHeld);

    // A warning in a retry pass leaves the object counted as held.
    gRun.lngHoldingCnt = 1;
    gRun.blnRowWarned = true;
    HandleWhenFinished(ERRNUM_60_002, 0, 0);
    EXPECT_EQ(gRun.lngWarningCnt, 1);
    EXPECT_EQ(gRun.lngHoldingCnt, 1);
    EXPECT_FALSE(gRun.blnRowWarned);

    gRun.blnRowFailed = true;
    HandleWhenFinished(ERRNUM_60_000, 0, 0);
    EXPECT_EQ(gRun.lngFailureCnt, 1);
    EXPECT_EQ(gRun.lngHoldingCnt, 0);
    EXPECT_FALSE(gRun.blnRowFailed);
}

TEST_F(BulkOutcomeTest, TheBulkTrapRoutesBelow10000ToFailureAndTraces) {
    TraceMode = 1;
    gRun.bytEndOfObjData = 1;
    int cleanups = 0;
    EXPECT_EQ(EngineRun(
                  0, 0,
                  [&](RowScope& row) {
                      row.OnFailure([&] { ++cleanups; });
                      Raise(10000);
                      Raise(9999);
                  },
                  EngineFamily::Bulk, "CreateGroup_DB"),
              RowEnd::Failed);
    EXPECT_EQ(cleanups, 1);
    EXPECT_EQ(gRun.lngFailureCnt, 1);
    EXPECT_EQ(Log().size(), 1u);  // the warning's line; 9999 has no text
    const std::vector<std::string> trace = test::ReadLines(TraceFilePath);
    ASSERT_GE(trace.size(), 2u);
    EXPECT_TRUE(trace.front().ends_with("【Sub: CreateGroup_DB】Warning"));
    EXPECT_TRUE(trace.back().ends_with("【Sub: CreateGroup_DB】Exit: Failure"));
}

}  // namespace
}  // namespace orin
