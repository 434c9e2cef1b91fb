#pragma once
// The account flags and home values that the user engines read and write. The flags live in
// three places of a user: `userAccountControl` (disabled, password never expires), the WinNT
// `userFlags` (user cannot change the password) and `pwdLastSet` (change at next logon).
//
// A bit is cleared as (value Or bit) - bit. The helpers report nothing: false (or "not set")
// makes the engine raise its own code.

#include <cstdint>
#include <string>
#include <string_view>

#include "directory/DirObject.h"

namespace orin {

// Bits of `userAccountControl`.
inline constexpr int64_t kAccountDisabled = 0x2;
inline constexpr int64_t kPasswordNeverExpires = 0x10000;

// The WinNT user's PasswordExpired is 1: the password must be changed at next logon. False also
// when the user can't be reached.
bool IsPasswordExpired(std::string_view sam);

// "User cannot change password": both deny entries on the change-password right, for Everyone
// and for NT AUTHORITY\SELF, are in the user's DACL.
bool IsPasswordLocked(DirObject& user);

// `userAccountControl` has all bits of `bit`.
bool HasAccountBit(DirObject& user, int64_t bit);

// Each writes at once (with its own SetInfo); false on any error.
bool SetPwdCantChange(std::string_view sam, bool on);
bool SetPwdNeverExpires(DirObject& user, bool on);
bool SetNextLogonChange(DirObject& user, bool on);

// Which column's current value ReadHomeDriveAndDirectory looks for.
enum class HomeColumn { LocalPath, HomeDrive, NetPath };

// The user's current home value for one column:
// - LocalPath: a user without `homeDrive` has a local path, the current `HomeDirectory` (""
//   when unreadable); a user with a drive has none (false).
// - HomeDrive: the current `homeDrive`, when there is one.
// - NetPath: a user with `homeDrive` has a network path, the current `HomeDirectory`; a user
//   without a drive has none (false).
// True when the user has a value for the column; `current` is "" otherwise. Never fails.
bool ReadHomeDriveAndDirectory(DirObject& user, HomeColumn column, std::string& current);

// The number of groups in `memberof`: the list's length, or for one value 1 unless it trims to
// empty.
int16_t CountMemberOf(DirObject& object);

}  // namespace orin
