#include "platform/SmbSecurityText.h"

#include <charconv>
#include <limits>

#include "platform/Strings.h"

namespace orin::platform {
namespace {

// Reads an unsigned number in decimal, or in hex with a "0x" prefix, filling the whole text.
template <class T>
bool ParseNumber(std::string_view text, T& out) {
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        text.remove_prefix(2);
        base = 16;
    }
    if (text.empty()) return false;
    uint64_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    if (value > static_cast<uint64_t>(std::numeric_limits<T>::max())) return false;
    out = static_cast<T>(value);
    return true;
}

// "<sid>:<type>/<flags>/<mask>"; the SID itself holds no ":".
bool ParseAce(std::string_view text, SmbAce& ace) {
    size_t colon = text.rfind(':');
    if (colon == std::string_view::npos || colon == 0) return false;
    ace.trustee = std::string(text.substr(0, colon));
    std::vector<std::string> parts = Split(text.substr(colon + 1), '/');
    return parts.size() == 3 && ParseNumber(parts[0], ace.type) &&
           ParseNumber(parts[1], ace.flags) && ParseNumber(parts[2], ace.mask);
}

}  // namespace

bool ParseSecurityText(std::string_view text, SmbSecurity& out) {
    out = SmbSecurity{};
    std::string normalized = std::string(text);
    for (char& c : normalized) {
        if (c == '\t' || c == '\n' || c == '\r') c = ',';
    }
    for (const std::string& token : Split(normalized, ',')) {
        std::string_view item = token;
        if (item.empty()) continue;
        if (StartsWithIgnoreCase(item, "REVISION:")) {
            if (!ParseNumber(item.substr(9), out.revision)) return false;
        } else if (StartsWithIgnoreCase(item, "OWNER:")) {
            out.owner = std::string(item.substr(6));
        } else if (StartsWithIgnoreCase(item, "GROUP:")) {
            out.group = std::string(item.substr(6));
        } else if (StartsWithIgnoreCase(item, "ACL:")) {
            SmbAce ace;
            if (!ParseAce(item.substr(4), ace)) return false;
            out.dacl.push_back(std::move(ace));
        } else {
            return false;
        }
    }
    return true;
}

std::string FormatDaclText(const std::vector<SmbAce>& dacl) {
    std::string text = "REVISION:1";
    for (const SmbAce& ace : dacl) {
        text += ace.byName ? ",ACL+:" : ",ACL:";
        text += ace.trustee + ":" + std::to_string(ace.type) + "/" + std::to_string(ace.flags) +
                "/" + std::to_string(ace.mask);
    }
    return text;
}

}  // namespace orin::platform
