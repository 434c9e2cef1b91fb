#pragma once
// The connection record: who and where the domain is, how to reach it, and the bound root.
// Filled by the settings file and the login step, read by every directory operation.

#include <string>

namespace orin {

struct DirectorySession {
    std::string DomainDNSName;
    std::string DomainNetBIOSName;
    std::string DomainDN;       // "DC=a,DC=b" built from DomainDNSName
    std::string RootLdapPath;   // "LDAP://" [+ DcComputerName + "/"] + DomainDN
    std::string DcComputerName;
    std::string UserName;
    std::string Password;       // in memory only, never written to a file
    std::string Method;         // "local" or "remote"; anything but LOCAL (any case) is remote
    bool NeverShowAgain = false;

    bool Connected = false;
    bool LoginCancelled = false;
    bool LoginFromMenu = false;
    bool ConnectPending = false;
    bool CollectPending = false;
};

// The process-wide session.
extern DirectorySession gSession;

}  // namespace orin
