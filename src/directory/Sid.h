#pragma once
// Security identifiers and the GUIDs of object ACEs, in their binary and text forms.
//
// SID binary form: revision (1 byte), sub-authority count (1), identifier authority (6, big
// endian), sub-authorities (4 each, little endian). Text form: "S-1-5-21-1-2-3-500"; an
// authority of 2^32 or more is written in hex ("S-1-0x1234567890AB-...").
//
// GUID binary form: Data1 (4, little endian), Data2 (2, little endian), Data3 (2, little
// endian), Data4 (8, in order). Text form, upper case with braces:
// "{AB721A53-1E2F-11D0-9819-00AA0040529B}".

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orin {

struct Sid {
    uint8_t Revision = 1;
    uint64_t Authority = 0;  // 48 bits
    std::vector<uint32_t> SubAuthorities;

    static constexpr size_t kMaxSubAuthorities = 15;

    size_t BinarySize() const { return 8 + 4 * SubAuthorities.size(); }
    void AppendTo(std::vector<uint8_t>& out) const;
    std::string ToString() const;
    // The SID with one more sub-authority, as a domain SID gives an account SID.
    Sid WithRid(uint32_t rid) const;
    // True if this SID is `prefix` followed by exactly one more sub-authority.
    bool IsAccountOf(const Sid& prefix) const;

    friend bool operator==(const Sid&, const Sid&) = default;
};

// Reads a SID at the start of `bytes`. Fails (nullopt) when the bytes are too short for the
// count they announce or the count is above 15. `consumed` receives the SID's length.
std::optional<Sid> ReadSid(std::span<const uint8_t> bytes, size_t* consumed = nullptr);
std::optional<Sid> ParseSidBytes(std::span<const uint8_t> bytes);  // the whole span is one SID
// "S-1-5-32-544" (letter case of the "S" ignored); nullopt when it isn't a SID.
std::optional<Sid> ParseSidString(std::string_view text);

// Well-known SIDs that the system writes itself.
Sid EveryoneSid();  // S-1-1-0
Sid SelfSid();      // S-1-5-10

struct Guid {
    std::array<uint8_t, 16> Bytes{};

    bool IsNull() const;
    std::string ToString() const;  // "{AB721A53-1E2F-11D0-9819-00AA0040529B}"

    friend bool operator==(const Guid&, const Guid&) = default;
};

// The text form with or without braces, either letter case.
std::optional<Guid> ParseGuidString(std::string_view text);

// The extended right "Change Password": deny object ACEs on it for Everyone and SELF make
// "user cannot change password".
inline constexpr std::string_view kChangePasswordRightGuid =
    "{AB721A53-1E2F-11D0-9819-00AA0040529B}";

}  // namespace orin
