#include "platform/LdapConnection.h"

#include <ldap.h>
#include <sasl/sasl.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <charconv>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <optional>
#include <thread>

#include "platform/Kerberos.h"
#include "platform/Strings.h"

namespace orin::platform {

namespace {

constexpr const char* kSdFlagsOid = "1.2.840.113556.1.4.801";
constexpr int kSdFlagsDacl = 4;
constexpr const char* kSystemTrustStore = "/etc/ssl/certs/ca-certificates.crt";

// libldap writes to its sockets with write(): a server that closes the connection would end
// the process with SIGPIPE. The program never relies on SIGPIPE, so it is ignored once here.
void IgnoreSigpipe() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction current {};
        if (sigaction(SIGPIPE, nullptr, &current) == 0 && current.sa_handler == SIG_DFL) {
            std::signal(SIGPIPE, SIG_IGN);
        }
    });
}

std::string Text(std::string_view text) {
    return std::string(text);
}

// "host:port" of "scheme://host:port/".
std::string HostAndPort(std::string_view uri) {
    if (const size_t scheme = uri.find("://"); scheme != std::string_view::npos)
        uri.remove_prefix(scheme + 3);
    return std::string(uri.substr(0, uri.find('/')));
}

// The name of an attribute description without its options: "member;range=0-*" -> "member".
std::string_view BaseName(std::string_view description) {
    return description.substr(0, description.find(';'));
}

// Owns the LDAPMod array of one add or modify request.
class ModArray {
  public:
    ModArray(const std::vector<LdapMod>& mods, bool forAdd) {
        size_t valueCount = 0;
        for (const auto& m : mods) valueCount += m.values.size() + 1;
        bervals_.reserve(valueCount);
        valuePointers_.reserve(valueCount);
        mods_.resize(mods.size());
        for (size_t i = 0; i < mods.size(); ++i) {
            const LdapMod& m = mods[i];
            LDAPMod& out = mods_[i];
            int op = LDAP_MOD_REPLACE;
            if (forAdd || m.op == LdapMod::Op::Add) op = LDAP_MOD_ADD;
            if (!forAdd && m.op == LdapMod::Op::Delete) op = LDAP_MOD_DELETE;
            out.mod_op = op | LDAP_MOD_BVALUES;
            out.mod_type = const_cast<char*>(m.attribute.c_str());
            if (m.values.empty()) {
                out.mod_bvalues = nullptr;
                continue;
            }
            size_t first = valuePointers_.size();
            for (const auto& v : m.values) {
                bervals_.push_back(
                    berval{static_cast<ber_len_t>(v.size()), const_cast<char*>(v.data())});
                valuePointers_.push_back(&bervals_.back());
            }
            valuePointers_.push_back(nullptr);
            out.mod_bvalues = &valuePointers_[first];
        }
        for (auto& m : mods_) pointers_.push_back(&m);
        pointers_.push_back(nullptr);
    }
    LDAPMod** get() { return pointers_.data(); }

  private:
    std::vector<berval> bervals_;
    std::vector<berval*> valuePointers_;
    std::vector<LDAPMod> mods_;
    std::vector<LDAPMod*> pointers_;
};

// The SD-flags control asking for the DACL only. The value lives as long as the object.
class SdFlagsControl {
  public:
    SdFlagsControl() : value_(SdFlagsControlValue(kSdFlagsDacl)) {
        control_.ldctl_oid = const_cast<char*>(kSdFlagsOid);
        control_.ldctl_value.bv_len = value_.size();
        control_.ldctl_value.bv_val = value_.data();
        control_.ldctl_iscritical = 1;
    }
    LDAPControl* get() { return &control_; }

  private:
    std::string value_;
    LDAPControl control_{};
};

int SaslInteract(LDAP*, unsigned, void*, void* interactions) {
    // GSSAPI asks for nothing that isn't in the Kerberos credentials; answer every prompt with
    // its default, or with an empty text.
    for (auto* in = static_cast<sasl_interact_t*>(interactions); in->id != SASL_CB_LIST_END; ++in) {
        const char* answer = in->defresult ? in->defresult : "";
        in->result = answer;
        in->len = static_cast<unsigned>(std::char_traits<char>::length(answer));
    }
    return LDAP_SUCCESS;
}

