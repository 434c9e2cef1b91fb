#include "engines/user/AccountFlags.h"

#include <algorithm>
#include <limits>

#include "directory/WinNTUser.h"
#include "engines/access/AccessControl.h"
#include "platform/Strings.h"

namespace orin {

bool IsPasswordExpired(std::string_view sam) {
    DirResult<WinNTUser> user = WinNTUser::Open(sam);
    if (!user.ok()) return false;
    return user->PasswordExpired().value_or(0) == 1;
}

bool IsPasswordLocked(DirObject& user) {
    return HasCantChangePasswordPair(user).value_or(false);
}

bool HasAccountBit(DirObject& user, int64_t bit) {
    DirResult<int64_t> control = user.GetNumber("userAccountControl");
    return control.ok() && (*control & bit) == bit;
}

bool SetPwdCantChange(std::string_view sam, bool on) {
    DirResult<WinNTUser> user = WinNTUser::Open(sam);
    if (!user.ok()) return false;
    DirResult<int64_t> flags = user->UserFlags();
    if (!flags.ok()) return false;
    int64_t value = *flags | kUserFlagPasswordCantChange;
    user->PutUserFlags(on ? value : value - kUserFlagPasswordCantChange);
    return user->SetInfo().ok();
}

bool SetPwdNeverExpires(DirObject& user, bool on) {
    DirResult<int64_t> control = user.GetNumber("userAccountControl");
    if (!control.ok()) return false;
    int64_t value = *control | kPasswordNeverExpires;
    user.Put("userAccountControl", std::to_string(on ? value : value - kPasswordNeverExpires));
    return user.SetInfo().ok();
}

bool SetNextLogonChange(DirObject& user, bool on) {
    user.Put("pwdLastSet", on ? "0" : "-1");
    return user.SetInfo().ok();
}

bool ReadHomeDriveAndDirectory(DirObject& user, HomeColumn column, std::string& current) {
    current.clear();
    DirResult<std::string> drive = user.Get("homeDrive");
    switch (column) {
        case HomeColumn::LocalPath:
            if (drive.ok()) return false;
            current = user.Get("homeDirectory").value_or("");
            return true;
        case HomeColumn::HomeDrive:
            if (!drive.ok()) return false;
            current = *drive;
            return true;
        case HomeColumn::NetPath:
            if (!drive.ok()) return false;
            current = user.Get("homeDirectory").value_or("");
            return true;
    }
    return false;
}

int16_t CountMemberOf(DirObject& object) {
    DirResult<std::string> one = object.Get("memberof");
    if (one.ok()) return Trim(*one).empty() ? 0 : 1;
    DirResult<std::vector<std::string>> many = object.GetEx("memberof");
    if (!many.ok()) return 0;
    size_t count = std::min<size_t>(many->size(), std::numeric_limits<int16_t>::max());
    return static_cast<int16_t>(count);
}

}  // namespace orin
