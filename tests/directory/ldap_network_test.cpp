// The LDAP connection against servers that misbehave, played by local sockets: nothing here
// may hang past its timeout, crash, or send a password in clear.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "platform/LdapConnection.h"

namespace orin::platform {
namespace {

using Clock = std::chrono::steady_clock;

// A TCP listener on 127.0.0.1 that never answers: the kernel completes the handshake of a
// client, whose bytes wait in the queue until Received takes them.
class SilentServer {
  public:
    SilentServer() {
        fd_ = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(fd_, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
        listen(fd_, 4);
        socklen_t len = sizeof addr;
        getsockname(fd_, reinterpret_cast<sockaddr*>(&addr), &len);
        port_ = ntohs(addr.sin_port);
    }
    ~SilentServer() { close(fd_); }
    int port() const { return port_; }
    // Everything the first client sent.
    std::string Received() {
        std::string received;
        int client = accept4(fd_, nullptr, nullptr, SOCK_NONBLOCK);
        char buffer[4096];
        for (ssize_t n; client >= 0 && (n = recv(client, buffer, sizeof buffer, 0)) > 0;)
            received.append(buffer, n);
        if (client >= 0) close(client);
        return received;
    }

  private:
    int fd_ = -1;
    int port_ = 0;
};

LdapOptions Short() {
    LdapOptions o;
    o.networkTimeoutSeconds = 2;
    o.operationTimeoutSeconds = 2;
    return o;
}

// A connection to 127.0.0.1 with the short timeouts; null when the URI is refused.
std::unique_ptr<LdapConnection> Open(const char* scheme, int port) {
    std::unique_ptr<LdapConnection> conn;
    EXPECT_TRUE(LdapConnection::Create(LdapUri(scheme, "127.0.0.1", port), Short(), conn).ok());
    return conn;
}

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

TEST(LdapNetwork, RefusedPortFailsAtOnce) {
    auto conn = Open("ldaps", 1);
    ASSERT_TRUE(conn);
    auto start = Clock::now();
    LdapStatus status = conn->Connect();
    EXPECT_EQ(status.code, kLdapServerDown) << status.message;
    EXPECT_LT(SecondsSince(start), 2.0);
}

TEST(LdapNetwork, SilentServerTimesOutTheTlsHandshake) {
    SilentServer server;
    auto conn = Open("ldaps", server.port());
    ASSERT_TRUE(conn);
    auto start = Clock::now();
    LdapStatus status = conn->Connect();
    double seconds = SecondsSince(start);
    EXPECT_EQ(status.code, kLdapTimeout) << status.message;
    EXPECT_GE(seconds, 1.9);
    EXPECT_LT(seconds, 5.0);
    // The connection stays unusable, and says so, rather than hanging or crashing.
    std::vector<LdapEntry> entries;
    EXPECT_FALSE(conn->Search("", LdapScope::Base, "", {}, entries).ok());
}

TEST(LdapNetwork, SilentServerTimesOutRequests) {
    SilentServer server;
    auto conn = Open("ldap", server.port());
    ASSERT_TRUE(conn);
    auto start = Clock::now();
    std::vector<LdapEntry> entries;
    EXPECT_EQ(conn->Search("", LdapScope::Base, "", {}, entries).code, kLdapTimeout);
    EXPECT_EQ(conn->Delete("CN=x,DC=y").code, kLdapTimeout);
    EXPECT_LT(SecondsSince(start), 8.0);
}

TEST(LdapNetwork, SimpleBindNeverSendsAPasswordInClear) {
    SilentServer server;
    auto conn = Open("ldap", server.port());
    ASSERT_TRUE(conn);
    EXPECT_EQ(conn->SimpleBind("CN=a,DC=b", "secret").code, kLdapStrongAuthRequired);
    EXPECT_FALSE(conn->IsEncrypted());
    // An empty password would be an anonymous bind that reports success: refused as well.
    EXPECT_EQ(conn->SimpleBind("CN=a,DC=b", "").code, kLdapInvalidCredentials);
    conn.reset();  // closes the connection with an unbind request
    std::string sent = server.Received();
    EXPECT_EQ(sent.find("secret"), std::string::npos);
    EXPECT_EQ(sent.find("CN=a,DC=b"), std::string::npos);
    EXPECT_LE(sent.size(), 7u);  // at most the unbind: 30 05 02 01 id 42 00
}

TEST(LdapNetwork, UnusableUriOrCaFileIsRefusedUpFront) {
    std::unique_ptr<LdapConnection> conn;
    EXPECT_FALSE(LdapConnection::Create("ldaps://bad host name:636", Short(), conn).ok());
    EXPECT_EQ(conn, nullptr);
    LdapOptions options = Short();
    options.caFile = "/nonexistent/ca.pem";
    EXPECT_EQ(LdapConnection::Create("ldaps://dc.example:636", options, conn).code,
              kLdapParamError);
}

}  // namespace
}  // namespace orin::platform
