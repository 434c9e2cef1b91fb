// The remote connection by Kerberos from the password, against the test DC: with no ticket
// cache and no Kerberos configuration in the environment (the DC is the KDC), what it can do,
// what it leaves alone, how it fails, and the automatic choice when the DC offers no TLS.

#include <gtest/gtest.h>
#include <krb5.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <set>

#include "TcpRelay.h"
#include "cli/CliTestSupport.h"
#include "directory/Bind.h"
#include "directory/Connect.h"
#include "directory/DirectorySession.h"
#include "platform/Kerberos.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"
#include "support/ScriptedOperator.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

const std::string kRemoteFailed = "ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\r";
const std::string kDnsFailed = "完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。";
constexpr const char* kNoConfig = "/nonexistent/krb5.conf";

// An environment variable set (or unset, with nullptr) for the life of the object.
class ScopedEnv {
  public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        Set(value);
    }
    ~ScopedEnv() { Set(old_ ? old_->c_str() : nullptr); }
    void Set(const char* value) { value ? setenv(name_, value, 1) : unsetenv(name_); }

  private:
    const char* name_;
    std::optional<std::string> old_;
};

// The principals whose tickets a credential cache holds; empty when the cache is gone.
std::set<std::string> TicketsIn(const std::string& cacheName) {
    std::set<std::string> servers;
    krb5_context ctx = nullptr;
    if (krb5_init_context(&ctx) != 0) return servers;
    krb5_ccache cache = nullptr;
    krb5_cc_cursor cursor = nullptr;
    if (krb5_cc_resolve(ctx, cacheName.c_str(), &cache) == 0 &&
        krb5_cc_start_seq_get(ctx, cache, &cursor) == 0) {
        krb5_creds creds;
        while (krb5_cc_next_cred(ctx, cache, &cursor, &creds) == 0) {
            char* name = nullptr;
            if (!krb5_is_config_principal(ctx, creds.server) &&
                krb5_unparse_name(ctx, creds.server, &name) == 0) {
                servers.insert(name);
                krb5_free_unparsed_name(ctx, name);
            }
            krb5_free_cred_contents(ctx, &creds);
        }
        krb5_cc_end_seq_get(ctx, cache, &cursor);
    }
    if (cache) krb5_cc_close(ctx, cache);
    krb5_free_context(ctx);
    return servers;
}

// The remote method by Kerberos only, with neither KRB5CCNAME nor KRB5_CONFIG pointing
// anywhere and no CA file: the password and the DC's name are all there is.
class KerberosRemote : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string why;
        ASSERT_TRUE(FindTestDc(&why)) << why;
        PrepareSession(ConnectMethod::Remote);
        gSession.RemoteAuthentication = RemoteAuth::KerberosOnly;
        gSession.CaFile.clear();
    }

    // ConnectRemote, with the box it showed (if any) in the failure's text.
    ::testing::AssertionResult Connect() {
        op.boxes.clear();
        ConnectRemote();
        if (gSession.Connected && op.boxes.empty()) return ::testing::AssertionSuccess();
        auto failure = ::testing::AssertionFailure() << "not connected";
        for (const auto& box : op.boxes) failure << ": " << box.text;
        return failure;
    }

    platform::KerberosLogin AdministratorLogin() {
        platform::KerberosLogin login;
        login.principal = *platform::PrincipalForUser("Administrator", "orin.test", "ORIN");
        login.serviceHost = TestDc().fqdn;
        login.fallbackKdc = TestDc().fqdn;
        return login;
    }

    ScopedEnv config_{"KRB5_CONFIG", kNoConfig};
    ScopedEnv cache_{"KRB5CCNAME", nullptr};
    ScopedEnv ca_{"LDAPTLS_CACERT", nullptr};
    ScriptedOperator op;
};

