// The compares of a group add, of a group export file (the same rules on the export's columns)
// and of a group modify. Properties follow the compare rule of every kind; the members and the
// groups the group belongs to differ in three ways: the named object doesn't exist (20146,
// 20161), the relation is missing (20145, 20160), or the object is in the list at another place
// than the row names (20147, 20162).

#include <set>
#include <string>
#include <vector>

#include "base/MirrorChain.h"
#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/GroupHelpers.h"
#include "directory/Paths.h"
#include "engines/Ledgers.h"
#include "engines/common/CompareRules.h"
#include "engines/group/GroupCommon.h"
#include "engines/group/GroupEngines.h"
#include "platform/Strings.h"

namespace orin {
namespace {

constexpr PropertyRule kProperties[] = {
    {"description", 20214, 20215, true},
    {"info", 20135, 20136, true},
    {"mail", 20140, 20141, false},
};

// What the rows of a chain named, for the differences of the chain as a whole; and the new name
// its first row gave, under which its Mirror rows find the group.
struct CompareChain {
    std::set<std::string> members;  // whole paths, upper-cased
    std::set<std::string> groups;
    std::string newName;
};
CompareChain gChain;

std::vector<std::string> MemberDns(DirObject& group) {
    std::vector<std::string> dns;
    for (const DirObject& member : group.Members().value_or({})) dns.push_back(member.DN());
    return dns;
}

std::vector<std::string> MemberOfDns(DirObject& object) {
    return object.GetEx("memberof").value_or({});
}

bool HasName(const std::vector<std::string>& dns, std::string_view rdn) {
    for (const std::string& dn : dns) {
        if (EqualsIgnoreCase(FirstRdn(dn), "CN=" + std::string(rdn))) return true;
    }
    return false;
}

// The objects of `dns` other than `named` (whole paths, upper-cased), one a line, in canonical
// form and in order; "" when there are none.
std::string Others(const std::vector<std::string>& dns, const std::set<std::string>& named) {
    std::set<std::string> others;
    for (const std::string& dn : dns) {
        if (!named.count(ToUpperAscii("LDAP://" + dn))) others.insert(CanonicalPath(dn));
    }
    std::string list;
    for (const std::string& path : others) list += "\r\n\t" + path;
    return list;
}

void RaiseListed(int32_t code, const std::string& list) {
    if (list.empty()) return;
    gRun.MsgArg1 = list;
    Raise(code);
}

void CompareScopeAndKind(DirObject& group, const Cells& cells, const Columns& columns) {
    const std::string range = Cell(cells, columns, "GroupRange");
    if (!range.empty()) {
        const int16_t scope = GroupScope(group).value_or(kScopeNone);
        RaiseIfDifferent(range, scope == kScopeNone ? std::string() : std::to_string(scope), 20125);
    }
    const std::string cls = Cell(cells, columns, "GroupClass");
    if (!cls.empty()) {
        auto security = IsSecurityGroup(group);
        RaiseIfDifferent(cls, security.ok() ? (*security ? "0" : "1") : "", 20130);
    }
}

// The member of an add or export row (MemberRDN), found in the group or not.
void CompareMember(DirObject& group, const Cells& cells, const Columns& columns) {
    const std::string rdn = Cell(cells, columns, "MemberRDN");
    if (rdn.empty()) return;
    CheckSpan(columns, "MemberOU-Start", "MemberOU-End", 1050, 1051);
    const std::string path = PathInSpan(cells, columns, "MemberOU-Start", "MemberOU-End", rdn);
    if (!path.empty()) gChain.members.insert(ToUpperAscii(path));
    if (!path.empty() && Binds(path)) {
        if (!IsMember(group, path)) Raise(20145);
    } else {
        Raise(HasName(MemberDns(group), rdn) ? 20147 : 20146);
    }
}

// The group of an add or export row (groupRDN) that the group belongs to, found or not.
void CompareGroupOf(DirObject& group, const Cells& cells, const Columns& columns) {
    const std::string rdn = Cell(cells, columns, "groupRDN");
    if (rdn.empty()) return;
    CheckSpan(columns, "GrpOU-Start", "GrpOU-End", 1055, 1056);
    const std::string path = PathInSpan(cells, columns, "GrpOU-Start", "GrpOU-End", rdn);
    if (!path.empty()) gChain.groups.insert(ToUpperAscii(path));
    if (!path.empty() && Binds(path)) {
        if (!IsInMemberOf(group, path)) Raise(20160);
    } else {
        Raise(HasName(MemberOfDns(group), rdn) ? 20162 : 20161);
    }
}

void CompareAddedGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                       const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const bool mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const GroupPlace place = PlaceGroup(cells, columns, false);
        DirObject group;
        if (!BindObject(place.path, group)) Raise(1131);
        if (group.Class() != kGroupClass) Raise(3068);
        if (!mirror) {
            gChain = {};
            CompareProperty(group, cells, columns, {"sAMAccountName", 20120, 0, false}, false);
            CompareScopeAndKind(group, cells, columns);
            for (const PropertyRule& property : kProperties) {
                CompareProperty(group, cells, columns, property, false);
            }
            CompareManagerOfAdd(group, cells, columns);
        }
        CompareMember(group, cells, columns);
        CompareGroupOf(group, cells, columns);
        // The members and groups that no row of the chain named.
        if (ChainEnds(ordinal)) {
            RaiseListed(20148, Others(MemberDns(group), gChain.members));
            RaiseListed(20163, Others(MemberOfDns(group), gChain.groups));
        }
        RaiseVerdict();
    });
}

