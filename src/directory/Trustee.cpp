#include "directory/Trustee.h"

#include <map>
#include <mutex>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/Strings.h"

namespace orin {
namespace {

struct WellKnown {
    const char* sid;
    const char* name;
};

// Names as a Windows domain controller reports them.
constexpr WellKnown kWellKnown[] = {
    {"S-1-1-0", "Everyone"},
    {"S-1-2-0", "LOCAL"},
    {"S-1-2-1", "CONSOLE LOGON"},
    {"S-1-3-0", "CREATOR OWNER"},
    {"S-1-3-1", "CREATOR GROUP"},
    {"S-1-3-2", "CREATOR OWNER SERVER"},
    {"S-1-3-3", "CREATOR GROUP SERVER"},
    {"S-1-3-4", "OWNER RIGHTS"},
    {"S-1-5-1", "NT AUTHORITY\\DIALUP"},
    {"S-1-5-2", "NT AUTHORITY\\NETWORK"},
    {"S-1-5-3", "NT AUTHORITY\\BATCH"},
    {"S-1-5-4", "NT AUTHORITY\\INTERACTIVE"},
    {"S-1-5-6", "NT AUTHORITY\\SERVICE"},
    {"S-1-5-7", "NT AUTHORITY\\ANONYMOUS LOGON"},
    {"S-1-5-8", "NT AUTHORITY\\PROXY"},
    {"S-1-5-9", "NT AUTHORITY\\ENTERPRISE DOMAIN CONTROLLERS"},
    {"S-1-5-10", "NT AUTHORITY\\SELF"},
    {"S-1-5-11", "NT AUTHORITY\\Authenticated Users"},
    {"S-1-5-12", "NT AUTHORITY\\RESTRICTED"},
    {"S-1-5-13", "NT AUTHORITY\\TERMINAL SERVER USER"},
    {"S-1-5-14", "NT AUTHORITY\\REMOTE INTERACTIVE LOGON"},
    {"S-1-5-15", "NT AUTHORITY\\This Organization"},
    {"S-1-5-17", "NT AUTHORITY\\IUSR"},
    {"S-1-5-18", "NT AUTHORITY\\SYSTEM"},
    {"S-1-5-19", "NT AUTHORITY\\LOCAL SERVICE"},
    {"S-1-5-20", "NT AUTHORITY\\NETWORK SERVICE"},
    {"S-1-5-64-10", "NT AUTHORITY\\NTLM Authentication"},
    {"S-1-5-64-14", "NT AUTHORITY\\SChannel Authentication"},
    {"S-1-5-64-21", "NT AUTHORITY\\Digest Authentication"},
    {"S-1-5-1000", "NT AUTHORITY\\Other Organization"},
    {"S-1-5-32-544", "BUILTIN\\Administrators"},
    {"S-1-5-32-545", "BUILTIN\\Users"},
    {"S-1-5-32-546", "BUILTIN\\Guests"},
    {"S-1-5-32-547", "BUILTIN\\Power Users"},
    {"S-1-5-32-548", "BUILTIN\\Account Operators"},
    {"S-1-5-32-549", "BUILTIN\\Server Operators"},
    {"S-1-5-32-550", "BUILTIN\\Print Operators"},
    {"S-1-5-32-551", "BUILTIN\\Backup Operators"},
    {"S-1-5-32-552", "BUILTIN\\Replicator"},
    {"S-1-5-32-554", "BUILTIN\\Pre-Windows 2000 Compatible Access"},
    {"S-1-5-32-555", "BUILTIN\\Remote Desktop Users"},
    {"S-1-5-32-556", "BUILTIN\\Network Configuration Operators"},
    {"S-1-5-32-557", "BUILTIN\\Incoming Forest Trust Builders"},
    {"S-1-5-32-558", "BUILTIN\\Performance Monitor Users"},
    {"S-1-5-32-559", "BUILTIN\\Performance Log Users"},
    {"S-1-5-32-560", "BUILTIN\\Windows Authorization Access Group"},
    {"S-1-5-32-561", "BUILTIN\\Terminal Server License Servers"},
    {"S-1-5-32-562", "BUILTIN\\Distributed COM Users"},
    {"S-1-5-32-568", "BUILTIN\\IIS_IUSRS"},
    {"S-1-5-32-569", "BUILTIN\\Cryptographic Operators"},
    {"S-1-5-32-573", "BUILTIN\\Event Log Readers"},
    {"S-1-5-32-574", "BUILTIN\\Certificate Service DCOM Access"},
    {"S-1-5-32-575", "BUILTIN\\RDS Remote Access Servers"},
    {"S-1-5-32-576", "BUILTIN\\RDS Endpoint Servers"},
    {"S-1-5-32-577", "BUILTIN\\RDS Management Servers"},
    {"S-1-5-32-578", "BUILTIN\\Hyper-V Administrators"},
    {"S-1-5-32-579", "BUILTIN\\Access Control Assistance Operators"},
    {"S-1-5-32-580", "BUILTIN\\Remote Management Users"},
};

struct DomainRid {
    uint32_t rid;
    const char* name;
};

constexpr DomainRid kDomainRids[] = {
    {498, "Enterprise Read-only Domain Controllers"},
    {500, "Administrator"},
    {501, "Guest"},
    {502, "krbtgt"},
    {512, "Domain Admins"},
    {513, "Domain Users"},
    {514, "Domain Guests"},
    {515, "Domain Computers"},
    {516, "Domain Controllers"},
    {517, "Cert Publishers"},
    {518, "Schema Admins"},
    {519, "Enterprise Admins"},
    {520, "Group Policy Creator Owners"},
    {521, "Read-only Domain Controllers"},
    {522, "Cloneable Domain Controllers"},
    {525, "Protected Users"},
    {526, "Key Admins"},
    {527, "Enterprise Key Admins"},
    {553, "RAS and IAS Servers"},
    {571, "Allowed RODC Password Replication Group"},
    {572, "Denied RODC Password Replication Group"},
};

const Sid kBuiltinDomain{1, 5, {32}};

// What the cache belongs to; a change of any part is a new session.
std::string SessionIdentity() {
    return ToUpperAscii(gSession.Method) + "|" + ToUpperAscii(gSession.DcComputerName) + "|" +
           ToUpperAscii(gSession.DomainDN) + "|" + ToUpperAscii(gSession.DomainNetBIOSName) + "|" +
           ToUpperAscii(gSession.UserName);
}

struct Cache {
    std::mutex mutex;
    std::weak_ptr<platform::LdapConnection> connection;
    std::string identity;
    std::optional<Sid> domainSid;
    std::map<std::string, std::string> nameBySid;  // SID text -> name
    std::map<std::string, Sid> sidByName;          // upper-cased name -> SID

