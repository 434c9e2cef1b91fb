// ConnectLocal and ConnectRemote against the test DC: what a success leaves in the session,
// and the exact box each kind of failure shows.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

#include "directory/Bind.h"
#include "directory/Connect.h"
#include "directory/DirectorySession.h"
#include "kerberos/TcpRelay.h"
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
    // timeouts, and no connection left behind. The box's detail holds `why`.
    static void ExpectFailure(ConnectMethod method, const std::string& text,
                              const std::string& why = "") {
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
        EXPECT_NE(op.boxes[0].detail.find(why), std::string::npos) << op.boxes[0].detail;
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

// Each failure shows the same fixed box; its detail says why.
TEST_F(Connect, FailuresShowTheirBoxAndSayWhyAndLeaveNoSession) {
    // A failure also clears the session of an earlier success.
    ASSERT_TRUE(ConnectTestDc(ConnectMethod::Remote));
    gSession.Password = "wrong-password";
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDns,
                  "bind as Administrator@orin.test: result 49 Invalid credentials: ");

    struct Case {
        ConnectMethod method;
        Change change;
        std::string detail;
        std::string why;
    };
    const auto remote = ConnectMethod::Remote, local = ConnectMethod::Local;
    const std::string untrusted = "certificate not trusted: ";
    const Case cases[] = {
        {remote, {&DirectorySession::Password, ""}, kDns, "empty password refused"},
        {remote, {&DirectorySession::DomainNetBIOSName, "OTHER"}, kNetBios, "is not OTHER"},
        {local, {&DirectorySession::DomainNetBIOSName, "OTHER"}, kNetBios, "is not OTHER"},
        {local, {&DirectorySession::DomainDNSName, "nosuch.invalid"}, kDns, "nosuch.invalid"},
        {remote, {&DirectorySession::DomainDN, "DC=other,DC=test"}, kDns, "DC=other"},
        {remote, {&DirectorySession::DcComputerName, "nosuch.invalid"}, kDns, "nosuch.invalid"},
        // A name that can't make a URI at all is the "LDAP:" provider's failure.
        {remote, {&DirectorySession::DcComputerName, "bad name"}, kProvider, "bad name"},
        {remote, {&DirectorySession::DcComputerName, ""}, kProvider, "no domain controller"},
        // The DC's certificate is signed by its own CA, which the system store doesn't hold.
        {remote,
         {&DirectorySession::CaFile, ""},
         kDns,
         untrusted + "orindc.orin.test:636, checked for that name against the system trust store "
                     "(use --ca-file or LDAPTLS_CACERT)"},
        // Reached by address, the certificate (issued to the host name) does not match.
        {remote, {&DirectorySession::DcComputerName, "127.0.0.1"}, kDns, untrusted + "127.0.0.1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.change.value);
        PrepareSession(c.method);
        gSession.*c.change.field = c.change.value;
        ExpectFailure(c.method, (c.method == local ? kLocalFailed : kRemoteFailed) + c.detail,
                      c.why);
    }

    // No Kerberos ticket in the cache.
    PrepareSession(local);
    const std::string empty = TestDc().dir + "/no-ticket-" + std::to_string(getpid());
    std::ofstream(empty).close();
    setenv("KRB5CCNAME", ("FILE:" + empty).c_str(), 1);
    ExpectFailure(local, kLocalFailed + kDns, "GSSAPI");
    std::remove(empty.c_str());
}

// A DC whose LDAPS port takes the connection and says nothing, and one that offers no TLS
// (LDAPS closes at once, port 389 answers), where a simple bind would have to go in clear.
TEST_F(Connect, ASilentPortAndADcWithoutTlsSayWhy) {
    ASSERT_EQ(getuid(), 0u) << "ports below 1024 need root, as the test DC does";
    const int silent = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(636);
    inet_pton(AF_INET, "127.0.0.7", &at.sin_addr);
    ASSERT_EQ(bind(silent, reinterpret_cast<sockaddr*>(&at), sizeof at), 0);
    ASSERT_EQ(listen(silent, 4), 0);
    PrepareSession(ConnectMethod::Remote);
    gSession.DcComputerName = "127.0.0.7";
    gSession.RemoteAuthentication = RemoteAuth::TlsOnly;
    gSession.NetworkTimeoutSeconds = 2;
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDns,
                  "no answer from 127.0.0.7:636 within 2 s");
    close(silent);

    TcpRelay ldaps("127.0.0.8", 636, 0), ldap("127.0.0.8", 389, 389);
    ASSERT_TRUE(ldaps.ok() && ldap.ok());
    PrepareSession(ConnectMethod::Remote);
    gSession.DcComputerName = "127.0.0.8";
    gSession.RemoteAuthentication = RemoteAuth::TlsOnly;
    ExpectFailure(ConnectMethod::Remote, kRemoteFailed + kDns,
                  "), and a simple bind without it is refused (use --auth kerberos)");
    EXPECT_LE(ldap.FromClients().size(), 7u);  // at most an unbind went in clear
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