TEST_F(KerberosRemote, ThePasswordAloneWritesAndReadsOverASealedSession) {
    ASSERT_TRUE(Connect());
    EXPECT_EQ(gSession.Connection->Uri(), "ldap://orindc.orin.test:389");
    EXPECT_TRUE(gSession.Connection->IsEncrypted());
    EXPECT_EQ(gSession.RootLdapPath, "LDAP://orindc.orin.test/DC=orin,DC=test");

    ScopedOu ou;
    ASSERT_TRUE(ou.ok());
    ou.Object().Put("description", "written by Kerberos");
    ASSERT_TRUE(ou.Object().SetInfo().ok());
    // A password travels only encrypted: the sealed session counts as such.
    auto user = gSession.RootObject.Create("user", ou.Relative("CN=krbuser"));
    ASSERT_TRUE(user.ok());
    user->Put("sAMAccountName", "krbuser" + std::to_string(getpid()));
    ASSERT_TRUE(user->SetInfo().ok());
    DirStatus password = user->SetPassword("Krb-User-Pass1!");
    EXPECT_TRUE(password.ok()) << password.message;

    DirObject read;
    ASSERT_TRUE(BindObject("LDAP://" + ou.Dn(), read));
    EXPECT_EQ(read.Get("description").value_or(""), "written by Kerberos");

    // A dropped connection is bound again from the same private tickets.
    shutdown(gSession.Connection->Socket(), SHUT_RDWR);
    DirObject again;
    ASSERT_TRUE(BindObject("LDAP://" + ou.Dn(), again));
    EXPECT_EQ(again.Get("description").value_or(""), "written by Kerberos");
    EXPECT_TRUE(gSession.Connection->IsEncrypted());
}

// Every refusal shows the remote failure box, leaves no connection and comes back quickly.
TEST_F(KerberosRemote, RefusalsShowTheRemoteBox) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"wrong password", [] { gSession.Password = "not-the-password"; }},
        {"empty password", [] { gSession.Password = ""; }},
        {"unknown user", [] { gSession.UserName = "nosuchuser"; }},
        {"distinguished name",
         [] { gSession.UserName = "CN=Administrator,CN=Users,DC=orin,DC=test"; }},
        {"DC name without a service ticket", [] { gSession.DcComputerName = "127.0.0.1"; }},
        {"DC that doesn't answer", [] { gSession.DcComputerName = "nosuch.invalid"; }},
    };
    for (const auto& [what, change] : cases) {
        SCOPED_TRACE(what);
        PrepareSession(ConnectMethod::Remote);
        gSession.RemoteAuthentication = RemoteAuth::KerberosOnly;
        change();
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(Connect());
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
        EXPECT_EQ(gSession.Connection, nullptr);
        ASSERT_EQ(op.boxes.size(), 1u);
        EXPECT_EQ(op.boxes[0].title, "ﾄﾞﾒｲﾝ接続");
        EXPECT_EQ(op.boxes[0].text, kRemoteFailed + kDnsFailed);
        EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
    }
}

// Automatic: the DC offers TLS, but its certificate is not trusted. That is not the case for
// Kerberos: the connection fails as it would without it.
TEST_F(KerberosRemote, AutomaticDoesNotTakeAnUntrustedCertificateForAbsentTls) {
    gSession.RemoteAuthentication = RemoteAuth::Automatic;
    EXPECT_FALSE(Connect());
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].text, kRemoteFailed + kDnsFailed);
    EXPECT_EQ(gSession.Connection, nullptr);
}

TEST_F(KerberosRemote, TheUsersOwnCacheIsLeftAsItWas) {
    // The user holds a ticket of the domain in a cache of their own, and reads the realm's
    // krb5.conf: both are the platform's, neither is changed by the remote connection.
    ScratchFolder folder;
    const std::filesystem::path own = folder / "krb5cc";
    std::filesystem::copy_file(TestDc().dir + "/krb5cc", own);
    const std::string before = ReadBytes(own);
    const auto changed = std::filesystem::last_write_time(own);
    cache_.Set(("FILE:" + own.string()).c_str());
    config_.Set(TestDc().krb5Config.c_str());

    ASSERT_TRUE(Connect());
    EXPECT_EQ(ReadBytes(own), before);
    EXPECT_EQ(std::filesystem::last_write_time(own), changed);
    // GSSAPI on this thread is back on the user's cache: the local method binds with it.
    ConnectLocal();
    EXPECT_TRUE(gSession.Connected) << (op.boxes.empty() ? "" : op.boxes[0].text);

    // A cache that does not exist is not made.
    const std::filesystem::path none = folder / "none";
    cache_.Set(("FILE:" + none.string()).c_str());
    ASSERT_TRUE(Connect());
    EXPECT_FALSE(std::filesystem::exists(none));
}

