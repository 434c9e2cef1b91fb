#pragma once
// Trustees: the names under which the directory reports the SIDs of ACEs, and back.
//
// Names have the forms a Windows administrator reads in an ACL:
//   "ORIN\jdoe"                     an account of the domain (NetBIOS name, sAMAccountName)
//   "BUILTIN\Administrators"        a built-in group
//   "NT AUTHORITY\SYSTEM", "NT AUTHORITY\SELF", "NT AUTHORITY\Authenticated Users"
//   "Everyone", "CREATOR OWNER"     well-known SIDs without an authority
//   "S-1-5-21-...-1234"             a SID that nothing resolves (a deleted account)
// Well-known SIDs come from a fixed table; the rest are searched for in the directory
// (objectSid for SID -> name, sAMAccountName for name -> SID). Answers are kept for the
// session: the cache is dropped when gSession gets a new connection or names another domain,
// DC or user, and ClearTrusteeCache drops it at any other time (the start of a run, so that
// an account renamed or made anew since the last run is looked up again).

#include <optional>
#include <string>
#include <string_view>

#include "directory/Sid.h"

namespace orin {

// The name the directory reports for `sid`. Never fails: a SID that neither the table nor the
// directory knows comes back as its text form.
std::string TrusteeForSid(const Sid& sid);

// The SID of a trustee name (letter case ignored), for writing an ACE. nullopt when the name
// is unknown: a domain name other than the session's, an account that doesn't exist, a
// built-in name that isn't built in. A SID text ("S-1-5-...") stands for itself.
std::optional<Sid> SidForTrustee(std::string_view name);

void ClearTrusteeCache();

// The fixed tables alone, without the directory.
std::optional<std::string> WellKnownTrusteeName(const Sid& sid);
std::optional<Sid> WellKnownTrusteeSid(std::string_view name);
// Default names of the well-known accounts of a domain (500 Administrator, 512 Domain
// Admins...), used when the directory has no entry for such a SID.
std::optional<std::string_view> DomainRidDefaultName(uint32_t rid);

}  // namespace orin
