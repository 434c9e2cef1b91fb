#pragma once
// Small directory helpers that the group, user and computer engines share: a group's scope and
// kind, membership tests and clearing in both directions, searches by account name, and the
// rule table that turns a refused membership change into words about group scopes.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"

namespace orin {

// Bits of `groupType`.
inline constexpr int64_t kGroupTypeGlobal = 0x00000002;
inline constexpr int64_t kGroupTypeDomainLocal = 0x00000004;
inline constexpr int64_t kGroupTypeUniversal = 0x00000008;
inline constexpr int64_t kGroupTypeSecurity = 0x80000000;

// Scope codes; the same numbers as the `GroupRange` column.
inline constexpr int16_t kScopeDomainLocal = 0;
inline constexpr int16_t kScopeGlobal = 1;
inline constexpr int16_t kScopeUniversal = 2;
inline constexpr int16_t kScopeNone = 99;

// The scope code of a `groupType` value: bit 4 is tested first, then 2, then 8.
int16_t ScopeOfGroupType(int64_t groupType);

// `GroupScope` and `IsSecurityGroup` read `groupType`; on an object that is not a group the read
// fails and so do they. Callers test `Class` first.
DirResult<int16_t> GroupScope(DirObject& group);
DirResult<bool> IsSecurityGroup(DirObject& group);

// The path of a group member as this program writes paths: "LDAP://CN=" + its cn + "," + its
// parent without a server part. A member named by another attribute than CN gets the path of
// its cn all the same, which therefore never equals its own path.
std::string RebuiltMemberPath(const DirObject& member);

// True when a member's rebuilt path equals `memberPath`, ignoring case. A group whose members
// can't be read has no member here.
bool IsMember(DirObject& group, std::string_view memberPath);

// True when one of the object's `memberof` entries, as "LDAP://" + entry, equals `groupPath`,
// ignoring case. `memberof` is read as one value first and as a list when it holds several.
bool IsInMemberOf(DirObject& object, std::string_view groupPath);

// Removes every member from the group; false at the first member that can't be removed (those
// removed before stay removed). An empty group gives true. One write takes them all when the
// directory allows it; when it refuses, the members go one by one to find the first refusal.
bool RemoveAllMembers(DirObject& group);

// A group found by a membership search: its whole path without a server part, and its scope.
struct ScopedGroup {
    std::string path;
    int16_t scope = kScopeNone;
};
// The groups among the members of `group`, with their scopes: one search, whatever the size of
// the group, where reading the class of each member would cost a read per member.
DirResult<std::vector<ScopedGroup>> MemberGroups(const DirObject& group);
// The groups that hold `object` as a member, with their scopes: one search.
DirResult<std::vector<ScopedGroup>> GroupsHolding(const DirObject& object);

// Results of RemoveFromAllGroups.
inline constexpr int16_t kRemovedFromAll = 0;
inline constexpr int16_t kRemoveFromSomeFailed = 1;
inline constexpr int16_t kNoGroupsToLeave = 2;

// Removes the object (whose whole path is `objectPath`) from every group of its `memberof`.
// A group that doesn't bind or refuses the removal makes the result kRemoveFromSomeFailed, and
// the walk goes on with the next group. An object without groups gives kNoGroupsToLeave.
int16_t RemoveFromAllGroups(DirObject& object, std::string_view objectPath);

// The whole paths (Fields "AdsPath") of the objects of class `cls` whose samAccountName is
// `name`, in the order of the search. The name goes into the filter as it stands.
DirResult<std::vector<std::string>> FindByAccountName(std::string_view name, std::string_view cls);

// Appends one line to a text file the operator reads; false when it can't be opened.
bool AppendLine(const std::string& filePath, const std::string& text);

// The failure code that explains why the directory refused to put a group of scope
// `innerScope` into a group of scope `outerScope`: 3050, 3051 or 3052, or 0 when the scopes
// don't explain it and the engine uses its general code.
int ScopeRefusalCode(int16_t outerScope, int16_t innerScope);

}  // namespace orin
