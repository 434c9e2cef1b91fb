// Group add: one row creates a group with its type, properties and manager, adds one member to
// it and adds it to one group; a Mirror row only adds a further member and group
// ("グループの追加処理を行わず、メンバーと所属するグループの追加のみ処理する").

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/GroupHelpers.h"
#include "directory/Paths.h"
#include "engines/group/GroupCommon.h"
#include "engines/group/GroupEngines.h"
#include "engines/group/GroupFastPath.h"
#include "platform/Strings.h"

namespace orin {
namespace {

struct PropertyStep {
    const char* attribute;
    int32_t code;
    bool multiline;
};

constexpr PropertyStep kProperties[] = {
    {"description", 1300, true},
    {"info", 3001, true},
    {"mail", 1305, false},
};

// Step 10's writes: the properties whose cells aren't empty, in their order.
std::vector<PropertyWrite> PropertyWrites(const Cells& cells, const Columns& columns) {
    std::vector<PropertyWrite> writes;
    for (const PropertyStep& step : kProperties) {
        std::string value = Cell(cells, columns, step.attribute);
        if (value.empty()) continue;
        if (step.multiline) value = ExpandRtn(value);
        writes.push_back({step.attribute, value, false, step.code});
    }
    return writes;
}

// Step 9: the create was refused; find out why, in this order.
void RaiseCreateFailure(const GroupPlace& place, const std::string& ouPath,
                        const std::string& accountName) {
    if (Binds(place.path)) Raise(1132);
    if (Binds("LDAP://OU=" + place.rdn + "," + FullDn(ouPath))) Raise(1133);
    for (const char* cls : {"group", "user"}) {
        auto found = FindByAccountName(accountName, cls);
        if (found.ok() && !found->empty()) {
            gRun.MsgArg1 = found->back();
            Raise(std::string_view(cls) == "group" ? 3069 : 3073);
        }
    }
    Raise(2001);
}

void RaiseTypeWarnings(const AddTypeCells& type) {
    if (type.scopeDefaulted) Raise(10000);
    if (type.classDefaulted) Raise(10001);
}

// The span checks of the member and group steps, failing with roll-back.
void CheckSpanOrFail(const Columns& columns, std::string_view start, std::string_view end,
                     int32_t absentCode, int32_t reversedCode, const FailStep& fail) {
    const int16_t first = ColumnOf(columns, start);
    const int16_t last = ColumnOf(columns, end);
    if (first == -1 || last == -1) fail(absentCode);
    if (first > last) fail(reversedCode);
}

}  // namespace

void AddGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    if (ordinal == 1) ForgetWriteRights();
    EngineRun(lineNumber, ordinal, [&](RowScope& scope) {
        bool mirror = false;
        std::string relativeName;  // the group's name relative to the domain, for the cleanup
        DirObject group;

        // Cleanup after a failure: the group this row (or its chain's first row) made goes.
        scope.OnFailure([&] {
            if (!gRun.blnRowCreatedObject) return;
            if (!mirror) gSession.RootObject.Delete(kGroupClass, relativeName);
            if (gRun.blnMirrorGroupCreated) gSession.RootObject.Delete(kGroupClass, relativeName);
            gRun.blnRowCreatedObject = false;
        });
        const FailStep failWithRollback = [](int32_t code) {
            gRun.blnRowCreatedObject = true;
            Raise(code);
        };

        // 1. Mirror, and a chain that has failed before.
        mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        // 2, 3. The span and the name.
        CheckSpan(columns, "OU-Start", "OU-End", 1000, 1001);
        const std::string ouPath = SpanPath(cells, columns, "OU-Start", "OU-End");
        if (ColumnOf(columns, "RDN") == -1) Raise(1010);
        const std::string rdn = Cell(cells, columns, "RDN");
        if (rdn.empty()) Raise(1011);
        relativeName = "CN=" + rdn + (ouPath.empty() ? std::string() : "," + ouPath);
        std::string groupPath = "LDAP://" + FullDn(relativeName);

        const std::string accountName = Cell(cells, columns, "sAMAccountName");
        const AddTypeCells type = ReadAddTypeCells(Cell(cells, columns, "GroupRange"),
                                                   Cell(cells, columns, "GroupClass"));
        const std::vector<PropertyWrite> properties = PropertyWrites(cells, columns);
        const ManagerCells manager{ColumnOf(columns, "MgrOU-Start"), ColumnOf(columns, "MgrOU-End"),
                                   Cell(cells, columns, "MgrRDN")};

        // The fast path, when the cells of steps 6 to 8 pass: one add for steps 4 to 10.
        bool fast = false;
        if (!mirror && ColumnOf(columns, "sAMAccountName") != -1 && !accountName.empty() &&
            type.failure == 0) {
            const GroupAddPlan plan{relativeName, accountName,
                                    GroupTypeValue(type.scopeBits, type.classBits), properties,
                                    manager};
            fast = FastAddGroup(plan, cells, group);
            if (fast) RaiseTypeWarnings(type);
        }

        if (!fast) {
            // 4. The container.
            const GroupPlace place = PlaceGroup(cells, columns, false);
            relativeName = RelativeToDomain(place.dn);
            groupPath = place.path;
            if (!mirror) {
                // 6. The account name.
                if (ColumnOf(columns, "sAMAccountName") == -1) Raise(1020);
                if (accountName.empty()) Raise(1021);
                // 7, 8. Scope and kind; their warnings go on with the next step.
                if (type.failure == 1030) Raise(1030);
                if (type.scopeDefaulted) Raise(10000);
                if (type.failure == 1040) Raise(1040);
                if (type.classDefaulted) Raise(10001);
                // 9. Create.
                DirObject container = place.container;
                auto made = container.Create(kGroupClass, "CN=" + rdn);
                if (!made.ok()) RaiseCreateFailure(place, ouPath, accountName);
                made->Put("samAccountName", accountName);
                made->Put("groupType",
                          std::to_string(GroupTypeValue(type.scopeBits, type.classBits)));
                if (!made->SetInfo().ok()) RaiseCreateFailure(place, ouPath, accountName);
                group = *made;

                // 10. Properties, one write each, then the manager.
                for (const PropertyWrite& p : properties) {
                    group.Put(p.attribute, p.value);
                    if (!group.SetInfo().ok()) failWithRollback(p.code);
                }
                if (!manager.rdn.empty()) {
                    ManagerLookup found =
                        LookUpManager(cells, manager.start, manager.end, manager.rdn);
                    if (found.failure == 1005 || found.failure == 1006) Raise(found.failure);
                    if (found.failure != 0) failWithRollback(found.failure);
                    group.Put("managedBy", found.dn);
                    if (!group.SetInfo().ok()) failWithRollback(3003);
                }
            } else if (!BindObject(groupPath, group)) {
                // 11. The group that the chain's first row made.
                Raise(1134);
            }
        }

        // 12. Member.
        const std::string memberRdn = Cell(cells, columns, "MemberRDN");
        if (!memberRdn.empty()) {
            CheckSpanOrFail(columns, "MemberOU-Start", "MemberOU-End", 1050, 1051,
                            failWithRollback);
            if (!FastAddMember(group, OUFormPath(cells, columns, "MemberOU-Start", "MemberOU-End",
                                                 memberRdn))) {
                const std::string memberPath =
                    PathInSpan(cells, columns, "MemberOU-Start", "MemberOU-End", memberRdn);
                if (memberPath.empty()) failWithRollback(2025);
                if (!group.Add(memberPath).ok()) {
                    gRun.MsgArg1 = memberPath;
                    DirObject member;
                    if (!BindObject(memberPath, member)) failWithRollback(3110);
                    if (member.Class() == kGroupClass) {
                        const auto outer = ScopeOfRangeCell(Cell(cells, columns, "GroupRange"));
                        const int32_t code = MemberScopeCode(
                            outer.value_or(kScopeNone), GroupScope(member).value_or(kScopeNone));
                        if (code != 0) failWithRollback(code);
                    }
                    failWithRollback(3004);
                }
            }
        }

        // 13. Membership in a group.
        const std::string targetRdn = Cell(cells, columns, "groupRDN");
        if (!targetRdn.empty()) {
            CheckSpanOrFail(columns, "GrpOU-Start", "GrpOU-End", 1055, 1056, failWithRollback);
            DirObject target = gSession.RootObject.OtherEntry(
                DnFromPath(OUFormPath(cells, columns, "GrpOU-Start", "GrpOU-End", targetRdn)));
            if (!FastAddMember(target, groupPath)) {
                const std::string targetPath =
                    PathInSpan(cells, columns, "GrpOU-Start", "GrpOU-End", targetRdn);
                if (targetPath.empty() || !BindObject(targetPath, target)) failWithRollback(2030);
                if (!target.Add(groupPath).ok()) {
                    if (target.Class() != kGroupClass) failWithRollback(3064);
                    failWithRollback(JoinRefusalCode(GroupScope(target).value_or(kScopeNone),
                                                     GroupScope(group).value_or(kScopeNone)));
                }
            }
        }

        // 14.
        if (gRun.blnRowWarned) Raise(ERRNUM_60_002);
        if (MirrorFlagOf(ordinal) != "Y") gRun.blnMirrorGroupCreated = true;
        Raise(ERRNUM_60_001);
    });
}

}  // namespace orin
