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

const std::string kLocalFailed = "ﾛｰｶﾙｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\r";
const std::string kRemoteFailed = "ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\r";
const std::string kDns = "完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。";
const std::string kNetBios = "NetBIOS名のﾄﾞﾒｲﾝ認証が失敗。";
const std::string kProvider = "LDAPﾌﾟﾛﾊﾞｲﾀﾞに接続できません。";

class Connect : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string why;
        ASSERT_TRUE(FindTestDc(&why)) << why;
        unsetenv("LDAPTLS_CACERT");
    }

    // Runs the connect routine of the method and expects the one failure box, well within the
    // timeouts, and no connection left behind.
    static void ExpectFailure(ConnectMethod method, const std::string& text) {
        ScriptedOperator op;
        auto start = std::chrono::steady_clock::now();
        method == ConnectMethod::Local ? ConnectLocal() : ConnectRemote();
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
        EXPECT_FALSE(gSession.Connected);
        EXPECT_EQ(gSession.Connection, nullptr);
        EXPECT_FALSE(gSession.RootObject.IsBound());
        ASSERT_EQ(op.boxes.size(), 1u);
        EXPECT_EQ(op.boxes[0].title, "ﾄﾞﾒｲﾝ接続");
        EXPECT_EQ(op.boxes[0].text, text);
        EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
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

// One text field of the session changed from what PrepareSession fills in.
struct Change {
    std::string DirectorySession::*field;
    const char* value;
};

// Other ways into the same domain: each connects over an encrypted channel.
TEST_F(Connect, RemoteVariantsThatConnect) {
    struct Case {
        Change change;
        bool caFromEnvironment = false, trustAnyCertificate = false, startTls = false;
    };
    const Case cases[] = {
        {{&DirectorySession::UserName, "ORIN\\Administrator"}},
        {{&DirectorySession::UserName, "administrator@orin.test"}},
        {{&DirectorySession::UserName, "CN=Administrator,CN=Users,DC=orin,DC=test"}},
        {{&DirectorySession::DomainNetBIOSName, "orin"}},  // case does not matter
        {{&DirectorySession::CaFile, ""}, true},
        {{&DirectorySession::CaFile, ""}, false, true},
        {{&DirectorySession::UserName, "Administrator"}, false, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.change.value << c.caFromEnvironment
                                          << c.trustAnyCertificate << c.startTls);
        PrepareSession(ConnectMethod::Remote);
        gSession.*c.change.field = c.change.value;
        if (c.caFromEnvironment) setenv("LDAPTLS_CACERT", TestDc().caFile.c_str(), 1);
        gSession.TrustAnyCertificate = c.trustAnyCertificate;
        gSession.UseStartTls = c.startTls;
        ScriptedOperator op;
        ConnectRemote();
        unsetenv("LDAPTLS_CACERT");
        ASSERT_TRUE(gSession.Connected);
        EXPECT_TRUE(op.boxes.empty());
        EXPECT_TRUE(gSession.Connection->IsEncrypted());
        EXPECT_EQ(gSession.Connection->Uri(),
                  c.startTls ? "ldap://orindc.orin.test:389" : "ldaps://orindc.orin.test:636");
    }
}

TEST_F(Connect, FailuresShowTheirBoxAndLeaveNoSession) {
    // A failure also clears the session of an earlier success.
    ASSERT_TRUE(ConnectTestDc(ConnectMethod::Remote));
    gSession.Password = "wrong-password";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDns);

    struct Case {
        ConnectMethod method;
        Change change;
        std::string detail;
    };
    const auto remote = ConnectMethod::Remote, local = ConnectMethod::Local;
    const Case cases[] = {
        {remote, {&DirectorySession::Password, ""}, kDns},
        {remote, {&DirectorySession::DomainNetBIOSName, "OTHER"}, kNetBios},
        {local, {&DirectorySession::DomainNetBIOSName, "OTHER"}, kNetBios},
        {local, {&DirectorySession::DomainDNSName, "nosuch.invalid"}, kDns},
        {remote, {&DirectorySession::DomainDN, "DC=other,DC=test"}, kDns},  // not on the server
        {remote, {&DirectorySession::DcComputerName, "nosuch.invalid"}, kDns},
        // A name that can't make a URI at all is the "LDAP:" provider's failure.
        {remote, {&DirectorySession::DcComputerName, "bad name"}, kProvider},
        {remote, {&DirectorySession::DcComputerName, ""}, kProvider},
        // The DC's certificate is signed by its own CA, which the system store doesn't hold.
        {remote, {&DirectorySession::CaFile, ""}, kDns},
        // Reached by address, the certificate (issued to the host name) does not match.
        {remote, {&DirectorySession::DcComputerName, "127.0.0.1"}, kDns},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.change.value);
        PrepareSession(c.method);
        gSession.*c.change.field = c.change.value;
        ExpectFailure(c.method, (c.method == local ? kLocalFailed : kRemoteFailed) + c.detail);
    }

    // No Kerberos ticket in the cache.
    PrepareSession(local);
    const std::string empty = TestDc().dir + "/no-ticket-" + std::to_string(getpid());
    std::ofstream(empty).close();
    setenv("KRB5CCNAME", ("FILE:" + empty).c_str(), 1);
    ExpectFailure(local, kLocalFailed + kDns);
    std::remove(empty.c_str());
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

}  // namespace
}  // namespace orin::test
