#include "engines/access/AccessCodes.h"

#include <algorithm>
#include <array>
#include <optional>

#include "directory/DirectorySession.h"
#include "platform/Strings.h"

namespace orin {
namespace {

struct RightMasks {
    uint32_t written;
    uint32_t stored;
};

// Indexed by the AccessRight code.
constexpr std::array<RightMasks, 15> kRights = {{
    {0x10000000, 0x000F01FF},  // 0 full control (GENERIC_ALL)
    {0x80000000, 0x00020094},  // 1 read (GENERIC_READ)
    {0x40000000, 0x00000028},  // 2 write (GENERIC_WRITE)
    {0x00000001, 0x00000001},  // 3 create all child objects
    {0x00000002, 0x00000002},  // 4 delete all child objects
    {0x00000004, 0x00000004},  // 5 list contents
    {0x00000010, 0x00000010},  // 6 read all properties
    {0x00000020, 0x00000020},  // 7 write all properties
    {0x00010000, 0x00010000},  // 8 delete
    {0x00000040, 0x00000040},  // 9 delete subtree
    {0x00020000, 0x00020000},  // 10 read permissions
    {0x00040000, 0x00040000},  // 11 modify permissions
    {0x00080000, 0x00080000},  // 12 modify owner
    {0x00000008, 0x00000008},  // 13 all validated writes
    {0x00000100, 0x00000100},  // 14 all extended rights
}};

// A part of the AccessRight list read as a number: blanks around it, a sign and a fraction
// are accepted, and a fraction is rounded half to even, as the field has always been read.
// Large values saturate; they are outside the table either way.
std::optional<int64_t> ReadNumber(std::string_view part) {
    std::string text = Trim(part);
    size_t pos = 0;
    bool negative = false;
    if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) negative = text[pos++] == '-';
    int64_t whole = 0;
    size_t digits = 0;
    for (; pos < text.size() && text[pos] >= '0' && text[pos] <= '9'; ++pos, ++digits) {
        whole = std::min<int64_t>(whole * 10 + (text[pos] - '0'), 1'000'000'000);
    }
    std::string fraction;
    if (pos < text.size() && text[pos] == '.') {
        for (++pos; pos < text.size() && text[pos] >= '0' && text[pos] <= '9'; ++pos) {
            fraction += text[pos];
        }
    }
    if (pos != text.size() || digits + fraction.size() == 0) return std::nullopt;
    // Compare the fraction with one half: above rounds up, exactly a half rounds to even.
    size_t last = fraction.find_last_not_of('0');
    std::string_view significant(fraction.data(), last == std::string::npos ? 0 : last + 1);
    bool half = significant == "5";
    bool aboveHalf =
        !significant.empty() && (significant[0] > '5' || (significant[0] == '5' && !half));
    if (aboveHalf || (half && whole % 2 == 1)) ++whole;
    return negative ? -whole : whole;
}

CodedValue ParseRights(std::string_view text, bool stored) {
    if (Trim(text).empty()) return CodedValue::Error();
    uint32_t mask = 0;
    for (const std::string& part : Split(text, ';')) {
        auto number = ReadNumber(part);
        if (!number || *number < 0 || *number >= static_cast<int64_t>(kRights.size())) {
            return CodedValue::Error();
        }
        const RightMasks& right = kRights[static_cast<size_t>(*number)];
        mask |= stored ? right.stored : right.written;
    }
    return CodedValue(mask);
}

constexpr std::string_view kBuiltinNames[] = {
    "ACCOUNT OPERATORS",
    "ADMINISTRATORS",
    "BACKUP OPERATORS",
    "GUESTS",
    "PRE-WINDOWS 2000 COMPATIBLE ACCESS",
    "PRINT OPERATORS",
    "PEPLICATOR",  // the built-in Replicator group is reached under this spelling only
    "SERVER OPERATORS",
    "USERS",
};

constexpr std::string_view kNtAuthorityNames[] = {"SYSTEM", "AUTHENTICATED USERS"};

}  // namespace

CodedValue ParseAccessRights(std::string_view text) {
    return ParseRights(text, false);
}

CodedValue ParseAccessRightsStored(std::string_view text) {
    return ParseRights(text, true);
}

CodedValue ParseInheritOption(std::string_view text) {
    std::string code = Trim(text);
    if (code.empty() || code == "0") return CodedValue(2);
    if (code == "1") return CodedValue::SP();
    if (code == "2") return CodedValue(10);
    if (code == "3") return CodedValue(6);
    if (code == "4") return CodedValue(14);
    return CodedValue::Error();
}

CodedValue ParsePermitOrDeny(std::string_view text) {
    std::string code = ToUpperAscii(Trim(text));
    if (code.empty() || code == "P") return CodedValue(0);
    if (code == "D") return CodedValue(1);
    return CodedValue::Error();
}

std::string TrusteeName(std::string_view name) {
    std::string upper = ToUpperAscii(Trim(name));
    if (upper.empty()) return upper;
    for (std::string_view builtin : kBuiltinNames) {
        if (upper == builtin) return "BUILTIN\\" + upper;
    }
    for (std::string_view authority : kNtAuthorityNames) {
        if (upper == authority) return "NT AUTHORITY\\" + upper;
    }
    return ToUpperAscii(gSession.DomainNetBIOSName) + "\\" + upper;
}

}  // namespace orin