int OnSocketOpened(LDAP*, Sockbuf* sb, LDAPURLDesc*, sockaddr*, ldap_conncb* context) {
    ber_socket_t fd = -1;
    if (ber_sockbuf_ctrl(sb, LBER_SB_OPT_GET_FD, &fd) == 1) {
        static_cast<LdapConnection*>(context->lc_arg)->SocketOpened(fd);
    }
    return 0;
}

void OnSocketClosed(LDAP*, Sockbuf*, ldap_conncb* context) {
    static_cast<LdapConnection*>(context->lc_arg)->SocketOpened(-1);
}

}  // namespace

const LdapValues* LdapEntry::Find(std::string_view name) const {
    for (const auto& a : attributes) {
        if (EqualsIgnoreCase(BaseName(a.name), name)) return &a.values;
    }
    return nullptr;
}

std::string LdapUri(std::string_view scheme, std::string_view host, int port) {
    std::string h(host);
    if (h.find(':') != std::string::npos && h.front() != '[') h = "[" + h + "]";
    return Text(scheme) + "://" + h + ":" + std::to_string(port);
}

bool ParseRange(std::string_view description, long& first, long& last) {
    size_t at = FindIgnoreCase(description, ";range=");
    if (at == std::string_view::npos) return false;
    std::string_view range = description.substr(at + 7);
    range = range.substr(0, range.find(';'));
    size_t dash = range.find('-');
    if (dash == std::string_view::npos) return false;
    std::string_view a = range.substr(0, dash), b = range.substr(dash + 1);
    auto [pa, ea] = std::from_chars(a.data(), a.data() + a.size(), first);
    if (ea != std::errc() || pa != a.data() + a.size()) return false;
    if (b == "*") {
        last = -1;
        return true;
    }
    auto [pb, eb] = std::from_chars(b.data(), b.data() + b.size(), last);
    return eb == std::errc() && pb == b.data() + b.size() && last >= first;
}

std::string SdFlagsControlValue(int flags) {
    // INTEGER contents: big-endian two's complement, shortest form.
    std::string contents;
    uint32_t v = static_cast<uint32_t>(flags);
    for (int shift = 24; shift >= 0; shift -= 8) {
        char byte = static_cast<char>((v >> shift) & 0xFF);
        if (contents.empty() && shift > 0) {
            uint8_t next = static_cast<uint8_t>((v >> (shift - 8)) & 0xFF);
            if (byte == 0 && !(next & 0x80)) continue;
        }
        contents.push_back(byte);
    }
    std::string integer = std::string{0x02, static_cast<char>(contents.size())} + contents;
    return std::string{0x30, static_cast<char>(integer.size())} + integer;
}

LdapConnection::LdapConnection(LDAP* ld, std::string uri, LdapOptions options)
    : ld_(ld), uri_(std::move(uri)), options_(std::move(options)) {}

void LdapConnection::SocketOpened(int fd) {
    std::lock_guard lock(socketMutex_);
    socket_ = fd;
}

int LdapConnection::WithHandshakeDeadline(const std::function<int()>& call) {
    std::mutex m;
    std::condition_variable cv;
    bool finished = false;
    {
        std::lock_guard lock(socketMutex_);
        handshakeTimedOut_ = false;
    }
    std::thread watchdog([&] {
        std::unique_lock lock(m);
        if (cv.wait_for(lock, std::chrono::seconds(options_.networkTimeoutSeconds),
                        [&] { return finished; })) {
            return;
        }
        std::lock_guard socketLock(socketMutex_);
        if (socket_ >= 0) {
            shutdown(socket_, SHUT_RDWR);
            handshakeTimedOut_ = true;
        }
    });
    int rc = call();
    {
        std::lock_guard lock(m);
        finished = true;
    }
    cv.notify_one();
    watchdog.join();
    std::lock_guard lock(socketMutex_);
    return handshakeTimedOut_ && rc != LDAP_SUCCESS ? LDAP_TIMEOUT : rc;
}

