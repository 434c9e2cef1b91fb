// Kerberos without a KDC that answers: the principal made of each user name form, and the
// exchange with a KDC that is silent or absent, which must end within its timeout.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "cli/CliTestSupport.h"
#include "platform/Kerberos.h"

namespace orin::platform {
namespace {

TEST(PrincipalForUser, EachNameFormOfTheRemoteMethod) {
    struct Case {
        const char* user;
        const char* name;
        const char* realm;
        bool enterprise;
    };
    const Case cases[] = {
        {"Administrator", "Administrator@ORIN.TEST", "ORIN.TEST", false},
        {"ORIN\\Administrator", "Administrator@ORIN.TEST", "ORIN.TEST", false},
        {"orin\\jdoe", "jdoe@ORIN.TEST", "ORIN.TEST", false},
        {"orin.test\\jdoe", "jdoe@ORIN.TEST", "ORIN.TEST", false},
        // Another domain's NetBIOS name is taken for its realm, never for this domain's.
        {"OTHER\\jdoe", "jdoe@OTHER", "OTHER", false},
        {"jdoe@orin.test", "jdoe@ORIN.TEST", "ORIN.TEST", false},
        {"jdoe@ORIN.TEST", "jdoe@ORIN.TEST", "ORIN.TEST", false},
        // A UPN of another suffix: the domain's KDC finds the account by its UPN.
        {"jdoe@example.com", "jdoe@example.com", "ORIN.TEST", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.user);
        std::string error;
        auto principal = PrincipalForUser(c.user, "orin.test", "ORIN", &error);
        ASSERT_TRUE(principal) << error;
        EXPECT_EQ(principal->name, c.name);
        EXPECT_EQ(principal->realm, c.realm);
        EXPECT_EQ(principal->enterprise, c.enterprise);
    }
    // A DNS name written with its final dot names the same realm.
    auto dotted = PrincipalForUser("jdoe@orin.test", "orin.test.", "ORIN");
    ASSERT_TRUE(dotted);
    EXPECT_EQ(dotted->name, "jdoe@ORIN.TEST");
}

TEST(PrincipalForUser, NamesWithoutAPrincipalAreRefusedWithAReason) {
    for (const char* user : {"CN=Administrator,CN=Users,DC=orin,DC=test", "", "\\jdoe", "ORIN\\",
                             "ORIN\\a\\b", "@orin.test", "jdoe@", "a@b@orin.test"}) {
        SCOPED_TRACE(user);
        std::string error;
        EXPECT_FALSE(PrincipalForUser(user, "orin.test", "ORIN", &error));
        EXPECT_FALSE(error.empty());
    }
    std::string error;
    EXPECT_FALSE(PrincipalForUser("jdoe", "", "ORIN", &error));
    EXPECT_FALSE(error.empty());
}

// A realm that no configuration names, so that the exchange goes to the fallback KDC; the
// test's own settings are put back afterwards.
class KdcExchange : public ::testing::Test {
  protected:
    void SetUp() override {
        if (const char* v = std::getenv("KRB5_CONFIG")) savedConfig_ = v;
        setenv("KRB5_CONFIG", "/nonexistent/krb5.conf", 1);
        login.principal = {"jdoe@NOWHERE.TEST", "NOWHERE.TEST", false};
        login.serviceHost = "dc.nowhere.test";
        login.timeoutSeconds = 2;
    }
    void TearDown() override {
        if (savedConfig_.empty()) {
            unsetenv("KRB5_CONFIG");
        } else {
            setenv("KRB5_CONFIG", savedConfig_.c_str(), 1);
        }
    }

    // A UDP port on loopback that takes requests and never answers, as a KDC behind a firewall
    // that drops them; closed with the test.
    int SilentPort() {
        silent_ = socket(AF_INET, SOCK_DGRAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (silent_ < 0 || bind(silent_, reinterpret_cast<sockaddr*>(&address), sizeof address))
            return -1;
        socklen_t length = sizeof address;
        getsockname(silent_, reinterpret_cast<sockaddr*>(&address), &length);
        return ntohs(address.sin_port);
    }
    ~KdcExchange() override {
        if (silent_ >= 0) close(silent_);
    }

    KerberosLogin login;

  private:
    std::string savedConfig_;
    int silent_ = -1;
};

TEST_F(KdcExchange, ASilentKdcEndsWithinTheTimeout) {
    const int port = SilentPort();
    ASSERT_GT(port, 0);
    login.fallbackKdc = "127.0.0.1:" + std::to_string(port);
    std::shared_ptr<KerberosCredentials> credentials;
    const auto start = std::chrono::steady_clock::now();
    KerberosStatus status = KerberosCredentials::FromPassword(login, "secret", credentials);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(status.code, kKerberosTimedOut) << status.message;
    EXPECT_EQ(credentials, nullptr);
    EXPECT_GE(waited, std::chrono::seconds(2));
    EXPECT_LT(waited, std::chrono::milliseconds(3500));
}

TEST_F(KdcExchange, NoKdcAtAllIsAnErrorOfTheLibraryNotATimeout) {
    // Neither configuration, DNS nor a fallback names a KDC for the realm.
    std::shared_ptr<KerberosCredentials> credentials;
    KerberosStatus status = KerberosCredentials::FromPassword(login, "secret", credentials);
    EXPECT_FALSE(status.ok());
    EXPECT_NE(status.code, kKerberosTimedOut) << status.message;
    EXPECT_NE(status.message.find("Cannot find KDC"), std::string::npos) << status.message;
    EXPECT_EQ(credentials, nullptr);
}

TEST(CliAuthOption, TakesAutoTlsOrKerberosAndSaysSoInTheUsage) {
    test::ScratchFolder home;
    const std::vector<std::string> run = {"run",    "--kind",  "ou",    "--op", "add",
                                          "--mode", "imitate", "--csv", "a.csv"};
    std::vector<std::string> args = run;
    args.insert(args.end(), {"--auth", "ntlm"});
    const test::CliResult bad = test::RunCli(home.path(), args);
    EXPECT_EQ(bad.status, 64);
    EXPECT_NE(bad.err.find("--auth の値が正しくありません: ntlm"), std::string::npos) << bad.err;

    const test::CliResult help = test::RunCli(home.path(), {"--help"});
    EXPECT_NE(help.out.find("[--auth auto|tls|kerberos]"), std::string::npos) << help.out;
}

}  // namespace
}  // namespace orin::platform
