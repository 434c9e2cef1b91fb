#include "export/ExportScan.h"

#include "directory/Bind.h"
#include "directory/Paths.h"
#include "run/Operator.h"
#include "run/RunContext.h"
#include "run/Trace.h"

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

}  // namespace orin