LdapConnection::~LdapConnection() {
    if (ld_) ldap_unbind_ext_s(ld_, nullptr, nullptr);
}

void LdapConnection::SetOnRequestAttributes(std::vector<std::string> names) {
    for (auto& n : names) n = ToLowerAscii(n);
    std::sort(names.begin(), names.end());
    onRequest_ = std::move(names);
    onRequestKnown_ = true;
}

bool LdapConnection::IsOnRequestAttribute(std::string_view name) const {
    return !onRequestKnown_ ||
           std::binary_search(onRequest_.begin(), onRequest_.end(), ToLowerAscii(name));
}

int LdapConnection::Socket() {
    std::lock_guard lock(socketMutex_);
    return socket_;
}

LdapStatus LdapConnection::Reopen() {
    if (ld_) ldap_unbind_ext_s(ld_, nullptr, nullptr);
    ld_ = nullptr;
    connected_ = false;
    int rc = ldap_initialize(&ld_, uri_.c_str());
    if (rc != LDAP_SUCCESS || !ld_) {
        ld_ = nullptr;
        return {kLdapServerDown, "reopen " + uri_ + ": " + ldap_err2string(rc)};
    }
    LdapStatus status = ApplyOptions();
    if (status.ok() && startedTls_) status = StartTls();
    if (status.ok() && bindKind_ == BindKind::Simple) status = SimpleBind(bindName_, bindPassword_);
    if (status.ok() && bindKind_ == BindKind::Gssapi) status = GssapiBind();
    if (status.ok()) status = Connect();
    return status;
}

LdapStatus LdapConnection::Resilient(const std::function<LdapStatus()>& request,
                                     const std::function<bool()>& mayRepeat) {
    if (!ld_) {
        LdapStatus status = Reopen();
        if (!status.ok()) return status;
    }
    LdapStatus status = request();
    if (status.code != kLdapServerDown || bindKind_ == BindKind::None) return status;
    if (mayRepeat && !mayRepeat()) return status;
    LdapStatus reopened = Reopen();
    if (!reopened.ok()) return status;
    return request();
}

LdapStatus LdapConnection::Create(std::string_view uri, const LdapOptions& options,
                                  std::unique_ptr<LdapConnection>& out) {
    IgnoreSigpipe();
    out.reset();
    std::string u(uri);
    LDAP* ld = nullptr;
    int rc = ldap_initialize(&ld, u.c_str());
    if (rc != LDAP_SUCCESS || ld == nullptr) {
        return {rc == LDAP_SUCCESS ? kLdapParamError : rc,
                "ldap_initialize(" + u + "): " + ldap_err2string(rc)};
    }
    std::unique_ptr<LdapConnection> conn(new LdapConnection(ld, u, options));
    LdapStatus status = conn->ApplyOptions();
    if (!status.ok()) return status;
    out = std::move(conn);
    return {};
}

