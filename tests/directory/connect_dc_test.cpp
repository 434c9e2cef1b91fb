// ConnectLocal and ConnectRemote against the test DC: what a success leaves in the session,
// and the exact box each kind of failure shows.

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

#include "directory/Bind.h"
#include "directory/Connect.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "support/ScriptedOperator.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

constexpr std::string_view kTitle = "ﾄﾞﾒｲﾝ接続";
const std::string kLocalFailed = "ﾛｰｶﾙｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\r";
const std::string kRemoteFailed = "ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\r";
const std::string kDnsDetail = "完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。";
const std::string kNetBiosDetail = "NetBIOS名のﾄﾞﾒｲﾝ認証が失敗。";

class Connect : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string why;
        ASSERT_TRUE(FindTestDc(&why)) << why;
        unsetenv("LDAPTLS_CACERT");
    }

    // Runs the connect routine of the method and expects the one failure box.
    void ExpectFailure(ConnectMethod method, const std::string& text) {
        ScriptedOperator op;
        auto start = std::chrono::steady_clock::now();
        method == ConnectMethod::Local ? ConnectLocal() : ConnectRemote();
        double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        EXPECT_FALSE(gSession.Connected);
        EXPECT_EQ(gSession.Connection, nullptr);
        EXPECT_FALSE(gSession.RootObject.IsBound());
        ASSERT_EQ(op.boxes.size(), 1u);
        EXPECT_EQ(op.boxes[0].title, kTitle);
        EXPECT_EQ(op.boxes[0].text, text);
        EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
        EXPECT_LT(seconds, 15.0);
    }
};

TEST_F(Connect, RemoteBindsTheRootThroughTheNamedDc) {
    PrepareSession(ConnectMethod::Remote);
    ScriptedOperator op;
    auto start = std::chrono::steady_clock::now();
    ConnectRemote();
    auto waited = std::chrono::steady_clock::now() - start;
    ASSERT_TRUE(gSession.Connected);
    EXPECT_TRUE(op.boxes.empty());
    EXPECT_GE(waited, std::chrono::seconds(1));  // the wait dialog's second
    EXPECT_GT(op.yields, 1);
    EXPECT_EQ(gSession.RootLdapPath, "LDAP://orindc.orin.test/DC=orin,DC=test");
    EXPECT_EQ(gSession.RootObject.ADsPath(), gSession.RootLdapPath);
    EXPECT_EQ(gSession.RootObject.Class(), "domainDNS");
    EXPECT_TRUE(gSession.Connection->IsEncrypted());
}

TEST_F(Connect, LocalBindsWithKerberosAtTheDomainName) {
    PrepareSession(ConnectMethod::Local);
    gSession.DomainDN = "DC=stale";  // recomputed from the DNS name
    ScriptedOperator op;
    ConnectLocal();
    ASSERT_TRUE(gSession.Connected) << (op.boxes.empty() ? "" : op.boxes[0].text);
    EXPECT_EQ(gSession.DomainDN, "DC=orin,DC=test");
    EXPECT_EQ(gSession.RootLdapPath, "LDAP://DC=orin,DC=test");
    EXPECT_EQ(gSession.RootObject.ADsPath(), "LDAP://DC=orin,DC=test");
    // The Kerberos session is sealed: the channel is encrypted without TLS.
    EXPECT_TRUE(gSession.Connection->IsEncrypted());
}

TEST_F(Connect, RemoteAcceptsTheUsualUserNameForms) {
    for (std::string user : {"Administrator", "ORIN\\Administrator", "administrator@orin.test",
                             "CN=Administrator,CN=Users,DC=orin,DC=test"}) {
        PrepareSession(ConnectMethod::Remote);
        gSession.UserName = user;
        ScriptedOperator op;
        ConnectRemote();
        EXPECT_TRUE(gSession.Connected) << user;
    }
}

TEST_F(Connect, RemoteOverStartTls) {
    PrepareSession(ConnectMethod::Remote);
    gSession.UseStartTls = true;
    ScriptedOperator op;
    ConnectRemote();
    ASSERT_TRUE(gSession.Connected);
    EXPECT_TRUE(gSession.Connection->IsEncrypted());
    EXPECT_EQ(gSession.Connection->Uri(), "ldap://orindc.orin.test:389");
}

TEST_F(Connect, WrongOrEmptyPasswordFailsOnTheDnsName) {
    PrepareSession(ConnectMethod::Remote);
    gSession.Password = "wrong-password";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDnsDetail);
    gSession.Password = "";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDnsDetail);
}

