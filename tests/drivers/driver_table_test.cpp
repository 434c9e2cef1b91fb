// The driver table: every run has one driver and a Start method, and each driver's reset clears
// the counters of its mode and exactly the row flags of its list.

#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "DriverTestSupport.h"
#include "run/StartMethods.h"

namespace orin {
namespace {

using test::DriverTest;

TEST(DriverTable, EveryRunHasOneDriverWithATitleAndAStartMethod) {
    std::set<std::tuple<int, int, int>> runs;
    for (const DriverSpec& d : DriverTable()) {
        runs.insert({int(d.kind), int(d.op), int(d.mode)});
        EXPECT_EQ(FindDriver(d.kind, d.op, d.mode), &d) << d.name;
        EXPECT_FALSE(RunTitle(OperationCodeFor(d.kind, d.op, d.mode)).empty()) << d.name;
        EXPECT_NE(FindStartMethod(d.kind, d.op, d.mode == RunMode::Compare), nullptr) << d.name;
    }
    EXPECT_EQ(runs.size(), 72u);
    EXPECT_EQ(FindDriver(ObjectKind::OU, OperationKind::Exp, RunMode::Imitate), nullptr);
    EXPECT_EQ(FindDriver(ObjectKind::GpoLink, OperationKind::Add, RunMode::Production), nullptr);

    // Production and Imitate share a method: 52 slots, each for a run that has a driver.
    std::set<std::tuple<int, int, bool>> slots;
    for (const StartSlot& slot : StartMethodTable()) {
        slots.insert({int(slot.kind), int(slot.op), slot.compare});
        const RunMode mode = slot.compare ? RunMode::Compare : RunMode::Production;
        EXPECT_NE(FindDriver(slot.kind, slot.op, mode), nullptr) << slot.name;
    }
    EXPECT_EQ(slots.size(), 52u);
}

// The row flags that a reset clears, as the lists of the drivers put them.
bool ClearsRowFailed(const DriverSpec& d) {
    if (d.op == OperationKind::Add)
        return !(d.mode == RunMode::Production && d.kind == ObjectKind::User);
    if (d.op == OperationKind::Exp) return d.mode == RunMode::Compare;
    return d.op == OperationKind::Mdf && d.kind == ObjectKind::OU;
}
bool ClearsRowCreatedObject(const DriverSpec& d) {
    if (d.op != OperationKind::Add) return false;
    if (d.mode == RunMode::Imitate) return d.kind != ObjectKind::OU;
    return d.mode == RunMode::Production || d.kind == ObjectKind::SharedFolder;
}
bool ClearsMirrorGroupCreated(const DriverSpec& d) {
    const bool groupOrUser = d.kind == ObjectKind::Group || d.kind == ObjectKind::User;
    if (d.op == OperationKind::Add) {
        if (d.mode == RunMode::Production) return d.kind != ObjectKind::OU;
        return groupOrUser || d.kind == ObjectKind::SharedFolder;
    }
    return d.op == OperationKind::Exp && d.mode == RunMode::Compare && groupOrUser;
}

TEST_F(DriverTest, EachDriverResetsItsModesCountersAndTheRowFlagsOfItsList) {
    for (int k = 0; k <= 5; ++k)
        SetExportRoutines(static_cast<ObjectKind>(k),
                          {[] {}, [](const std::filesystem::path&) { return true; }});
    for (const DriverSpec& d : DriverTable()) {
        gRun.lngSuccessCnt = gRun.lngFailureCnt = gRun.lngWarningCnt = 7;
        gRun.lngMatchCnt = gRun.lngDiffCnt = 7;
        gRun.blnRowFailed = gRun.blnRowCreatedObject = gRun.blnMirrorGroupCreated = true;
        gRun.blnRowWarned = gRun.blnWaitCancelled = gRun.blnRowDiffered = true;
        gRun.intCancel = 1;
        gRun.intOULevel = gRun.intGrpLevel = 4;
        gSession.LoginCancelled = true;
        gSession.ConnectPending = false;
        gRun.strCsvPath.clear();  // the run stops once the reset is done
        EXPECT_EQ(RunDriver(d), DriverEnd::Stopped) << d.name;

        EXPECT_EQ(!gRun.blnRowFailed, ClearsRowFailed(d)) << d.name;
        EXPECT_EQ(!gRun.blnRowCreatedObject, ClearsRowCreatedObject(d)) << d.name;
        EXPECT_EQ(!gRun.blnMirrorGroupCreated, ClearsMirrorGroupCreated(d)) << d.name;
        const bool compare = d.mode == RunMode::Compare;
        // Counters of the other mode stay as they were.
        const std::vector<int32_t> counters = {gRun.lngSuccessCnt, gRun.lngWarningCnt,
                                               gRun.lngMatchCnt, gRun.lngDiffCnt,
                                               gRun.lngFailureCnt};
        const std::vector<int32_t> expected =
            compare ? std::vector<int32_t>{7, 7, 0, 0, 0} : std::vector<int32_t>{0, 0, 7, 7, 0};
        EXPECT_EQ(counters, expected) << d.name;
        EXPECT_FALSE(gRun.blnRowWarned || gRun.blnWaitCancelled || gSession.LoginCancelled);
        EXPECT_EQ(gRun.intCancel, 0);
        EXPECT_TRUE(gSession.ConnectPending);
        EXPECT_TRUE(gRun.blnRowDiffered);  // never a driver's to clear
        // Only an export starts its level numbers anew.
        const bool exportRun = d.op == OperationKind::Exp && !compare;
        EXPECT_EQ(gRun.intOULevel, exportRun ? 1 : 4) << d.name;
        EXPECT_EQ(gRun.intGrpLevel, exportRun ? 1 : 4) << d.name;
        EXPECT_EQ(gRun.blnImitate, d.mode == RunMode::Imitate) << d.name;
        EXPECT_EQ(gRun.blnCompare, compare) << d.name;
    }
}

}  // namespace
}  // namespace orin
