#pragma once
// The connection record: who and where the domain is, how to reach it, and the bound root.
// Filled by the settings file and the login step, read by every directory operation.

#include <memory>
#include <string>

#include "directory/DirObject.h"

namespace orin::platform {
class LdapConnection;
}

namespace orin {

// How the remote method proves the user name and password to the named DC.
enum class RemoteAuth {
    Automatic,     // TLS with a simple bind; Kerberos where the DC offers no TLS at all
    TlsOnly,       // LDAPS (or StartTLS) with a simple bind, nothing else
    KerberosOnly,  // a Kerberos ticket from the password, GSSAPI sealed on port 389
};

struct DirectorySession {
    std::string DomainDNSName;
    std::string DomainNetBIOSName;
    std::string DomainDN;      // "DC=a,DC=b" built from DomainDNSName
    std::string RootLdapPath;  // "LDAP://" [+ DcComputerName + "/"] + DomainDN
    std::string DcComputerName;
    std::string UserName;
    std::string Password;  // in memory only, never written to a file
    std::string Method;    // "local" or "remote"; anything but LOCAL (any case) is remote
    bool NeverShowAgain = false;

    bool Connected = false;
    bool LoginCancelled = false;
    bool LoginFromMenu = false;
    bool ConnectPending = false;
    bool CollectPending = false;

    // The bound connection and the domain root, set by ConnectLocal / ConnectRemote and kept
    // for the life of the process; a new connect replaces them, a failed one clears them.
    std::shared_ptr<platform::LdapConnection> Connection;
    DirObject RootObject;

    // How the connection is made. Not asked by the login dialog: the defaults suit a member of
    // a domain whose DCs hold certificates the system trusts.
    std::string CaFile;                 // CA certificate file; empty: $LDAPTLS_CACERT, else the
                                        // system trust store
    bool TrustAnyCertificate = false;   // accept any certificate: a test DC's self-signed one
    bool UseStartTls = false;           // remote: StartTLS on port 389 instead of LDAPS on 636
    int NetworkTimeoutSeconds = 10;     // connecting, TLS handshake
    int OperationTimeoutSeconds = 120;  // each request
    int PageSize = 500;  // entries per page of searches and enumerations, taken at connect;
                         // Connection->SetPageSize changes it afterwards

    // remote: TLS, Kerberos from the password, or Kerberos where the DC offers no TLS.
    RemoteAuth RemoteAuthentication = RemoteAuth::Automatic;
    int KerberosTimeoutSeconds = 20;  // remote by Kerberos: the exchange with the KDC
};

// The process-wide session.
extern DirectorySession gSession;

}  // namespace orin
