// Passwords and security descriptors against the test DC.

#include <gtest/gtest.h>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

constexpr uint16_t kDaclProtected = 0x1000;

uint16_t Control(const Bytes& sd) {
    return static_cast<uint16_t>(sd[2] | (sd[3] << 8));
}
uint32_t Offset(const Bytes& sd, size_t at) {
    return sd[at] | (sd[at + 1] << 8) | (sd[at + 2] << 16) | (uint32_t(sd[at + 3]) << 24);
}

// The owner SID of the whole descriptor, read without the SD-flags control.
std::string OwnerOf(const std::string& dn) {
    platform::LdapEntry entry;
    EXPECT_TRUE(gSession.Connection->Read(dn, {"nTSecurityDescriptor"}, entry).ok());
    const auto* values = entry.Find("nTSecurityDescriptor");
    if (!values || values->empty()) return {};
    const std::string& sd = values->front();
    Bytes bytes(sd.begin(), sd.end());
    uint32_t owner = Offset(bytes, 4);
    if (owner == 0 || owner + 8 > bytes.size()) return {};
    return sd.substr(owner, 8 + 4 * static_cast<size_t>(bytes[owner + 1]));
}

class Security : public DcMethodTest {
  protected:
    // Binds as the account over LDAPS: the proof that the password took.
    platform::LdapStatus BindAs(const std::string& account, const std::string& password) {
        platform::LdapOptions options;
        options.caFile = TestDc().caFile;
        std::unique_ptr<platform::LdapConnection> conn;
        auto status =
            platform::LdapConnection::Create("ldaps://orindc.orin.test:636", options, conn);
        if (!status.ok()) return status;
        return conn->SimpleBind(account + "@orin.test", password);
    }
};

TEST_P(Security, SetPasswordTakesEffectAtOnce) {
    DirObject user = ou().Make("user", "CN=pw");
    const std::string account = UniqueSam("pw"), password = "Orin-Test-Pw1";
    ASSERT_TRUE(user.SetPassword(password).ok());
    user.Put("userAccountControl", "512");  // a normal, enabled account
    ASSERT_TRUE(user.SetInfo().ok());
    EXPECT_TRUE(BindAs(account, password).ok());
    EXPECT_EQ(BindAs(account, "Orin-Test-Pw2").code, platform::kLdapInvalidCredentials);

    // Characters beyond ASCII go as UTF-16 and come back the same.
    const std::string japanese = "ﾊﾟｽﾜｰﾄﾞ-日本-Aa1";
    ASSERT_TRUE(user.SetPassword(japanese).ok());
    EXPECT_TRUE(BindAs(account, japanese).ok());
    // The previous password isn't tested: Samba, like Windows, still accepts it for a while
    // ("old password allowed period").
}

TEST_P(Security, SetPasswordRefusals) {
    DirObject user = ou().Make("user", "CN=weak");
    // The domain's complexity rule refuses it: an error, not a crash and not a success.
    EXPECT_FALSE(user.SetPassword("a").ok());
    EXPECT_EQ(user.SetPassword(std::string("Bad\xff\xfeUtf8-1")).code, kDirBadArgument);
    DirObject unsaved = *gSession.RootObject.Create("user", ou().Relative("CN=unsaved"));
    EXPECT_FALSE(unsaved.SetPassword("Orin-Test-Pw1").ok());
}

TEST_P(Security, DescriptorReadsAndWritesTheDaclOnly) {
    DirObject unit = ou().Bind("");
    auto sd = unit.GetBinary(kSecurityDescriptorAttribute);
    ASSERT_TRUE(sd.ok()) << sd.status().message;
    ASSERT_GE(sd->size(), 20u);
    EXPECT_EQ(Offset(*sd, 4), 0u);  // no owner in a read of the DACL
    EXPECT_GT(Offset(*sd, 16), 0u);
    EXPECT_EQ(Control(*sd) & kDaclProtected, 0);
    const std::string owner = OwnerOf(ou().Dn());
    ASSERT_FALSE(owner.empty());

    // Protect the DACL and write it back: the flag stays, the owner is untouched.
    Bytes changed = *sd;
    changed[3] |= kDaclProtected >> 8;
    unit.PutBinary(kSecurityDescriptorAttribute, changed);
    DirStatus status = unit.SetInfo();
    ASSERT_TRUE(status.ok()) << status.message;
    DirObject again = ou().Bind("");
    auto after = again.GetBinary(kSecurityDescriptorAttribute);
    ASSERT_TRUE(after.ok());
    EXPECT_EQ(Control(*after) & kDaclProtected, kDaclProtected);
    EXPECT_EQ(OwnerOf(ou().Dn()), owner);

    // Garbage is refused by the server, and the descriptor stays as it was.
    again.PutBinary(kSecurityDescriptorAttribute, Bytes{1, 2, 3});
    EXPECT_FALSE(again.SetInfo().ok());
    EXPECT_EQ(again.GetBinary(kSecurityDescriptorAttribute).value_or({}), *after);
}

INSTANTIATE_TEST_SUITE_P(Methods, Security, BothMethods(), MethodName);

}  // namespace
}  // namespace orin::test
