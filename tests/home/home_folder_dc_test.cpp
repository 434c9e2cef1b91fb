// Home folders on the test DC's "orinhome" share, and on this machine's file system.

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/HomeFolder.h"
#include "directory/Sid.h"
#include "platform/SmbClient.h"
#include "support/TestDc.h"

namespace orin {
namespace {

namespace fs = std::filesystem;
using platform::SmbAce;

class HomeFolderTest : public test::DcTest {
  protected:
    explicit HomeFolderTest(test::ConnectMethod method = test::ConnectMethod::Remote)
        : DcTest(method) {}

    void SetUp() override {
        DcTest::SetUp();
        if (HasFatalFailure()) return;
        sam_ = test::UniqueSam("home");
        DirObject user = ou().Make("user", "CN=Home Owner", {{"sAMAccountName", sam_}});
        auto sid = ParseSidBytes(user.GetBinary("objectSid").value_or({}));
        ASSERT_TRUE(sid);
        userSid_ = sid->ToString();
        folder_ = test::TestDc().homeShare + "\\" + sam_;
    }

    void TearDown() override {
        DeleteFolder(folder_);
        DcTest::TearDown();
    }

    // The folder's DACL as the server holds it, read with the test DC's administrator.
    std::vector<SmbAce> Dacl(const std::string& unc) {
        const test::TestDcInfo& dc = test::TestDc();
        platform::SmbClient smb({dc.adminUser, dc.adminPassword, dc.netbiosDomain, false},
                                std::chrono::seconds(10));
        platform::SmbSecurity security;
        platform::SmbStatus status = smb.ReadSecurity(platform::SmbUrlFromUnc(unc), security);
        EXPECT_TRUE(status.ok()) << status.message;
        return security.dacl;
    }

