#include "directory/Connect.h"

#include <chrono>
#include <cstdlib>
#include <thread>

#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"
#include "run/Operator.h"
#include "run/Trace.h"

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
    TheOperator().MessageBox(kTitle, std::string(headline) + "\r" + std::string(detail),
                             MsgIcon::Critical, MsgButtons::Ok);
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

    // The "LDAP:" provider: a connection to the DC can be prepared.
    std::unique_ptr<LdapConnection> conn;
    LdapStatus status{platform::kLdapParamError, "no domain controller name"};
    if (!Trim(gSession.DcComputerName).empty()) {
        std::string uri = gSession.UseStartTls
                              ? platform::LdapUri("ldap", gSession.DcComputerName, 389)
                              : platform::LdapUri("ldaps", gSession.DcComputerName, 636);
        status = LdapConnection::Create(uri, SessionOptions(), conn);
    }
    if (!status.ok()) return Fail(kProc, kRemoteHeadline, kLdapProviderFailed, status.message);

    // The domain root under the given credentials, over an encrypted channel only.
    if (gSession.UseStartTls) status = conn->StartTls();
    if (status.ok()) status = conn->SimpleBind(RemoteBindName(), gSession.Password);
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
