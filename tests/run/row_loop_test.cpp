#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "RunTestSupport.h"
#include "base/Outcome.h"
#include "csv/CsvReader.h"
#include "platform/Strings.h"
#include "run/RowLoop.h"
#include "support/ScriptedOperator.h"

namespace orin {
namespace {

// What the loop handed to an engine, and the object flags the engine found on entry.
struct Call {
    int32_t line;
    int32_t ordinal;
    std::string name;
    bool mirrorGroupCreated;
    bool userHomeSet;
};

// The CSV of these tests: "!Name,Mirror,Codes"; ColumnIndex in the order Mirror, Name, Codes.
// Codes are raised by the sample engine.
const std::vector<int16_t> kColumns = {1, 0, 2};

class RowLoopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetRun(folder.path());
        csv = folder / "rows.csv";
        gRun.strCsvPath = csv.string();
    }
    void TearDown() override {
        for (int k = 0; k <= 5; ++k)
            for (RowOperation op = 0; op < kRowOperationCount; ++op)
                SetRowEngine(static_cast<ObjectKind>(k), op, nullptr);
        SetCancelledOURollBack(nullptr);
    }

    // Writes the file and reads its Mirror flags, as a driver does before the loop.
    void File(const std::vector<std::string>& lines) {
        test::WriteCsv(csv, lines);
        ASSERT_TRUE(ReadMirrorFlags(csv, gRun.MirrorFlags));
        gRun.lngObjectCnt = CountObjects(csv);
    }

    // An engine that records each call, marks the Mirror group as made and the home folder as
    // dealt with, raises the codes of its row and closes with the verdict, as the engines do.
    RowEngine Recorder() {
        return [this](const std::vector<std::string>& cells, int32_t line, int32_t ordinal,
                      const std::vector<int16_t>& columns) {
            calls.push_back({line, ordinal, CellAt(cells, columns[1]), gRun.blnMirrorGroupCreated,
                             gRun.blnUserHomeSet});
            EngineRun(line, ordinal, [&](RowScope&) {
                if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
                gRun.blnMirrorGroupCreated = true;
                gRun.blnUserHomeSet = true;
                gRun.lngLastCreatedLine = line;
                for (const std::string& code : Split(CellAt(cells, columns[2]), ';'))
                    if (!code.empty()) Raise(std::stoi(code));
                RaiseVerdict();
            });
        };
    }

    void Run(ObjectKind kind, RowOperation op) {
        SetRowEngine(kind, op, Recorder());
        RunRows(RowLoopRulesOf(kind), csv, op, kColumns);
    }

    std::vector<int32_t> Lines() const {
        std::vector<int32_t> lines;
        for (const Call& c : calls) lines.push_back(c.line);
        return lines;
    }

    test::ScratchFolder folder;
    test::ScriptedOperator screen;
    std::filesystem::path csv;
    std::vector<Call> calls;
};

TEST_F(RowLoopTest, SkipsCommentsHeadersBlankLinesAndRowsOfCommas) {
    File({"!Name,Mirror,Codes", "# a comment", "a,NO", "", "   ", ",,,", "#x", "a,YES", " #b,NO",
          "!Name,Mirror,again", "c,NO"});
    Run(ObjectKind::OU, 0);
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(Lines(), (std::vector<int32_t>{3, 8, 9, 11}));
    for (size_t i = 0; i < calls.size(); ++i) EXPECT_EQ(calls[i].ordinal, int32_t(i + 1));
    EXPECT_EQ(calls[2].name, "#b");  // a "#" behind a blank is data
    // One yield per data row; progress moves per object, not per row.
    EXPECT_EQ(screen.yields, 4);
    EXPECT_EQ(screen.progressValues, (std::vector<int32_t>{0, 1, 2, 3}));
    EXPECT_EQ(gRun.lngSuccessCnt, 3);
    EXPECT_EQ(screen.label6, 3);
    EXPECT_EQ(gRun.intCancel, 0);
    EXPECT_EQ(screen.commandCaption, "");  // the driver, not the loop, ends a clean run
}

