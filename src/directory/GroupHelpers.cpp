#include "directory/GroupHelpers.h"

#include <exception>
#include <string>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/Strings.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

// The values of `memberof`: a one-valued attribute reads as a string, a many-valued one only as
// a list. An attribute without a value gives an empty list; `single` says which read answered.
std::vector<std::string> ReadMemberOf(DirObject& object, bool& single) {
    DirResult<std::string> one = object.Get("memberof");
    single = one.ok();
    if (single) return {*one};
    DirResult<std::vector<std::string>> many = object.GetEx("memberof");
    if (!many.ok()) return {};
    return *many;
}

// The groups that a filter finds in the domain, with their scopes.
DirResult<std::vector<ScopedGroup>> ScopedGroups(const std::string& filter) {
    DirResult<std::vector<SearchRecord>> records =
        ExecuteSearch("<" + gSession.RootLdapPath + ">;(&(objectClass=group)" + filter +
                      ");groupType,AdsPath;Subtree");
    if (!records.ok()) return records.status();
    std::vector<ScopedGroup> groups;
    for (const SearchRecord& record : *records) {
        int64_t groupType = 0;
        try {
            groupType = std::stoll(record.Field("groupType"));
        } catch (const std::exception&) {
            groupType = 0;  // no scope bit: kScopeNone
        }
        groups.push_back(
            {"LDAP://" + StripServer(record.Field("AdsPath")), ScopeOfGroupType(groupType)});
    }
    return groups;
}

}  // namespace

int16_t ScopeOfGroupType(int64_t groupType) {
    if ((groupType & kGroupTypeDomainLocal) != 0) return kScopeDomainLocal;
    if ((groupType & kGroupTypeGlobal) != 0) return kScopeGlobal;
    if ((groupType & kGroupTypeUniversal) != 0) return kScopeUniversal;
    return kScopeNone;
}

DirResult<int16_t> GroupScope(DirObject& group) {
    DirResult<int64_t> groupType = group.GetNumber("groupType");
    if (!groupType.ok()) return groupType.status();
    return ScopeOfGroupType(*groupType);
}

DirResult<bool> IsSecurityGroup(DirObject& group) {
    DirResult<int64_t> groupType = group.GetNumber("groupType");
    if (!groupType.ok()) return groupType.status();
    return (*groupType & kGroupTypeSecurity) == kGroupTypeSecurity;
}

std::string RebuiltMemberPath(const DirObject& member) {
    // The cn of a CN-named entry is the value of its relative name; reading it from there
    // saves a round trip per member in large groups.
    std::string name = member.Name();
    std::string cn;
    if (StartsWithIgnoreCase(name, "CN=")) {
        cn = RdnValue(name);
    } else {
        DirObject copy = member;
        cn = copy.Get("cn").value_or("");
    }
    return "LDAP://CN=" + cn + "," + StripServer(member.Parent());
}

bool IsMember(DirObject& group, std::string_view memberPath) {
    DirResult<std::vector<DirObject>> members = group.Members();
    if (!members.ok()) return false;
    std::string wanted = ToUpperAscii(memberPath);
    for (const DirObject& member : *members) {
        if (ToUpperAscii(RebuiltMemberPath(member)) == wanted) return true;
    }
    return false;
}

bool IsInMemberOf(DirObject& object, std::string_view groupPath) {
    bool single = false;
    std::string wanted = ToUpperAscii(groupPath);
    for (const std::string& entry : ReadMemberOf(object, single)) {
        std::string value = single ? Trim(entry) : entry;
        if (value.empty()) continue;
        if (ToUpperAscii("LDAP://" + value) == wanted) return true;
    }
    return false;
}

bool RemoveAllMembers(DirObject& group) {
    group.PutEx(PutExControl::Clear, "member");
    if (group.SetInfo().ok()) return true;
    DirResult<std::vector<DirObject>> members = group.Members();
    if (!members.ok()) return false;
    for (const DirObject& member : *members) {
        // The member's own name: a rebuilt path would miss members whose names need escaping.
        if (!group.Remove("LDAP://" + member.DN()).ok()) return false;
    }
    return true;
}

int16_t RemoveFromAllGroups(DirObject& object, std::string_view objectPath) {
    bool single = false;
    std::vector<std::string> groups = ReadMemberOf(object, single);
    if (groups.empty() || (single && Trim(groups.front()).empty())) return kNoGroupsToLeave;
    int16_t result = kRemovedFromAll;
    for (const std::string& entry : groups) {
        DirObject group;
        if (!BindObject("LDAP://" + entry, group) || !group.Remove(objectPath).ok()) {
            result = kRemoveFromSomeFailed;
        }
    }
    return result;
}

DirResult<std::vector<ScopedGroup>> MemberGroups(const DirObject& group) {
    return ScopedGroups("(memberOf=" + LdapFilterValue(group.DN()) + ")");
}

DirResult<std::vector<ScopedGroup>> GroupsHolding(const DirObject& object) {
    return ScopedGroups("(member=" + LdapFilterValue(object.DN()) + ")");
}

DirResult<std::vector<std::string>> FindByAccountName(std::string_view name, std::string_view cls) {
    std::string command = "<" + gSession.RootLdapPath + ">;(&(samAccountName=" + std::string(name) +
                          ")(objectClass=" + std::string(cls) + "));cn,AdsPath;Subtree";
    DirResult<std::vector<SearchRecord>> records = ExecuteSearch(command);
    if (!records.ok()) return records.status();
    std::vector<std::string> paths;
    for (const SearchRecord& record : *records) paths.push_back(record.Field("AdsPath"));
    return paths;
}

bool AppendLine(const std::string& filePath, const std::string& text) {
    return platform::AppendLine(filePath, text);
}

int ScopeRefusalCode(int16_t outerScope, int16_t innerScope) {
    if (outerScope == kScopeGlobal && innerScope == kScopeUniversal) return 3050;
    if (outerScope == kScopeGlobal && innerScope == kScopeDomainLocal) return 3051;
    if (outerScope == kScopeUniversal && innerScope == kScopeDomainLocal) return 3052;
    return 0;
}

}  // namespace orin
