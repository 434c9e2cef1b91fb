// The imitation of a group add: the checks of the add, with the add ledger standing in for the
// groups that earlier rows of the run would have made (field 0 the line, 1 the whole path, 2 the
// scope code, 3 the account name). It asks beforehand what production finds out only after a
// refused create, and applies the scope rules that production leaves to the directory.

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/GroupHelpers.h"
#include "engines/Ledgers.h"
#include "engines/group/GroupCommon.h"
#include "engines/group/GroupEngines.h"
#include "platform/Strings.h"

namespace orin {
namespace {

// A group found in the directory or, not there yet, in the add ledger.
struct Known {
    bool exists = false;
    bool isGroup = false;
    int16_t scope = kScopeNone;
};

// `count` entries of the ledger are looked at: those in force, and for the chain's own group
// the entry its first row made.
Known FindKnown(const std::string& path, int32_t count) {
    Known known;
    DirObject object;
    if (BindObject(path, object)) {
        known.exists = true;
        known.isGroup = object.Class() == kGroupClass;
        if (known.isGroup) known.scope = GroupScope(object).value_or(kScopeNone);
        return known;
    }
    const int32_t entry = FindLedgerEntry(AddLedger, 1, path, count);
    if (entry < 0) return known;
    known.exists = known.isGroup = true;
    known.scope = ScopeOfRangeCell(AddLedger.Get(2, entry)).value_or(kScopeNone);
    return known;
}

void RaiseWithAddLine(int32_t code, int32_t entry) {
    if (entry < 0) return;
    gRun.MsgArg1 = AddLedger.Get(0, entry);
    Raise(code);
}

// In place of the create: the name and the account name must be free in the directory and
// among the groups earlier rows add. Enters the row.
void CheckPlaceAndEnter(const GroupPlace& place, const std::string& ouPath,
                        const std::string& accountName, int16_t scope, int32_t lineNumber) {
    if (Binds(place.path)) Raise(1132);
    if (Binds("LDAP://OU=" + place.rdn + "," + FullDn(ouPath))) Raise(1133);
    const int32_t inForce = gRun.lngSuccessCnt;
    RaiseWithAddLine(2005, FindLedgerEntry(AddLedger, 1, place.path, inForce));
    for (const char* cls : {"group", "user"}) {
        auto found = FindByAccountName(accountName, cls);
        if (found.ok() && !found->empty()) {
            gRun.MsgArg1 = found->back();
            Raise(std::string_view(cls) == "group" ? 3069 : 3073);
        }
    }
    for (int32_t i = 0; i < inForce; ++i) {
        if (EqualsIgnoreCase(AddLedger.Get(3, i), accountName)) RaiseWithAddLine(3071, i);
    }
    AddLedger.Set(0, inForce, std::to_string(lineNumber));
    AddLedger.Set(1, inForce, place.path);
    AddLedger.Set(2, inForce, std::to_string(scope));
    AddLedger.Set(3, inForce, accountName);
}

}  // namespace

void ImitateAddGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns) {
    if (ordinal == 1) ResetLedgers(ObjectKind::Group, gRun.lngDataRowCnt);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const bool mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const GroupPlace place = PlaceGroup(cells, columns, false);
        const std::string ouPath = SpanPath(cells, columns, "OU-Start", "OU-End");

        // The group's scope, which the member and group rules hold against.
        int16_t scope = kScopeNone;
        if (!mirror) {
            if (ColumnOf(columns, "sAMAccountName") == -1) Raise(1020);
            const std::string accountName = Cell(cells, columns, "sAMAccountName");
            if (accountName.empty()) Raise(1021);
            const AddTypeCells type = ReadAddTypeCells(Cell(cells, columns, "GroupRange"),
                                                       Cell(cells, columns, "GroupClass"));
            if (type.failure == 1030) Raise(1030);
            if (type.scopeDefaulted) Raise(10000);
            if (type.failure == 1040) Raise(1040);
            if (type.classDefaulted) Raise(10001);
            scope = ScopeOfGroupType(type.scopeBits);
            CheckPlaceAndEnter(place, ouPath, accountName, scope, lineNumber);

            const std::string manager = Cell(cells, columns, "MgrRDN");
            if (!manager.empty()) {
                const ManagerLookup found = LookUpManager(cells, ColumnOf(columns, "MgrOU-Start"),
                                                          ColumnOf(columns, "MgrOU-End"), manager);
                if (found.failure != 0) Raise(found.failure);
            }
        } else {
            // The group of the chain's first row.
            const Known group = FindKnown(place.path, gRun.lngSuccessCnt + 1);
            if (!group.exists) Raise(1134);
            scope = group.scope;
        }

        const std::string memberRdn = Cell(cells, columns, "MemberRDN");
        if (!memberRdn.empty()) {
            CheckSpan(columns, "MemberOU-Start", "MemberOU-End", 1050, 1051);
            const std::string path =
                PathInSpan(cells, columns, "MemberOU-Start", "MemberOU-End", memberRdn);
            if (path.empty()) Raise(2025);
            const Known member = FindKnown(path, gRun.lngSuccessCnt);
            if (!member.exists) {
                gRun.MsgArg1 = path;
                Raise(3110);
            }
            if (member.isGroup) {
                const int32_t code = MemberScopeCode(scope, member.scope);
                if (code != 0) Raise(code);
            }
        }

        const std::string targetRdn = Cell(cells, columns, "groupRDN");
        if (!targetRdn.empty()) {
            CheckSpan(columns, "GrpOU-Start", "GrpOU-End", 1055, 1056);
            const std::string path =
                PathInSpan(cells, columns, "GrpOU-Start", "GrpOU-End", targetRdn);
            if (path.empty()) Raise(2030);
            const Known target = FindKnown(path, gRun.lngSuccessCnt);
            if (!target.exists) Raise(1008);
            if (!target.isGroup) Raise(3064);
            const int32_t code = JoinScopeCode(target.scope, scope);
            if (code != 0) Raise(code);
        }

        if (gRun.blnRowWarned) Raise(ERRNUM_60_002);
        if (MirrorFlagOf(ordinal) != "Y") gRun.blnMirrorGroupCreated = true;
        Raise(ERRNUM_60_001);
    });
}

}  // namespace orin
