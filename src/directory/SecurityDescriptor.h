#pragma once
// The self-relative security descriptor of nTSecurityDescriptor, parsed into values and built
// back into bytes.
//
// Layout read: a 20-byte header (revision 1, reserved byte, control, then the offsets of owner,
// group, SACL and DACL, 0 meaning absent), the SIDs and ACLs anywhere after it. An ACL is an
// 8-byte header (revision, reserved, size, ACE count, reserved) followed by its ACEs; every ACE
// starts with type, flags and size. The DACL's ACEs of types 0, 1, 5 and 6 are parsed into
// fields; ACEs of any other type are kept as their raw bytes, and so is the whole SACL, so that
// nothing is lost between a read and a write.
//
// Layout built (canonical, the one the directory itself returns): header, owner, group, SACL,
// DACL, with no gaps, every ACL exactly as long as its ACEs and reserved bytes zero.
// ParseSecurityDescriptor(BuildSecurityDescriptor(sd)) gives sd back; building a parsed
// descriptor that the directory produced gives its bytes back.
//
// Parsing never reads outside the buffer: a short buffer, an offset or size out of range, an
// ACE shorter than its own fields or a SID longer than its space is an error with a message.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "directory/Sid.h"

namespace orin {

// Control bits.
inline constexpr uint16_t kSeDaclPresent = 0x0004;
inline constexpr uint16_t kSeSaclPresent = 0x0010;
inline constexpr uint16_t kSeDaclAutoInherited = 0x0400;
inline constexpr uint16_t kSeDaclProtected = 0x1000;
inline constexpr uint16_t kSeSelfRelative = 0x8000;

// ACE types parsed into fields.
inline constexpr uint8_t kAccessAllowedAceType = 0;
inline constexpr uint8_t kAccessDeniedAceType = 1;
inline constexpr uint8_t kAccessAllowedObjectAceType = 5;
inline constexpr uint8_t kAccessDeniedObjectAceType = 6;

// AceFlags bits.
inline constexpr uint8_t kObjectInheritAce = 0x01;
inline constexpr uint8_t kContainerInheritAce = 0x02;
inline constexpr uint8_t kNoPropagateInheritAce = 0x04;
inline constexpr uint8_t kInheritOnlyAce = 0x08;
inline constexpr uint8_t kInheritedAce = 0x10;

// Flags of an object ACE: which GUIDs follow the mask.
inline constexpr uint32_t kAceObjectTypePresent = 0x1;
inline constexpr uint32_t kAceInheritedObjectTypePresent = 0x2;

// Revisions of an ACL: 2 for plain ACEs only, 4 once object ACEs are in it.
inline constexpr uint8_t kAclRevision = 2;
inline constexpr uint8_t kAclRevisionDs = 4;

struct Ace {
    uint8_t AceType = kAccessAllowedAceType;
    uint8_t AceFlags = 0;
    uint32_t AccessMask = 0;
    uint32_t Flags = 0;        // object ACEs only
    Guid ObjectType;           // written when Flags has kAceObjectTypePresent
    Guid InheritedObjectType;  // written when Flags has kAceInheritedObjectTypePresent
    Sid TrusteeSid;
    std::vector<uint8_t> Extra;  // bytes after the SID inside the ACE's size, kept as read
    // An ACE of a type not parsed: all its bytes, header included. AceType and AceFlags still
    // tell its type and flags; the other fields stay empty.
    std::vector<uint8_t> Raw;

    static bool IsParsedType(uint8_t type);
    static bool IsObjectType(uint8_t type);
    bool IsDeny() const {
        return AceType == kAccessDeniedAceType || AceType == kAccessDeniedObjectAceType;
    }
    bool IsInherited() const { return (AceFlags & kInheritedAce) != 0; }
    bool HasObjectType() const { return IsObjectType(AceType) && (Flags & kAceObjectTypePresent); }

    friend bool operator==(const Ace&, const Ace&) = default;
};

struct Acl {
    uint8_t AclRevision = kAclRevisionDs;
    std::vector<Ace> Aces;

    friend bool operator==(const Acl&, const Acl&) = default;
};

struct SecurityDescriptor {
    uint16_t Control = kSeSelfRelative;
    std::optional<Sid> Owner;
    std::optional<Sid> Group;
    std::optional<std::vector<uint8_t>> Sacl;  // the whole ACL, header included, as read
    std::optional<Acl> Dacl;

    friend bool operator==(const SecurityDescriptor&, const SecurityDescriptor&) = default;
};

// The descriptor in `bytes`, or nullopt with the reason in *error.
std::optional<SecurityDescriptor> ParseSecurityDescriptor(std::span<const uint8_t> bytes,
                                                          std::string* error = nullptr);

// The canonical self-relative bytes, or nullopt with the reason in *error when the descriptor
// can't be written (an ACL beyond 64 KB, a SID with more than 15 sub-authorities, a raw ACE
// whose bytes disagree with their own header...). SE_SELF_RELATIVE is always set.
std::optional<std::vector<uint8_t>> BuildSecurityDescriptor(const SecurityDescriptor& sd,
                                                            std::string* error = nullptr);

}  // namespace orin
