#pragma once
// A directory object as the engines see it: a property cache over one LDAP entry.
//
// - Put, PutEx and PutBinary only stage; SetInfo writes what is staged (an add for an object
//   made by Create and not yet written, a modify otherwise) and clears the stage, whether the
//   server took it or not: the next Put and SetInfo send only their own change. Get on the
//   same object sees its staged values at once, as a property cache does.
// - Get of an attribute without a value fails (kDirNoValue); Get of an attribute that holds
//   several values fails with kDirTypeMismatch, which is how a one-valued `memberof` (a string)
//   is told from a many-valued one (a list). GetEx gives the list in both cases.
// - Group Add and Remove, and SetPassword, take effect at once; no SetInfo.
// - There is no object cache across binds: a path that does not bind is the test of absence.
//
// DirObject is a handle: copies refer to the same object and share its property cache.
// Calls never throw; they report through DirStatus / DirResult.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "directory/DirStatus.h"

namespace orin::platform {
class LdapConnection;
}

namespace orin {

enum class PutExControl { Clear = 1, Replace = 2, Append = 3, Delete = 4 };

using Bytes = std::vector<uint8_t>;

struct DirObjectState;  // the connection, the DN, the cache and the stage

class DirObject {
  public:
    DirObject() = default;
    explicit DirObject(std::shared_ptr<DirObjectState> state) : state_(std::move(state)) {}

    // Reads the entry at `dn` over `connection`: the object, or the status that says why there
    // is none. `server` is the server part of the paths it hands back ("" for none). BindObject
    // is the way engines reach objects; this is its building block.
    static DirResult<DirObject> Load(std::shared_ptr<platform::LdapConnection> connection,
                                     std::string server, std::string_view dn);

    bool IsBound() const { return state_ != nullptr; }

    // The entry at `dn` over the same connection, not read: it is read when first asked for a
    // value, and a write to it needs no read at all. For an object whose existence a write is
    // to find out (a fast path tries the write, and a refusal sends the row the exact way).
    DirObject OtherEntry(std::string_view dn) const;

    // Identity. ADsPath and Parent carry the server part when the object was bound remotely
    // ("LDAP://dc1/OU=a,DC=x,DC=y"); DN never does.
    std::string ADsPath() const;
    std::string DN() const;
    std::string Name() const;    // the relative name with its prefix, "OU=x"
    std::string Parent() const;  // whole path of the container
    std::string Class() const;   // the most specific objectClass: "organizationalUnit", "user"...

    // Property cache. The first read loads the entry (all its ordinary attributes); a
    // constructed attribute (canonicalName, tokenGroups...) is read by name when first asked.
    // SetInfo and the immediate writes drop what was read; GetInfo reloads the entry and drops
    // the stage.
    DirResult<std::string> Get(std::string_view attr);
    DirResult<std::vector<std::string>> GetEx(std::string_view attr);
    DirResult<int64_t> GetNumber(std::string_view attr);  // integer syntax: groupType, pwdLastSet
    // objectSid, objectGUID, nTSecurityDescriptor (always read afresh, see below).
    DirResult<Bytes> GetBinary(std::string_view attr);
    void Put(std::string_view attr, std::string_view value);
    void PutBinary(std::string_view attr, Bytes value);
    // Clear takes no values and is no error on an empty attribute; Replace, Append and Delete
    // take the values given.
    void PutEx(PutExControl control, std::string_view attr, std::vector<std::string> values = {});
    DirStatus SetInfo();
    DirStatus GetInfo();

    // Container. Relative names may span levels: Create("organizationalUnit", "OU=c,OU=b") on
    // the root makes "OU=c,OU=b,<root DN>". Create gives an unsaved object: it exists after
    // SetInfo. MoveHere takes the whole source path without a server part and moves the
    // object under this container, renamed when a new relative name ("OU=x") is given; it
    // gives the moved object. Delete removes a leaf or an empty container; the entry's own
    // class decides, the class argument is not checked.
    DirResult<DirObject> Create(std::string_view cls, std::string_view relativeName);
    DirStatus Delete(std::string_view cls, std::string_view relativeName);
    DirResult<DirObject> MoveHere(std::string_view sourcePath,
                                  std::string_view newRelativeName = {});
    // The children, one level down, in the order the server gives them; limited to the given
    // classes when the filter isn't empty. Paged, so any number of children is read.
    DirResult<std::vector<DirObject>> Children(const std::vector<std::string>& classFilter = {});

    // Group. Members are read in ranges, so groups of any size are complete. A member's cn is
    // known from its name without a read.
    DirResult<std::vector<DirObject>> Members();
    DirStatus Add(std::string_view memberPath);     // whole path without a server part
    DirStatus Remove(std::string_view memberPath);  // whole path without a server part

    // User. Groups are those of memberOf (the primary group is not among them). SetPassword
    // refuses to send the password over a connection that isn't encrypted.
    DirResult<std::vector<DirObject>> Groups();
    DirStatus SetPassword(std::string_view password);

    const std::shared_ptr<DirObjectState>& State() const { return state_; }

  private:
    DirStatus EnsureLoaded() const;
    DirStatus FetchOne(std::string_view attr) const;
    DirResult<std::vector<std::string>> Effective(std::string_view attr);
    DirObject Related(std::string dn) const;

    std::shared_ptr<DirObjectState> state_;
};

// Distinguished-name text, honouring "\," escapes and quoted values.
// FirstRdn("OU=a\,b,DC=x") gives "OU=a\,b"; ParentDn gives "DC=x" ("" at the top).
std::string FirstRdn(std::string_view dn);
std::string ParentDn(std::string_view dn);
// The value of a relative name, unescaped: "CN=a\,b" gives "a,b"; "" when it has no "=".
std::string RdnValue(std::string_view rdn);
// The distinguished name of a whole path: "LDAP://" and a server part ("LDAP://dc1/...") are
// taken off; a text without "LDAP://" is taken as a distinguished name already.
std::string DnFromPath(std::string_view path);

// nTSecurityDescriptor is read and written with the SD-flags control asking for the DACL only
// (OID 1.2.840.113556.1.4.801, value 4): GetBinary gives the self-relative descriptor that the
// server returns for that request, PutBinary followed by SetInfo replaces the DACL and its
// control bits (SE_DACL_PROTECTED among them) and nothing else.
inline constexpr std::string_view kSecurityDescriptorAttribute = "nTSecurityDescriptor";

}  // namespace orin
