// Group modify, in production and in imitation: one row changes one group's properties, scope,
// kind and name, one member and one group it belongs to; Mirror rows change further members and
// groups. Three acts wait for the chain's end: the change of type (it can make a membership
// legal that isn't yet), the memberships deferred until then, and the rename (the chain's rows
// name the group by its old name). The imitation makes every check and no write; what earlier
// rows would have done it takes from the change ledger and its own record of memberships
// (GroupModifyView.h).

#include "base/MirrorChain.h"
#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/GroupHelpers.h"
#include "engines/Ledgers.h"
#include "engines/group/GroupCommon.h"
#include "engines/group/GroupEngines.h"
#include "engines/group/GroupModifySteps.h"
#include "engines/group/GroupModifyView.h"
#include "platform/Strings.h"

namespace orin {
namespace {

struct PropertyStep {
    const char* attribute;
    int32_t code;
    bool multiline;
};

constexpr PropertyStep kProperties[] = {
    {"description", 1301, true},
    {"mail", 1306, false},
    {"info", 3001, true},
};

// Step 9: the account name.
void ChangeAccountName(Seen& group, const Cells& cells, const Columns& columns) {
    const std::string name = Cell(cells, columns, "sAMAccountName");
    if (name.empty()) return;
    if (IsClearMarker(name)) Raise(3031);
    if (EqualsIgnoreCase(name, group.object.Get("samAccountName").value_or(""))) {
        Raise(10102);
        return;
    }
    for (int32_t i = 0; i < ChangeCount; ++i) {
        if (EqualsIgnoreCase(ChangeLedger.Get(4, i), name)) RaiseWithChangeLine(3072, i);
    }
    for (const char* cls : {"group", "user"}) {
        auto found = FindByAccountName(name, cls);
        if (found.ok() && !found->empty()) {
            gRun.MsgArg1 = found->back();
            Raise(std::string_view(cls) == "group" ? 3069 : 3073);
        }
    }
    if (!GroupChain.imitate) {
        group.object.Put("samAccountName", name);
        if (!group.object.SetInfo().ok()) Raise(3013);
    }
    GroupChain.PendingAccountName = name;
}

// Steps 10 and 11: the kind and the scope the chain gives the group, or keeps.
void ReadTypeCells(Seen& group, const Cells& cells, const Columns& columns) {
    const int64_t groupType = group.object.GetNumber("groupType").value_or(0);
    const std::string cls = Cell(cells, columns, "GroupClass");
    GroupChain.ClassGiven = cls == "0" || cls == "1";
    if (cls == "0") {
        GroupChain.ClassBits = kGroupTypeSecurity;
    } else if (cls == "1") {
        GroupChain.ClassBits = 0;
    } else if (cls.empty()) {
        GroupChain.ClassBits = groupType & kGroupTypeSecurity;
    } else {
        Raise(1040);
    }

    const RunScope current = ScopeNow(group);
    GroupChain.CurrentScope = current.scope;
    GroupChain.CurrentScopeEntry = current.entry;
    const std::optional<int16_t> range = ScopeOfRangeCell(Cell(cells, columns, "GroupRange"));
    if (!range) Raise(1030);
    GroupChain.ScopeGiven = *range != kScopeNone;
    GroupChain.EffectiveScope = GroupChain.ScopeGiven ? *range : current.scope;
    GroupChain.ScopeBits = ScopeBitsOf(GroupChain.EffectiveScope);
}

// Steps 12 and 13: description, mail, info and the manager, "!C" clearing.
void ChangeProperties(Seen& group, const Cells& cells, const Columns& columns) {
    for (const PropertyStep& step : kProperties) {
        std::string value = Cell(cells, columns, step.attribute);
        if (value.empty() || GroupChain.imitate) continue;
        if (IsClearMarker(value)) {
            group.object.PutEx(PutExControl::Clear, step.attribute);
        } else {
            group.object.Put(step.attribute, step.multiline ? ExpandRtn(value) : value);
        }
        if (!group.object.SetInfo().ok()) Raise(step.code);
    }

    const std::string manager = Cell(cells, columns, "MgrRDN");
    if (manager.empty()) return;
    if (IsClearMarker(manager)) {
        if (GroupChain.imitate) return;
        group.object.PutEx(PutExControl::Clear, "managedBy");
        if (!group.object.SetInfo().ok()) Raise(3003);
        return;
    }
    const ManagerLookup found = LookUpManager(cells, ColumnOf(columns, "MgrOU-Start"),
                                              ColumnOf(columns, "MgrOU-End"), manager);
    if (found.failure != 0) Raise(found.failure);
    if (GroupChain.imitate) return;
    group.object.Put("managedBy", found.dn);
    if (!group.object.SetInfo().ok()) Raise(3003);
}

// Steps 14 and 15: every member, every group, taken away first.
void ClearMemberships(Seen& group, const Cells& cells, const Columns& columns) {
    const std::string members = ToUpperAscii(Cell(cells, columns, "ClearAllMember"));
    if (members == "YES") {
        if (CountMembersNow(group) == 0) {
            Raise(10007);
        } else if (GroupChain.imitate) {
            NoteMembersCleared(group.realPath);
        } else if (!RemoveAllMembers(group.object)) {
            Raise(3062);
        }
    } else if (!members.empty() && members != "NO") {
        Raise(1033);
    }

    const std::string groups = ToUpperAscii(Cell(cells, columns, "ClearAllGroup"));
    if (groups == "YES") {
        if (!HasGroupsNow(group)) {
            Raise(10006);
        } else if (GroupChain.imitate) {
            NoteGroupsCleared(group.realPath);
        } else if (RemoveFromAllGroups(group.object, group.realPath) == kRemoveFromSomeFailed) {
            Raise(3063);
        }
    } else if (!groups.empty() && groups != "NO") {
        Raise(1034);
    }
}

void ModifyGroupRow(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns,
                    bool imitate) {
    if (ordinal == 1) {
        ResetLedgers(ObjectKind::Group, gRun.lngDataRowCnt);
        ResetGroupModifyRun(imitate);
    }
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        // 1 to 5. The group.
        const bool mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const GroupPlace place = PlaceGroup(cells, columns, true);
        Seen group = Look(place.path);
        if (!group.exists) {
            RaiseWithChangeLine(1135, group.renamedAway);
            Raise(1134);
        }
        if (group.object.Class() != kGroupClass) Raise(3068);

        if (!mirror) {
            // 7. A new chain.
            GroupChain = GroupChainState{};
            GroupChain.imitate = imitate;
            GroupChain.firstLine = lineNumber;
            GroupChain.path = place.path;
            GroupChain.realPath = group.realPath;
            GroupChain.rdn = place.rdn;
            GroupChain.containerDn = place.containerDn;
            // 8. The new name, taken at the chain's end.
            GroupChain.PendingNewName = Cell(cells, columns, "NewRDN");
            if (IsClearMarker(GroupChain.PendingNewName)) Raise(3030);
            if (!GroupChain.PendingNewName.empty()) {
                GroupChain.PendingContainer = place.containerDn;
                GroupChain.PendingNewPath =
                    "LDAP://CN=" + GroupChain.PendingNewName + "," + place.containerDn;
            }
            ChangeAccountName(group, cells, columns);  // 9
            ReadTypeCells(group, cells, columns);      // 10, 11
            ChangeProperties(group, cells, columns);   // 12, 13
            ClearMemberships(group, cells, columns);   // 14, 15
        }

        ChangeMember(group, cells, columns, lineNumber);
        ChangeGroupMembership(group, cells, columns, lineNumber);
        if (ChainEnds(ordinal)) EndChain(group);
        RaiseVerdict();
    });
}

}  // namespace

void ModifyGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    ModifyGroupRow(cells, lineNumber, ordinal, columns, false);
}

void ImitateModifyGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns) {
    ModifyGroupRow(cells, lineNumber, ordinal, columns, true);
}

}  // namespace orin
