// The driver table: every driver exists once, has its Start method, and its reset clears
// exactly the row flags of its list.

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "DriverTestSupport.h"
#include "run/StartMethods.h"

namespace orin {
namespace {

using test::DriverTest;

std::string KindAbbreviation(ObjectKind kind) {
    switch (kind) {
        case ObjectKind::OU:
            return "OU";
        case ObjectKind::Group:
            return "Grp";
        case ObjectKind::User:
            return "Usr";
        case ObjectKind::Computer:
            return "Com";
        case ObjectKind::SharedFolder:
            return "Shr";
        case ObjectKind::GpoLink:
            return "GPO";
    }
    return "?";
}

std::string ModeWord(RunMode mode) {
    switch (mode) {
        case RunMode::Production:
            return "Run";
        case RunMode::Imitate:
            return "Imitate";
        case RunMode::Compare:
            return "Compare";
    }
    return "?";
}

const char* kOpNames[] = {"Add", "Del", "Mov", "Mdf", "Exp"};

// The lists of the row flags that a reset clears, put as rules over the drivers.
bool ClearsRowFailed(const DriverSpec& d) {
    if (d.op == OperationKind::Add)
        return !(d.mode == RunMode::Production && d.kind == ObjectKind::User);
    if (d.op == OperationKind::Exp) return d.mode == RunMode::Compare;
    return d.op == OperationKind::Mdf && d.kind == ObjectKind::OU;
}

bool ClearsRowCreatedObject(const DriverSpec& d) {
    if (d.op != OperationKind::Add) return false;
    switch (d.mode) {
        case RunMode::Production:
            return true;
        case RunMode::Imitate:
            return d.kind != ObjectKind::OU;
        case RunMode::Compare:
            return d.kind == ObjectKind::SharedFolder;
    }
    return false;
}

bool ClearsMirrorGroupCreated(const DriverSpec& d) {
    const bool groupOrUser = d.kind == ObjectKind::Group || d.kind == ObjectKind::User;
    if (d.op == OperationKind::Add) {
        if (d.mode == RunMode::Production) return d.kind != ObjectKind::OU;
        return groupOrUser || d.kind == ObjectKind::SharedFolder;
    }
    return d.op == OperationKind::Exp && d.mode == RunMode::Compare && groupOrUser;
}

TEST(DriverTable, HasEveryDriverOnceUnderItsName) {
    std::set<std::string> names;
    std::set<std::tuple<int, int, int>> runs;
    for (const DriverSpec& d : DriverTable()) {
        names.insert(std::string(d.name));
        runs.insert({int(d.kind), int(d.op), int(d.mode)});
        EXPECT_EQ(d.name, ModeWord(d.mode) + KindAbbreviation(d.kind) + kOpNames[int(d.op)]);
        EXPECT_EQ(FindDriver(d.kind, d.op, d.mode), &d);
        // Every driver has a title, and a Start method for the progress window to call.
        EXPECT_FALSE(RunTitle(OperationCodeFor(d.kind, d.op, d.mode)).empty()) << d.name;
        EXPECT_NE(FindStartMethod(d.kind, d.op, d.mode == RunMode::Compare), nullptr) << d.name;
    }
    EXPECT_EQ(names.size(), 72u);
    EXPECT_EQ(runs.size(), 72u);
    EXPECT_EQ(FindDriver(ObjectKind::OU, OperationKind::Exp, RunMode::Imitate), nullptr);
    EXPECT_EQ(FindDriver(ObjectKind::GpoLink, OperationKind::Add, RunMode::Production), nullptr);
}

TEST(DriverTable, StartMethodsCoverTheDriversAndNothingElse) {
    std::set<std::tuple<int, int, bool>> slots;
    for (const StartSlot& slot : StartMethodTable()) {
        slots.insert({int(slot.kind), int(slot.op), slot.compare});
        const RunMode mode = slot.compare ? RunMode::Compare : RunMode::Production;
        EXPECT_NE(FindDriver(slot.kind, slot.op, mode), nullptr) << slot.name;
    }
    EXPECT_EQ(slots.size(), 52u);
}

class DriverResetTest : public DriverTest {
  protected:
    void SetUp() override {
        DriverTest::SetUp();
        for (int k = 0; k <= 5; ++k) {
            SetExportRoutines(static_cast<ObjectKind>(k),
                              {[] {}, [](const std::filesystem::path&) { return true; }});
        }
    }

