#include "directory/SecurityDescriptor.h"

#include <limits>

namespace orin {
namespace {

constexpr size_t kHeaderSize = 20;
constexpr size_t kAclHeaderSize = 8;
constexpr size_t kAceHeaderSize = 4;

uint16_t Read16(std::span<const uint8_t> b, size_t at) {
    return static_cast<uint16_t>(b[at] | b[at + 1] << 8);
}

uint32_t Read32(std::span<const uint8_t> b, size_t at) {
    return uint32_t{b[at]} | uint32_t{b[at + 1]} << 8 | uint32_t{b[at + 2]} << 16 |
           uint32_t{b[at + 3]} << 24;
}

void Append16(std::vector<uint8_t>& out, uint16_t v) {
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}

void Append32(std::vector<uint8_t>& out, uint32_t v) {
    for (int shift = 0; shift < 32; shift += 8) out.push_back(static_cast<uint8_t>(v >> shift));
}

void Put16(std::vector<uint8_t>& out, size_t at, uint16_t v) {
    out[at] = static_cast<uint8_t>(v);
    out[at + 1] = static_cast<uint8_t>(v >> 8);
}

void Put32(std::vector<uint8_t>& out, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) out[at + i] = static_cast<uint8_t>(v >> (8 * i));
}

bool Fail(std::string* error, std::string message) {
    if (error) *error = std::move(message);
    return false;
}

// One ACE of a parsed type from its bytes (header included, exactly AceSize long).
bool ParseAceBody(std::span<const uint8_t> ace, Ace& out, std::string* error) {
    size_t pos = kAceHeaderSize;
    auto need = [&](size_t n) { return ace.size() - pos >= n; };
    if (!need(4)) return Fail(error, "ACE too short for its access mask");
    out.AccessMask = Read32(ace, pos);
    pos += 4;
    if (Ace::IsObjectType(out.AceType)) {
        if (!need(4)) return Fail(error, "object ACE too short for its flags");
        out.Flags = Read32(ace, pos);
        pos += 4;
        for (auto [bit, guid] :
             {std::pair{kAceObjectTypePresent, &out.ObjectType},
              std::pair{kAceInheritedObjectTypePresent, &out.InheritedObjectType}}) {
            if (!(out.Flags & bit)) continue;
            if (!need(16)) return Fail(error, "object ACE too short for its GUIDs");
            for (size_t i = 0; i < 16; ++i) guid->Bytes[i] = ace[pos + i];
            pos += 16;
        }
    }
    size_t sidSize = 0;
    auto sid = ReadSid(ace.subspan(pos), &sidSize);
    if (!sid) return Fail(error, "ACE trustee SID malformed or longer than the ACE");
    out.TrusteeSid = std::move(*sid);
    pos += sidSize;
    out.Extra.assign(ace.begin() + pos, ace.end());
    return true;
}

std::optional<Acl> ParseAcl(std::span<const uint8_t> acl, std::string* error) {
    Acl out;
    out.AclRevision = acl[0];
    if (out.AclRevision != kAclRevision && out.AclRevision != kAclRevisionDs) {
        Fail(error, "unknown ACL revision " + std::to_string(out.AclRevision));
        return std::nullopt;
    }
    size_t count = Read16(acl, 4);
    size_t pos = kAclHeaderSize;
    out.Aces.reserve(std::min(count, acl.size() / kAceHeaderSize));
    for (size_t i = 0; i < count; ++i) {
        if (acl.size() - pos < kAceHeaderSize) {
            Fail(error, "ACL holds fewer ACEs than its count says");
            return std::nullopt;
        }
        size_t aceSize = Read16(acl, pos + 2);
        if (aceSize < kAceHeaderSize || aceSize % 4 != 0) {
            Fail(error, "ACE size " + std::to_string(aceSize) + " is invalid");
            return std::nullopt;
        }
        if (aceSize > acl.size() - pos) {
            Fail(error, "ACE runs past the end of its ACL");
            return std::nullopt;
        }
        auto bytes = acl.subspan(pos, aceSize);
        Ace ace;
        ace.AceType = bytes[0];
        ace.AceFlags = bytes[1];
        if (Ace::IsParsedType(ace.AceType)) {
            if (!ParseAceBody(bytes, ace, error)) return std::nullopt;
        } else {
            ace.Raw.assign(bytes.begin(), bytes.end());
        }
        out.Aces.push_back(std::move(ace));
        pos += aceSize;
    }
    return out;
}

// The bytes of the ACL that starts at `offset`, bounded by its own size field.
std::optional<std::span<const uint8_t>> AclSpan(std::span<const uint8_t> sd, size_t offset,
                                                const char* what, std::string* error) {
    if (offset < kHeaderSize || offset > sd.size() || sd.size() - offset < kAclHeaderSize) {
        Fail(error, std::string(what) + " offset out of range");
        return std::nullopt;
    }
    size_t size = Read16(sd, offset + 2);
    if (size < kAclHeaderSize || size > sd.size() - offset) {
        Fail(error, std::string(what) + " size " + std::to_string(size) + " out of range");
        return std::nullopt;
    }
    return sd.subspan(offset, size);
}

std::optional<Sid> SidAt(std::span<const uint8_t> sd, size_t offset, const char* what,
                         std::string* error) {
    if (offset < kHeaderSize || offset >= sd.size()) {
        Fail(error, std::string(what) + " offset out of range");
        return std::nullopt;
    }
    auto sid = ReadSid(sd.subspan(offset));
    if (!sid) Fail(error, std::string(what) + " SID malformed or past the end");
    return sid;
}

bool AppendSid(std::vector<uint8_t>& out, const Sid& sid, std::string* error) {
    if (sid.SubAuthorities.size() > Sid::kMaxSubAuthorities) {
        return Fail(error, "SID with more than 15 sub-authorities");
    }
    sid.AppendTo(out);
    return true;
}

bool AppendAce(std::vector<uint8_t>& out, const Ace& ace, std::string* error) {
    size_t start = out.size();
    out.push_back(ace.AceType);
    out.push_back(ace.AceFlags);
    Append16(out, 0);  // size, filled in below
    if (!ace.Raw.empty()) {
        if (ace.Raw.size() < kAceHeaderSize) return Fail(error, "raw ACE shorter than its header");
        out.insert(out.end(), ace.Raw.begin() + kAceHeaderSize, ace.Raw.end());
    } else {
        if (!Ace::IsParsedType(ace.AceType)) {
            return Fail(error, "ACE of type " + std::to_string(ace.AceType) + " without its bytes");
        }
        Append32(out, ace.AccessMask);
        if (Ace::IsObjectType(ace.AceType)) {
            Append32(out, ace.Flags);
            if (ace.Flags & kAceObjectTypePresent) {
                out.insert(out.end(), ace.ObjectType.Bytes.begin(), ace.ObjectType.Bytes.end());
            }
            if (ace.Flags & kAceInheritedObjectTypePresent) {
                out.insert(out.end(), ace.InheritedObjectType.Bytes.begin(),
                           ace.InheritedObjectType.Bytes.end());
            }
        }
        if (!AppendSid(out, ace.TrusteeSid, error)) return false;
        out.insert(out.end(), ace.Extra.begin(), ace.Extra.end());
    }
    size_t size = out.size() - start;
    if (size % 4 != 0) return Fail(error, "ACE size not a multiple of 4");
    if (size > std::numeric_limits<uint16_t>::max()) return Fail(error, "ACE larger than 64 KB");
    Put16(out, start + 2, static_cast<uint16_t>(size));
    return true;
}

bool AppendAcl(std::vector<uint8_t>& out, const Acl& acl, std::string* error) {
    if (acl.Aces.size() > std::numeric_limits<uint16_t>::max()) {
        return Fail(error, "more than 65535 ACEs");
    }
    size_t start = out.size();
    out.push_back(acl.AclRevision);
    out.push_back(0);
    Append16(out, 0);  // size, filled in below
    Append16(out, static_cast<uint16_t>(acl.Aces.size()));
    Append16(out, 0);
    for (const Ace& ace : acl.Aces) {
        if (!AppendAce(out, ace, error)) return false;
    }
    size_t size = out.size() - start;
    if (size > std::numeric_limits<uint16_t>::max()) return Fail(error, "ACL larger than 64 KB");
    Put16(out, start + 2, static_cast<uint16_t>(size));
    return true;
}

}  // namespace