LdapStatus LdapConnection::ApplyOptions() {
    int version = LDAP_VERSION3;
    timeval network{options_.networkTimeoutSeconds, 0};
    timeval operation{options_.operationTimeoutSeconds, 0};
    // Certificates are checked unless the caller switched that off; ldap.conf and LDAPTLS_*
    // variables are overridden on this handle so that nothing outside weakens the check.
    int requireCert = options_.trustAnyCertificate ? LDAP_OPT_X_TLS_NEVER : LDAP_OPT_X_TLS_DEMAND;
    std::string caFile = options_.caFile;
    if (caFile.empty() && std::filesystem::exists(kSystemTrustStore)) caFile = kSystemTrustStore;
    int newContext = 0;

    struct Setting {
        int option;
        const void* value;
        const char* name;
    };
    const Setting settings[] = {
        {LDAP_OPT_PROTOCOL_VERSION, &version, "protocol version"},
        {LDAP_OPT_REFERRALS, LDAP_OPT_OFF, "referrals"},
        {LDAP_OPT_NETWORK_TIMEOUT, &network, "network timeout"},
        {LDAP_OPT_TIMEOUT, &operation, "operation timeout"},
        {LDAP_OPT_X_SASL_NOCANON, LDAP_OPT_ON, "SASL host name"},
        {LDAP_OPT_X_SASL_SECPROPS, "minssf=56", "SASL security"},
        {LDAP_OPT_X_TLS_REQUIRE_CERT, &requireCert, "certificate check"},
    };
    for (const auto& s : settings) {
        int rc = ldap_set_option(ld_, s.option, s.value);
        if (rc != LDAP_OPT_SUCCESS) return ErrorFromHandle(rc, std::string("option ") + s.name);
    }
    if (!caFile.empty()) {
        if (!options_.trustAnyCertificate && !std::filesystem::exists(caFile)) {
            return {kLdapParamError, "CA file not found: " + caFile};
        }
        int rc = ldap_set_option(ld_, LDAP_OPT_X_TLS_CACERTFILE, caFile.c_str());
        if (rc != LDAP_OPT_SUCCESS) return ErrorFromHandle(rc, "option CA file");
    }
    int rc = ldap_set_option(ld_, LDAP_OPT_X_TLS_NEWCTX, &newContext);
    if (rc != LDAP_OPT_SUCCESS) return ErrorFromHandle(rc, "TLS context");
    connectCallback_ = std::make_unique<ldap_conncb>();
    connectCallback_->lc_add = OnSocketOpened;
    connectCallback_->lc_del = OnSocketClosed;
    connectCallback_->lc_arg = this;
    rc = ldap_set_option(ld_, LDAP_OPT_CONNECT_CB, connectCallback_.get());
    if (rc != LDAP_OPT_SUCCESS) return ErrorFromHandle(rc, "connect callback");
    return {};
}

LdapStatus LdapConnection::ErrorFromHandle(int code, std::string_view what) const {
    // A server's answer carries its result code and its own words; libldap's codes its text.
    std::string message = Text(what) + ": ";
    if (code > 0) message += "result " + std::to_string(code) + " ";
    message += ldap_err2string(code);
    char* diagnostic = nullptr;
    if (ld_ && ldap_get_option(ld_, LDAP_OPT_DIAGNOSTIC_MESSAGE, &diagnostic) == LDAP_OPT_SUCCESS &&
        diagnostic) {
        if (*diagnostic && std::string_view(diagnostic) != "(unknown error code)") {
            message +=
                code > 0 ? std::string(": ") + diagnostic : std::string(" (") + diagnostic + ")";
        }
        ldap_memfree(diagnostic);
    }
    return {code == LDAP_SUCCESS ? kLdapParamError : code, message};
}

LdapStatus LdapConnection::NoAnswer() const {
    return {kLdapTimeout, "no answer from " + HostAndPort(uri_) + " within " +
                              std::to_string(options_.networkTimeoutSeconds) + " s"};
}

LdapStatus LdapConnection::Connect() {
    if (!ld_) return {kLdapServerDown, "connection to " + uri_ + " closed"};
    if (connected_) return {};
    const auto start = std::chrono::steady_clock::now();
    int rc = WithHandshakeDeadline([this] { return ldap_connect(ld_); });
    // libldap reports a TCP connect that ran out of time as a server it can't contact.
    const auto waited = std::chrono::steady_clock::now() - start;
    if (rc == LDAP_SERVER_DOWN && waited >= std::chrono::seconds(options_.networkTimeoutSeconds))
        rc = LDAP_TIMEOUT;
    if (rc == LDAP_TIMEOUT) return NoAnswer();
    if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "connect " + uri_);
    connected_ = true;
    return {};
}

LdapStatus LdapConnection::StartTls() {
    LdapStatus status = Connect();
    if (!status.ok()) return status;
    if (ldap_tls_inplace(ld_)) return {};
    int rc = WithHandshakeDeadline([this] { return ldap_start_tls_s(ld_, nullptr, nullptr); });
    if (rc == LDAP_TIMEOUT) return NoAnswer();
    if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "StartTLS " + uri_);
    startedTls_ = true;
    return {};
}