// Compare modify: the group under the new name its chain gave it (3067 when another object
// holds that name), or under its old name when the rename didn't happen (1130 when neither is
// there); without a new name where it stands (1134).
DirObject FindModifiedGroup(const GroupPlace& place) {
    DirObject group;
    if (!gChain.newName.empty() && !IsClearMarker(gChain.newName)) {
        if (BindObject("LDAP://CN=" + gChain.newName + "," + place.containerDn, group)) {
            if (group.Class() != kGroupClass) Raise(3067);
            return group;
        }
        if (!BindObject(place.path, group)) Raise(1130);
    } else if (!BindObject(place.path, group)) {
        Raise(1134);
    }
    if (group.Class() != kGroupClass) Raise(3068);
    return group;
}

// ClearAllMember and ClearAllGroup: what the row didn't add again ought to be gone.
void CompareClears(DirObject& group, const Cells& cells, const Columns& columns) {
    const auto added = [&](const char* rdnColumn, const char* start, const char* end,
                           const char* flagColumn) {
        std::set<std::string> kept;
        const std::string rdn = Cell(cells, columns, rdnColumn);
        if (!rdn.empty() && ToUpperAscii(Cell(cells, columns, flagColumn)) == "ADD") {
            kept.insert(ToUpperAscii(PathInSpan(cells, columns, start, end, rdn)));
        }
        return kept;
    };
    const std::string members = ToUpperAscii(Cell(cells, columns, "ClearAllMember"));
    if (members == "YES") {
        RaiseListed(20151, Others(MemberDns(group), added("MemberRDN", "MemberOU-Start",
                                                          "MemberOU-End", "MemberProcFlg")));
    } else if (!members.empty() && members != "NO") {
        Raise(1033);
    }
    const std::string groups = ToUpperAscii(Cell(cells, columns, "ClearAllGroup"));
    if (groups == "YES") {
        RaiseListed(20166, Others(MemberOfDns(group),
                                  added("groupRDN", "GrpOU-Start", "GrpOU-End", "GroupProcFlg")));
    } else if (!groups.empty() && groups != "NO") {
        Raise(1034);
    }
}

void CompareChangedMember(DirObject& group, const Cells& cells, const Columns& columns) {
    const std::string rdn = Cell(cells, columns, "MemberRDN");
    if (rdn.empty()) return;
    CheckSpan(columns, "MemberOU-Start", "MemberOU-End", 1050, 1051);
    const std::string path = PathInSpan(cells, columns, "MemberOU-Start", "MemberOU-End", rdn);
    if (path.empty()) Raise(2025);
    const std::string flag = ToUpperAscii(Cell(cells, columns, "MemberProcFlg"));
    if (flag == "ADD") {
        if (!IsMember(group, path)) Raise(20149);
    } else if (flag == "DEL") {
        if (IsMember(group, path)) Raise(20150);
    } else if (!flag.empty()) {
        Raise(1032);
    }
}

void CompareChangedGroupOf(DirObject& group, const Cells& cells, const Columns& columns) {
    const std::string rdn = Cell(cells, columns, "groupRDN");
    if (rdn.empty()) return;
    CheckSpan(columns, "GrpOU-Start", "GrpOU-End", 1055, 1056);
    const std::string path = PathInSpan(cells, columns, "GrpOU-Start", "GrpOU-End", rdn);
    if (path.empty()) Raise(2030);
    if (!Binds(path)) Raise(1008);
    const std::string flag = ToUpperAscii(Cell(cells, columns, "GroupProcFlg"));
    if (flag == "ADD") {
        if (!IsInMemberOf(group, path)) Raise(20164);
    } else if (flag == "DEL") {
        if (IsInMemberOf(group, path)) Raise(20165);
    } else if (!flag.empty()) {
        Raise(1035);
    }
}

}  // namespace

void CompareAddGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns) {
    CompareAddedGroup(cells, lineNumber, ordinal, columns);
}

void CompareExportGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns) {
    CompareAddedGroup(cells, lineNumber, ordinal, columns);
}

void CompareModifyGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns) {
    // The manager's path goes through the rename ledger, which a group run leaves empty.
    if (ordinal == 1) ResetLedgers(ObjectKind::Group, gRun.lngDataRowCnt);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const bool mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const GroupPlace place = PlaceGroup(cells, columns, true);
        if (!mirror) {
            gChain = {};
            gChain.newName = Cell(cells, columns, "NewRDN");
            if (IsClearMarker(gChain.newName)) Raise(3030);
        }
        DirObject group = FindModifiedGroup(place);
        if (!mirror) {
            const std::string account = Cell(cells, columns, "sAMAccountName");
            if (IsClearMarker(account)) Raise(3031);
            CompareProperty(group, cells, columns, {"sAMAccountName", 20120, 0, false}, false);
            CompareScopeAndKind(group, cells, columns);
            for (const PropertyRule& property : kProperties) {
                CompareProperty(group, cells, columns, property, true);
            }
            CompareManagerOfModify(group, cells, columns);
            CompareClears(group, cells, columns);
        }
        CompareChangedMember(group, cells, columns);
        CompareChangedGroupOf(group, cells, columns);
        RaiseVerdict();
    });
}

}  // namespace orin
