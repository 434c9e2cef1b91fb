// The user's account flags, dates, dial-in right and home values, written and read back on the
// test domain controller, through both the WinNT-style user and the LDAP user object.

#include <gtest/gtest.h>
#include <unistd.h>

#include <ctime>
#include <string>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/WinNTUser.h"
#include "engines/user/AccountFlags.h"
#include "support/TestDc.h"

namespace orin {
namespace {

constexpr const char* kPassword = "Orin-Test-Pass1";

class UserAccountTest : public test::DcTest {
  protected:
    explicit UserAccountTest(test::ConnectMethod method = test::ConnectMethod::Remote)
        : DcTest(method) {}

    void SetUp() override {
        DcTest::SetUp();
        if (HasFatalFailure()) return;
        sam_ = test::UniqueSam("acct");
        ASSERT_TRUE(ou().Make("user", "CN=Account Holder", {{"sAMAccountName", sam_}}).IsBound());
        DirStatus status = Fresh().SetPassword(kPassword);
        ASSERT_TRUE(status.ok()) << status.message;
    }

    DirObject Fresh() { return ou().Bind("CN=Account Holder"); }

    WinNTUser WinNT() {
        DirResult<WinNTUser> user = WinNTUser::Open(sam_);
        EXPECT_TRUE(user.ok()) << user.status().message;
        return user.ok() ? *user : WinNTUser(DirObject{});
    }

