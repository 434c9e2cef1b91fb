#pragma once
// One connection to an LDAP v3 server (an Active Directory domain controller, Windows or
// Samba), over libldap. The only code of the program that calls libldap or SASL.
//
// - Every network step is bounded: connecting (TCP and the TLS handshake) by the network
//   timeout, every request by the operation timeout. A refused, unreachable or silent server
//   gives an error within those times.
// - Passwords travel only over an encrypted channel: a simple bind is refused unless the
//   connection runs TLS (ldaps:// or StartTLS). GSSAPI binds use the caller's Kerberos
//   credentials and protect the session with the Kerberos security layer.
// - Certificates are verified by default against the system trust store, or against a named
//   CA file; accepting any certificate (the self-signed one of a test DC) is an explicit switch.
// - Referrals are never chased. Values are byte strings: binary attributes stay binary.
// - A connection that the server or the network dropped (servers close idle connections) is
//   opened and bound again, the same way, when the next request finds it gone; that request
//   is then sent once more.
// - One thread at a time uses a connection.

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

typedef struct ldap LDAP;  // libldap's handle, as ldap.h declares it
struct ldap_conncb;

namespace orin::platform {

class KerberosCredentials;  // platform/Kerberos.h

// An LDAP result code (0 success, 32 no such object, 49 invalid credentials...) or a libldap
// API code (negative: -1 server down, -5 timeout, -11 connect error...). The message says what
// was tried and why it failed: a server's result code with its own words ("bind as x: result
// 49 Invalid credentials: 80090308: ..."), libldap's text, or "no answer from host:port within
// N s" for a connection or handshake that ran out of time.
struct LdapStatus {
    int code = 0;
    std::string message;
    bool ok() const { return code == 0; }
};

inline constexpr int kLdapNoSuchObject = 32;
inline constexpr int kLdapInvalidCredentials = 49;
inline constexpr int kLdapSizeLimitExceeded = 4;
inline constexpr int kLdapStrongAuthRequired = 8;
inline constexpr int kLdapServerDown = -1;
inline constexpr int kLdapTimeout = -5;
inline constexpr int kLdapParamError = -9;
inline constexpr int kLdapConnectError = -11;

struct LdapOptions {
    int networkTimeoutSeconds = 10;     // TCP connect and TLS handshake
    int operationTimeoutSeconds = 120;  // each request, bind and search page
    std::string caFile;                 // empty: the system trust store
    bool trustAnyCertificate = false;   // accept any server certificate (test DC only)
    int pageSize = 500;                 // entries per page of a paged search
};

enum class LdapScope { Base, OneLevel, Subtree };

using LdapValues = std::vector<std::string>;  // byte strings

struct LdapAttribute {
    std::string name;  // as the server wrote it, options included ("member;range=0-1499")
    LdapValues values;
};

struct LdapEntry {
    std::string dn;
    std::vector<LdapAttribute> attributes;
    // The values of the attribute of that name (ASCII case ignored, no options), or nullptr.
    const LdapValues* Find(std::string_view name) const;
};

struct LdapMod {
    enum class Op { Add, Replace, Delete };
    Op op = Op::Replace;
    std::string attribute;
    LdapValues values;  // Delete with no values removes the attribute
};

struct LdapSearchOptions {
    int sizeLimit = 0;         // 0: no limit; when reached, what came so far is a success
    bool paged = true;         // paged-results control, for any number of entries
    bool sdFlagsDacl = false;  // ask nTSecurityDescriptor for the DACL only
};

class LdapConnection {
  public:
    // Prepares a connection to `uri` ("ldaps://host:636", "ldap://host"). No network traffic
    // yet; fails only for a URI that can't be used.
    static LdapStatus Create(std::string_view uri, const LdapOptions& options,
                             std::unique_ptr<LdapConnection>& out);
    ~LdapConnection();
    LdapConnection(const LdapConnection&) = delete;
    LdapConnection& operator=(const LdapConnection&) = delete;

    // Opens the TCP connection (and TLS for ldaps://). The other calls connect on demand.
    LdapStatus Connect();
    // Upgrades an ldap:// connection to TLS.
    LdapStatus StartTls();
    // Simple bind; refused without TLS, and refused for an empty password (which would be an
    // anonymous bind that looks like a success).
    LdapStatus SimpleBind(std::string_view name, std::string_view password);
    // SASL GSSAPI with the caller's Kerberos credentials (KRB5CCNAME), or with `credentials`
    // (a private ticket cache, used for this connection only and kept to bind again after a
    // drop). The server's name is the host of the URI as written, never a reverse lookup of its
    // address.
    LdapStatus GssapiBind(std::shared_ptr<const KerberosCredentials> credentials = nullptr);

