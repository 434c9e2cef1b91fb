#include "platform/Kerberos.h"

#include <gssapi/gssapi_krb5.h>
#include <krb5.h>
#include <profile.h>
#include <string.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/Strings.h"

namespace orin::platform {

namespace {

void Wipe(std::string& secret) {
    explicit_bzero(secret.data(), secret.size());
    secret.clear();
}

std::string ErrorText(krb5_context ctx, krb5_error_code code) {
    const char* text = krb5_get_error_message(ctx, code);
    std::string message = text ? text : "Kerberos error " + std::to_string(code);
    krb5_free_error_message(ctx, text);
    return message;
}

// The platform's profile with one answer of its own: the KDC of one realm. Everything else is
// read from the platform's profile (absent: libkrb5's defaults). Lives longer than every
// context made from it.
struct KdcOverlay {
    profile_t platform = nullptr;
    std::string realm;
    std::string kdc;  // empty: no answer of its own

    KdcOverlay() = default;
    KdcOverlay(const KdcOverlay&) = delete;
    KdcOverlay& operator=(const KdcOverlay&) = delete;
    ~KdcOverlay() {
        if (platform) profile_release(platform);
    }
};

long OverlayGetValues(void* data, const char* const* names, char*** values) {
    const auto* overlay = static_cast<const KdcOverlay*>(data);
    if (!overlay->kdc.empty() && names[0] && names[1] && names[2] && !names[3] &&
        std::string_view(names[0]) == "realms" && overlay->realm == names[1] &&
        std::string_view(names[2]) == "kdc") {
        char** list = static_cast<char**>(calloc(2, sizeof(char*)));
        if (!list) return ENOMEM;
        list[0] = strdup(overlay->kdc.c_str());
        if (!list[0]) {
            free(list);
            return ENOMEM;
        }
        *values = list;
        return 0;
    }
    if (!overlay->platform) return PROF_NO_RELATION;
    return profile_get_values(overlay->platform, names, values);
}

void OverlayFreeValues(void*, char** values) {
    // Lists of either source are plain malloc'd strings, which profile_free_list frees.
    profile_free_list(values);
}

// An iteration over the platform's profile. libprofile frees its own iterator when an iteration
// ends and clears the handle it was given, so the handle lives here, where that is seen.
struct OverlayIteration {
    void* handle = nullptr;  // null: nothing (more) to iterate
};

long OverlayIteratorCreate(void* data, const char* const* names, int flags, void** iterator) {
    const auto* overlay = static_cast<const KdcOverlay*>(data);
    auto* iteration = new (std::nothrow) OverlayIteration;
    if (!iteration) return ENOMEM;
    if (overlay->platform) {
        long rc = profile_iterator_create(overlay->platform, names, flags, &iteration->handle);
        if (rc != 0) {
            delete iteration;
            return rc;
        }
    }
    *iterator = iteration;
    return 0;
}

long OverlayIterator(void*, void* iterator, char** name, char** value) {
    auto* iteration = static_cast<OverlayIteration*>(iterator);
    if (!iteration->handle) {
        *name = *value = nullptr;
        return 0;
    }
    return profile_iterator(&iteration->handle, name, value);
}

void OverlayIteratorFree(void*, void* iterator) {
    auto* iteration = static_cast<OverlayIteration*>(iterator);
    profile_iterator_free(&iteration->handle);
    delete iteration;
}

void OverlayFreeString(void*, char* text) {
    profile_release_string(text);
}

// A library context over the overlay.
krb5_error_code OverlayContext(KdcOverlay& overlay, krb5_context& ctx) {
    static profile_vtable vtable = [] {
        profile_vtable v{};
        v.minor_ver = 1;
        v.get_values = OverlayGetValues;
        v.free_values = OverlayFreeValues;
        v.iterator_create = OverlayIteratorCreate;
        v.iterator = OverlayIterator;
        v.iterator_free = OverlayIteratorFree;
        v.free_string = OverlayFreeString;
        return v;
    }();
    profile_t profile = nullptr;
    long rc = profile_init_vtable(&vtable, &overlay, &profile);
    if (rc != 0) return static_cast<krb5_error_code>(rc);
    krb5_error_code code = krb5_init_context_profile(profile, 0, &ctx);
    profile_release(profile);  // the context holds its own copy
    return code;
}

// Owners of libkrb5 objects, released in reverse order of their making.
struct Context {
    krb5_context ctx = nullptr;
    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() { Reset(); }
    void Reset() {
        if (ctx) krb5_free_context(ctx);
        ctx = nullptr;
    }
};
struct Principal {
    krb5_context ctx;
    krb5_principal p = nullptr;
    ~Principal() {
        if (p) krb5_free_principal(ctx, p);
    }
};

void DestroyCache(const std::string& name) {
    if (name.empty()) return;
    KdcOverlay empty;  // no file is read to forget a cache in memory
    Context c;
    if (OverlayContext(empty, c.ctx) != 0) return;
    krb5_ccache cache = nullptr;
    if (krb5_cc_resolve(c.ctx, name.c_str(), &cache) == 0) krb5_cc_destroy(c.ctx, cache);
}

struct Outcome {
    KerberosStatus status;
    std::string cacheName;
    std::string client;
    bool askedDcAsKdc = false;
};

Outcome Failed(long code, std::string message) {
    Outcome out;
    out.status = {code, std::move(message)};
    return out;
}

// The TGT into a new in-memory cache, in a context whose KDC for the realm comes from the
// overlay.
Outcome GetTgt(krb5_context ctx, const KerberosPrincipal& principal, const std::string& password) {
    Outcome out;
    Principal client{ctx};
    std::string name = principal.name;
    int flags = 0;
    if (principal.enterprise) {
        name += "@" + principal.realm;
        flags = KRB5_PRINCIPAL_PARSE_ENTERPRISE;
    }
    krb5_error_code rc = krb5_parse_name_flags(ctx, name.c_str(), flags, &client.p);
    if (rc != 0) return Failed(rc, "principal " + name + ": " + ErrorText(ctx, rc));

    krb5_ccache cache = nullptr;
    rc = krb5_cc_new_unique(ctx, "MEMORY", nullptr, &cache);
    if (rc != 0) return Failed(rc, "memory cache: " + ErrorText(ctx, rc));
    char* fullName = nullptr;
    if (krb5_cc_get_full_name(ctx, cache, &fullName) == 0) {
        out.cacheName = fullName;
        krb5_free_string(ctx, fullName);
    }

    krb5_get_init_creds_opt* options = nullptr;
    rc = krb5_get_init_creds_opt_alloc(ctx, &options);
    if (rc == 0) {
        krb5_get_init_creds_opt_set_canonicalize(options, principal.enterprise ? 1 : 0);
        rc = krb5_get_init_creds_opt_set_out_ccache(ctx, options, cache);
    }
    krb5_creds creds{};
    if (rc == 0) {
        rc = krb5_get_init_creds_password(ctx, &creds, client.p, password.c_str(), nullptr, nullptr,
                                          0, nullptr, options);
    }
    if (options) krb5_get_init_creds_opt_free(ctx, options);
    if (rc != 0) {
        out.status = {rc, "TGT for " + name + ": " + ErrorText(ctx, rc)};
        krb5_cc_destroy(ctx, cache);
        out.cacheName.clear();
        return out;
    }
    char* clientName = nullptr;
    if (krb5_unparse_name(ctx, creds.client, &clientName) == 0) {
        out.client = clientName;
        krb5_free_unparsed_name(ctx, clientName);
    }
    krb5_free_cred_contents(ctx, &creds);
    krb5_cc_close(ctx, cache);
    return out;
}

// The ticket of "ldap/<host>" from the TGT in the cache, filed also under the name that the
// GSSAPI library will look it up by (made by `platformCtx`, the context it reads as well).
KerberosStatus GetServiceTicket(krb5_context ctx, krb5_context platformCtx,
                                const std::string& cacheName, const std::string& host) {
    krb5_ccache cache = nullptr;
    krb5_error_code rc = krb5_cc_resolve(ctx, cacheName.c_str(), &cache);
    if (rc != 0) return {rc, "memory cache: " + ErrorText(ctx, rc)};
    krb5_creds request{};
    krb5_creds* ticket = nullptr;
    Principal server{ctx};
    rc = krb5_cc_get_principal(ctx, cache, &request.client);
    // The realm left empty: the client's realm is asked first and its referrals followed. Not a
    // host-based name: the host stays as named, without DNS rewriting.
    if (rc == 0) {
        rc = krb5_build_principal(ctx, &server.p, 0, "", "ldap", host.c_str(),
                                  static_cast<char*>(nullptr));
    }
    if (rc == 0) {
        server.p->type = KRB5_NT_SRV_INST;
        request.server = server.p;
        rc = krb5_get_credentials(ctx, 0, cache, &request, &ticket);
    }
    KerberosStatus status;
    if (rc != 0) status = {rc, "ticket for ldap/" + host + ": " + ErrorText(ctx, rc)};

    Principal gssName{platformCtx};
    if (rc == 0 && krb5_sname_to_principal(platformCtx, host.c_str(), "ldap", KRB5_NT_SRV_HST,
                                           &gssName.p) == 0) {
        krb5_creds match{};
        match.client = request.client;
        match.server = gssName.p;
        krb5_creds found{};
        if (krb5_cc_retrieve_cred(ctx, cache, 0, &match, &found) == 0) {
            krb5_free_cred_contents(ctx, &found);
        } else {
            krb5_creds alias = *ticket;  // shallow: only the server name differs
            alias.server = gssName.p;
            rc = krb5_cc_store_cred(ctx, cache, &alias);
            if (rc != 0) status = {rc, "memory cache: " + ErrorText(ctx, rc)};
        }
    }
    if (ticket) krb5_free_creds(ctx, ticket);
    if (request.client) krb5_free_principal(ctx, request.client);
    krb5_cc_close(ctx, cache);
    return status;
}

bool NoKdcFound(krb5_error_code rc) {
    return rc == KRB5_REALM_CANT_RESOLVE || rc == KRB5_REALM_UNKNOWN;
}

// Everything that talks to the KDC. Wipes `password` once the TGT is there or refused.
Outcome Exchange(const KerberosLogin& login, std::string& password) {
    Context platform;  // reads the platform's configuration, as the GSSAPI library will
    krb5_error_code rc = krb5_init_context(&platform.ctx);
    if (rc != 0) {
        Wipe(password);
        return Failed(rc, "Kerberos configuration: " + ErrorText(nullptr, rc));
    }
    KdcOverlay overlay;  // outlives `ctx`, which reads through it
    overlay.realm = login.principal.realm;
    if (krb5_get_profile(platform.ctx, &overlay.platform) != 0) overlay.platform = nullptr;

    Context ctx;
    Outcome out;
    rc = OverlayContext(overlay, ctx.ctx);
    if (rc == 0) out = GetTgt(ctx.ctx, login.principal, password);
    if (rc == 0 && NoKdcFound(static_cast<krb5_error_code>(out.status.code)) &&
        !login.fallbackKdc.empty()) {
        // Neither krb5.conf nor DNS names a KDC for the realm: the DC is one.
        ctx.Reset();
        overlay.kdc = login.fallbackKdc;
        rc = OverlayContext(overlay, ctx.ctx);
        if (rc == 0) out = GetTgt(ctx.ctx, login.principal, password);
        out.askedDcAsKdc = true;
    }
    Wipe(password);
    if (rc != 0) return Failed(rc, "Kerberos context: " + ErrorText(platform.ctx, rc));
    if (out.status.ok()) {
        out.status = GetServiceTicket(ctx.ctx, platform.ctx, out.cacheName, login.serviceHost);
        if (!out.status.ok()) {
            DestroyCache(out.cacheName);
            out.cacheName.clear();
        }
    }
    return out;
}

// What the caller and the thread that talks to the KDC share.
struct Shared {
    KerberosLogin login;
    std::string password;
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
    bool abandoned = false;
    Outcome outcome;
};

void RunExchange(std::shared_ptr<Shared> shared) {
    Outcome outcome = Exchange(shared->login, shared->password);
    std::lock_guard lock(shared->mutex);
    if (shared->abandoned) {  // the caller has given up: nobody will use these tickets
        DestroyCache(outcome.cacheName);
        return;
    }
    shared->outcome = std::move(outcome);
    shared->done = true;
    shared->finished.notify_all();
}

}  // namespace

std::optional<KerberosPrincipal> PrincipalForUser(std::string_view userName,
                                                  std::string_view dnsDomain,
                                                  std::string_view netbiosDomain,
                                                  std::string* error) {
    auto fail = [&](std::string why) -> std::optional<KerberosPrincipal> {
        if (error) *error = std::move(why);
        return std::nullopt;
    };
    std::string domain(dnsDomain);
    while (!domain.empty() && domain.back() == '.') domain.pop_back();
    const std::string realm = ToUpperAscii(domain);
    if (realm.empty()) return fail("no domain DNS name");
    const std::string user(userName);
    if (user.empty()) return fail("no user name");

    if (const size_t slash = user.find('\\'); slash != std::string::npos) {
        const std::string prefix = user.substr(0, slash), name = user.substr(slash + 1);
        if (prefix.empty() || name.empty() || name.find_first_of("\\@") != std::string::npos)
            return fail("user name " + user + " has no principal");
        const bool ours = EqualsIgnoreCase(prefix, netbiosDomain) ||
                          EqualsIgnoreCase(prefix, domain) || EqualsIgnoreCase(prefix, realm);
        const std::string userRealm = ours ? realm : ToUpperAscii(prefix);
        return KerberosPrincipal{name + "@" + userRealm, userRealm, false};
    }
    if (const size_t at = user.rfind('@'); at != std::string::npos) {
        const std::string name = user.substr(0, at), suffix = user.substr(at + 1);
        if (name.empty() || suffix.empty() || name.find('@') != std::string::npos)
            return fail("user name " + user + " has no principal");
        if (EqualsIgnoreCase(suffix, domain)) return KerberosPrincipal{name + "@" + realm, realm};
        return KerberosPrincipal{user, realm, true};
    }
    if (user.find('=') != std::string::npos)
        return fail("a distinguished name has no Kerberos principal: " + user);
    return KerberosPrincipal{user + "@" + realm, realm, false};
}

KerberosStatus KerberosCredentials::FromPassword(const KerberosLogin& login,
                                                 std::string_view password,
                                                 std::shared_ptr<KerberosCredentials>& out) {
    out.reset();
    if (password.empty()) return {kKerberosNoPassword, "an empty password is not sent"};
    if (login.principal.name.empty() || login.principal.realm.empty())
        return {kKerberosBadUserName, "no principal"};

    auto shared = std::make_shared<Shared>();
    shared->login = login;
    shared->password.assign(password);
    try {
        std::thread(RunExchange, shared).detach();
    } catch (const std::system_error& e) {
        Wipe(shared->password);
        return {kKerberosTimedOut, std::string("no thread for the KDC exchange: ") + e.what()};
    }
    std::unique_lock lock(shared->mutex);
    const auto timeout = std::chrono::seconds(std::max(1, login.timeoutSeconds));
    if (!shared->finished.wait_for(lock, timeout, [&] { return shared->done; })) {
        shared->abandoned = true;
        return {kKerberosTimedOut, "the KDC of " + login.principal.realm +
                                       " did not answer within " + std::to_string(timeout.count()) +
                                       " s"};
    }
    Outcome& outcome = shared->outcome;
    if (!outcome.status.ok()) return outcome.status;
    out.reset(new KerberosCredentials(outcome.cacheName, outcome.client, outcome.askedDcAsKdc));
    return {};
}

KerberosCredentials::~KerberosCredentials() {
    DestroyCache(cacheName_);
}

KerberosCredentials::ThreadCache::ThreadCache(const KerberosCredentials& credentials) {
    OM_uint32 minor = 0;
    ok_ = gss_krb5_ccache_name(&minor, credentials.CacheName().c_str(), nullptr) == GSS_S_COMPLETE;
}

KerberosCredentials::ThreadCache::~ThreadCache() {
    // No name: the thread takes the process's default (KRB5CCNAME) again.
    OM_uint32 minor = 0;
    gss_krb5_ccache_name(&minor, nullptr, nullptr);
}

}  // namespace orin::platform
