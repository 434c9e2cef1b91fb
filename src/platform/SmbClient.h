#pragma once
// Folders on a network share, through libsmbclient. The only code that touches that library.
//
// One SmbClient is one libsmbclient context with its own credentials and timeout: a user name,
// password and domain, or the caller's Kerberos ticket (the credential cache that KRB5CCNAME
// names). Every call reports an SmbStatus; nothing throws, and a server that does not answer
// fails within the timeout.

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "platform/SmbSecurityText.h"

namespace orin::platform {

struct SmbCredentials {
    std::string user;
    std::string password;
    std::string domain;        // NetBIOS name of the user's domain
    bool useKerberos = false;  // use the Kerberos ticket in place of user and password
};

// errno-style code (0 for success) and a line that says what failed, for the trace.
struct SmbStatus {
    int code = 0;
    std::string message;

    bool ok() const { return code == 0; }
};

enum class SmbEntryKind { Absent, Directory, File };

// "\\server\share\a\b" -> "smb://server/share/a/b", with the characters that the URL form
// reserves escaped. "" when the text is not a UNC path with at least a server and a share.
std::string SmbUrlFromUnc(std::string_view unc);

class SmbClient {
  public:
    SmbClient(SmbCredentials credentials, std::chrono::milliseconds timeout);
    ~SmbClient();
    SmbClient(const SmbClient&) = delete;
    SmbClient& operator=(const SmbClient&) = delete;

    // Absent when the server answers that the path isn't there (ENOENT); any other failure is
    // an error status.
    SmbStatus Stat(const std::string& url, SmbEntryKind& kind);
    // Makes one folder; its parent must exist.
    SmbStatus MakeDirectory(const std::string& url);
    // Removes a folder with everything in it.
    SmbStatus RemoveTree(const std::string& url);
    // The owner, group and DACL, SIDs in their "S-1-..." form.
    SmbStatus ReadSecurity(const std::string& url, SmbSecurity& out);
    // Replaces the DACL, leaving owner and group alone. The library orders the entries the
    // Windows way (explicit before inherited, deny before allow).
    SmbStatus WriteDacl(const std::string& url, const std::vector<SmbAce>& dacl);

  private:
    struct Context;
    std::unique_ptr<Context> context_;
    SmbStatus RemoveEntries(const std::string& url, int depth);
};

}  // namespace orin::platform