bool LdapConnection::IsEncrypted() const {
    if (!connected_ || !ld_) return false;
    if (ldap_tls_inplace(ld_)) return true;
    ber_len_t ssf = 0;  // libldap writes a ber_len_t here, wider than sasl_ssf_t
    return ldap_get_option(ld_, LDAP_OPT_X_SASL_SSF, &ssf) == LDAP_OPT_SUCCESS && ssf > 1;
}

LdapStatus LdapConnection::SimpleBind(std::string_view name, std::string_view password) {
    if (password.empty()) {
        return {kLdapInvalidCredentials, "simple bind with an empty password refused"};
    }
    LdapStatus status = Connect();
    if (!status.ok()) return status;
    if (!ldap_tls_inplace(ld_)) {
        return {kLdapStrongAuthRequired, "simple bind refused without TLS on " + uri_};
    }
    std::string who(name), secret(password);
    berval credentials{static_cast<ber_len_t>(secret.size()), secret.data()};
    ++requests_;
    int rc = ldap_sasl_bind_s(ld_, who.c_str(), LDAP_SASL_SIMPLE, &credentials, nullptr, nullptr,
                              nullptr);
    if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "bind as " + who);
    bindKind_ = BindKind::Simple;
    bindName_ = who;
    bindPassword_ = secret;
    return {};
}

LdapStatus LdapConnection::GssapiBind(std::shared_ptr<const KerberosCredentials> credentials) {
    if (credentials) kerberos_ = std::move(credentials);
    LdapStatus status = Connect();
    if (!status.ok()) return status;
    std::optional<KerberosCredentials::ThreadCache> cache;
    if (kerberos_) {
        cache.emplace(*kerberos_);
        if (!cache->ok()) return {kLdapParamError, "GSSAPI bind: the ticket cache can't be used"};
    }
    ++requests_;
    int rc = ldap_sasl_interactive_bind_s(ld_, nullptr, "GSSAPI", nullptr, nullptr, LDAP_SASL_QUIET,
                                          SaslInteract, nullptr);
    if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "GSSAPI bind to " + uri_);
    bindKind_ = BindKind::Gssapi;
    return {};
}

