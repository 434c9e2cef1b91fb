#pragma once
// Kerberos from a user name and a password, for a GSSAPI bind to a DC that offers no TLS. The
// only code of the program that calls libkrb5 or touches GSSAPI credentials (MIT Kerberos).
//
// - The tickets go into a private in-memory credential cache ("MEMORY:", one per
//   KerberosCredentials, destroyed with it): never a file, never the user's own cache
//   (KRB5CCNAME), which stays as it was.
// - The KDC is found the way the platform finds it: krb5.conf ($KRB5_CONFIG), then the DNS SRV
//   records of the realm. Where neither names one, the DC itself is asked: the library gets an
//   in-memory profile that answers "[realms] REALM kdc = <DC>" and reads every other setting
//   from the platform's own profile (profile_init_vtable over krb5_get_profile).
// - The whole exchange with the KDC is bounded: it runs on a thread of its own, and past the
//   timeout the caller gets an error while the thread finishes alone and throws its tickets away.
// - The password is copied once, wiped as soon as the KDC has answered.
// - The service ticket of the DC ("ldap/<DC as named>") is fetched together with the TGT, so
//   the bind needs no KDC. The GSSAPI library looks it up under the name that its own profile
//   makes of the host (rdns and DNS canonicalization may turn a loopback DC into "localhost"), so
//   the ticket is also filed under that name. It stays the ticket of the DC that was named:
//   only that DC can answer the mutual authentication of the bind.
// - Binding: GSSAPI as Cyrus SASL calls it takes the default credential cache of the calling
//   thread. ThreadCache (gss_krb5_ccache_name, which MIT keeps per thread) points it at the
//   private cache for the length of one bind and then gives the thread its default back.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orin::platform {

// 0, a libkrb5 error code (krb5_error_code), or one of the codes below. The message holds the
// library's text, for traces and tests.
struct KerberosStatus {
    long code = 0;
    std::string message;
    bool ok() const { return code == 0; }
};

inline constexpr long kKerberosTimedOut = 1;     // the KDC did not answer within the timeout
inline constexpr long kKerberosBadUserName = 2;  // a user name no principal can be made of
inline constexpr long kKerberosNoPassword = 3;   // an empty password is never sent

// The principal a user logs on as, and the realm whose KDC is asked first.
struct KerberosPrincipal {
    std::string name;  // "user@REALM"; for an enterprise name the UPN itself, "user@suffix"
    std::string realm;
    bool enterprise = false;  // a UPN of another suffix: the KDC finds the account by it
};

// The principal for a user name of the remote method in the domain `dnsDomain` (whose realm is
// the DNS name in capitals) with the NetBIOS name `netbiosDomain`:
//   "name"         -> name@REALM
//   "DOMAIN\name"  -> name@REALM when DOMAIN is the domain's NetBIOS or DNS name, else
//                     name@DOMAIN in capitals (the realm of another domain, if it is one)
//   "name@suffix"  -> name@REALM when suffix is the domain's DNS name; else the enterprise
//                     name "name@suffix", asked of the domain's realm
// A distinguished name, or a name with an empty part, has no principal: nullopt, with the
// reason in `error`.
std::optional<KerberosPrincipal> PrincipalForUser(std::string_view userName,
                                                  std::string_view dnsDomain,
                                                  std::string_view netbiosDomain,
                                                  std::string* error = nullptr);

struct KerberosLogin {
    KerberosPrincipal principal;
    std::string serviceHost;  // the DC as named: its "ldap/<host>" ticket is fetched too
    std::string fallbackKdc;  // asked when no KDC is configured or published for the realm
                              // ("host" or "host:port")
    int timeoutSeconds = 20;  // the exchange with the KDC, TGT and service ticket together
};

class KerberosCredentials {
  public:
    // Asks the KDC for a TGT with `password` and then for the service ticket, into a fresh
    // in-memory cache. `out` is set on success only.
    static KerberosStatus FromPassword(const KerberosLogin& login, std::string_view password,
                                       std::shared_ptr<KerberosCredentials>& out);
    ~KerberosCredentials();
    KerberosCredentials(const KerberosCredentials&) = delete;
    KerberosCredentials& operator=(const KerberosCredentials&) = delete;

    const std::string& CacheName() const { return cacheName_; }  // "MEMORY:..."
    // The client as the KDC named it (an enterprise name comes back as user@REALM).
    const std::string& ClientPrincipal() const { return client_; }
    // The named DC was asked as KDC because nothing else named one for the realm.
    bool AskedDcAsKdc() const { return askedDcAsKdc_; }

    // While it lives, GSSAPI on the calling thread takes its credentials from `credentials`;
    // afterwards the thread has its default cache (KRB5CCNAME) again.
    class ThreadCache {
      public:
        explicit ThreadCache(const KerberosCredentials& credentials);
        ~ThreadCache();
        ThreadCache(const ThreadCache&) = delete;
        ThreadCache& operator=(const ThreadCache&) = delete;
        bool ok() const { return ok_; }

      private:
        bool ok_ = false;
    };

  private:
    KerberosCredentials(std::string cacheName, std::string client, bool askedDcAsKdc)
        : cacheName_(std::move(cacheName)),
          client_(std::move(client)),
          askedDcAsKdc_(askedDcAsKdc) {}

    std::string cacheName_;
    std::string client_;
    bool askedDcAsKdc_ = false;
};

}  // namespace orin::platform