bool Ace::IsParsedType(uint8_t type) {
    return type == kAccessAllowedAceType || type == kAccessDeniedAceType ||
           type == kAccessAllowedObjectAceType || type == kAccessDeniedObjectAceType;
}

bool Ace::IsObjectType(uint8_t type) {
    return type == kAccessAllowedObjectAceType || type == kAccessDeniedObjectAceType;
}

std::optional<SecurityDescriptor> ParseSecurityDescriptor(std::span<const uint8_t> bytes,
                                                          std::string* error) {
    if (bytes.size() < kHeaderSize) {
        Fail(error, "security descriptor shorter than its header");
        return std::nullopt;
    }
    if (bytes[0] != 1) {
        Fail(error, "unknown security descriptor revision " + std::to_string(bytes[0]));
        return std::nullopt;
    }
    SecurityDescriptor sd;
    sd.Control = Read16(bytes, 2);
    if (!(sd.Control & kSeSelfRelative)) {
        Fail(error, "security descriptor isn't self-relative");
        return std::nullopt;
    }
    size_t ownerAt = Read32(bytes, 4), groupAt = Read32(bytes, 8);
    size_t saclAt = Read32(bytes, 12), daclAt = Read32(bytes, 16);
    if (ownerAt) {
        sd.Owner = SidAt(bytes, ownerAt, "owner", error);
        if (!sd.Owner) return std::nullopt;
    }
    if (groupAt) {
        sd.Group = SidAt(bytes, groupAt, "group", error);
        if (!sd.Group) return std::nullopt;
    }
    if (saclAt) {
        auto sacl = AclSpan(bytes, saclAt, "SACL", error);
        if (!sacl) return std::nullopt;
        sd.Sacl.emplace(sacl->begin(), sacl->end());
    }
    if (daclAt) {
        auto dacl = AclSpan(bytes, daclAt, "DACL", error);
        if (!dacl) return std::nullopt;
        sd.Dacl = ParseAcl(*dacl, error);
        if (!sd.Dacl) return std::nullopt;
    }
    return sd;
}

