#include "engines/group/GroupFastPath.h"

#include "base/Trace.h"
#include "directory/DirectorySession.h"
#include "engines/group/GroupCommon.h"

namespace orin {
namespace {

bool gFastPath = true;

void TraceFast(std::string_view procName, std::string_view text) {
    WriteTrace(TraceMode, true, kTraceFunction, procName, text);
}

}  // namespace

void SetGroupFastPath(bool enabled) {
    gFastPath = enabled;
}

bool GroupFastPathEnabled() {
    return gFastPath;
}

bool FastAddGroup(const GroupAddPlan& plan, const Cells& cells, DirObject& created) {
    if (!gFastPath) return false;
    std::string managerDn;
    if (!plan.manager.rdn.empty() && !ManagerForFastPath(cells, plan.manager, {}, managerDn)) {
        return false;
    }

    auto made = gSession.RootObject.Create(kGroupClass, plan.relativeName);
    if (!made.ok()) return false;
    DirObject group = *made;
    group.Put("samAccountName", plan.accountName);
    group.Put("groupType", std::to_string(plan.groupType));
    std::vector<std::string> writtenLater;
    for (const PropertyWrite& p : plan.properties) {
        group.Put(p.attribute, p.value);
        writtenLater.push_back(p.attribute);
    }
    if (!managerDn.empty()) {
        group.Put("managedBy", managerDn);
        writtenLater.push_back("managedBy");
    }
    DirStatus status = group.SetInfo();
    if (!status.ok()) {
        TraceFast("FastAddGroup", "add refused, the exact way follows: " + status.message);
        return false;
    }
    if (!writtenLater.empty() && !MayWriteAllCached(group, kGroupClass, writtenLater)) {
        TraceFast("FastAddGroup", "attribute rights differ from the add, the exact way follows");
        DirStatus undone = gSession.RootObject.Delete(kGroupClass, plan.relativeName);
        if (!undone.ok()) TraceFast("FastAddGroup", "the new group stays: " + undone.message);
        return false;
    }
    created = group;
    return true;
}

bool FastAddMember(DirObject& group, std::string_view memberPath) {
    if (!gFastPath) return false;
    DirStatus status = group.Add(memberPath);
    if (!status.ok())
        TraceFast("FastAddMember", "refused, the exact way follows: " + status.message);
    return status.ok();
}

}  // namespace orin
