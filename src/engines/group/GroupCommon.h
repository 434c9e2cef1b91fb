#pragma once
// What the group engines share: the type cells, the scope rules that decide a code, the change
// ledger's lookups, and where a row's group stands.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "directory/DirObject.h"
#include "directory/GroupHelpers.h"
#include "engines/common/EngineCells.h"

namespace orin {

inline constexpr std::string_view kGroupClass = "group";

// The scope code of a GroupRange cell: "0", "1", "2"; kScopeNone for ""; no value for anything
// else.
std::optional<int16_t> ScopeOfRangeCell(std::string_view cell);
// The groupType bit of a scope code (4, 2, 8; 0 for none).
int64_t ScopeBitsOf(int16_t scope);

// The type cells of an add row: GroupRange "" makes a global group and GroupClass "" a
// security group, each with its warning (10000, 10001); a bad value fails (1030, 1040).
struct AddTypeCells {
    int64_t scopeBits = kGroupTypeGlobal;
    int64_t classBits = kGroupTypeSecurity;
    bool scopeDefaulted = false;  // warning 10000
    bool classDefaulted = false;  // warning 10001
    int32_t failure = 0;          // 1030 or 1040, the first one met
};
AddTypeCells ReadAddTypeCells(std::string_view range, std::string_view cls);

// The signed 32-bit groupType of a scope bit and a class bit, as the directory takes it: with
// the security bit it is negative.
int32_t GroupTypeValue(int64_t scopeBits, int64_t classBits);

// Whether a group of scope `inner` may be a member of one of scope `outer`: domain local only
// in domain local, global in all, universal in domain local and universal.
bool ScopeAccepts(int16_t inner, int16_t outer);

// The code of a member that can't join a group because of the scopes (3050, 3051, 3052), or 0.
// Add, when the directory refused the member: the outer scope is the row's GroupRange cell.
// Modify, before the write: the outer scope is the group's scope after the chain.
int32_t MemberScopeCode(int16_t outerScope, int16_t memberScope);
// The code of a group that can't join `targetScope` with its own `innerScope` (3053, 3054,
// 3055), or 0: the modify's test before the write and at the chain's end.
int32_t JoinScopeCode(int16_t targetScope, int16_t innerScope);
// The add's code when the directory refused to put this group (`innerScope`) into the target
// (`outerScope`): 3005, 3015, 3050, 3051 or 3052; never 0.
int32_t JoinRefusalCode(int16_t outerScope, int16_t innerScope);
// The row-naming form of a scope code, for a scope that an earlier row of an imitation set:
// 3050..3055 become 3090..3095.
int32_t RowNamingScopeCode(int32_t code);

// The first change entry (of ChangeCount) whose `field` equals `path`, ignoring case: field 1
// with a non-empty field 2 finds a path renamed away, field 2 a path renamed to; -1 for none.
int32_t FindRenamedAway(std::string_view path);
int32_t FindRenamedTo(std::string_view path);
// Raises `code` with MsgArg1 := the entry's line when `entry` isn't -1.
void RaiseWithChangeLine(int32_t code, int32_t entry);

// Where the group of a row stands: the span OU-Start..OU-End by the container rule (2000), and
// "CN=" + RDN in it.
struct GroupPlace {
    std::string rdn;
    std::string containerDn;
    std::string dn;
    std::string path;  // "LDAP://" + dn
    DirObject container;
};
// RDN (1010, 1011) and the span (1000, 1001) in the order given, then the container (2000).
GroupPlace PlaceGroup(const Cells& cells, const Columns& columns, bool rdnFirst);

// A distinguished name relative to the domain: "CN=g,OU=a" of "CN=g,OU=a,DC=x,DC=y"; "" for the
// domain itself.
std::string RelativeToDomain(std::string_view dn);

// The whole path of an object named by a span and a name cell, by the container rule; "" when
// the container isn't found.
std::string PathInSpan(const Cells& cells, const Columns& columns, std::string_view start,
                       std::string_view end, std::string_view name);
// The same path in its OU form, without looking anything up: what the container rule gives
// whenever the OU of the span exists.
std::string OUFormPath(const Cells& cells, const Columns& columns, std::string_view start,
                       std::string_view end, std::string_view name);

}  // namespace orin
