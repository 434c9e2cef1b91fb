#pragma once
// The operations of the ACE and ACL engine on a directory object's DACL.
//
// Writers read the descriptor anew at their start, change the list, and write it back (Put and
// SetInfo). They report only true or false; the calling engine chooses the words. An account
// is always compared through TrusteeName with the ACE's trustee as the directory reports it,
// upper-cased. `flags` arguments are ParseInheritOption results: a number, or "SP" for an ACE
// whose AceFlags are left unset (0).
//
// Inherited ACEs are in the list like any other: a writer that removes one writes the list
// back without it, and the directory puts it back, which is what keeps inherited ACEs in place.

#include <cstdint>
#include <string>
#include <string_view>

#include "directory/DirObject.h"
#include "engines/access/AccessCodes.h"

namespace orin {

// Removes every ACE of `account`, inherited or not, and writes the list back. `found` tells
// whether there was one. False if a step failed.
bool RemoveAce(DirObject& object, std::string_view account, bool& found);

// Removes every ACE whose trustee matches none of the ";"-separated `exceptions` and writes the
// list back. `notFound` receives the exceptions that matched no ACE, ";"-joined, in their
// order. False if a step failed.
bool RemoveDefaultAcl(DirObject& object, std::string_view exceptions, std::string& notFound);

// Adds one ACE of `account` with this mask and type (0 allow, 1 deny), and AceFlags unless
// `flags` is "SP". False if the account is unknown or the write failed.
bool AddAceToObject(DirObject& object, std::string_view account, uint32_t mask, uint8_t type,
                    const CodedValue& flags);

// True if an ACE of `account` has this type and exactly these AceFlags.
bool AceExists(DirObject& object, std::string_view account, uint8_t type, const CodedValue& flags);

// ORs `mask` into every ACE of `account` with this type and these AceFlags, and writes the list
// back. True if written.
bool MergeAceMask(DirObject& object, std::string_view account, uint32_t mask, uint8_t type,
                  const CodedValue& flags);

// Merges the rights into what exists, one half of the directory's representation at a time:
// InheritOption "0" works on AceFlags 0 then 10, "1" on 0, "2" on 10, "3" on 0 then 14, "4" on
// 14. Each half is merged if an ACE of that type and flags exists, added otherwise. Any other
// code, "" included, fails: an overwrite must say how the rights are inherited.
bool OverwriteAce(DirObject& object, std::string_view inheritCode, std::string_view account,
                  uint32_t mask, uint8_t type);

// True if an ACE of `account` is inherited (AceFlags has 16).
bool HasInheritedAce(DirObject& object, std::string_view account);

// Blocks inheritance from the parent (SE_DACL_PROTECTED). The directory then turns the
// inherited ACEs into explicit copies; without keepCopies those copies are removed again.
bool SetInheritance(DirObject& object, bool keepCopies);

// Lets the object inherit from its parent again: clears SE_DACL_PROTECTED and writes.
bool ClearInheritanceBlock(DirObject& object);

// The descriptor's Control; 0 when it can't be read.
uint16_t GetDaclControl(DirObject& object);

// True if any ACE of `account` exists.
bool HasAceFor(DirObject& object, std::string_view account);

// Compare checks. An ACE that applies to the object and its children is stored as two halves
// (AceFlags 0 and 10), and one that applies to the object and its direct children as AceFlags 0
// and 14, so: flags 2 matches an ACE with flags 2 or the pair 0 and 10; "SP" an ACE with 0;
// 10 one with 10; 6 the pair 0 and 14; 14 one with 14.
bool AceFlagsMatch(DirObject& object, std::string_view account, const CodedValue& flags);
// As AceFlagsMatch, each ACE counted also having this type.
bool AceTypeMatches(DirObject& object, std::string_view account, uint8_t type,
                    const CodedValue& flags);
// Each code of the AccessRight list must be held by an ACE of `account` with the flags above:
// its mask compared in the stored form for ACEs with AceFlags 0 or 2, in the written form for
// the inherit-only halves. The first code that no ACE holds goes to `msgArg1`; false then.
bool AceRightsMatch(DirObject& object, std::string_view account, std::string_view rights,
                    const CodedValue& flags, std::string& msgArg1);

// "User cannot change password": deny object ACEs (type 6) on the change-password right for
// both Everyone and NT AUTHORITY\SELF.
bool UserCannotChangePassword(DirObject& object);

}  // namespace orin