LdapStatus LdapConnection::SearchPage(std::string_view base, LdapScope scope,
                                      std::string_view filter,
                                      const std::vector<std::string>& attributes,
                                      const std::function<bool(LdapEntry&)>& onEntry,
                                      const LdapSearchOptions& searchOptions, std::string& cookie,
                                      bool& stopped) {
    std::vector<LDAPControl*> controls;
    LDAPControl* pageControl = nullptr;
    SdFlagsControl sdFlags;
    if (searchOptions.paged) {
        berval cookieValue{static_cast<ber_len_t>(cookie.size()), cookie.data()};
        int size = stopped ? 0 : std::max(1, options_.pageSize);
        int rc = ldap_create_page_control(ld_, size, cookie.empty() ? nullptr : &cookieValue, 0,
                                          &pageControl);
        if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "page control");
        controls.push_back(pageControl);
    }
    if (searchOptions.sdFlagsDacl) controls.push_back(sdFlags.get());
    controls.push_back(nullptr);

    std::vector<char*> attrs;
    for (const auto& a : attributes) attrs.push_back(const_cast<char*>(a.c_str()));
    attrs.push_back(nullptr);

    std::string b(base), f(filter.empty() ? "(objectClass=*)" : filter);
    int ldapScope = scope == LdapScope::Base       ? LDAP_SCOPE_BASE
                    : scope == LdapScope::OneLevel ? LDAP_SCOPE_ONELEVEL
                                                   : LDAP_SCOPE_SUBTREE;
    timeval timeout{options_.operationTimeoutSeconds, 0};
    LDAPMessage* result = nullptr;
    ++requests_;
    int rc = ldap_search_ext_s(ld_, b.c_str(), ldapScope, f.c_str(),
                               attributes.empty() ? nullptr : attrs.data(), 0, controls.data(),
                               nullptr, &timeout, searchOptions.sizeLimit, &result);
    if (pageControl) ldap_control_free(pageControl);
    cookie.clear();
    if (rc != LDAP_SUCCESS && rc != LDAP_SIZELIMIT_EXCEEDED) {
        if (result) ldap_msgfree(result);
        return ErrorFromHandle(rc, "search " + b);
    }
    if (stopped) {  // this request only released the server's paging state
        if (result) ldap_msgfree(result);
        return {};
    }

    for (LDAPMessage* msg = ldap_first_message(ld_, result); msg;
         msg = ldap_next_message(ld_, msg)) {
        int type = ldap_msgtype(msg);
        if (type == LDAP_RES_SEARCH_ENTRY && !stopped) {
            LdapEntry entry;
            if (char* dn = ldap_get_dn(ld_, msg)) {
                entry.dn = dn;
                ldap_memfree(dn);
            }
            BerElement* ber = nullptr;
            for (char* name = ldap_first_attribute(ld_, msg, &ber); name;
                 name = ldap_next_attribute(ld_, msg, ber)) {
                LdapAttribute attribute{name, {}};
                if (berval** values = ldap_get_values_len(ld_, msg, name)) {
                    for (berval** v = values; *v; ++v) {
                        attribute.values.emplace_back((*v)->bv_val, (*v)->bv_len);
                    }
                    ldap_value_free_len(values);
                }
                entry.attributes.push_back(std::move(attribute));
                ldap_memfree(name);
            }
            if (ber) ber_free(ber, 0);
            if (!onEntry(entry)) stopped = true;
        } else if (type == LDAP_RES_SEARCH_RESULT && searchOptions.paged) {
            LDAPControl** responseControls = nullptr;
            if (ldap_parse_result(ld_, msg, nullptr, nullptr, nullptr, nullptr, &responseControls,
                                  0) == LDAP_SUCCESS &&
                responseControls) {
                if (LDAPControl* page =
                        ldap_control_find(LDAP_CONTROL_PAGEDRESULTS, responseControls, nullptr)) {
                    ber_int_t estimate = 0;
                    berval next{0, nullptr};
                    if (ldap_parse_pageresponse_control(ld_, page, &estimate, &next) ==
                        LDAP_SUCCESS) {
                        if (next.bv_val) {
                            cookie.assign(next.bv_val, next.bv_len);
                            ber_memfree(next.bv_val);
                        }
                    }
                }
                ldap_controls_free(responseControls);
            }
        }
    }
    ldap_msgfree(result);
    return {};
}

LdapStatus LdapConnection::SearchEach(std::string_view base, LdapScope scope,
                                      std::string_view filter,
                                      const std::vector<std::string>& attributes,
                                      const std::function<bool(LdapEntry&)>& onEntry,
                                      const LdapSearchOptions& searchOptions) {
    LdapSearchOptions effective = searchOptions;
    if (scope == LdapScope::Base) effective.paged = false;
    long delivered = 0;
    auto counting = [&](LdapEntry& e) {
        ++delivered;
        return onEntry(e);
    };
    auto search = [&]() -> LdapStatus {
        LdapStatus status = Connect();
        if (!status.ok()) return status;
        std::string cookie;
        bool stopped = false;
        do {
            status =
                SearchPage(base, scope, filter, attributes, counting, effective, cookie, stopped);
            if (!status.ok()) return status;
            if (stopped && !cookie.empty()) {
                // Tell the server that no more pages are wanted (a request for zero entries).
                return SearchPage(base, scope, filter, attributes, counting, effective, cookie,
                                  stopped);
            }
        } while (!cookie.empty());
        return {};
    };
    // Entries already handed out can't be taken back: a drop in the middle of a search is an
    // error, not a second run of it.
    return Resilient(search, [&] { return delivered == 0; });
}

LdapStatus LdapConnection::Search(std::string_view base, LdapScope scope, std::string_view filter,
                                  const std::vector<std::string>& attributes,
                                  std::vector<LdapEntry>& out,
                                  const LdapSearchOptions& searchOptions) {
    out.clear();
    return SearchEach(
        base, scope, filter, attributes,
        [&out](LdapEntry& e) {
            out.push_back(std::move(e));
            return true;
        },
        searchOptions);
}