    std::string sam_;
    std::string userSid_;
    std::string folder_;
};

const SmbAce* Find(const std::vector<SmbAce>& dacl, std::string_view sid) {
    for (const SmbAce& ace : dacl) {
        if (ace.trustee == sid) return &ace;
    }
    return nullptr;
}

void ExpectHomeRights(const std::vector<SmbAce>& dacl, const std::string& userSid) {
    const uint8_t inherit = platform::kSmbAceObjectInherit | platform::kSmbAceContainerInherit;
    for (std::string_view grantee : {std::string_view(userSid), std::string_view("S-1-5-32-544")}) {
        const SmbAce* ace = Find(dacl, grantee);
        ASSERT_NE(ace, nullptr) << grantee;
        EXPECT_EQ(ace->type, platform::kSmbAceAllow) << grantee;
        EXPECT_EQ(ace->mask, platform::kSmbFullControl) << grantee;
        EXPECT_EQ(ace->flags & inherit, inherit) << grantee;
    }
    EXPECT_EQ(Find(dacl, "S-1-1-0"), nullptr) << "Everyone";
    EXPECT_EQ(Find(dacl, "S-1-5-32-545"), nullptr) << "Users";
    for (const SmbAce& ace : dacl) {
        EXPECT_EQ(ace.flags & platform::kSmbAceInherited, 0) << ace.trustee << " still inherited";
    }
}

// Both methods, with the logged-on user's Kerberos ticket or the session's password, and a
// name with blanks and Japanese that must reach the share as it is.
class HomeFolderMethodTest : public HomeFolderTest,
                             public ::testing::WithParamInterface<test::ConnectMethod> {
  protected:
    HomeFolderMethodTest() : HomeFolderTest(GetParam()) {}
};

TEST_P(HomeFolderMethodTest, CreateSetRightsAndDeleteOnTheShare) {
    const std::string name = "山田 太郎 #" + sam_;
    folder_ = test::TestDc().homeShare + "\\" + name;
    EXPECT_FALSE(FolderExists(folder_));
    HomeFolderStatus created = CreateFolder(folder_);
    ASSERT_TRUE(created.ok) << created.detail;
    EXPECT_TRUE(FolderExists(folder_));
    EXPECT_TRUE(fs::is_directory(fs::path(test::TestDc().homeSharePath) / name));
    // The share's own entries reached the new folder: Everyone among them.
    ASSERT_NE(Find(Dacl(folder_), "S-1-1-0"), nullptr);

    // A second create of the same folder fails and leaves it.
    EXPECT_FALSE(CreateFolder(folder_).ok);
    EXPECT_TRUE(FolderExists(folder_));

    HomeFolderStatus rights = SetHomeFolderRights(folder_, sam_);
    ASSERT_TRUE(rights.ok) << rights.detail;
    ExpectHomeRights(Dacl(folder_), userSid_);

    // Deleting takes what the user put inside along.
    ASSERT_TRUE(CreateFolder(folder_ + "\\docs").ok);
    ASSERT_TRUE(CreateFolder(folder_ + "\\docs\\old").ok);
    HomeFolderStatus deleted = DeleteFolder(folder_);
    ASSERT_TRUE(deleted.ok) << deleted.detail;
    EXPECT_FALSE(FolderExists(folder_));
    EXPECT_FALSE(DeleteFolder(folder_).ok);
}

INSTANTIATE_TEST_SUITE_P(Methods, HomeFolderMethodTest, test::BothMethods(), test::MethodName);

TEST_F(HomeFolderTest, FailuresComeBackQuicklyAndSayWhy) {
    auto started = std::chrono::steady_clock::now();
    std::string badServer = "\\\\nosuchserver.invalid\\orinhome\\x";
    EXPECT_FALSE(FolderExists(badServer));
    EXPECT_FALSE(CreateFolder(badServer).ok);
    std::string missingShare = "\\\\" + test::TestDc().fqdn + "\\nosuchshare\\x";
    EXPECT_FALSE(FolderExists(missingShare));
    HomeFolderStatus noShare = CreateFolder(missingShare);
    EXPECT_FALSE(noShare.ok);
    EXPECT_FALSE(noShare.detail.empty());
    // No parent folder: the create doesn't make one.
    EXPECT_FALSE(CreateFolder(folder_ + "\\deeper").ok);
    EXPECT_FALSE(FolderExists(folder_));
    EXPECT_LT(std::chrono::steady_clock::now() - started, 2 * kHomeFolderTimeout);

    ASSERT_TRUE(CreateFolder(folder_).ok);
    EXPECT_FALSE(SetHomeFolderRights(folder_, "nobody" + std::to_string(getpid())).ok);
    EXPECT_FALSE(SetHomeFolderRights("\\\\" + test::TestDc().fqdn, sam_).ok);

    // The session's password is the one the share is reached with.
    gSession.Password = "not-the-password";
    EXPECT_FALSE(CreateFolder(folder_ + "2").ok);
    EXPECT_FALSE(FolderExists(test::TestDc().homeShare));
    gSession.Password = test::TestDc().adminPassword;
    EXPECT_TRUE(FolderExists(test::TestDc().homeShare));
}

TEST_F(HomeFolderTest, LocalPathsUseTheFileSystemAndHaveNoRights) {
    fs::path base = fs::temp_directory_path() / ("orin-home-" + std::to_string(getpid()));
    fs::remove_all(base);
    fs::create_directories(base);
    std::string local = (base / "user1").string();

    EXPECT_FALSE(FolderExists(local));
    ASSERT_TRUE(CreateFolder(local).ok);
    EXPECT_TRUE(FolderExists(local));
    EXPECT_FALSE(CreateFolder(local).ok);
    EXPECT_FALSE(CreateFolder((base / "no" / "parent").string()).ok);
    HomeFolderStatus rights = SetHomeFolderRights(local, sam_);
    EXPECT_FALSE(rights.ok);
    EXPECT_FALSE(rights.detail.empty());

    fs::create_directories(fs::path(local) / "a" / "b");
    ASSERT_TRUE(DeleteFolder(local).ok);
    EXPECT_FALSE(fs::exists(local));
    fs::remove_all(base);
}

}  // namespace
}  // namespace orin
