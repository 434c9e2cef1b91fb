#include "export/ExportScan.h"

#include <chrono>
#include <string>
#include <thread>

#include "base/Operator.h"
#include "base/RunContext.h"
#include "base/Trace.h"
#include "directory/Bind.h"
#include "directory/Paths.h"

namespace orin {
namespace {

void RaiseLevel(int16_t& level, int cells) {
    if (cells > level) level = static_cast<int16_t>(cells);
}

// The manager's span must hold the manager's container: its OU levels, or one cell for a
// default container such as "CN=Users".
void MeasureManager(DirObject& object) {
    auto managedBy = object.Get("managedBy");
    if (!managedBy.ok() || managedBy->empty()) return;
    DirObject manager;
    if (!BindObject("LDAP://" + *managedBy, manager)) return;
    const std::string parent = manager.Parent();
    switch (PathKind(parent)) {
        case ContainerKind::OU:
            RaiseLevel(gRun.intMgrLevel, CountOULevels(parent));
            break;
        case ContainerKind::DefaultContainer:
            RaiseLevel(gRun.intMgrLevel, 1);
            break;
        case ContainerKind::Domain:
            break;
    }
}

// OUs stand only in the domain and in other OUs, so the walk goes down through OUs alone.
void CollectOUs(DirObject& container) {
    auto children = container.Children({"organizationalUnit"});
    if (!children.ok()) {
        WriteTrace(TraceMode, true, kTraceSub, "CollectExportInfo",
                   "children not read: " + container.DN());
        return;
    }
    for (DirObject& child : *children) {
        if (gRun.blnWaitCancelled) return;
        ++gRun.lngObjectCnt;
        // The OU's own name takes a cell of the span behind its parent's.
        RaiseLevel(gRun.intOULevel, CountOULevels(child.Parent()) + 1);
        MeasureManager(child);
        CollectOUs(child);
        TheOperator().Yield();
    }
}

}  // namespace

void CollectExportInfo(DirObject& container, std::string_view className) {
    if (className == "organizationalUnit") CollectOUs(container);
}

namespace {

// Long enough for frmWait to paint before the scan takes the thread.
constexpr double kPaintWaitSeconds = 0.1;

}  // namespace

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