std::optional<std::vector<uint8_t>> BuildSecurityDescriptor(const SecurityDescriptor& sd,
                                                            std::string* error) {
    std::vector<uint8_t> out(kHeaderSize, 0);
    out[0] = 1;
    Put16(out, 2, sd.Control | kSeSelfRelative);
    if (sd.Owner) {
        Put32(out, 4, static_cast<uint32_t>(out.size()));
        if (!AppendSid(out, *sd.Owner, error)) return std::nullopt;
    }
    if (sd.Group) {
        Put32(out, 8, static_cast<uint32_t>(out.size()));
        if (!AppendSid(out, *sd.Group, error)) return std::nullopt;
    }
    if (sd.Sacl) {
        const auto& sacl = *sd.Sacl;
        if (sacl.size() < kAclHeaderSize || Read16(sacl, 2) != sacl.size()) {
            Fail(error, "raw SACL disagrees with its own size");
            return std::nullopt;
        }
        Put32(out, 12, static_cast<uint32_t>(out.size()));
        out.insert(out.end(), sacl.begin(), sacl.end());
    }
    if (sd.Dacl) {
        Put32(out, 16, static_cast<uint32_t>(out.size()));
        if (!AppendAcl(out, *sd.Dacl, error)) return std::nullopt;
    }
    return out;
}

}  // namespace orin
