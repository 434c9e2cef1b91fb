#include "directory/Paths.h"

#include <algorithm>

#include "directory/DirectorySession.h"
#include "platform/Strings.h"

namespace orin {
namespace {

constexpr size_t npos = std::string_view::npos;

// The first character behind "LDAP://".
constexpr size_t kAfterScheme = 7;

bool HasTermAt(std::string_view path, size_t pos, std::string_view prefix) {
    return path.substr(pos, prefix.size()) == prefix;
}

}  // namespace

std::string BuildOUPath(const std::vector<std::string>& fields, int first, int last) {
    const int lastField = static_cast<int>(fields.size()) - 1;
    if (first < 0 || first > lastField) return "";
    last = std::min(last, lastField);
    std::string path;
    for (int i = last; i >= first; --i) {
        std::string value = Trim(fields[static_cast<size_t>(i)]);
        if (value.empty()) continue;
        if (!path.empty()) path += ",";
        path += "OU=" + value;
    }
    return path;
}

std::string FirstOUName(std::string_view path) {
    size_t ou = path.find("OU=");
    if (ou == npos) return "";
    size_t begin = ou + 3;
    size_t comma = path.find(',');
    if (comma == npos) return std::string(path.substr(begin));
    if (comma < begin) return "";  // a comma before the first "OU=" term
    return std::string(path.substr(begin, comma - begin));
}

std::string ParentOUPath(std::string_view path) {
    size_t comma = path.find(',');
    if (comma == npos) return "";
    return std::string(path.substr(comma + 1));
}

std::string UpnPrefix(std::string_view name) {
    size_t at = name.find('@');
    if (at == npos) return "";
    return std::string(name.substr(0, at));
}

std::string UpnPrefixOrWhole(std::string_view name) {
    return std::string(name.substr(0, name.find('@')));
}

ContainerKind PathKind(std::string_view path) {
    if (FindIgnoreCase(path, "/DC=") != npos) return ContainerKind::Domain;
    if (FindIgnoreCase(path, "/CN=") != npos) return ContainerKind::DefaultContainer;
    if (FindIgnoreCase(path, "/OU=") != npos) return ContainerKind::OU;
    return ContainerKind::Domain;
}

std::string OUFieldsFromPath(std::string_view path) {
    std::string upper = ToUpperAscii(path);
    if (upper.starts_with("LDAP://DC=") || upper.find("/DC=") != npos) return "";

    // Walking backward meets the top level first, which is the order of the CSV columns. Only a
    // comma ends a term's value; a "/" merely lets the leftmost term count.
    std::string fields;
    size_t delimiter = path.size();
    for (size_t i = path.size(); i-- > 0;) {
        if (path[i] != ',' && path[i] != '/') continue;
        if (HasTermAt(path, i + 1, "OU=")) {
            size_t begin = i + 4;
            if (!fields.empty()) fields += ",";
            fields += path.substr(begin, delimiter - begin);
        }
        if (path[i] == ',') delimiter = i;
    }
    return fields;
}

std::string CanonicalPath(std::string_view dn) {
    return CanonicalPath(dn, gSession.DomainDNSName);
}

std::string CanonicalPath(std::string_view dn, std::string_view domainDnsName) {
    if (dn.find(',') == npos) return "";
    std::string result;
    for (const std::string& term : Split(dn, ',')) {
        if (term.starts_with("DC=")) return ToLowerAscii(domainDnsName) + "/" + result;
        std::string value = ReplaceAll(term.size() > 3 ? term.substr(3) : "", "/", "\\/");
        result = result.empty() ? value : value + "/" + result;
    }
    return result;  // no "DC=" term: the names alone
}

int CountOULevels(std::string_view path) {
    int count = 0;
    for (size_t i = 0; i < path.size(); ++i) {
        if ((path[i] == ',' || path[i] == '/') && HasTermAt(path, i + 1, "OU=")) ++count;
    }
    return count;
}

std::string RelativeContainerPath(std::string_view path) {
    size_t slash = path.find('/', kAfterScheme);
    size_t begin = slash == npos ? kAfterScheme : slash + 1;
    size_t dc = path.find("DC=");
    // "DC=" right at the start of the name means domain level; the comma before it is not part
    // of the result.
    if (dc == npos || dc <= begin) return "";
    return std::string(path.substr(begin, dc - 1 - begin));
}

std::string StripServer(std::string_view path) {
    size_t slash = path.find('/', kAfterScheme);
    if (slash != npos) return std::string(path.substr(slash + 1));
    if (path.size() <= kAfterScheme) return "";
    return std::string(path.substr(kAfterScheme));
}

std::string BuildDomainDN(std::string_view dnsName) {
    std::string dn;
    std::string label;
    for (size_t i = 0; i < dnsName.size(); ++i) {
        char c = dnsName[i];
        if (i + 1 == dnsName.size()) {
            // The last character always closes the final label, even when it is a dot.
            label += c;
            dn += "DC=" + label;
        } else if (c == '.') {
            dn += "DC=" + label + ",";
            label.clear();
        } else {
            label += c;
        }
    }
    return dn;
}

}  // namespace orin
