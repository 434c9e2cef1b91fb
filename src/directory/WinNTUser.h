#pragma once
// The account properties of a user that Windows tools reach through the WinNT namespace, and
// the IADsUser date and flag properties of an LDAP user, all over LDAP.
//
// There is no WinNT namespace here. "The WinNT user" of an account name is the user entry that
// a search on sAMAccountName finds, bound through the session as every other object is (so the
// remote method's server and credentials apply, and both methods reach the same entry). Its
// properties map to LDAP attributes:
//
//   userFlags            userAccountControl, except bit 0x40 (user cannot change password),
//                        which lives in the DACL: the pair of deny object ACEs for Everyone and
//                        NT AUTHORITY\SELF on the change-password right
//                        {AB721A53-1E2F-11D0-9819-00AA0040529B}. Reading sets 0x40 when both
//                        are there; writing adds or removes the pair.
//   PasswordExpired      1 when pwdLastSet is 0 (must change at next logon), else 0
//   DialinPrivilege      msNPAllowDialin ("TRUE"/"FALSE"); no value when it is absent
//   HomeDirectory        homeDirectory
//   HomeDirDrive         homeDrive
//   LastLogin            the later of lastLogon and lastLogonTimestamp
//   PasswordLastChanged  pwdLastSet
//   SetPassword          unicodePwd of the entry
//
// IADsUser properties of an LDAP user object (free functions below):
//
//   AccountDisabled        bit 2 of userAccountControl
//   AccountExpirationDate  accountExpires; 0, 0x7FFFFFFFFFFFFFFF and negative values mean never
//
// Dates are FILETIME values in the directory (100 ns steps since 1601-01-01 UTC) and local
// date-times here, to the second.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "directory/DirObject.h"
#include "directory/SecurityDescriptor.h"

namespace orin {

// A calendar date and time of day in the workstation's time zone.
struct LocalDateTime {
    int year = 1601;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;

    friend bool operator==(const LocalDateTime&, const LocalDateTime&) = default;
};

// A FILETIME (not negative) as local date and time. Instants before 1970 take the zone's offset
// of 1970-01-01, as Windows applies its present rules rather than local mean time: FILETIME 0 is
// "1601/01/01 9:00:00" in Japan.
LocalDateTime FileTimeToLocal(int64_t fileTime);
// The FILETIME of a local date and time; nullopt for a date that doesn't exist or lies before
// 1601-01-01 UTC.
std::optional<int64_t> LocalToFileTime(const LocalDateTime& local);
// The text of a date as this program shows and compares it: "yyyy/mm/dd h:mm:ss", or only
// "yyyy/mm/dd" at midnight ("1601/01/01 9:00:00", "1970/01/01").
std::string DateText(const LocalDateTime& local);
// The readers' rule for `AccountExpirationDate`: "1970/01/01" and "1601/01/01 9:00:00" mean
// never. FILETIME 0 in the workstation's own zone counts as well, so that the rule holds outside
// Japan too.
bool IsNeverDate(const LocalDateTime& date);

// IADsUser properties. The Put functions stage; SetInfo writes.
DirResult<bool> AccountDisabled(DirObject& user);
DirStatus PutAccountDisabled(DirObject& user, bool disabled);
// Never reads as 1970/01/01 (for 0x7FFFFFFFFFFFFFFF and negative values) or as FILETIME 0, the
// way the platform reports them.
DirResult<LocalDateTime> AccountExpirationDate(DirObject& user);
// A date that IsNeverDate stages "never" (0x7FFFFFFFFFFFFFFF); a date that doesn't exist fails
// with kDirBadArgument and stages nothing.
DirStatus PutAccountExpirationDate(DirObject& user, const LocalDateTime& date);
// kDirNoValue when the user never logged on / has no password date.
DirResult<LocalDateTime> LastLogin(DirObject& user);
DirResult<LocalDateTime> PasswordLastChanged(DirObject& user);

// The deny pair behind "user cannot change password", on a parsed descriptor. Inherited entries
// count: they deny all the same.
bool HasCantChangePasswordPair(const SecurityDescriptor& sd);
// Adds the missing halves of the pair in front of the explicit allow entries (so that they take
// effect), or removes both. Only the DACL's own entries change: inherited ones belong to the
// parent. The DACL is created when there is none.
void SetCantChangePasswordPair(SecurityDescriptor& sd, bool on);
// The same on a user entry's nTSecurityDescriptor.
DirResult<bool> HasCantChangePasswordPair(DirObject& user);

inline constexpr int64_t kUserFlagPasswordCantChange = 0x40;

class WinNTUser {
  public:
    // The WinNT user of an account name. Fails with kDirNoValue when no user has that name and
    // with kDirBadArgument for an empty name.
    static DirResult<WinNTUser> Open(std::string_view sam);

    explicit WinNTUser(DirObject user) : user_(std::move(user)) {}

    DirResult<int64_t> UserFlags();
    DirResult<int64_t> PasswordExpired();
    DirResult<std::string> HomeDirectory();
    DirResult<std::string> HomeDirDrive();
    DirResult<bool> DialinPrivilege();
    DirResult<LocalDateTime> LastLogin() { return orin::LastLogin(user_); }
    DirResult<LocalDateTime> PasswordLastChanged() { return orin::PasswordLastChanged(user_); }

    // Staged until SetInfo. An empty home value clears the attribute.
    void PutUserFlags(int64_t flags) { stagedFlags_ = flags; }
    void PutHomeDirectory(std::string_view value) { stagedHomeDirectory_ = std::string(value); }
    void PutHomeDirDrive(std::string_view value) { stagedHomeDrive_ = std::string(value); }

    // Takes effect at once: assigning the dial-in right needs no SetInfo.
    DirStatus PutDialinPrivilege(bool allowed);
    DirStatus SetPassword(std::string_view password) { return user_.SetPassword(password); }

    // Writes what is staged in one modify; nothing staged is a success.
    DirStatus SetInfo();
    // Reloads the entry and drops what is staged.
    DirStatus GetInfo();

    DirObject& Object() { return user_; }

  private:
    DirObject user_;
    std::optional<int64_t> stagedFlags_;
    std::optional<std::string> stagedHomeDirectory_;
    std::optional<std::string> stagedHomeDrive_;
};

}  // namespace orin