TEST_F(KerberosRemote, TicketsLiveInMemoryAsLongAsTheirCredentials) {
    std::shared_ptr<platform::KerberosCredentials> credentials;
    platform::KerberosStatus status = platform::KerberosCredentials::FromPassword(
        AdministratorLogin(), TestDc().adminPassword, credentials);
    ASSERT_TRUE(status.ok()) << status.message;
    EXPECT_TRUE(credentials->AskedDcAsKdc());  // nothing else names a KDC for ORIN.TEST
    EXPECT_EQ(credentials->ClientPrincipal(), "Administrator@ORIN.TEST");
    const std::string name = credentials->CacheName();
    EXPECT_TRUE(name.starts_with("MEMORY:")) << name;
    const std::set<std::string> tickets = TicketsIn(name);
    EXPECT_TRUE(tickets.count("krbtgt/ORIN.TEST@ORIN.TEST")) << ::testing::PrintToString(tickets);
    EXPECT_TRUE(tickets.count("ldap/orindc.orin.test@")) << ::testing::PrintToString(tickets);
    credentials.reset();
    EXPECT_TRUE(TicketsIn(name).empty());

    // Where krb5.conf names the KDC, the DC is not asked in its place.
    config_.Set(TestDc().krb5Config.c_str());
    status = platform::KerberosCredentials::FromPassword(AdministratorLogin(),
                                                         TestDc().adminPassword, credentials);
    ASSERT_TRUE(status.ok()) << status.message;
    EXPECT_FALSE(credentials->AskedDcAsKdc());
}

TEST_F(KerberosRemote, AUserPrincipalNameOfAnotherSuffixFindsItsAccount) {
    ASSERT_TRUE(Connect());
    ScopedOu ou;
    ASSERT_TRUE(ou.ok());
    const std::string sam = "krbupn" + std::to_string(getpid());
    const std::string upn = sam + "@upn.example";
    auto user = gSession.RootObject.Create("user", ou.Relative("CN=" + sam));
    ASSERT_TRUE(user.ok());
    user->Put("sAMAccountName", sam);
    user->Put("userPrincipalName", upn);
    ASSERT_TRUE(user->SetInfo().ok());
    ASSERT_TRUE(user->SetPassword("Krb-Upn-Pass1!").ok());
    user->Put("userAccountControl", "512");
    ASSERT_TRUE(user->SetInfo().ok());

    platform::KerberosLogin login = AdministratorLogin();
    login.principal = *platform::PrincipalForUser(upn, "orin.test", "ORIN");
    ASSERT_TRUE(login.principal.enterprise);
    std::shared_ptr<platform::KerberosCredentials> credentials;
    platform::KerberosStatus status =
        platform::KerberosCredentials::FromPassword(login, "Krb-Upn-Pass1!", credentials);
    ASSERT_TRUE(status.ok()) << status.message;
    EXPECT_EQ(ToLowerAscii(credentials->ClientPrincipal()), ToLowerAscii(sam + "@ORIN.TEST"));
}

// --auth as orin-cli's caller chooses it: without a CA file, TLS alone can't be had, and
// Kerberos alone needs none.
TEST(KerberosCli, AuthChoosesTheWayIn) {
    ASSERT_TRUE(ConnectTestDc(ConnectMethod::Remote));
    ScopedOu ou;
    ASSERT_TRUE(ou.ok());
    ScratchFolder home;
    std::ofstream(home / "password") << TestDc().adminPassword << "\n";
    const std::string csv = (home / "add.csv").string();
    WriteCsv(csv, {"!OU-Start,,OU-End,Mirror,description", ou.Rdn().substr(3) + ",a,,,"});
    auto run = [&](const char* auth) {
        return RunCli(home.path(),
                      {"run",
                       "--kind",
                       "ou",
                       "--op",
                       "add",
                       "--mode",
                       "imitate",
                       "--csv",
                       csv,
                       "--dns",
                       "orin.test",
                       "--netbios",
                       "ORIN",
                       "--method",
                       "remote",
                       "--server",
                       "orindc.orin.test",
                       "--user",
                       "Administrator",
                       "--password-file",
                       (home / "password").string(),
                       "--yes",
                       "--auth",
                       auth},
                      {{"LDAPTLS_CACERT", ""}, {"KRB5_CONFIG", kNoConfig}});
    };
    const CliResult tls = run("tls");
    EXPECT_EQ(tls.status, 4) << tls.err;
    const CliResult kerberos = run("Kerberos");
    EXPECT_EQ(kerberos.status, 0) << kerberos.err;
}

