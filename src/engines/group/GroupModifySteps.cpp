#include "engines/group/GroupModifySteps.h"

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "engines/Ledgers.h"
#include "engines/group/GroupCommon.h"
#include "platform/Strings.h"

namespace orin {
namespace {

// Raises a warning that names the earlier row that renamed a path to its present name, or the
// plain warning when none did.
void WarnWithRename(int32_t namingCode, int32_t plainCode, const std::string& path) {
    const int32_t entry = FindRenamedTo(path);
    if (entry >= 0) {
        RaiseWithChangeLine(namingCode, entry);
    } else {
        Raise(plainCode);
    }
}

void AddMember(Seen& group, Seen& member, const std::string& path, int32_t lineNumber) {
    if (IsMemberNow(group, member.realPath)) {
        WarnWithRename(10009, 10010, path);
        return;
    }
    if (member.object.Class() == kGroupClass) {
        const RunScope m = ScopeNow(member);
        if (!ScopeAccepts(m.scope, GroupChain.CurrentScope) &&
            ScopeAccepts(m.scope, GroupChain.EffectiveScope)) {
            // Legal once the chain has changed the group's scope.
            GroupChain.DeferredMembers.push_back({lineNumber, member.realPath});
            return;
        }
        RaiseScopeCode(MemberScopeCode(GroupChain.EffectiveScope, m.scope), m);
    }
    if (GroupChain.imitate) {
        NoteAdded(group.realPath, member.realPath);
    } else if (!group.object.Add(member.realPath).ok()) {
        Raise(3060);
    }
}

void RemoveMember(Seen& group, const std::string& path) {
    const auto notAMember = [&] {
        const int32_t entry = FindRenamedAway(path);
        if (entry >= 0) {
            RaiseWithChangeLine(10021, entry);
        } else {
            Raise(10020);
        }
    };
    if (GroupChain.imitate) {
        Seen member = Look(path);
        if (member.renamedAway >= 0 || !IsMemberNow(group, member.realPath)) return notAMember();
        NoteRemoved(group.realPath, member.realPath);
    } else if (!group.object.Remove(path).ok()) {
        if (IsMember(group.object, path)) Raise(3061);
        notAMember();
    }
}

void JoinGroup(Seen& group, Seen& target, const std::string& targetPath, int32_t lineNumber) {
    if (IsMemberNow(target, group.realPath)) {
        WarnWithRename(10011, 10012, targetPath);
        return;
    }
    const RunScope t = ScopeNow(target);
    if (!ScopeAccepts(GroupChain.CurrentScope, t.scope) &&
        ScopeAccepts(GroupChain.EffectiveScope, t.scope)) {
        GroupChain.DeferredGroups.push_back({lineNumber, target.realPath});
        return;
    }
    RaiseScopeCode(JoinScopeCode(t.scope, GroupChain.EffectiveScope), t);
    if (GroupChain.imitate) {
        NoteAdded(target.realPath, group.realPath);
    } else if (!target.object.Add(group.realPath).ok()) {
        Raise(3065);
    }
}

void LeaveGroup(Seen& group, Seen& target, const std::string& targetPath) {
    if (!IsMemberNow(target, group.realPath)) {
        WarnWithRename(10025, 10026, targetPath);
        return;
    }
    if (GroupChain.imitate) {
        NoteRemoved(target.realPath, group.realPath);
    } else if (!target.object.Remove(group.realPath).ok()) {
        Raise(3066);
    }
}

// Chain end, step 1: the scope checks over the members and the groups as they are now, then
// the write. Domain local and global can't be turned into one another directly: the change goes
// through universal, in two writes.
void ChangeType(Seen& group) {
    const int16_t effective = GroupChain.EffectiveScope;
    for (const GroupNow& member : MemberGroupsNow(group)) {
        RaiseScopeCode(MemberScopeCode(effective, member.scope.scope), member.scope);
    }
    for (const GroupNow& holder : GroupsHoldingNow(group)) {
        RaiseScopeCode(JoinScopeCode(holder.scope.scope, effective), holder.scope);
    }
    if (GroupChain.imitate) return;

    const auto write = [&](int64_t scopeBits) {
        group.object.Put("groupType",
                         std::to_string(GroupTypeValue(scopeBits, GroupChain.ClassBits)));
        if (!group.object.SetInfo().ok()) Raise(3014);
    };
    const int16_t current = GroupChain.CurrentScope;
    if (current == kScopeDomainLocal && effective == kScopeGlobal) {
        write(kGroupTypeUniversal);
        write(kGroupTypeGlobal);
    } else if (current == kScopeGlobal && effective == kScopeDomainLocal) {
        write(kGroupTypeUniversal);
        write(kGroupTypeDomainLocal);
    } else {
        write(GroupChain.ScopeBits);
    }
}

// Chain end, steps 2 and 3.
void AddDeferred(Seen& group) {
    for (const DeferredEntry& member : GroupChain.DeferredMembers) {
        if (GroupChain.imitate) {
            NoteAdded(group.realPath, member.path);
        } else if (!group.object.Add(member.path).ok()) {
            Raise(3060);
        }
    }
    for (const DeferredEntry& deferred : GroupChain.DeferredGroups) {
        Seen target = Look(deferred.path);
        if (!target.exists) Raise(2030);
        if (GroupChain.imitate) {
            NoteAdded(target.realPath, group.realPath);
        } else if (!target.object.Add(group.realPath).ok()) {
            Raise(3060);
        }
    }
}

// Chain end, step 4. True when the group was (or would have been) renamed.
bool Rename(Seen& group) {
    const std::string& newName = GroupChain.PendingNewName;
    if (newName.empty()) return false;
    if (EqualsIgnoreCase(newName, GroupChain.rdn)) {
        Raise(10100);
        return false;
    }
    const std::string& newPath = GroupChain.PendingNewPath;
    if (Binds("LDAP://OU=" + newName + "," + GroupChain.PendingContainer)) Raise(1141);
    for (int32_t i = 0; i < ChangeCount; ++i) {
        if (PathsEqual(ChangeLedger.Get(1, i), newPath)) RaiseWithChangeLine(2006, i);
    }
    // An imitation's directory doesn't show the renames of earlier rows yet.
    const bool freedEarlier = GroupChain.imitate && FindRenamedAway(newPath) >= 0;
    if (GroupChain.imitate) RaiseWithChangeLine(2006, FindRenamedTo(newPath));
    if (!freedEarlier && Binds(newPath)) Raise(1140);

    DirObject container;
    if (!BindObject("LDAP://" + GroupChain.PendingContainer, container)) Raise(3032);
    if (!GroupChain.imitate && !container.MoveHere(group.realPath, "CN=" + newName).ok()) {
        Raise(3032);
    }
    return true;
}

}  // namespace

void ChangeMember(Seen& group, const Cells& cells, const Columns& columns, int32_t lineNumber) {
    const std::string rdn = Cell(cells, columns, "MemberRDN");
    if (rdn.empty()) return;
    CheckSpan(columns, "MemberOU-Start", "MemberOU-End", 1050, 1051);
    const std::string path = PathInSpan(cells, columns, "MemberOU-Start", "MemberOU-End", rdn);
    if (path.empty()) Raise(2025);

    const std::string flag = ToUpperAscii(Cell(cells, columns, "MemberProcFlg"));
    if (flag == "ADD") {
        Seen member = Look(path);
        if (!member.exists) {
            RaiseWithChangeLine(3111, member.renamedAway);
            gRun.MsgArg1 = path;
            Raise(3110);
        }
        AddMember(group, member, path, lineNumber);
    } else if (flag == "DEL") {
        RemoveMember(group, path);
    } else if (flag.empty()) {
        Raise(10005);
    } else {
        Raise(1032);
    }
}

void ChangeGroupMembership(Seen& group, const Cells& cells, const Columns& columns,
                           int32_t lineNumber) {
    const std::string rdn = Cell(cells, columns, "groupRDN");
    if (rdn.empty()) return;
    CheckSpan(columns, "GrpOU-Start", "GrpOU-End", 1055, 1056);
    const std::string path = PathInSpan(cells, columns, "GrpOU-Start", "GrpOU-End", rdn);
    if (path.empty()) Raise(2030);
    Seen target = Look(path);
    if (!target.exists) {
        RaiseWithChangeLine(1009, target.renamedAway);
        Raise(1008);
    }

    const std::string flag = ToUpperAscii(Cell(cells, columns, "GroupProcFlg"));
    if (flag == "ADD" || flag == "DEL") {
        if (target.object.Class() != kGroupClass) Raise(3064);
        if (flag == "ADD") {
            JoinGroup(group, target, path, lineNumber);
        } else {
            LeaveGroup(group, target, path);
        }
    } else if (flag.empty()) {
        Raise(10004);
    } else {
        Raise(1035);
    }
}

void EndChain(Seen& group) {
    if (GroupChain.ScopeGiven || GroupChain.ClassGiven) ChangeType(group);
    AddDeferred(group);
    const bool renamed = Rename(group);

    if (renamed || GroupChain.ScopeGiven || !GroupChain.PendingAccountName.empty()) {
        ChangeLedger.Set(0, ChangeCount, std::to_string(GroupChain.firstLine));
        ChangeLedger.Set(1, ChangeCount, GroupChain.path);
        ChangeLedger.Set(2, ChangeCount, renamed ? GroupChain.PendingNewPath : std::string());
        ChangeLedger.Set(
            3, ChangeCount,
            GroupChain.ScopeGiven ? std::to_string(GroupChain.EffectiveScope) : std::string());
        ChangeLedger.Set(4, ChangeCount, GroupChain.PendingAccountName);
        ++ChangeCount;
    }
    GroupChain.PendingNewName.clear();
    GroupChain.PendingNewPath.clear();
    GroupChain.PendingContainer.clear();
    GroupChain.PendingAccountName.clear();
}

}  // namespace orin
