#include "directory/Connect.h"

#include <chrono>
#include <cstdlib>
#include <thread>

#include "base/Operator.h"
#include "base/Trace.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/Kerberos.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"

namespace orin {

namespace {

using platform::LdapConnection;
using platform::LdapEntry;
using platform::LdapStatus;

constexpr std::string_view kTitle = "ﾄﾞﾒｲﾝ接続";
constexpr std::string_view kLocalHeadline = "ﾛｰｶﾙｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！";
constexpr std::string_view kRemoteHeadline = "ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！";
constexpr std::string_view kDnsNameFailed = "完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。";
constexpr std::string_view kNetBiosNameFailed = "NetBIOS名のﾄﾞﾒｲﾝ認証が失敗。";
constexpr std::string_view kLdapProviderFailed = "LDAPﾌﾟﾛﾊﾞｲﾀﾞに接続できません。";
constexpr std::string_view kWinNtProviderFailed = "WinNTﾌﾟﾛﾊﾞｲﾀﾞに接続できません。";

// Lets the wait dialog paint (one second in a window) before the binds block the thread.
void WaitOneSecond() {
    auto end = std::chrono::steady_clock::now() +
               std::chrono::duration<double>(TheOperator().PaintWaitSeconds());
    while (std::chrono::steady_clock::now() < end) {
        TheOperator().Yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

platform::LdapOptions SessionOptions() {
    platform::LdapOptions options;
    options.networkTimeoutSeconds = gSession.NetworkTimeoutSeconds;
    options.operationTimeoutSeconds = gSession.OperationTimeoutSeconds;
    options.caFile = gSession.CaFile;
    if (options.caFile.empty()) {
        // The variable the OpenLDAP tools read: naming a CA is the operator's choice.
        if (const char* env = std::getenv("LDAPTLS_CACERT")) options.caFile = env;
    }
    options.trustAnyCertificate = gSession.TrustAnyCertificate;
    options.pageSize = gSession.PageSize;
    return options;
}

void Forget() {
    gSession.Connected = false;
    gSession.RootObject = DirObject();
    gSession.Connection.reset();
}

void Fail(std::string_view procName, std::string_view headline, std::string_view detail,
          const std::string& cause) {
    Forget();
    WriteTrace(TraceMode, true, kTraceSub, procName, std::string(detail) + " " + cause);
    TheOperator().DetailedMessageBox(kTitle, std::string(headline) + "\r" + std::string(detail),
                                     cause, MsgIcon::Critical, MsgButtons::Ok);
}

LdapStatus ReadRootDse(LdapConnection& conn, std::string_view attribute, std::string& value) {
    LdapEntry entry;
    LdapStatus status = conn.Read("", {std::string(attribute)}, entry);
    if (!status.ok()) return status;
    const auto* values = entry.Find(attribute);
    if (!values || values->empty())
        return {platform::kLdapNoSuchObject, "root entry lacks " + std::string(attribute)};
    value = values->front();
    return {};
}

// RFC 4515 escaping of a value inside a search filter.
std::string FilterValue(std::string_view value) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string out;
    for (char c : value) {
        if (c == '*' || c == '(' || c == ')' || c == '\\' || c == '\0') {
            out += '\\';
            out += kHex[(static_cast<unsigned char>(c) >> 4) & 0xF];
            out += kHex[static_cast<unsigned char>(c) & 0xF];
        } else {
            out += c;
        }
    }
    return out;
}

// The NetBIOS name given is the domain's own.
LdapStatus CheckNetBiosName(LdapConnection& conn, const std::string& configurationNc) {
    std::vector<LdapEntry> found;
    LdapStatus status =
        conn.Search("CN=Partitions," + configurationNc, platform::LdapScope::OneLevel,
                    "(&(objectClass=crossRef)(nCName=" + FilterValue(gSession.DomainDN) + "))",
                    {"nETBIOSName"}, found);
    if (!status.ok()) return status;
    for (const auto& e : found) {
        const auto* names = e.Find("nETBIOSName");
        if (names && !names->empty() &&
            EqualsIgnoreCase(names->front(), gSession.DomainNetBIOSName))
            return {};
    }
    return {platform::kLdapNoSuchObject,
            "the domain's NetBIOS name is not " + gSession.DomainNetBIOSName};
}

// The domain holds at least one group that this identity can see.
LdapStatus CheckGroupVisible(LdapConnection& conn) {
    std::vector<LdapEntry> found;
    platform::LdapSearchOptions options;
    options.sizeLimit = 1;
    options.paged = false;
    LdapStatus status = conn.Search(gSession.DomainDN, platform::LdapScope::Subtree,
                                    "(objectClass=group)", {"cn"}, found, options);
    if (!status.ok()) return status;
    if (found.empty()) return {platform::kLdapNoSuchObject, "no group found"};
    return {};
}

// Connects to the domain by its DNS name, then binds with Kerberos at the DC that answered,
// under the host name of its service principal.
LdapStatus OpenLocal(std::unique_ptr<LdapConnection>& out) {
    if (Trim(gSession.DomainDNSName).empty()) return {platform::kLdapParamError, "no DNS name"};
    platform::LdapOptions options = SessionOptions();
    LdapStatus status = LdapConnection::Create(
        platform::LdapUri("ldap", gSession.DomainDNSName, 389), options, out);
    if (!status.ok()) return status;
    std::string dcHost;
    status = ReadRootDse(*out, "dnsHostName", dcHost);
    if (!status.ok()) return status;
    if (!EqualsIgnoreCase(dcHost, gSession.DomainDNSName)) {
        status = LdapConnection::Create(platform::LdapUri("ldap", dcHost, 389), options, out);
        if (!status.ok()) return status;
    }
    return out->GssapiBind();
}

// The schema's constructed attributes: a read of all attributes leaves them out, so the
// object model asks for them by name. Without the list it asks for every missing attribute,
// which costs a request per empty attribute but is never wrong.
void LearnConstructedAttributes(LdapConnection& conn) {
    std::string schemaNc;
    if (!ReadRootDse(conn, "schemaNamingContext", schemaNc).ok()) return;
    std::vector<LdapEntry> found;
    LdapStatus status =
        conn.Search(schemaNc, platform::LdapScope::OneLevel,
                    "(&(objectClass=attributeSchema)(systemFlags:1.2.840.113556.1.4.803:=4))",
                    {"lDAPDisplayName"}, found);
    if (!status.ok() || found.empty()) return;
    std::vector<std::string> names;
    for (const auto& e : found) {
        if (const auto* name = e.Find("lDAPDisplayName"); name && !name->empty()) {
            names.push_back(name->front());
        }
    }
    conn.SetOnRequestAttributes(std::move(names));
}

std::string RemoteBindName() {
    const std::string& user = gSession.UserName;
    if (user.find_first_of("\\@=") != std::string::npos) return user;
    return user + "@" + gSession.DomainDNSName;
}

// Where the simple bind goes: LDAPS, or port 389 to be upgraded by StartTLS.
std::string TlsUri() {
    return gSession.UseStartTls ? platform::LdapUri("ldap", gSession.DcComputerName, 389)
                                : platform::LdapUri("ldaps", gSession.DcComputerName, 636);
}

LdapStatus SecureWithTls(LdapConnection& conn) {
    return gSession.UseStartTls ? conn.StartTls() : conn.Connect();
}

// The DC completes a TLS handshake when its certificate goes unchecked: it offers TLS, and what
// failed before was the certificate. Nothing but the handshake is sent.
bool OffersTls() {
    platform::LdapOptions options = SessionOptions();
    options.trustAnyCertificate = true;
    std::unique_ptr<LdapConnection> probe;
    return LdapConnection::Create(TlsUri(), options, probe).ok() && SecureWithTls(*probe).ok();
}

// "host:port" of the TLS channel.
std::string TlsHostAndPort() {
    return gSession.DcComputerName + (gSession.UseStartTls ? ":389" : ":636");
}

std::string CertificateNotTrusted() {
    const std::string ca = SessionOptions().caFile;
    return "certificate not trusted: " + TlsHostAndPort() + ", checked for that name against " +
           (ca.empty() ? std::string("the system trust store") : ca) +
           " (use --ca-file or LDAPTLS_CACERT)";
}

// Binds `conn` (ldap://DC:389) with a Kerberos ticket obtained from the password. The bind
// counts only when the Kerberos security layer seals the session.
LdapStatus BindKerberos(LdapConnection& conn) {
    std::string error;
    auto principal = platform::PrincipalForUser(gSession.UserName, gSession.DomainDNSName,
                                                gSession.DomainNetBIOSName, &error);
    if (!principal) return {platform::kLdapParamError, "Kerberos: " + error};
    platform::KerberosLogin login;
    login.principal = *principal;
    login.serviceHost = gSession.DcComputerName;
    login.fallbackKdc = gSession.DcComputerName;
    login.timeoutSeconds = gSession.KerberosTimeoutSeconds;
    std::shared_ptr<platform::KerberosCredentials> credentials;
    platform::KerberosStatus kerberos =
        platform::KerberosCredentials::FromPassword(login, gSession.Password, credentials);
    if (!kerberos.ok()) {
        return {kerberos.code == platform::kKerberosTimedOut ? platform::kLdapTimeout
                                                             : platform::kLdapInvalidCredentials,
                "Kerberos: " + kerberos.message};
    }
    LdapStatus status = conn.GssapiBind(std::move(credentials));
    if (status.ok() && !conn.IsEncrypted()) {
        status = {platform::kLdapStrongAuthRequired, "GSSAPI bind without a sealing layer"};
    }
    return status;
}

// Secures and binds one of the prepared connections, as the session's RemoteAuthentication
// allows (`tls` is null for Kerberos alone; `plain`, to port 389, is always there): TLS with a
// simple bind where the DC offers TLS, else Kerberos. A DC that offers TLS with a certificate
// that fails the check is not a reason for Kerberos: that is the operator's to settle (a CA
// file, or Kerberos chosen explicitly). `out` gets the bound connection; a failure's message
// says why in words the operator can act on.
LdapStatus BindRemote(std::unique_ptr<LdapConnection> tls, std::unique_ptr<LdapConnection> plain,
                      bool kerberos, std::unique_ptr<LdapConnection>& out) {
    if (tls) {
        LdapStatus status = SecureWithTls(*tls);
        if (status.ok()) {
            status = tls->SimpleBind(RemoteBindName(), gSession.Password);
            if (status.ok()) out = std::move(tls);
            return status;
        }
        // Whether the DC is there at all: connecting to port 389 sends nothing.
        const bool timedOut = status.code == platform::kLdapTimeout;
        LdapStatus reached = plain->Connect();
        if (!reached.ok()) {
            if (timedOut) return status;
            return {reached.code, status.message + "; " + reached.message};
        }
        if (!timedOut && OffersTls()) return {status.code, CertificateNotTrusted()};
        if (!kerberos) {
            if (timedOut) return status;
            return {status.code, "no TLS at " + TlsHostAndPort() + " (" + status.message +
                                     "), and a simple bind without it is refused (use --auth "
                                     "kerberos)"};
        }
        WriteTrace(
            TraceMode, true, kTraceSub, "ConnectRemote",
            "no TLS at " + gSession.DcComputerName + " (" + status.message + "): Kerberos instead");
    }
    LdapStatus status = BindKerberos(*plain);
    if (status.ok()) out = std::move(plain);
    return status;
}

}  // namespace

void ConnectLocal() {
    constexpr std::string_view kProc = "ConnectLocal";
    WaitOneSecond();
    gSession.DomainDN = BuildDomainDN(gSession.DomainDNSName);
    Forget();

    std::unique_ptr<LdapConnection> conn;
    LdapStatus status = OpenLocal(conn);
    if (!status.ok()) return Fail(kProc, kLocalHeadline, kDnsNameFailed, status.message);
    gSession.Connection = std::move(conn);
    auto root = DirObject::Load(gSession.Connection, "", gSession.DomainDN);
    TheOperator().Yield();
    if (!root.ok()) return Fail(kProc, kLocalHeadline, kDnsNameFailed, root.status().message);
    gSession.RootObject = std::move(*root);

    std::string configurationNc;
    status = ReadRootDse(*gSession.Connection, "configurationNamingContext", configurationNc);
    if (status.ok()) status = CheckNetBiosName(*gSession.Connection, configurationNc);
    TheOperator().Yield();
    if (!status.ok()) return Fail(kProc, kLocalHeadline, kNetBiosNameFailed, status.message);

    status = CheckGroupVisible(*gSession.Connection);
    if (!status.ok()) return Fail(kProc, kLocalHeadline, kNetBiosNameFailed, status.message);

    LearnConstructedAttributes(*gSession.Connection);
    gSession.Connected = true;
    gSession.RootLdapPath = "LDAP://" + gSession.DomainDN;
}

void ConnectRemote() {
    constexpr std::string_view kProc = "ConnectRemote";
    WaitOneSecond();
    Forget();

    // The "LDAP:" provider: the connections that the session's way of binding needs can be
    // prepared.
    const RemoteAuth auth = gSession.RemoteAuthentication;
    std::unique_ptr<LdapConnection> tls, plain;
    LdapStatus status{platform::kLdapParamError, "no domain controller name"};
    if (!Trim(gSession.DcComputerName).empty()) {
        status = {};
        if (auth != RemoteAuth::KerberosOnly) {
            status = LdapConnection::Create(TlsUri(), SessionOptions(), tls);
        }
        if (status.ok()) {
            status = LdapConnection::Create(platform::LdapUri("ldap", gSession.DcComputerName, 389),
                                            SessionOptions(), plain);
        }
    }
    if (!status.ok()) return Fail(kProc, kRemoteHeadline, kLdapProviderFailed, status.message);

    // The domain root under the given credentials, over an encrypted channel only.
    std::unique_ptr<LdapConnection> conn;
    status = BindRemote(std::move(tls), std::move(plain), auth != RemoteAuth::TlsOnly, conn);
    if (!status.ok()) return Fail(kProc, kRemoteHeadline, kDnsNameFailed, status.message);
    gSession.Connection = std::move(conn);
    auto root = DirObject::Load(gSession.Connection, gSession.DcComputerName, gSession.DomainDN);
    if (!root.ok()) return Fail(kProc, kRemoteHeadline, kDnsNameFailed, root.status().message);
    gSession.RootObject = std::move(*root);

    // The "WinNT:" provider: the DC names its configuration, where the NetBIOS names live.
    std::string configurationNc;
    status = ReadRootDse(*gSession.Connection, "configurationNamingContext", configurationNc);
    if (!status.ok()) return Fail(kProc, kRemoteHeadline, kWinNtProviderFailed, status.message);

    status = CheckNetBiosName(*gSession.Connection, configurationNc);
    if (!status.ok()) return Fail(kProc, kRemoteHeadline, kNetBiosNameFailed, status.message);

    LearnConstructedAttributes(*gSession.Connection);
    gSession.Connected = true;
    gSession.RootLdapPath = "LDAP://" + gSession.DcComputerName + "/" + gSession.DomainDN;
}

}  // namespace orin
