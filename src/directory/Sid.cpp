#include "directory/Sid.h"

#include <cstdio>

namespace orin {
namespace {

constexpr uint64_t kMaxAuthority = (uint64_t{1} << 48) - 1;

// Digits only, no sign, no blanks; nullopt on overflow beyond `max`.
std::optional<uint64_t> ParseUnsigned(std::string_view text, int base, uint64_t max) {
    if (text.empty()) return std::nullopt;
    uint64_t value = 0;
    for (char c : text) {
        int digit;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (base == 16 && c >= 'a' && c <= 'f') {
            digit = c - 'a' + 10;
        } else if (base == 16 && c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        } else {
            return std::nullopt;
        }
        if (digit >= base || value > (max - digit) / base) return std::nullopt;
        value = value * base + digit;
    }
    return value;
}

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

void Sid::AppendTo(std::vector<uint8_t>& out) const {
    out.push_back(Revision);
    out.push_back(static_cast<uint8_t>(SubAuthorities.size()));
    for (int shift = 40; shift >= 0; shift -= 8) {
        out.push_back(static_cast<uint8_t>(Authority >> shift));
    }
    for (uint32_t sub : SubAuthorities) {
        for (int shift = 0; shift < 32; shift += 8)
            out.push_back(static_cast<uint8_t>(sub >> shift));
    }
}

std::string Sid::ToString() const {
    std::string text = "S-" + std::to_string(Revision) + "-";
    if (Authority >> 32) {
        char hex[20];
        std::snprintf(hex, sizeof hex, "0x%012llX", static_cast<unsigned long long>(Authority));
        text += hex;
    } else {
        text += std::to_string(Authority);
    }
    for (uint32_t sub : SubAuthorities) text += "-" + std::to_string(sub);
    return text;
}

Sid Sid::WithRid(uint32_t rid) const {
    Sid sid = *this;
    sid.SubAuthorities.push_back(rid);
    return sid;
}

bool Sid::IsAccountOf(const Sid& prefix) const {
    if (Revision != prefix.Revision || Authority != prefix.Authority) return false;
    if (SubAuthorities.size() != prefix.SubAuthorities.size() + 1) return false;
    for (size_t i = 0; i < prefix.SubAuthorities.size(); ++i) {
        if (SubAuthorities[i] != prefix.SubAuthorities[i]) return false;
    }
    return true;
}

std::optional<Sid> ReadSid(std::span<const uint8_t> bytes, size_t* consumed) {
    if (bytes.size() < 8) return std::nullopt;
    size_t count = bytes[1];
    if (count > Sid::kMaxSubAuthorities || bytes.size() < 8 + 4 * count) return std::nullopt;
    Sid sid;
    sid.Revision = bytes[0];
    for (size_t i = 2; i < 8; ++i) sid.Authority = (sid.Authority << 8) | bytes[i];
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* p = &bytes[8 + 4 * i];
        sid.SubAuthorities.push_back(uint32_t{p[0]} | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 |
                                     uint32_t{p[3]} << 24);
    }
    if (consumed) *consumed = sid.BinarySize();
    return sid;
}

std::optional<Sid> ParseSidBytes(std::span<const uint8_t> bytes) {
    size_t used = 0;
    auto sid = ReadSid(bytes, &used);
    if (!sid || used != bytes.size()) return std::nullopt;
    return sid;
}

std::optional<Sid> ParseSidString(std::string_view text) {
    if (text.size() < 2 || (text[0] != 'S' && text[0] != 's') || text[1] != '-') {
        return std::nullopt;
    }
    std::vector<std::string_view> parts;
    size_t start = 2;
    while (true) {
        size_t dash = text.find('-', start);
        parts.push_back(text.substr(start, dash == std::string_view::npos ? dash : dash - start));
        if (dash == std::string_view::npos) break;
        start = dash + 1;
    }
    if (parts.size() < 2 || parts.size() - 2 > Sid::kMaxSubAuthorities) return std::nullopt;

    Sid sid;
    auto revision = ParseUnsigned(parts[0], 10, 0xFF);
    std::optional<uint64_t> authority;
    if (parts[1].size() > 2 && (parts[1].substr(0, 2) == "0x" || parts[1].substr(0, 2) == "0X")) {
        authority = ParseUnsigned(parts[1].substr(2), 16, kMaxAuthority);
    } else {
        authority = ParseUnsigned(parts[1], 10, kMaxAuthority);
    }
    if (!revision || !authority) return std::nullopt;
    sid.Revision = static_cast<uint8_t>(*revision);
    sid.Authority = *authority;
    for (size_t i = 2; i < parts.size(); ++i) {
        auto sub = ParseUnsigned(parts[i], 10, 0xFFFFFFFF);
        if (!sub) return std::nullopt;
        sid.SubAuthorities.push_back(static_cast<uint32_t>(*sub));
    }
    return sid;
}

Sid EveryoneSid() {
    return Sid{1, 1, {0}};
}
Sid SelfSid() {
    return Sid{1, 5, {10}};
}

bool Guid::IsNull() const {
    for (uint8_t b : Bytes) {
        if (b != 0) return false;
    }
    return true;
}

std::string Guid::ToString() const {
    // Data1, Data2 and Data3 are little-endian numbers; Data4 is printed byte by byte.
    static constexpr int kOrder[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string text = "{";
    for (int i = 0; i < 16; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        uint8_t b = Bytes[kOrder[i]];
        text += kHex[b >> 4];
        text += kHex[b & 0xF];
    }
    text += '}';
    return text;
}

std::optional<Guid> ParseGuidString(std::string_view text) {
    if (text.size() == 38) {
        if (text.front() != '{' || text.back() != '}') return std::nullopt;
        text = text.substr(1, 36);
    }
    if (text.size() != 36) return std::nullopt;
    static constexpr int kOrder[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    Guid guid;
    size_t pos = 0;
    for (int i = 0; i < 16; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            if (text[pos++] != '-') return std::nullopt;
        }
        int hi = HexValue(text[pos]);
        int lo = HexValue(text[pos + 1]);
        if (hi < 0 || lo < 0) return std::nullopt;
        guid.Bytes[kOrder[i]] = static_cast<uint8_t>(hi << 4 | lo);
        pos += 2;
    }
    return guid;
}

}  // namespace orin
