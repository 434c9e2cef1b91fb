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
};

// The process-wide session.
extern DirectorySession gSession;

}  // namespace orin
