#pragma once
// One read-modify-write cycle on an object's nTSecurityDescriptor: GetBinary, change the
// list, PutBinary and SetInfo on the object itself. GetBinary of the descriptor always asks
// the directory, so every cycle starts from what the directory holds now and two writers in a
// row never share a list.

#include <optional>
#include <string>
#include <string_view>

#include "directory/DirObject.h"
#include "directory/SecurityDescriptor.h"

namespace orin {

struct ObjectDacl {
    DirObject handle;  // shares the caller's object
    SecurityDescriptor descriptor;

    // The DACL's ACEs; none for a descriptor without a DACL.
    const std::vector<Ace>& Aces() const;
    // The DACL to change; a descriptor without one gets an empty DACL to add to.
    Acl& Dacl();
    // Builds the descriptor, Put and SetInfo. False if any step fails.
    bool Write();
};

// The descriptor of `object` as the directory holds it now; nullopt if it can't be read or
// parsed.
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
