#include "run/DriversExportHooks.h"

#include <array>
#include <chrono>
#include <string>
#include <thread>

#include "run/Operator.h"
#include "run/RunContext.h"

namespace orin {
namespace {

constexpr int kKindCount = 6;

std::array<ExportRoutines, kKindCount>& Routines() {
    static std::array<ExportRoutines, kKindCount> routines;
    return routines;
}

bool ValidKind(ObjectKind kind) {
    const auto k = static_cast<int>(kind);
    return k >= 0 && k < kKindCount;
}

// Long enough for frmWait to paint before the scan takes the thread.
constexpr double kPaintWaitSeconds = 0.1;

}  // namespace

void SetExportRoutines(ObjectKind kind, ExportRoutines routines) {
    if (ValidKind(kind)) Routines()[static_cast<size_t>(kind)] = std::move(routines);
}

const ExportRoutines& GetExportRoutines(ObjectKind kind) {
    static const ExportRoutines kNone;
    return ValidKind(kind) ? Routines()[static_cast<size_t>(kind)] : kNone;
}

bool HasExportRoutines(ObjectKind kind) {
    const ExportRoutines& routines = GetExportRoutines(kind);
    return routines.getExpInfo && routines.exportRows;
}

void RunExpInfoScan(ObjectKind kind, const std::function<void()>& scan) {
    const double start = RunTimer();
    do {
        TheOperator().Yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    } while (RunTimer() < start + kPaintWaitSeconds);

    gRun.lngObjectCnt = 0;
    gRun.intOULevel = gRun.intMgrLevel = gRun.intMemberLevel = gRun.intGrpLevel = 1;
    scan();

    if (!gRun.blnWaitCancelled && gRun.lngObjectCnt == 0) {
        const std::string title =
            RunTitle(OperationCodeFor(kind, OperationKind::Exp, RunMode::Production));
        TheOperator().MessageBox(title, std::string(KindLabel(kind)) + "が存在しません。",
                                 MsgIcon::Information, MsgButtons::Ok);
        gRun.blnNothingToExport = true;
    } else {
        gRun.blnNothingToExport = false;
    }
}

}  // namespace orin