LdapStatus LdapConnection::Read(std::string_view dn, const std::vector<std::string>& attributes,
                                LdapEntry& out, const LdapSearchOptions& searchOptions) {
    bool found = false;
    LdapStatus status = SearchEach(
        dn, LdapScope::Base, "(objectClass=*)", attributes,
        [&](LdapEntry& e) {
            out = std::move(e);
            found = true;
            return false;
        },
        searchOptions);
    if (!status.ok()) return status;
    if (!found) return {kLdapNoSuchObject, "no entry at " + Text(dn)};
    return {};
}

LdapStatus LdapConnection::ReadAllValues(std::string_view dn, std::string_view attribute,
                                         LdapValues& out) {
    out.clear();
    long first = 0;
    for (;;) {
        std::string description = Text(attribute) + ";range=" + std::to_string(first) + "-*";
        LdapEntry entry;
        LdapStatus status = Read(dn, {description}, entry);
        if (!status.ok()) return status;
        const LdapAttribute* found = nullptr;
        for (const auto& a : entry.attributes) {
            if (EqualsIgnoreCase(BaseName(a.name), attribute)) found = &a;
        }
        if (!found) {
            // A server that knows no range option answers nothing: ask for the plain attribute.
            if (first != 0) return {};
            status = Read(dn, {Text(attribute)}, entry);
            if (!status.ok()) return status;
            if (const LdapValues* values = entry.Find(attribute)) out = *values;
            return {};
        }
        out.insert(out.end(), found->values.begin(), found->values.end());
        long lo = 0, hi = 0;
        if (!ParseRange(found->name, lo, hi) || hi < 0) return {};
        first = hi + 1;
    }
}

LdapStatus LdapConnection::Add(std::string_view dn, const std::vector<LdapMod>& attributes) {
    return Resilient([&]() -> LdapStatus {
        LdapStatus status = Connect();
        if (!status.ok()) return status;
        ModArray mods(attributes, true);
        std::string d(dn);
        ++requests_;
        int rc = ldap_add_ext_s(ld_, d.c_str(), mods.get(), nullptr, nullptr);
        if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "add " + d);
        return {};
    });
}

LdapStatus LdapConnection::Modify(std::string_view dn, const std::vector<LdapMod>& mods,
                                  bool sdFlagsDacl) {
    return Resilient([&]() -> LdapStatus {
        LdapStatus status = Connect();
        if (!status.ok()) return status;
        if (mods.empty()) return {};
        ModArray array(mods, false);
        SdFlagsControl sdFlags;
        LDAPControl* controls[] = {sdFlags.get(), nullptr};
        std::string d(dn);
        ++requests_;
        int rc = ldap_modify_ext_s(ld_, d.c_str(), array.get(), sdFlagsDacl ? controls : nullptr,
                                   nullptr);
        if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "modify " + d);
        return {};
    });
}

LdapStatus LdapConnection::Delete(std::string_view dn) {
    return Resilient([&]() -> LdapStatus {
        LdapStatus status = Connect();
        if (!status.ok()) return status;
        std::string d(dn);
        ++requests_;
        int rc = ldap_delete_ext_s(ld_, d.c_str(), nullptr, nullptr);
        if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "delete " + d);
        return {};
    });
}

LdapStatus LdapConnection::Rename(std::string_view dn, std::string_view newRdn,
                                  std::string_view newParent) {
    return Resilient([&]() -> LdapStatus {
        LdapStatus status = Connect();
        if (!status.ok()) return status;
        std::string d(dn), r(newRdn), p(newParent);
        ++requests_;
        int rc = ldap_rename_s(ld_, d.c_str(), r.c_str(), p.empty() ? nullptr : p.c_str(), 1,
                               nullptr, nullptr);
        if (rc != LDAP_SUCCESS) return ErrorFromHandle(rc, "rename " + d);
        return {};
    });
}

}  // namespace orin::platform