    // Call with the mutex held.
    void Refresh() {
        std::string now = SessionIdentity();
        if (now == identity && connection.lock() == gSession.Connection) return;
        identity = now;
        connection = gSession.Connection;
        domainSid.reset();
        nameBySid.clear();
        sidByName.clear();
    }
};

Cache& TheCache() {
    static Cache cache;
    return cache;
}

// A value for an LDAP filter: every byte that could end or change the filter is escaped.
std::string EscapeFilterValue(std::string_view value) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string out;
    for (unsigned char c : value) {
        if (c == '*' || c == '(' || c == ')' || c == '\\' || c == '\0' || c == ';') {
            out += '\\';
            out += kHex[c >> 4];
            out += kHex[c & 0xF];
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

std::string EscapeFilterBytes(const std::vector<uint8_t>& bytes) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string out;
    for (uint8_t b : bytes) {
        out += '\\';
        out += kHex[b >> 4];
        out += kHex[b & 0xF];
    }
    return out;
}

// The records found, or nullopt when the search itself failed.
std::optional<std::vector<SearchRecord>> Search(const std::string& filter,
                                                const std::string& attributes) {
    auto result =
        ExecuteSearch("<" + gSession.RootLdapPath + ">;" + filter + ";" + attributes + ";Subtree");
    if (!result.ok()) return std::nullopt;
    return std::move(result.value());
}

std::optional<Sid> ObjectSidOf(const std::string& dn) {
    DirObject object;
    if (!BindObject("LDAP://" + dn, object)) return std::nullopt;
    auto bytes = object.GetBinary("objectSid");
    if (!bytes.ok()) return std::nullopt;
    return ParseSidBytes(*bytes);
}

// Call with the mutex held.
std::optional<Sid> DomainSid(Cache& cache) {
    if (!cache.domainSid) cache.domainSid = ObjectSidOf(gSession.DomainDN);
    return cache.domainSid;
}

// The SID of the account `sam` in the directory, if it lies in `domain`.
std::optional<Sid> SearchAccount(std::string_view sam, const Sid& domain) {
    if (sam.empty()) return std::nullopt;
    auto records = Search("(sAMAccountName=" + EscapeFilterValue(sam) + ")", "objectSid");
    if (!records) return std::nullopt;
    for (const SearchRecord& record : *records) {
        std::string bytes = record.Field("objectSid");
        auto sid = ParseSidBytes({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
        if (sid && sid->IsAccountOf(domain)) return sid;
    }
    return std::nullopt;
}

// The name of `sid`; *settled is false when the directory couldn't be asked, so that the answer
// isn't kept.
std::string ResolveSid(Cache& cache, const Sid& sid, bool* settled) {
    *settled = true;
    if (auto name = WellKnownTrusteeName(sid)) return *name;
    auto domain = DomainSid(cache);
    bool inDomain = domain && sid.IsAccountOf(*domain);
    bool builtin = sid.IsAccountOf(kBuiltinDomain);
    std::vector<uint8_t> bytes;
    sid.AppendTo(bytes);
    auto records = Search("(objectSid=" + EscapeFilterBytes(bytes) + ")", "sAMAccountName");
    if (!records || !domain) *settled = false;
    std::string sam;
    if (records && !records->empty()) sam = records->front().Field("sAMAccountName");
    if (!sam.empty() && inDomain) return ToUpperAscii(gSession.DomainNetBIOSName) + "\\" + sam;
    if (!sam.empty() && builtin) return "BUILTIN\\" + sam;
    if (inDomain) {
        if (auto name = DomainRidDefaultName(sid.SubAuthorities.back())) {
            return ToUpperAscii(gSession.DomainNetBIOSName) + "\\" + std::string(*name);
        }
    }
    return sid.ToString();
}

std::optional<Sid> ResolveName(Cache& cache, std::string_view name) {
    if (auto sid = ParseSidString(name)) return sid;
    if (auto sid = WellKnownTrusteeSid(name)) return sid;
    size_t slash = name.find('\\');
    if (slash == std::string_view::npos) return std::nullopt;
    std::string_view authority = name.substr(0, slash);
    std::string_view account = name.substr(slash + 1);
    if (EqualsIgnoreCase(authority, "BUILTIN")) return SearchAccount(account, kBuiltinDomain);
    if (!gSession.DomainNetBIOSName.empty() &&
        EqualsIgnoreCase(authority, gSession.DomainNetBIOSName)) {
        auto domain = DomainSid(cache);
        if (domain) return SearchAccount(account, *domain);
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> WellKnownTrusteeName(const Sid& sid) {
    std::string text = sid.ToString();
    for (const WellKnown& entry : kWellKnown) {
        if (text == entry.sid) return std::string(entry.name);
    }
    return std::nullopt;
}

std::optional<Sid> WellKnownTrusteeSid(std::string_view name) {
    for (const WellKnown& entry : kWellKnown) {
        if (EqualsIgnoreCase(name, entry.name)) return ParseSidString(entry.sid);
    }
    return std::nullopt;
}

std::optional<std::string_view> DomainRidDefaultName(uint32_t rid) {
    for (const DomainRid& entry : kDomainRids) {
        if (entry.rid == rid) return std::string_view(entry.name);
    }
    return std::nullopt;
}

std::string TrusteeForSid(const Sid& sid) {
    Cache& cache = TheCache();
    std::lock_guard lock(cache.mutex);
    cache.Refresh();
    std::string key = sid.ToString();
    auto it = cache.nameBySid.find(key);
    if (it != cache.nameBySid.end()) return it->second;
    bool settled = false;
    std::string name = ResolveSid(cache, sid, &settled);
    if (settled) cache.nameBySid.emplace(key, name);
    return name;
}

std::optional<Sid> SidForTrustee(std::string_view name) {
    Cache& cache = TheCache();
    std::lock_guard lock(cache.mutex);
    cache.Refresh();
    std::string key = ToUpperAscii(name);
    auto it = cache.sidByName.find(key);
    if (it != cache.sidByName.end()) return it->second;
    // Unknown names aren't remembered: an earlier row of the run may still create the account.
    auto sid = ResolveName(cache, name);
    if (sid) cache.sidByName.emplace(key, *sid);
    return sid;
}

void ClearTrusteeCache() {
    Cache& cache = TheCache();
    std::lock_guard lock(cache.mutex);
    cache.identity.clear();
    cache.Refresh();
}

}  // namespace orin
