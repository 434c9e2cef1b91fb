#include "engines/group/GroupModifyView.h"

#include <functional>
#include <optional>
#include <set>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "engines/Ledgers.h"
#include "engines/group/GroupCommon.h"
#include "platform/Strings.h"

namespace orin {

GroupChainState GroupChain;

namespace {

enum class Change { Added, Removed, MembersCleared, GroupsCleared };

// One membership change an imitated row would have made; paths upper-cased.
struct MembershipNote {
    Change change;
    std::string group;   // "" for GroupsCleared
    std::string member;  // "" for MembersCleared
};

std::vector<MembershipNote>& Notes() {
    static std::vector<MembershipNote> notes;
    return notes;
}

// Where the directory holds a path that earlier rows renamed to: the path before the renames.
std::string PathBeforeChanges(std::string path) {
    for (int32_t guard = 0; guard < ChangeCount; ++guard) {
        const int32_t entry = FindRenamedTo(path);
        if (entry < 0) break;
        path = ChangeLedger.Get(1, entry);
    }
    return path;
}

// What the notes say of one membership: nothing, or whether it holds after them.
std::optional<bool> Noted(const std::string& groupPath, const std::string& memberPath) {
    const std::string group = ToUpperAscii(groupPath);
    const std::string member = ToUpperAscii(memberPath);
    std::optional<bool> holds;
    for (const MembershipNote& note : Notes()) {
        switch (note.change) {
            case Change::Added:
                if (note.group == group && note.member == member) holds = true;
                break;
            case Change::Removed:
                if (note.group == group && note.member == member) holds = false;
                break;
            case Change::MembersCleared:
                if (note.group == group) holds = false;
                break;
            case Change::GroupsCleared:
                if (note.member == member) holds = false;
                break;
        }
    }
    return holds;
}

// The paths the notes add to one side of a membership: members added to `group` (or, with
// `holdersOf`, groups `holdersOf` was added to).
std::vector<std::string> NotedPartners(const std::string& group, const std::string& holdersOf) {
    std::vector<std::string> partners;
    for (const MembershipNote& note : Notes()) {
        if (note.change != Change::Added) continue;
        if (!group.empty() && note.group == ToUpperAscii(group)) partners.push_back(note.member);
        if (!holdersOf.empty() && note.member == ToUpperAscii(holdersOf))
            partners.push_back(note.group);
    }
    return partners;
}

// The groups of the directory's answer and of the notes' additions, as the run has them.
std::vector<GroupNow> Merge(const std::vector<ScopedGroup>& directory,
                            const std::vector<std::string>& added,
                            const std::function<bool(const std::string&)>& holdsNow) {
    std::vector<GroupNow> groups;
    std::set<std::string> seen;
    for (const ScopedGroup& g : directory) {
        seen.insert(ToUpperAscii(g.path));
        if (holdsNow(g.path)) groups.push_back({g.path, ScopeNow(g.path, g.scope)});
    }
    for (const std::string& path : added) {
        if (!seen.insert(path).second || !holdsNow(path)) continue;
        DirObject object;
        if (!BindObject(path, object) || object.Class() != kGroupClass) continue;
        groups.push_back({path, ScopeNow(path, GroupScope(object).value_or(kScopeNone))});
    }
    return groups;
}

}  // namespace

void ResetGroupModifyRun(bool imitate) {
    GroupChain = GroupChainState{};
    GroupChain.imitate = imitate;
    Notes().clear();
}

Seen Look(const std::string& path) {
    Seen seen;
    seen.realPath = path;
    if (!GroupChain.imitate) {
        seen.exists = BindObject(path, seen.object);
        if (!seen.exists) seen.renamedAway = FindRenamedAway(path);
        return seen;
    }
    seen.renamedAway = FindRenamedAway(path);
    if (seen.renamedAway >= 0) return seen;
    seen.realPath = PathBeforeChanges(path);
    seen.exists = BindObject(seen.realPath, seen.object);
    return seen;
}

RunScope ScopeNow(const std::string& realPath, int16_t directoryScope) {
    RunScope now{directoryScope, -1};
    if (!GroupChain.imitate) return now;
    for (int32_t i = 0; i < ChangeCount; ++i) {
        const std::string& scope = ChangeLedger.Get(3, i);
        if (scope.empty() || !PathsEqual(PathBeforeChanges(ChangeLedger.Get(1, i)), realPath))
            continue;
        now.scope = ScopeOfRangeCell(scope).value_or(kScopeNone);
        now.entry = i;
    }
    return now;
}

RunScope ScopeNow(Seen& group) {
    return ScopeNow(group.realPath, GroupScope(group.object).value_or(kScopeNone));
}

void RaiseScopeCode(int32_t code, const RunScope& decidedBy) {
    if (code == 0) return;
    if (decidedBy.entry >= 0) {
        gRun.MsgArg1 = ChangeLedger.Get(0, decidedBy.entry);
        code = RowNamingScopeCode(code);
    }
    Raise(code);
}

bool IsMemberNow(Seen& group, const std::string& memberPath) {
    if (GroupChain.imitate) {
        if (std::optional<bool> noted = Noted(group.realPath, memberPath)) return *noted;
    }
    return IsMember(group.object, memberPath);
}

size_t CountMembersNow(Seen& group) {
    auto members = group.object.Members();
    if (!GroupChain.imitate) return members.ok() ? members->size() : 0;
    size_t count = 0;
    std::set<std::string> seen;
    for (const DirObject& member : members.value_or({})) {
        const std::string path = "LDAP://" + member.DN();
        seen.insert(ToUpperAscii(path));
        if (Noted(group.realPath, path).value_or(true)) ++count;
    }
    for (const std::string& path : NotedPartners(group.realPath, {})) {
        if (seen.insert(path).second && Noted(group.realPath, path).value_or(false)) ++count;
    }
    return count;
}

bool HasGroupsNow(Seen& object) {
    if (!GroupChain.imitate) return object.object.GetEx("memberof").ok();
    return !GroupsHoldingNow(object).empty();
}

std::vector<GroupNow> MemberGroupsNow(Seen& group) {
    const std::vector<ScopedGroup> directory = MemberGroups(group.object).value_or({});
    const std::vector<std::string> added =
        GroupChain.imitate ? NotedPartners(group.realPath, {}) : std::vector<std::string>{};
    return Merge(directory, added, [&](const std::string& member) {
        return !GroupChain.imitate || Noted(group.realPath, member).value_or(true);
    });
}

std::vector<GroupNow> GroupsHoldingNow(Seen& object) {
    const std::vector<ScopedGroup> directory = GroupsHolding(object.object).value_or({});
    const std::vector<std::string> added =
        GroupChain.imitate ? NotedPartners({}, object.realPath) : std::vector<std::string>{};
    return Merge(directory, added, [&](const std::string& holder) {
        return !GroupChain.imitate || Noted(holder, object.realPath).value_or(true);
    });
}

void NoteAdded(const std::string& groupPath, const std::string& memberPath) {
    Notes().push_back({Change::Added, ToUpperAscii(groupPath), ToUpperAscii(memberPath)});
}

void NoteRemoved(const std::string& groupPath, const std::string& memberPath) {
    Notes().push_back({Change::Removed, ToUpperAscii(groupPath), ToUpperAscii(memberPath)});
}

void NoteMembersCleared(const std::string& groupPath) {
    Notes().push_back({Change::MembersCleared, ToUpperAscii(groupPath), {}});
}

void NoteGroupsCleared(const std::string& memberPath) {
    Notes().push_back({Change::GroupsCleared, {}, ToUpperAscii(memberPath)});
}

}  // namespace orin