TEST_F(Connect, WrongNetBiosNameFailsOnTheNetBiosName) {
    PrepareSession(ConnectMethod::Remote);
    gSession.DomainNetBIOSName = "OTHER";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kNetBiosDetail);
    PrepareSession(ConnectMethod::Local);
    gSession.DomainNetBIOSName = "OTHER";
    ExpectFailure(ConnectMethod::Local, kLocalFailed + kNetBiosDetail);
    // Case does not matter, as with Windows names.
    PrepareSession(ConnectMethod::Remote);
    gSession.DomainNetBIOSName = "orin";
    ScriptedOperator op;
    ConnectRemote();
    EXPECT_TRUE(gSession.Connected);
}

TEST_F(Connect, WrongDomainFailsOnTheDnsName) {
    // A DNS name that resolves nowhere.
    PrepareSession(ConnectMethod::Local);
    gSession.DomainDNSName = "nosuch.invalid";
    ExpectFailure(ConnectMethod::Local, kLocalFailed + kDnsDetail);
    EXPECT_EQ(gSession.DomainDN, "DC=nosuch,DC=invalid");
    // The right server but a root that does not exist there.
    PrepareSession(ConnectMethod::Remote);
    gSession.DomainDN = "DC=other,DC=test";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDnsDetail);
}

TEST_F(Connect, LocalWithoutATicketFails) {
    PrepareSession(ConnectMethod::Local);
    std::string empty = TestDc().dir + "/no-ticket-" + std::to_string(getpid());
    std::ofstream(empty).close();
    setenv("KRB5CCNAME", ("FILE:" + empty).c_str(), 1);
    ExpectFailure(ConnectMethod::Local, kLocalFailed + kDnsDetail);
    std::remove(empty.c_str());
}

TEST_F(Connect, UnreachableDcFailsWithinTheTimeout) {
    PrepareSession(ConnectMethod::Remote);
    gSession.DcComputerName = "nosuch.invalid";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDnsDetail);
    // A name that can't make a URI at all is the "LDAP:" provider's failure.
    gSession.DcComputerName = "bad name";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + "LDAPﾌﾟﾛﾊﾞｲﾀﾞに接続できません。");
    gSession.DcComputerName = "";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + "LDAPﾌﾟﾛﾊﾞｲﾀﾞに接続できません。");
}

TEST_F(Connect, SelfSignedCertificateNeedsItsCaOrTheSwitch) {
    // The test DC's certificate is signed by its own CA, which the system store doesn't hold.
    PrepareSession(ConnectMethod::Remote);
    gSession.CaFile.clear();
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDnsDetail);

    PrepareSession(ConnectMethod::Remote);
    gSession.CaFile.clear();
    setenv("LDAPTLS_CACERT", TestDc().caFile.c_str(), 1);
    {
        ScriptedOperator op;
        ConnectRemote();
        EXPECT_TRUE(gSession.Connected);
    }
    unsetenv("LDAPTLS_CACERT");

    PrepareSession(ConnectMethod::Remote);
    gSession.CaFile.clear();
    gSession.TrustAnyCertificate = true;
    ScriptedOperator op;
    ConnectRemote();
    EXPECT_TRUE(gSession.Connected);
}

TEST_F(Connect, CertificateMustNameTheServer) {
    // Reached by address, the DC's certificate (issued to its host name) does not match.
    PrepareSession(ConnectMethod::Remote);
    gSession.DcComputerName = "127.0.0.1";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDnsDetail);
}

TEST_F(Connect, ADroppedConnectionIsOpenedAgain) {
    for (ConnectMethod method : {ConnectMethod::Local, ConnectMethod::Remote}) {
        ASSERT_TRUE(ConnectTestDc(method));
        long before = gSession.Connection->RequestCount();
        // What an idle timeout on the server or a network break leaves behind.
        int fd = gSession.Connection->Socket();
        ASSERT_GE(fd, 0);
        shutdown(fd, SHUT_RDWR);
        DirObject root;
        ASSERT_TRUE(BindObject(gSession.RootLdapPath.substr(0, 7) + gSession.DomainDN, root));
        EXPECT_EQ(root.Class(), "domainDNS");
        EXPECT_TRUE(gSession.Connection->IsEncrypted());
        // The failed read, the bind again, the read again.
        EXPECT_GE(gSession.Connection->RequestCount() - before, 3);
    }
}

TEST_F(Connect, FailureClearsAnEarlierSession) {
    ASSERT_TRUE(ConnectTestDc(ConnectMethod::Remote));
    gSession.Password = "wrong-password";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDnsDetail);
}

}  // namespace
}  // namespace orin::test
