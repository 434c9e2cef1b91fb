#include "directory/WinNTUser.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/Strings.h"

namespace orin {
namespace {

constexpr int64_t kTicksPerSecond = 10'000'000;
constexpr int64_t kSecondsFrom1601To1970 = 11'644'473'600;
constexpr int64_t kSecondsPerDay = 86'400;
constexpr int64_t kNeverExpires = 0x7FFFFFFFFFFFFFFF;
constexpr int64_t kAccountDisabledBit = 0x2;
// ADS_RIGHT_DS_CONTROL_ACCESS: the right an extended-right ACE grants or denies.
constexpr uint32_t kControlAccess = 0x100;

// Days since 1970-01-01 of a proleptic Gregorian date, and back.
int64_t DaysFromCivil(int64_t y, int m, int d) {
    y -= m <= 2;
    int64_t era = (y >= 0 ? y : y - 399) / 400;
    int64_t yoe = y - era * 400;
    int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void CivilFromDays(int64_t z, int& y, int& m, int& d) {
    z += 719468;
    int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    int64_t doe = z - era * 146097;
    int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    int64_t mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yoe + era * 400 + (m <= 2));
}

int64_t FloorDiv(int64_t a, int64_t b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

// The zone's offset from UTC in seconds at a Unix time; instants before 1970 use 1970's.
int64_t UtcOffsetAt(int64_t unixSeconds) {
    std::time_t t = static_cast<std::time_t>(std::max<int64_t>(unixSeconds, 0));
    std::tm local{};
    if (localtime_r(&t, &local) == nullptr) return 0;
    return local.tm_gmtoff;
}

int DaysInMonth(int year, int month) {
    static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

// An LDAP filter value with the characters that the filter syntax reserves escaped.
std::string EscapeFilterValue(std::string_view value) {
    std::string out;
    for (char c : value) {
        switch (c) {
            case '*':
                out += "\\2a";
                break;
            case '(':
                out += "\\28";
                break;
            case ')':
                out += "\\29";
                break;
            case '\\':
                out += "\\5c";
                break;
            case '\0':
                out += "\\00";
                break;
            default:
                out += c;
        }
    }
    return out;
}

// A deny on the change-password right for `trustee`; inherited ones count only when asked.
bool IsCantChangePasswordAce(const Ace& ace, const Sid& trustee, const Guid& right,
                             bool inheritedToo) {
    return ace.AceType == kAccessDeniedObjectAceType && ace.HasObjectType() &&
           ace.ObjectType == right && ace.TrusteeSid == trustee &&
           (inheritedToo || !ace.IsInherited());
}

Guid ChangePasswordRight() {
    return *ParseGuidString(kChangePasswordRightGuid);
}

DirResult<SecurityDescriptor> ReadSecurityDescriptor(DirObject& user) {
    DirResult<Bytes> bytes = user.GetBinary(kSecurityDescriptorAttribute);
    if (!bytes.ok()) return bytes.status();
    std::string error;
    std::optional<SecurityDescriptor> sd = ParseSecurityDescriptor(*bytes, &error);
    if (!sd) return DirStatus::Error(kDirBadArgument, "security descriptor: " + error);
    return *sd;
}

DirResult<LocalDateTime> DateOfFileTime(DirResult<int64_t> value) {
    if (!value.ok()) return value.status();
    if (*value <= 0) return DirStatus::Error(kDirNoValue, "no date");
    return FileTimeToLocal(*value);
}

}  // namespace

LocalDateTime FileTimeToLocal(int64_t fileTime) {
    int64_t unixSeconds = fileTime / kTicksPerSecond - kSecondsFrom1601To1970;
    int64_t local = unixSeconds + UtcOffsetAt(unixSeconds);
    int64_t days = FloorDiv(local, kSecondsPerDay);
    int64_t secondOfDay = local - days * kSecondsPerDay;
    LocalDateTime out;
    CivilFromDays(days, out.year, out.month, out.day);
    out.hour = static_cast<int>(secondOfDay / 3600);
    out.minute = static_cast<int>(secondOfDay / 60 % 60);
    out.second = static_cast<int>(secondOfDay % 60);
    return out;
}

std::optional<int64_t> LocalToFileTime(const LocalDateTime& t) {
    if (t.year < 1601 || t.year > 30827 || t.month < 1 || t.month > 12 || t.day < 1 ||
        t.day > DaysInMonth(t.year, t.month) || t.hour < 0 || t.hour > 23 || t.minute < 0 ||
        t.minute > 59 || t.second < 0 || t.second > 59) {
        return std::nullopt;
    }
    int64_t local = DaysFromCivil(t.year, t.month, t.day) * kSecondsPerDay + t.hour * 3600 +
                    t.minute * 60 + t.second;
    // The offset depends on the instant; a second look settles daylight-saving boundaries.
    int64_t utc = local - UtcOffsetAt(local);
    utc = local - UtcOffsetAt(utc);
    int64_t fileSeconds = utc + kSecondsFrom1601To1970;
    if (fileSeconds < 0) return std::nullopt;
    return fileSeconds * kTicksPerSecond;
}

std::string DateText(const LocalDateTime& t) {
    char text[48];
    if (t.hour == 0 && t.minute == 0 && t.second == 0) {
        std::snprintf(text, sizeof text, "%04d/%02d/%02d", t.year, t.month, t.day);
    } else {
        std::snprintf(text, sizeof text, "%04d/%02d/%02d %d:%02d:%02d", t.year, t.month, t.day,
                      t.hour, t.minute, t.second);
    }
    return text;
}

bool IsNeverDate(const LocalDateTime& date) {
    std::string text = DateText(date);
    return text == "1970/01/01" || text == "1601/01/01 9:00:00" || date == FileTimeToLocal(0);
}

DirResult<bool> AccountDisabled(DirObject& user) {
    DirResult<int64_t> control = user.GetNumber("userAccountControl");
    if (!control.ok()) return control.status();
    return (*control & kAccountDisabledBit) != 0;
}

DirStatus PutAccountDisabled(DirObject& user, bool disabled) {
    DirResult<int64_t> control = user.GetNumber("userAccountControl");
    if (!control.ok()) return control.status();
    int64_t value = *control | kAccountDisabledBit;
    if (!disabled) value -= kAccountDisabledBit;
    user.Put("userAccountControl", std::to_string(value));
    return DirStatus::Ok();
}

DirResult<LocalDateTime> AccountExpirationDate(DirObject& user) {
    DirResult<int64_t> expires = user.GetNumber("accountExpires");
    if (!expires.ok()) return expires.status();
    if (*expires < 0 || *expires == kNeverExpires) return LocalDateTime{1970, 1, 1, 0, 0, 0};
    return FileTimeToLocal(*expires);
}

DirStatus PutAccountExpirationDate(DirObject& user, const LocalDateTime& date) {
    if (IsNeverDate(date)) {
        user.Put("accountExpires", std::to_string(kNeverExpires));
        return DirStatus::Ok();
    }
    std::optional<int64_t> fileTime = LocalToFileTime(date);
    if (!fileTime) return DirStatus::Error(kDirBadArgument, "no such date: " + DateText(date));
    user.Put("accountExpires", std::to_string(*fileTime));
    return DirStatus::Ok();
}

DirResult<LocalDateTime> LastLogin(DirObject& user) {
    // lastLogon is kept per DC and lastLogonTimestamp replicated late: the later one is best.
    int64_t latest = std::max(user.GetNumber("lastLogon").value_or(0),
                              user.GetNumber("lastLogonTimestamp").value_or(0));
    return DateOfFileTime(latest);
}

DirResult<LocalDateTime> PasswordLastChanged(DirObject& user) {
    return DateOfFileTime(user.GetNumber("pwdLastSet"));
}

bool HasCantChangePasswordPair(const SecurityDescriptor& sd) {
    if (!sd.Dacl) return false;
    Guid right = ChangePasswordRight();
    auto has = [&](const Sid& trustee) {
        return std::any_of(sd.Dacl->Aces.begin(), sd.Dacl->Aces.end(), [&](const Ace& ace) {
            return IsCantChangePasswordAce(ace, trustee, right, true);
        });
    };
    return has(EveryoneSid()) && has(SelfSid());
}

void SetCantChangePasswordPair(SecurityDescriptor& sd, bool on) {
    if (!sd.Dacl) sd.Dacl = Acl{};
    std::vector<Ace>& aces = sd.Dacl->Aces;
    Guid right = ChangePasswordRight();
    for (const Sid& trustee : {EveryoneSid(), SelfSid()}) {
        auto match = [&](const Ace& ace) {
            return IsCantChangePasswordAce(ace, trustee, right, false);
        };
        if (!on) {
            std::erase_if(aces, match);
            continue;
        }
        if (std::any_of(aces.begin(), aces.end(), match)) continue;
        Ace deny;
        deny.AceType = kAccessDeniedObjectAceType;
        deny.AccessMask = kControlAccess;
        deny.Flags = kAceObjectTypePresent;
        deny.ObjectType = right;
        deny.TrusteeSid = trustee;
        // Explicit denies come first, then explicit allows, then inherited entries.
        auto firstOther = std::find_if(aces.begin(), aces.end(), [](const Ace& ace) {
            return ace.IsInherited() || !ace.IsDeny();
        });
        aces.insert(firstOther, deny);
    }
    if (on) {
        sd.Dacl->AclRevision = kAclRevisionDs;
        sd.Control |= kSeDaclPresent;
    }
}

DirResult<bool> HasCantChangePasswordPair(DirObject& user) {
    DirResult<SecurityDescriptor> sd = ReadSecurityDescriptor(user);
    if (!sd.ok()) return sd.status();
    return HasCantChangePasswordPair(*sd);
}

DirResult<WinNTUser> WinNTUser::Open(std::string_view sam) {
    if (sam.empty()) return DirStatus::Error(kDirBadArgument, "empty account name");
    std::string command = "<" + gSession.RootLdapPath +
                          ">;(&(objectClass=user)(sAMAccountName=" + EscapeFilterValue(sam) +
                          "));cn,AdsPath;Subtree";
    DirResult<std::vector<SearchRecord>> records = ExecuteSearch(command);
    if (!records.ok()) return records.status();
    if (records->empty()) {
        return DirStatus::Error(kDirNoValue, "no user " + std::string(sam));
    }
    DirObject user;
    std::string path = "LDAP://" + StripServer(records->front().Field("AdsPath"));
    if (!BindObject(path, user)) {
        return DirStatus::Error(kDirNotBound, "user doesn't bind: " + path);
    }
    return WinNTUser(std::move(user));
}

DirResult<int64_t> WinNTUser::UserFlags() {
    DirResult<int64_t> control = user_.GetNumber("userAccountControl");
    if (!control.ok()) return control.status();
    DirResult<bool> cantChange = HasCantChangePasswordPair(user_);
    if (!cantChange.ok()) return cantChange.status();
    int64_t flags = (*control | kUserFlagPasswordCantChange) - kUserFlagPasswordCantChange;
    return *cantChange ? flags + kUserFlagPasswordCantChange : flags;
}

DirResult<int64_t> WinNTUser::PasswordExpired() {
    DirResult<int64_t> lastSet = user_.GetNumber("pwdLastSet");
    if (!lastSet.ok()) return lastSet.status();
    return *lastSet == 0 ? 1 : 0;
}

DirResult<std::string> WinNTUser::HomeDirectory() {
    return user_.Get("homeDirectory");
}

DirResult<std::string> WinNTUser::HomeDirDrive() {
    return user_.Get("homeDrive");
}

DirResult<bool> WinNTUser::DialinPrivilege() {
    DirResult<std::string> value = user_.Get("msNPAllowDialin");
    if (!value.ok()) return value.status();
    return EqualsIgnoreCase(*value, "TRUE");
}

DirStatus WinNTUser::PutDialinPrivilege(bool allowed) {
    user_.Put("msNPAllowDialin", allowed ? "TRUE" : "FALSE");
    return user_.SetInfo();
}

DirStatus WinNTUser::SetInfo() {
    if (stagedFlags_) {
        DirResult<int64_t> control = user_.GetNumber("userAccountControl");
        if (!control.ok()) return control.status();
        DirResult<SecurityDescriptor> sd = ReadSecurityDescriptor(user_);
        if (!sd.ok()) return sd.status();

        // The directory computes bit 0x40 itself: it goes to the DACL, the rest stays here.
        int64_t wanted =
            (*stagedFlags_ | kUserFlagPasswordCantChange) - kUserFlagPasswordCantChange;
        int64_t current = (*control | kUserFlagPasswordCantChange) - kUserFlagPasswordCantChange;
        if (wanted != current) user_.Put("userAccountControl", std::to_string(wanted));

        // Only the entries of the user's own DACL change; the descriptor is written when they do.
        bool cantChange = (*stagedFlags_ & kUserFlagPasswordCantChange) != 0;
        SecurityDescriptor changed = *sd;
        SetCantChangePasswordPair(changed, cantChange);
        if (!(changed == *sd)) {
            std::string error;
            std::optional<Bytes> bytes = BuildSecurityDescriptor(changed, &error);
            if (!bytes) return DirStatus::Error(kDirBadArgument, "security descriptor: " + error);
            user_.PutBinary(kSecurityDescriptorAttribute, std::move(*bytes));
        }
    }
    auto stage = [&](const std::optional<std::string>& value, std::string_view attr) {
        if (!value) return;
        if (value->empty()) {
            // Clearing an attribute that has no value is no change, not a failure.
            if (user_.Get(attr).status().code != kDirNoValue)
                user_.PutEx(PutExControl::Clear, attr);
        } else {
            user_.Put(attr, *value);
        }
    };
    stage(stagedHomeDirectory_, "homeDirectory");
    stage(stagedHomeDrive_, "homeDrive");
    stagedFlags_.reset();
    stagedHomeDirectory_.reset();
    stagedHomeDrive_.reset();
    return user_.SetInfo();
}

DirStatus WinNTUser::GetInfo() {
    stagedFlags_.reset();
    stagedHomeDirectory_.reset();
    stagedHomeDrive_.reset();
    return user_.GetInfo();
}

}  // namespace orin
