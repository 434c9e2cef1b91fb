#include "directory/Bind.h"

#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"

namespace orin {

namespace {

bool IsLocalMethod() {
    return ToUpperAscii(gSession.Method) == "LOCAL";
}

}  // namespace

bool BindObject(std::string_view path, DirObject& out) {
    out = DirObject();
    // What follows "LDAP://" is the distinguished name. Under the remote method ADSI would go
    // to "LDAP://" + DC + "/" + that rest; here the session's connection is already the one to
    // that DC, so the server part only shows in the paths the object hands back.
    std::string_view rest = path.size() > 7 ? path.substr(7) : std::string_view();
    std::string server = IsLocalMethod() ? std::string() : gSession.DcComputerName;
    auto bound = DirObject::Load(gSession.Connection, std::move(server), rest);
    if (!bound.ok()) return false;
    out = std::move(*bound);
    return true;
}

std::string SearchRecord::Field(std::string_view name) const {
    for (const auto& [field, values] : fields) {
        if (EqualsIgnoreCase(field, name)) return values.empty() ? std::string() : values.front();
    }
    return {};
}

std::vector<std::string> SearchRecord::Values(std::string_view name) const {
    for (const auto& [field, values] : fields) {
        if (EqualsIgnoreCase(field, name)) return values;
    }
    return {};
}

std::string LdapFilterValue(std::string_view value) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string out;
    for (unsigned char c : value) {
        if (c == '*' || c == '(' || c == ')' || c == '\\' || c == '\0' || c == ';') {
            out += '\\';
            out += kHex[c >> 4];
            out += kHex[c & 0xF];
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

DirResult<std::vector<SearchRecord>> ExecuteSearch(std::string_view commandText) {
    std::vector<std::string> parts = Split(commandText, ';');
    if (parts.size() < 3 || parts.size() > 4) {
        return DirStatus::Error(kDirBadArgument, "search needs <base>;filter;attributes[;scope]");
    }
    std::string base = Trim(parts[0]);
    if (base.size() < 2 || base.front() != '<' || base.back() != '>') {
        return DirStatus::Error(kDirBadArgument, "search base must be in angle brackets");
    }
    base = base.substr(1, base.size() - 2);

    // The server part of the base, if any, is the one the AdsPath of each record carries.
    std::string baseDn = DnFromPath(base);
    std::string prefix = "LDAP://";
    std::string_view afterScheme =
        std::string_view(base).substr(StartsWithIgnoreCase(base, "LDAP://") ? 7 : 0);
    if (afterScheme.size() > baseDn.size()) {
        prefix += std::string(afterScheme.substr(0, afterScheme.size() - baseDn.size()));
    }

    platform::LdapScope scope = platform::LdapScope::Subtree;
    if (parts.size() == 4) {
        std::string word = Trim(parts[3]);
        if (EqualsIgnoreCase(word, "OneLevel")) {
            scope = platform::LdapScope::OneLevel;
        } else if (EqualsIgnoreCase(word, "Base")) {
            scope = platform::LdapScope::Base;
        } else if (!EqualsIgnoreCase(word, "Subtree")) {
            return DirStatus::Error(kDirBadArgument, "unknown search scope " + word);
        }
    }

    std::vector<std::string> names, request;
    for (const auto& a : Split(parts[2], ',')) {
        std::string name = Trim(a);
        if (name.empty()) continue;
        names.push_back(name);
        if (!EqualsIgnoreCase(name, "AdsPath")) request.push_back(name);
    }
    // An entry with no attribute asked for still needs one to come back: ask for "1.1" (none).
    if (request.empty()) request.push_back("1.1");

    if (!gSession.Connection) return DirStatus::Error(kDirNotConnected, "not connected");
    std::vector<SearchRecord> records;
    platform::LdapStatus status = gSession.Connection->SearchEach(
        baseDn, scope, parts[1], request, [&](platform::LdapEntry& e) {
            SearchRecord record;
            for (const auto& name : names) {
                if (EqualsIgnoreCase(name, "AdsPath")) {
                    record.fields.push_back({name, {prefix + e.dn}});
                } else if (const auto* values = e.Find(name)) {
                    record.fields.push_back({name, *values});
                } else {
                    record.fields.push_back({name, {}});
                }
            }
            records.push_back(std::move(record));
            return true;
        });
    if (!status.ok()) return DirStatus::Error(status.code, status.message);
    return records;
}

}  // namespace orin