// Production: success, failure, warning, with 20000 a warning like 10300. Compare: match,
// failure, difference, and the warning code ends its row silently.
TEST_F(RowLoopTest, CountersShownFollowTheMode) {
    for (bool compare : {false, true}) {
        test::ResetRun(folder.path());
        gRun.blnCompare = compare;
        File({"!Name,Mirror,Codes", "a,NO,10300", "b,NO,1131", "c,NO,20000", "d,NO"});
        Run(ObjectKind::Group, compare ? 11 : 3);
        EXPECT_EQ((std::vector<int32_t>{screen.label6, screen.label7, screen.label8}),
                  (std::vector<int32_t>{1, 1, compare ? 1 : 2}));
    }
}

TEST_F(RowLoopTest, CancelMidMirrorGroupRollsTheOUBack) {
    File({"!Name,Mirror,Codes", "# OU with two ACE rows", "a,NO", "a,YES", "a,YES", "b,NO"});
    std::vector<std::vector<std::string>> rolledBack;
    SetCancelledOURollBack(
        [&](const std::vector<std::string>& cells, const std::vector<int16_t>& columns) {
            EXPECT_EQ(columns, kColumns);
            rolledBack.push_back(cells);
        });
    screen.onYield = [](int n) {
        if (n == 2) gRun.intCancel = 1;
    };
    Run(ObjectKind::OU, 0);
    EXPECT_EQ(Lines(), (std::vector<int32_t>{3, 4}));
    EXPECT_EQ(gRun.lngCancelLine, 4);
    EXPECT_EQ(screen.status, "組織単位の本番追加処理がﾕｰｻﾞｰに中断されました。");
    EXPECT_TRUE(screen.statusRed);
    EXPECT_EQ(screen.commandCaption, "OK");
    // The OU whose ACE rows were cut off goes again, named by the line that made it.
    ASSERT_EQ(rolledBack.size(), 1u);
    EXPECT_EQ(rolledBack[0], (std::vector<std::string>{"a", "YES"}));
}

TEST_F(RowLoopTest, NoRollBackWhenTheGroupWasCompleteOrInImitateOrForOtherKinds) {
    int rollBacks = 0;
    SetCancelledOURollBack([&](const auto&, const auto&) { ++rollBacks; });
    screen.onYield = [](int n) {
        if (n == 2) gRun.intCancel = 1;
    };
    // Cancel right after an object's last row: the loop has cleared the group's flag.
    File({"!Name,Mirror,Codes", "a,NO", "a,YES", "b,NO"});
    Run(ObjectKind::OU, 0);
    EXPECT_EQ(calls.size(), 2u);
    EXPECT_EQ(rollBacks, 0);

    for (ObjectKind kind : {ObjectKind::OU, ObjectKind::Group}) {
        test::ResetRun(folder.path());
        File({"!Name,Mirror,Codes", "a,NO", "a,YES", "a,YES"});
        gRun.blnImitate = kind == ObjectKind::OU;
        screen.yields = 0;
        Run(kind, gRun.blnImitate ? 4 : 0);
        EXPECT_EQ(gRun.intCancel, 1);
        EXPECT_TRUE(gRun.blnMirrorGroupCreated);
    }
    EXPECT_EQ(rollBacks, 0);
}

TEST_F(RowLoopTest, CancelAfterTheLastRowLeavesTheCaptionsAlone) {
    File({"!Name,Mirror,Codes", "a,NO", "b,NO"});
    gRun.lngCancelLine = 77;
    screen.onYield = [](int n) {
        if (n == 2) gRun.intCancel = 1;
    };
    Run(ObjectKind::SharedFolder, 2);
    EXPECT_EQ(calls.size(), 2u);
    EXPECT_EQ(gRun.intCancel, 1);
    EXPECT_EQ(gRun.lngCancelLine, 77);
    EXPECT_EQ(screen.status, "");
    EXPECT_EQ(screen.commandCaption, "");
}

TEST_F(RowLoopTest, BlankRowsAndCommentsDontBreakAMirrorGroup) {
    File({"!Name,Mirror,Codes", "a,NO", "# note", ",,", "a,YES,10300", "", "a,YES", "b,NO"});
    Run(ObjectKind::User, 0);
    ASSERT_EQ(calls.size(), 4u);
    // The group's flag and the home-folder flag live through the whole group.
    EXPECT_TRUE(calls[1].mirrorGroupCreated);
    EXPECT_TRUE(calls[2].mirrorGroupCreated);
    EXPECT_TRUE(calls[2].userHomeSet);
    EXPECT_FALSE(calls[3].mirrorGroupCreated);
    EXPECT_FALSE(calls[3].userHomeSet);
    EXPECT_EQ(gRun.lngWarningCnt, 1);
    EXPECT_EQ(gRun.lngSuccessCnt, 1);
    EXPECT_EQ(screen.progressValues, (std::vector<int32_t>{0, 0, 1, 2}));
}

