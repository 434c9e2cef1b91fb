#pragma once
// The text form in which libsmbclient reads and writes a file's NT security descriptor
// (the "system.nt_sec_desc.*" extended attribute):
//
//   REVISION:1,OWNER:S-1-5-32-544,GROUP:S-1-5-18,ACL:S-1-1-0:0/3/0x001f01ff,...
//
// An ACL entry is "ACL:<sid>:<type>/<flags>/<mask>". The library prints the mask in hex but
// parses it as a decimal number, so the writer here always puts it in decimal. An entry written
// as "ACL+:<DOMAIN\name>:..." asks the server to turn the name into a SID.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orin::platform {

// ACE types and flags as the descriptor stores them.
inline constexpr uint8_t kSmbAceAllow = 0;
inline constexpr uint8_t kSmbAceDeny = 1;
inline constexpr uint8_t kSmbAceObjectInherit = 0x01;
inline constexpr uint8_t kSmbAceContainerInherit = 0x02;
inline constexpr uint8_t kSmbAceInherited = 0x10;
inline constexpr uint32_t kSmbFullControl = 0x001F01FF;

struct SmbAce {
    std::string trustee;  // a SID "S-1-..." (or, with byName, a name such as "ORIN\user1")
    bool byName = false;
    uint8_t type = kSmbAceAllow;
    uint8_t flags = 0;
    uint32_t mask = 0;

    friend bool operator==(const SmbAce&, const SmbAce&) = default;
};

struct SmbSecurity {
    int revision = 1;
    std::string owner;  // SIDs, "" when the descriptor has none
    std::string group;
    std::vector<SmbAce> dacl;
};

// Parses the text that a read of "system.nt_sec_desc.*" gives. False for text that is not of
// that form; `out` then holds only what came before the fault.
bool ParseSecurityText(std::string_view text, SmbSecurity& out);

// The value for a write of "system.nt_sec_desc.*" that replaces the DACL and leaves the owner
// and the group as they are.
std::string FormatDaclText(const std::vector<SmbAce>& dacl);

}  // namespace orin::platform
