#pragma once
// One read-modify-write cycle on an object's nTSecurityDescriptor.
//
// The descriptor is read through a handle of its own, bound anew to the object's DN: every
// cycle starts from what the directory holds now (two writers in a row never share a list),
// and the caller's property cache, with anything it has staged, is left alone.

#include <optional>
#include <string>
#include <string_view>

#include "directory/DirObject.h"
#include "directory/SecurityDescriptor.h"

namespace orin {

struct ObjectDacl {
    DirObject handle;
    SecurityDescriptor descriptor;

    // The DACL's ACEs; none for a descriptor without a DACL.
    const std::vector<Ace>& Aces() const;
    // The DACL to change; a descriptor without one gets an empty DACL to add to.
    Acl& Dacl();
    // Builds the descriptor, Put and SetInfo. False if any step fails.
    bool Write();
};

// The descriptor of `object` as the directory holds it now; nullopt if the object doesn't
// bind or the descriptor can't be read or parsed.
std::optional<ObjectDacl> ReadObjectDacl(const DirObject& object);

// The ACE's trustee as the directory reports it ("ORIN\jdoe", "Everyone"...). An ACE kept as
// raw bytes has no trustee: "".
std::string TrusteeOf(const Ace& ace);

// True if the ACE's trustee, upper-cased, is `trusteeName` (a TrusteeName result).
bool IsAceOf(const Ace& ace, std::string_view trusteeName);

// Puts a new explicit ACE where the Windows ACL editor would: a deny after the explicit denies,
// an allow after the explicit allows, both before every inherited ACE. Appending would put a
// deny behind inherited allows, where it wouldn't take effect.
void InsertAce(Acl& acl, Ace ace);

}  // namespace orin