    std::string sam_;
};

TEST_F(UserAccountTest, WinNTUserIsFoundByAccountNameOnly) {
    WinNTUser user = WinNT();
    EXPECT_EQ(user.Object().DN(), "CN=Account Holder," + ou().Dn());
    EXPECT_EQ(WinNTUser::Open("nobody" + std::to_string(getpid())).status().code, kDirNoValue);
    EXPECT_EQ(WinNTUser::Open("").status().code, kDirBadArgument);
    // A wildcard is a character of the name here, not a pattern.
    EXPECT_FALSE(WinNTUser::Open("acct*").ok());
    // An account never used has no last logon.
    EXPECT_EQ(user.LastLogin().status().code, kDirNoValue);
}

TEST_F(UserAccountTest, DisabledAndNeverExpiresBitsGoOnAndOff) {
    DirObject user = Fresh();
    for (bool disabled : {false, true}) {
        ASSERT_TRUE(PutAccountDisabled(user, disabled).ok());
        ASSERT_TRUE(user.SetInfo().ok());
        user = Fresh();
        EXPECT_EQ(AccountDisabled(user).value_or(!disabled), disabled);
        EXPECT_EQ(HasAccountBit(user, kAccountDisabled), disabled);
    }
    // On twice stays on; off leaves the disabled bit alone, and off twice stays off.
    for (bool on : {true, true, false, false}) {
        ASSERT_TRUE(SetPwdNeverExpires(user, on));
        user = Fresh();
        EXPECT_EQ(HasAccountBit(user, kPasswordNeverExpires), on);
        EXPECT_TRUE(HasAccountBit(user, kAccountDisabled));
    }
}

TEST_F(UserAccountTest, ChangeAtNextLogonIsPwdLastSetZero) {
    DirObject user = Fresh();
    ASSERT_TRUE(SetNextLogonChange(user, true));
    EXPECT_TRUE(IsPasswordExpired(sam_));
    EXPECT_EQ(WinNT().PasswordExpired().value_or(-1), 1);
    EXPECT_FALSE(WinNT().PasswordLastChanged().ok());

    user = Fresh();
    ASSERT_TRUE(SetNextLogonChange(user, false));
    EXPECT_FALSE(IsPasswordExpired(sam_));
    EXPECT_EQ(WinNT().PasswordExpired().value_or(-1), 0);
    // -1 makes the directory stamp the present time.
    std::time_t now = std::time(nullptr);
    EXPECT_EQ(WinNT().PasswordLastChanged().value_or({}).year,
              std::localtime(&now)->tm_year + 1900);
    EXPECT_FALSE(IsPasswordExpired("nobody" + std::to_string(getpid())));
}

TEST_F(UserAccountTest, CannotChangePasswordIsTheDenyPairInTheDacl) {
    DirObject user = Fresh();
    EXPECT_FALSE(IsPasswordLocked(user));
    EXPECT_EQ(WinNT().UserFlags().value_or(-1) & kUserFlagPasswordCantChange, 0);

    ASSERT_TRUE(SetPwdCantChange(sam_, true));
    user = Fresh();
    EXPECT_TRUE(IsPasswordLocked(user));
    EXPECT_EQ(WinNT().UserFlags().value_or(0) & kUserFlagPasswordCantChange,
              kUserFlagPasswordCantChange);
    // The rest of userFlags is userAccountControl, untouched by the write.
    EXPECT_EQ(WinNT().UserFlags().value_or(0) - kUserFlagPasswordCantChange,
              user.GetNumber("userAccountControl").value_or(-1));

    // On twice adds no second pair: the descriptor stays as it is.
    const Bytes once = Fresh().GetBinary(kSecurityDescriptorAttribute).value_or({});
    ASSERT_TRUE(SetPwdCantChange(sam_, true));
    EXPECT_EQ(Fresh().GetBinary(kSecurityDescriptorAttribute).value_or({}), once);

    ASSERT_TRUE(SetPwdCantChange(sam_, false));
    EXPECT_FALSE(IsPasswordLocked(user = Fresh()));
    EXPECT_FALSE(SetPwdCantChange("nobody" + std::to_string(getpid()), true));
}

TEST_F(UserAccountTest, ExpirationDateAndNeverBothWays) {
    DirObject user = Fresh();
    DirResult<LocalDateTime> initial = AccountExpirationDate(user);
    ASSERT_TRUE(initial.ok()) << initial.status().message;
    EXPECT_TRUE(IsNeverDate(*initial)) << DateText(*initial);

    LocalDateTime date{2031, 3, 31, 0, 0, 0};
    ASSERT_TRUE(PutAccountExpirationDate(user, date).ok());
    ASSERT_TRUE(user.SetInfo().ok());
    EXPECT_EQ(AccountExpirationDate(user = Fresh()).value_or(LocalDateTime{}), date);

    // Writing a never-date writes never.
    ASSERT_TRUE(PutAccountExpirationDate(user, LocalDateTime{1970, 1, 1, 0, 0, 0}).ok());
    ASSERT_TRUE(user.SetInfo().ok());
    user = Fresh();
    EXPECT_EQ(user.GetNumber("accountExpires").value_or(0), 0x7FFFFFFFFFFFFFFF);
    EXPECT_EQ(DateText(*AccountExpirationDate(user)), "1970/01/01");

    // 0 and -1 (what a cleared cell writes) mean never as well.
    for (const char* raw : {"0", "-1"}) {
        user.Put("accountExpires", raw);
        ASSERT_TRUE(user.SetInfo().ok()) << raw;
        DirResult<LocalDateTime> read = AccountExpirationDate(user = Fresh());
        ASSERT_TRUE(read.ok()) << raw;
        EXPECT_TRUE(IsNeverDate(*read)) << raw << " reads " << DateText(*read);
    }
    EXPECT_EQ(PutAccountExpirationDate(user, LocalDateTime{2031, 2, 30, 0, 0, 0}).code,
              kDirBadArgument);
}

TEST_F(UserAccountTest, DialinPrivilegeIsWrittenAtOnce) {
    WinNTUser user = WinNT();
    EXPECT_EQ(user.DialinPrivilege().status().code, kDirNoValue);
    ASSERT_TRUE(user.PutDialinPrivilege(true).ok());
    EXPECT_EQ(WinNT().DialinPrivilege().value_or(false), true);
    ASSERT_TRUE(WinNT().PutDialinPrivilege(false).ok());
    EXPECT_EQ(WinNT().DialinPrivilege().value_or(true), false);
    EXPECT_EQ(Fresh().Get("msNPAllowDialin").value_or(""), "FALSE");
}

TEST_F(UserAccountTest, HomeValuesAsTheThreeColumnsSeeThem) {
    std::string current;
    DirObject user = Fresh();
    // No home at all: an empty local path, no drive, no network path.
    EXPECT_TRUE(ReadHomeDriveAndDirectory(user, HomeColumn::LocalPath, current));
    EXPECT_EQ(current, "");
    EXPECT_FALSE(ReadHomeDriveAndDirectory(user, HomeColumn::HomeDrive, current));
    EXPECT_FALSE(ReadHomeDriveAndDirectory(user, HomeColumn::NetPath, current));

    WinNTUser winnt = WinNT();
    winnt.PutHomeDirectory("\\\\srv\\home\\holder");
    winnt.PutHomeDirDrive("H:");
    // Staged only: nothing is written before SetInfo.
    EXPECT_FALSE(Fresh().Get("homeDrive").ok());
    ASSERT_TRUE(winnt.SetInfo().ok());
    user = Fresh();
    EXPECT_FALSE(ReadHomeDriveAndDirectory(user, HomeColumn::LocalPath, current));
    EXPECT_TRUE(ReadHomeDriveAndDirectory(user, HomeColumn::HomeDrive, current));
    EXPECT_EQ(current, "H:");
    EXPECT_TRUE(ReadHomeDriveAndDirectory(user, HomeColumn::NetPath, current));
    EXPECT_EQ(current, "\\\\srv\\home\\holder");
    EXPECT_EQ(WinNT().HomeDirDrive().value_or(""), "H:");

    // Emptying both clears them, and clearing what is already empty is no failure.
    for (int round = 0; round < 2; ++round) {
        winnt = WinNT();
        winnt.PutHomeDirDrive("");
        winnt.PutHomeDirectory("");
        ASSERT_TRUE(winnt.SetInfo().ok()) << round;
    }
    user = Fresh();
    EXPECT_FALSE(user.Get("homeDrive").ok() || user.Get("homeDirectory").ok());
}

// The local method reaches the same entry with the logged-on user's ticket.
class UserAccountLocalTest : public UserAccountTest {
  protected:
    UserAccountLocalTest() : UserAccountTest(test::ConnectMethod::Local) {}
};

TEST_F(UserAccountLocalTest, FlagsWorkUnderTheLocalMethod) {
    ASSERT_TRUE(SetPwdCantChange(sam_, true));
    DirObject user = Fresh();
    EXPECT_TRUE(IsPasswordLocked(user));
    ASSERT_TRUE(SetNextLogonChange(user, true));
    EXPECT_TRUE(IsPasswordExpired(sam_));
}

}  // namespace
}  // namespace orin