    // TLS, or a SASL layer that encrypts.
    bool IsEncrypted() const;
    const std::string& Uri() const { return uri_; }
    const LdapOptions& Options() const { return options_; }
    void SetPageSize(int pageSize) { options_.pageSize = pageSize; }
    // Requests sent so far (each search page counts): for traces and benchmarks.
    long RequestCount() const { return requests_; }

    // The attributes that a read of all attributes ("*") leaves out because the server makes
    // them only on request (Active Directory's constructed attributes: canonicalName,
    // tokenGroups...). Until they are set, every attribute counts as one of them.
    void SetOnRequestAttributes(std::vector<std::string> names);
    bool IsOnRequestAttribute(std::string_view name) const;

    // Calls `onEntry` for each entry found, page after page; returning false from it stops the
    // search. Continuation references are skipped.
    LdapStatus SearchEach(std::string_view base, LdapScope scope, std::string_view filter,
                          const std::vector<std::string>& attributes,
                          const std::function<bool(LdapEntry&)>& onEntry,
                          const LdapSearchOptions& searchOptions = {});
    LdapStatus Search(std::string_view base, LdapScope scope, std::string_view filter,
                      const std::vector<std::string>& attributes, std::vector<LdapEntry>& out,
                      const LdapSearchOptions& searchOptions = {});
    // Reads the one entry at `dn`; code 32 when it isn't there.
    LdapStatus Read(std::string_view dn, const std::vector<std::string>& attributes, LdapEntry& out,
                    const LdapSearchOptions& searchOptions = {});
    // All values of a multi-valued attribute, read range by range ("member;range=0-*") so
    // that servers that cap the values per answer still give them all.
    LdapStatus ReadAllValues(std::string_view dn, std::string_view attribute, LdapValues& out);

    LdapStatus Add(std::string_view dn, const std::vector<LdapMod>& attributes);
    LdapStatus Modify(std::string_view dn, const std::vector<LdapMod>& mods,
                      bool sdFlagsDacl = false);
    LdapStatus Delete(std::string_view dn);
    // Modify-DN: a new relative name, under a new parent when `newParent` isn't empty.
    LdapStatus Rename(std::string_view dn, std::string_view newRdn, std::string_view newParent);

    // Called by libldap when the socket opens (fd) and closes (-1).
    void SocketOpened(int fd);
    // The connected socket, -1 when there is none: for diagnostics.
    int Socket();

  private:
    LdapConnection(LDAP* ld, std::string uri, LdapOptions options);
    LdapStatus ApplyOptions();
    // Runs a call that may do a TLS handshake, which libldap does not bound by itself: past the
    // network timeout the socket is shut down, and the handshake fails instead of waiting.
    int WithHandshakeDeadline(const std::function<int()>& call);
    // Runs a request; when it finds the connection gone, reopens it and runs it once more.
    // `mayRepeat`, when given, says whether the request may still be sent again.
    LdapStatus Resilient(const std::function<LdapStatus()>& request,
                         const std::function<bool()>& mayRepeat = {});
    LdapStatus Reopen();
    LdapStatus ErrorFromHandle(int code, std::string_view what) const;
    // A connect or TLS handshake that ran out of the network timeout.
    LdapStatus NoAnswer() const;
    LdapStatus SearchPage(std::string_view base, LdapScope scope, std::string_view filter,
                          const std::vector<std::string>& attributes,
                          const std::function<bool(LdapEntry&)>& onEntry,
                          const LdapSearchOptions& searchOptions, std::string& cookie,
                          bool& stopped);

    LDAP* ld_ = nullptr;
    std::string uri_;
    LdapOptions options_;
    bool connected_ = false;
    long requests_ = 0;
    // How the connection was secured and bound, to do it again after a drop.
    enum class BindKind { None, Simple, Gssapi };
    BindKind bindKind_ = BindKind::None;
    bool startedTls_ = false;
    std::string bindName_, bindPassword_;
    std::shared_ptr<const KerberosCredentials> kerberos_;
    bool onRequestKnown_ = false;
    std::vector<std::string> onRequest_;  // lower case, sorted
    std::unique_ptr<ldap_conncb> connectCallback_;
    std::mutex socketMutex_;
    int socket_ = -1;
    bool handshakeTimedOut_ = false;
};

// "ldaps://host:636" from a host name (an IPv6 address gets its brackets).
std::string LdapUri(std::string_view scheme, std::string_view host, int port);

// Parses the range option of an attribute description: "member;range=0-1499" gives first 0,
// last 1499; "member;range=1500-*" gives last -1 (the final range). False without a range.
bool ParseRange(std::string_view description, long& first, long& last);

// The BER value of the SD-flags control: SEQUENCE { INTEGER flags }.
std::string SdFlagsControlValue(int flags);

}  // namespace orin::platform