// orin-cli with the default --auth (auto) against the DC as seen through relays on 127.0.0.2,
// where its LDAPS port closes every connection, as a DC without a certificate does. In a mount
// namespace of its own, the DC's name leads there; KRB5_CONFIG names nothing. The run goes by
// Kerberos, and nothing of what it writes crosses port 389 in clear.
TEST(KerberosAutomatic, ADcWithoutTlsIsReachedByKerberosAndNothingGoesInClear) {
    ASSERT_EQ(getuid(), 0u) << "the mount namespace needs root, as the test DC does";
    ASSERT_TRUE(ConnectTestDc(ConnectMethod::Remote));
    ScopedOu ou;
    ASSERT_TRUE(ou.ok());

    TcpRelay ldaps("127.0.0.2", 636, 0), ldap("127.0.0.2", 389, 389), kdc("127.0.0.2", 88, 88);
    ASSERT_TRUE(ldaps.ok() && ldap.ok() && kdc.ok()) << "127.0.0.2 ports 88, 389, 636 are taken";
    ScratchFolder home;
    const std::filesystem::path hosts = home / "hosts";
    std::ofstream(hosts) << "127.0.0.1 localhost\n127.0.0.2 orindc.orin.test orindc\n";
    std::ofstream(home / "password") << TestDc().adminPassword << "\n";
    const std::string secret = "sealed-" + std::to_string(getpid()) + "-value";
    const std::string csv = (home / "add.csv").string();
    WriteCsv(csv,
             {"!OU-Start,,OU-End,Mirror,description", ou.Rdn().substr(3) + ",sealed,,," + secret});

    std::string command =
        "unshare -m sh -c " + ShellQuote("mount --bind \"$0\" /etc/hosts && exec \"$@\"") + " " +
        ShellQuote(hosts.string()) + " env -u ORIN_PASSWORD -u KRB5CCNAME -u LDAPTLS_CACERT" +
        " KRB5_CONFIG=" + kNoConfig + " ORIN_HOME=" + ShellQuote(home.path().string()) + " " +
        ShellQuote(CliPath());
    const std::vector<std::string> args = {"run",
                                           "--kind",
                                           "ou",
                                           "--op",
                                           "add",
                                           "--mode",
                                           "production",
                                           "--csv",
                                           csv,
                                           "--dns",
                                           "orin.test",
                                           "--netbios",
                                           "ORIN",
                                           "--method",
                                           "remote",
                                           "--server",
                                           "orindc.orin.test",
                                           "--user",
                                           "Administrator",
                                           "--password-file",
                                           (home / "password").string(),
                                           "--yes"};
    for (const std::string& arg : args) command += " " + ShellQuote(arg);
    command += " </dev/null >" + ShellQuote((home / "out").string()) + " 2>" +
               ShellQuote((home / "err").string());
    const int raw = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(raw));
    EXPECT_EQ(WEXITSTATUS(raw), 0) << ReadBytes(home / "err");

    // LDAPS was tried, and tried again with the certificate unchecked, before Kerberos.
    EXPECT_EQ(ldaps.Accepted(), 2);
    EXPECT_GE(kdc.Accepted(), 1);
    DirObject made;
    ASSERT_TRUE(BindObject("LDAP://OU=sealed," + ou.Dn(), made));
    EXPECT_EQ(made.Get("description").value_or(""), secret);
    // The relay carried the session: the bind's mechanism name is the last thing in clear.
    const std::string toDc = ldap.FromClients();
    EXPECT_NE(toDc.find("GSSAPI"), std::string::npos);
    EXPECT_EQ(toDc.find(secret), std::string::npos);
    EXPECT_EQ(toDc.find("OU=sealed"), std::string::npos);
    EXPECT_EQ(ldap.FromServer().find("configurationNamingContext"), std::string::npos);
    EXPECT_EQ(toDc.find(TestDc().adminPassword), std::string::npos);
    EXPECT_EQ(kdc.FromClients().find(TestDc().adminPassword), std::string::npos);
}

}  // namespace
}  // namespace orin::test
