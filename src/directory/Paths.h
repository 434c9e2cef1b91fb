#pragma once
// Path and name conversions between CSV cells and directory paths. All pure string functions:
// none of them reports anything; malformed input gives "" or a partly built text, and the bind
// that follows fails.
//
// Terms:
//   OU path     "OU=c,OU=b,OU=a", bottom level first, relative to the domain; "" is the domain.
//   whole path  an ADsPath, "LDAP://" [server "/"] distinguished name.
// Term prefixes ("OU=", "CN=", "DC=") are matched in the upper case the directory and this
// program write them in, except where a function says it ignores case.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orin {

// The OU path of the CSV cells fields[first..last] (top level first in the row). `last` is
// clamped to the row, cells are trimmed, empty cells are skipped anywhere in the run, values are
// neither escaped nor upper-cased. "" when `first` is absent (-1) or beyond the row.
std::string BuildOUPath(const std::vector<std::string>& fields, int first, int last);

// The name in the first "OU=" term: "OU=c,OU=b" gives "c", "OU=c" gives "c", no "OU=" gives "".
std::string FirstOUName(std::string_view path);

// Everything after the first comma, "" when there is none.
std::string ParentOUPath(std::string_view path);

// Two ways to take the prefix of a user principal name, used by different callers:
// - UpnPrefix: "" when the name holds no "@". The CSV and database exports use it, so that an
//   account without a principal-name suffix exports an empty cell.
// - UpnPrefixOrWhole: the whole name when it holds no "@". The user engines (modify, imitate,
//   compare) use it to compare a name read from the directory with the logon-name cell.
std::string UpnPrefix(std::string_view name);
std::string UpnPrefixOrWhole(std::string_view name);

// What a whole path names, by its leftmost term after "LDAP://" or the server.
enum class ContainerKind : int16_t { Domain = 0, DefaultContainer = 1, OU = 2 };

// Tests "/DC=", "/CN=", "/OU=" in this order, ignoring case; the first found decides. None
// found counts as domain level.
ContainerKind PathKind(std::string_view path);

// The OU names of a whole path, top level first, comma separated, for the CSV columns:
// "LDAP://OU=c,OU=b,OU=a,DC=x,DC=y" gives "a,b,c". An object at domain level, and one in a
// default container ("CN=" terms are left out), gives "".
std::string OUFieldsFromPath(std::string_view path);

// The canonical form "dns.name/a/b/x" of a distinguished name, the lower-cased DNS name in
// front; a "/" inside a name is written "\/". A name with no comma gives "". The first overload
// takes the DNS name from gSession.DomainDNSName.
std::string CanonicalPath(std::string_view dn);
std::string CanonicalPath(std::string_view dn, std::string_view domainDnsName);

// The number of "OU=" terms (those behind a "," or a "/").
int CountOULevels(std::string_view path);

// The part of a whole path between "LDAP://" (and the server, if any) and the "DC=" terms,
// without the comma before "DC=": "LDAP://srv/OU=a,DC=x" gives "OU=a"; "" at domain level.
std::string RelativeContainerPath(std::string_view path);

// The distinguished name of a whole path, with or without a server part.
std::string StripServer(std::string_view path);

// DomainDN from a DNS name: "a.b.c" gives "DC=a,DC=b,DC=c", "a" gives "DC=a", "" gives "".
// A trailing dot stays in the last label: "a.b." gives "DC=a,DC=b.".
std::string BuildDomainDN(std::string_view dnsName);

}  // namespace orin