    // A run that the reset has gone through and that stops at once: the path is empty.
    void RunStoppedAfterReset(const DriverSpec& d) {
        gRun.lngSuccessCnt = gRun.lngFailureCnt = gRun.lngWarningCnt = 7;
        gRun.lngMatchCnt = gRun.lngDiffCnt = 7;
        gRun.blnRowFailed = gRun.blnRowCreatedObject = gRun.blnMirrorGroupCreated = true;
        gRun.blnRowWarned = gRun.blnWaitCancelled = gRun.blnRowDiffered = true;
        gRun.intCancel = 1;
        gRun.intOULevel = gRun.intMgrLevel = gRun.intMemberLevel = gRun.intGrpLevel = 4;
        gSession.LoginCancelled = true;
        gSession.ConnectPending = false;
        gRun.strCsvPath.clear();
        EXPECT_EQ(RunDriver(d), DriverEnd::Stopped) << d.name;
    }
};

TEST_F(DriverResetTest, EachDriverClearsTheRowFlagsOfItsList) {
    int failed = 0, created = 0, mirror = 0;
    for (const DriverSpec& d : DriverTable()) {
        RunStoppedAfterReset(d);
        EXPECT_EQ(!gRun.blnRowFailed, ClearsRowFailed(d)) << d.name;
        EXPECT_EQ(!gRun.blnRowCreatedObject, ClearsRowCreatedObject(d)) << d.name;
        EXPECT_EQ(!gRun.blnMirrorGroupCreated, ClearsMirrorGroupCreated(d)) << d.name;
        failed += !gRun.blnRowFailed;
        created += !gRun.blnRowCreatedObject;
        mirror += !gRun.blnMirrorGroupCreated;
    }
    EXPECT_EQ(failed, 23);
    EXPECT_EQ(created, 10);
    EXPECT_EQ(mirror, 12);
}

TEST_F(DriverResetTest, EachDriverClearsTheCountersOfItsModeAndTheCancelState) {
    for (const DriverSpec& d : DriverTable()) {
        RunStoppedAfterReset(d);
        const bool compare = d.mode == RunMode::Compare;
        EXPECT_EQ(gRun.lngFailureCnt, 0) << d.name;
        EXPECT_EQ(gRun.lngSuccessCnt, compare ? 7 : 0) << d.name;
        EXPECT_EQ(gRun.lngWarningCnt, compare ? 7 : 0) << d.name;
        EXPECT_EQ(gRun.lngMatchCnt, compare ? 0 : 7) << d.name;
        EXPECT_EQ(gRun.lngDiffCnt, compare ? 0 : 7) << d.name;
        EXPECT_FALSE(gRun.blnRowWarned);
        EXPECT_FALSE(gRun.blnWaitCancelled);
        EXPECT_EQ(gRun.intCancel, 0);
        EXPECT_FALSE(gSession.LoginCancelled);
        EXPECT_TRUE(gSession.ConnectPending);
        // blnRowDiffered is never a driver's to clear.
        EXPECT_TRUE(gRun.blnRowDiffered);
        // Only an export starts its level numbers anew.
        const bool exportRun = d.op == OperationKind::Exp && !compare;
        EXPECT_EQ(gRun.intOULevel, exportRun ? 1 : 4) << d.name;
        EXPECT_EQ(gRun.intGrpLevel, exportRun ? 1 : 4) << d.name;
        // The mode flags follow the driver.
        EXPECT_EQ(gRun.blnImitate, d.mode == RunMode::Imitate);
        EXPECT_EQ(gRun.blnCompare, compare);
    }
}

}  // namespace
}  // namespace orin
