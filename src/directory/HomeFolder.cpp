#include "directory/HomeFolder.h"

#include <filesystem>
#include <memory>
#include <mutex>

#include "directory/DirectorySession.h"
#include "directory/Sid.h"
#include "directory/WinNTUser.h"
#include "platform/SmbClient.h"
#include "platform/Strings.h"

namespace orin {
namespace {

namespace fs = std::filesystem;
using platform::SmbAce;
using platform::SmbClient;
using platform::SmbCredentials;

constexpr std::string_view kEveryoneSid = "S-1-1-0";
constexpr std::string_view kUsersSid = "S-1-5-32-545";
constexpr std::string_view kAdministratorsSid = "S-1-5-32-544";

bool IsNetworkPath(std::string_view path) {
    return path.size() >= 2 && path[0] == '\\' && path[1] == '\\';
}

HomeFolderStatus Failed(std::string detail) {
    return HomeFolderStatus{false, std::move(detail)};
}

HomeFolderStatus FromSmb(const platform::SmbStatus& status) {
    return status.ok() ? HomeFolderStatus{} : Failed(status.message);
}

// The identity of the session: the logged-on user's ticket for the local method, the named
// user for the remote one. "DOMAIN\user" names its own domain; "user@realm" needs none.
SmbCredentials SessionCredentials() {
    SmbCredentials credentials;
    if (EqualsIgnoreCase(gSession.Method, "LOCAL")) {
        credentials.useKerberos = true;
        return credentials;
    }
    const std::string& user = gSession.UserName;
    size_t backslash = user.find('\\');
    if (backslash != std::string::npos) {
        credentials.domain = user.substr(0, backslash);
        credentials.user = user.substr(backslash + 1);
    } else {
        credentials.user = user;
        if (user.find('@') == std::string::npos) credentials.domain = gSession.DomainNetBIOSName;
    }
    credentials.password = gSession.Password;
    return credentials;
}

bool SameCredentials(const SmbCredentials& a, const SmbCredentials& b) {
    return a.useKerberos == b.useKerberos && a.user == b.user && a.password == b.password &&
           a.domain == b.domain;
}

// One SMB client for the session, kept between calls so that a run of many users doesn't pay
// for a new connection per folder; a change of identity makes a new one.
template <class Action>
auto WithSmbClient(Action action) {
    static std::mutex mutex;
    static std::unique_ptr<SmbClient> client;
    static SmbCredentials clientCredentials;
    std::lock_guard lock(mutex);
    SmbCredentials credentials = SessionCredentials();
    if (!client || !SameCredentials(credentials, clientCredentials)) {
        client.reset();
        client = std::make_unique<SmbClient>(credentials, kHomeFolderTimeout);
        clientCredentials = credentials;
    }
    return action(*client);
}

std::string AccountSid(std::string_view sam) {
    DirResult<WinNTUser> user = WinNTUser::Open(sam);
    if (!user.ok()) return "";
    DirResult<Bytes> bytes = user->Object().GetBinary("objectSid");
    if (!bytes.ok()) return "";
    std::optional<Sid> sid = ParseSidBytes(*bytes);
    return sid ? sid->ToString() : "";
}

}  // namespace

bool FolderExists(std::string_view path) {
    if (!IsNetworkPath(path)) {
        std::error_code error;
        return fs::is_directory(fs::path(std::string(path)), error);
    }
    std::string url = platform::SmbUrlFromUnc(path);
    if (url.empty()) return false;
    return WithSmbClient([&](SmbClient& smb) {
        platform::SmbEntryKind kind;
        return smb.Stat(url, kind).ok() && kind == platform::SmbEntryKind::Directory;
    });
}

HomeFolderStatus CreateFolder(std::string_view path) {
    if (!IsNetworkPath(path)) {
        std::error_code error;
        fs::path folder{std::string(path)};
        if (fs::exists(folder, error)) return Failed("already exists: " + folder.string());
        if (!fs::create_directory(folder, error)) {
            return Failed("cannot create " + folder.string() + ": " + error.message());
        }
        return {};
    }
    std::string url = platform::SmbUrlFromUnc(path);
    if (url.empty()) return Failed("not a network path: " + std::string(path));
    return WithSmbClient([&](SmbClient& smb) { return FromSmb(smb.MakeDirectory(url)); });
}

HomeFolderStatus DeleteFolder(std::string_view path) {
    if (!IsNetworkPath(path)) {
        std::error_code error;
        fs::path folder{std::string(path)};
        if (!fs::is_directory(folder, error)) return Failed("no such folder: " + folder.string());
        fs::remove_all(folder, error);
        if (error) return Failed("cannot remove " + folder.string() + ": " + error.message());
        return {};
    }
    std::string url = platform::SmbUrlFromUnc(path);
    if (url.empty()) return Failed("not a network path: " + std::string(path));
    return WithSmbClient([&](SmbClient& smb) { return FromSmb(smb.RemoveTree(url)); });
}

HomeFolderStatus SetHomeFolderRights(std::string_view path, std::string_view sam) {
    if (!IsNetworkPath(path)) {
        return Failed("rights for domain accounts can only be set on a network folder: " +
                      std::string(path));
    }
    std::string url = platform::SmbUrlFromUnc(path);
    if (url.empty()) return Failed("not a network path: " + std::string(path));
    std::string userSid = AccountSid(sam);
    if (userSid.empty()) {
        return Failed("no account " + gSession.DomainNetBIOSName + "\\" + std::string(sam));
    }

    return WithSmbClient([&](SmbClient& smb) {
        platform::SmbSecurity security;
        platform::SmbStatus status = smb.ReadSecurity(url, security);
        if (!status.ok()) return FromSmb(status);

        // Everyone and Users lose every entry; the two grantees' old entries give way to the
        // new ones; the rest stays, no longer marked as inherited.
        std::vector<SmbAce> dacl;
        for (SmbAce ace : security.dacl) {
            const std::string& who = ace.trustee;
            if (EqualsIgnoreCase(who, kEveryoneSid) || EqualsIgnoreCase(who, kUsersSid) ||
                EqualsIgnoreCase(who, kAdministratorsSid) || EqualsIgnoreCase(who, userSid)) {
                continue;
            }
            ace.flags &= static_cast<uint8_t>(~platform::kSmbAceInherited);
            dacl.push_back(ace);
        }
        const uint8_t inherit = platform::kSmbAceObjectInherit | platform::kSmbAceContainerInherit;
        dacl.push_back(
            {userSid, false, platform::kSmbAceAllow, inherit, platform::kSmbFullControl});
        dacl.push_back({std::string(kAdministratorsSid), false, platform::kSmbAceAllow, inherit,
                        platform::kSmbFullControl});
        return FromSmb(smb.WriteDacl(url, dacl));
    });
}

}  // namespace orin
