#pragma once
// The one way to reach an object, and the one test of its existence.

#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"

namespace orin {

// Binds "LDAP://" + DN (no server part) under the session's method: as is for the local method,
// through the named DC with the session's credentials for the remote method. False for every
// cause (absent, refused, unreachable); `out` is then left empty. Never tells the operator.
bool BindObject(std::string_view path, DirObject& out);

// One record of a search: the attributes asked for, by name (case-insensitive). "AdsPath" is
// the whole path of the entry, with the server part under the remote method.
struct SearchRecord {
    std::vector<std::pair<std::string, std::vector<std::string>>> fields;
    // The first value of a field, "" when the entry has none.
    std::string Field(std::string_view name) const;
    std::vector<std::string> Values(std::string_view name) const;
};

// Executes a search command of four parts divided by ";":
// "<" + RootLdapPath + ">;" + filter + ";" + attribute list + ";Subtree" (or "OneLevel", "Base").
// The filter goes to the server as it stands. Paged, so any number of records comes back.
DirResult<std::vector<SearchRecord>> ExecuteSearch(std::string_view commandText);

// A value for a search filter, escaped so that it can't change the filter or the command: "*",
// "(", ")", "\", NUL and the command's separator ";" as "\xx".
std::string LdapFilterValue(std::string_view value);

}  // namespace orin
