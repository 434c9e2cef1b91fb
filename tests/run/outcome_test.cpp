#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "RunTestSupport.h"
#include "base/Outcome.h"
#include "csv/CsvReader.h"
#include "platform/Strings.h"
#include "support/ScriptedOperator.h"

namespace orin {
namespace {

using test::RowEvent;

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
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const std::string name = CellAt(cells, 1);
        if (ToUpperAscii(CellAt(cells, 0)) != "YES") journal.push_back("create " + name);
        // The cleanup runs inside the failing Raise: the engine's locals are still there.
        row.OnFailure([&] {
            if (gRun.blnRowCreatedObject) journal.push_back("delete " + name);
            gRun.blnRowCreatedObject = false;
        });
        RaiseCells(cells);
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
    std::vector<std::string> Log() const { return test::ReadLines(gRun.strEventLogPath); }

    test::ScratchFolder folder;
    test::ScriptedOperator screen;
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

// Rows of a CSV run through a sample engine, on the physical lines 10, 11, ..., their Mirror
// flags read from their first cells: the event log's bytes, what the engine did, and the
// counters after each row.
TEST_F(OutcomeTest, RowsOfACsvRun) {
    using Counts = std::vector<int32_t>;  // success, warning, failure, match, difference
    struct Case {
        const char* name;
        bool compare;
        std::vector<std::string> rows;
        std::vector<std::string> log;
        std::vector<std::string> journal;
        std::vector<Counts> counts;
    };
    const Counts none = {0, 0, 0, 0, 0};
    // The values a difference shows, in place before the expected lines are built.
    gRun.MsgArg1 = "Tokyo";
    gRun.MsgArg2 = "Osaka";
    const Case cases[] = {
        {"a three-row object failing on its first row counts once, at its end",
         false,
         {"NO,a,!1310", "YES,a,10300", "YES,a", "NO,b"},
         {RowEvent(10, "失敗", 1310)},
         {"create a", "raise 1310", "delete a", "create b"},
         {none, none, {0, 0, 1, 0, 0}, {1, 0, 1, 0, 0}}},
        {"a warning goes on with the next statement and makes the object a warning",
         false,
         {"NO,a", "YES,a,10050", "YES,a"},
         {RowEvent(11, "警告", 10050)},
         {"create a", "raise 10050", "after 10050"},
         {none, none, {0, 1, 0, 0, 0}}},
        {"a failure after a warning counts only the failure, and clears the warning",
         false,
         {"NO,a,10300,!1315,10301", "NO,b"},
         {RowEvent(10, "警告", 10300), RowEvent(10, "失敗", 1315)},
         {"create a", "raise 10300", "after 10300", "raise 1315", "delete a", "create b"},
         {{0, 0, 1, 0, 0}, {1, 0, 1, 0, 0}}},
        {"codes without a message write nothing but still decide",
         false,
         {"NO,a,10002", "NO,b,1002"},
         {},
         {"create a", "raise 10002", "after 10002", "create b", "raise 1002"},
         {{0, 1, 0, 0, 0}, {0, 1, 1, 0, 0}}},
        {"numbers outside the bands end the row silently, without cleanup or count",
         false,
         {"NO,a,!9999", "NO,b,!65535"},
         {},
         {"create a", "raise 9999", "create b", "raise 65535"},
         {none, none}},
        {"a compare run counts differences and failures; a warning code ends its row",
         true,
         {"NO,a,20004,20005", "YES,a", "NO,b,1131", "NO,c", "NO,d,10300"},
         {RowEvent(10, "相違", 20004), RowEvent(10, "相違", 20005), RowEvent(12, "失敗", 1131)},
         {"raise 20004", "after 20004", "raise 20005", "after 20005", "raise 1131", "raise 10300"},
         {none, {0, 0, 0, 0, 1}, {0, 0, 1, 0, 1}, {0, 0, 1, 1, 1}, {0, 0, 1, 1, 1}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        test::ResetRun(folder.path());
        std::filesystem::remove(gRun.strEventLogPath);
        journal.clear();
        gRun.blnCompare = c.compare;
        gRun.MsgArg1 = "Tokyo";
        gRun.MsgArg2 = "Osaka";
        std::vector<std::string> mirrorFlags;
        for (const std::string& row : c.rows)
            mirrorFlags.push_back(row.starts_with("YES") ? "Y" : "N");
        test::SetMirrorFlags(mirrorFlags);
        std::vector<Counts> counts;
        for (size_t i = 0; i < c.rows.size(); ++i) {
            (c.compare ? SampleCompare : SampleAdd)(SplitCells(c.rows[i]), int32_t(10 + i),
                                                    int32_t(i + 1));
            counts.push_back({gRun.lngSuccessCnt, gRun.lngWarningCnt, gRun.lngFailureCnt,
                              gRun.lngMatchCnt, gRun.lngDiffCnt});
        }
        EXPECT_EQ(test::ReadBytes(gRun.strEventLogPath), test::DiskBytes(c.log));
        EXPECT_EQ(journal, c.journal);
        EXPECT_EQ(counts, c.counts);
        // The object's flags are cleared when it is counted.
        EXPECT_FALSE(gRun.blnRowFailed || gRun.blnRowWarned || gRun.blnRowDiffered);
    }
}

TEST_F(OutcomeTest, TheTraceTellsTheFailureHandlerAndSilentEnds) {
    TraceMode = 1;
    test::SetMirrorFlags({"N", "N"});
    SampleAdd(SplitCells("NO,a,1310"), 10, 1);
    SampleAdd(SplitCells("NO,b,9999"), 11, 2);
    const std::vector<std::string> trace = test::ReadLines(TraceFilePath);
    ASSERT_EQ(trace.size(), 3u);
    EXPECT_TRUE(trace[0].ends_with("【Sub: HandleImportFailure】Enter"));
    EXPECT_TRUE(trace[1].ends_with("【Sub: HandleImportFailure】Exit"));
    EXPECT_NE(trace[2].find("code = 9999"), std::string::npos);
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