// Whether a row-end clears blnMirrorGroupCreated, per kind and RowOperation: the flag that the
// second object's first row finds.
TEST_F(RowLoopTest, MirrorGroupFlagIsClearedOnlyByTheAddLoops) {
    struct Case {
        ObjectKind kind;
        RowOperation op;
        bool clears;
    } cases[] = {
        {ObjectKind::OU, 0, true},
        {ObjectKind::OU, 4, true},
        {ObjectKind::OU, 8, true},
        {ObjectKind::OU, 3, false},
        {ObjectKind::Group, 4, true},
        {ObjectKind::Group, 9, false},
        {ObjectKind::User, 8, true},
        {ObjectKind::Computer, 0, true},
        {ObjectKind::Computer, 12, false},
        {ObjectKind::SharedFolder, 0, true},
        {ObjectKind::SharedFolder, 4, false},
        {ObjectKind::SharedFolder, 8, true},
        {ObjectKind::GpoLink, 12, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << int(c.kind) << "/" << c.op);
        test::ResetRun(folder.path());
        calls.clear();
        gRun.blnCompare = c.op >= 8;
        gRun.blnImitate = c.op >= 4 && c.op < 8;
        File({"!Name,Mirror,Codes", "a,NO", "b,NO"});
        Run(c.kind, c.op);
        ASSERT_EQ(calls.size(), 2u);
        EXPECT_EQ(calls[1].mirrorGroupCreated, !c.clears);
    }
}

TEST_F(RowLoopTest, TheLastRowClearsTheGroupFlagUnlessItIsAMirrorRow) {
    File({"!Name,Mirror,Codes", "a,NO"});
    Run(ObjectKind::User, 0);
    EXPECT_FALSE(gRun.blnMirrorGroupCreated);
    EXPECT_TRUE(gRun.blnUserHomeSet);  // the user loop leaves it on the file's last row

    test::ResetRun(folder.path());
    File({"!Name,Mirror,Codes", "a,NO", "a,YES"});
    Run(ObjectKind::OU, 0);
    EXPECT_TRUE(gRun.blnMirrorGroupCreated);
}

TEST_F(RowLoopTest, GpoLoopServesOnlyTheCompareOfAnExport) {
    File({"!Name,Mirror,Codes", "a,NO", "b,NO"});
    Run(ObjectKind::GpoLink, 8);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(screen.yields, 0);

    gRun.blnCompare = true;
    Run(ObjectKind::GpoLink, 12);
    EXPECT_EQ(Lines(), (std::vector<int32_t>{2, 3}));
    EXPECT_EQ(gRun.lngMatchCnt, 2);
}

TEST_F(RowLoopTest, EmptySlotsAndRunawayEnginesDontStopTheRun) {
    File({"!Name,Mirror,Codes", "a,NO", "b,NO", "c,NO"});
    RunRows(RowLoopRulesOf(ObjectKind::Computer), csv, 3, kColumns);  // no engine in the slot
    EXPECT_EQ(screen.yields, 3);
    EXPECT_EQ(screen.progressValue, 3);
    EXPECT_EQ(gRun.lngSuccessCnt + gRun.lngFailureCnt, 0);

    int calls = 0;
    SetRowEngine(ObjectKind::Computer, 3, [&](const auto&, int32_t, int32_t, const auto&) {
        if (++calls == 1) throw std::runtime_error("not an engine's way to fail");
    });
    RunRows(RowLoopRulesOf(ObjectKind::Computer), csv, 3, kColumns);
    EXPECT_EQ(calls, 3);
}

TEST_F(RowLoopTest, AMissingFileEndsTheLoopQuietly) {
    SetRowEngine(ObjectKind::OU, 0, Recorder());
    RunRows_OU(folder / "absent.csv", 0, kColumns);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(screen.yields, 0);
}

}  // namespace
}  // namespace orin
