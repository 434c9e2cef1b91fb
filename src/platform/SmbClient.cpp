#include "platform/SmbClient.h"

#include <libsmbclient.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "platform/Strings.h"

namespace orin::platform {
namespace {

constexpr const char* kSecurityAttribute = "system.nt_sec_desc.*";
// Folder trees deeper than this are not walked: a server that loops can't hold us forever.
constexpr int kMaxTreeDepth = 64;

bool IsUnreserved(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.' || c == '~';
}

std::string Escape(std::string_view part) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char c : part) {
        if (IsUnreserved(c)) {
            out += static_cast<char>(c);
        } else {
            out += '%';
            out += kHex[c >> 4];
            out += kHex[c & 0x0F];
        }
    }
    return out;
}

// The status of a failed library call, from errno. Some failures leave errno at 0.
SmbStatus Failure(std::string_view what, const std::string& url) {
    int code = errno != 0 ? errno : EIO;
    return SmbStatus{code, std::string(what) + " " + url + ": " + std::strerror(code)};
}

SmbStatus NotReady(const std::string& url) {
    return SmbStatus{EINVAL, "SMB client could not start, so nothing was done with " + url};
}

void FillAuth(SMBCCTX* context, const char*, const char*, char* workgroup, int workgroupLength,
              char* user, int userLength, char* password, int passwordLength) {
    auto* credentials = static_cast<const SmbCredentials*>(smbc_getOptionUserData(context));
    // With Kerberos the ticket says who we are; the library's defaults must stay in place.
    if (credentials == nullptr || credentials->useKerberos) return;
    auto copy = [](char* target, int length, const std::string& value) {
        if (length <= 0) return;
        std::strncpy(target, value.c_str(), static_cast<size_t>(length) - 1);
        target[length - 1] = '\0';
    };
    if (!credentials->domain.empty()) copy(workgroup, workgroupLength, credentials->domain);
    copy(user, userLength, credentials->user);
    copy(password, passwordLength, credentials->password);
}

}  // namespace

std::string SmbUrlFromUnc(std::string_view unc) {
    if (unc.size() < 2 || unc[0] != '\\' || unc[1] != '\\') return "";
    std::vector<std::string> parts = Split(unc.substr(2), '\\');
    if (parts.size() < 2) return "";
    std::string url = "smb:/";
    for (const std::string& part : parts) {
        if (part.empty()) return "";
        url += "/" + Escape(part);
    }
    return url;
}

struct SmbClient::Context {
    SmbCredentials credentials;
    SMBCCTX* handle = nullptr;
};

SmbClient::SmbClient(SmbCredentials credentials, std::chrono::milliseconds timeout)
    : context_(std::make_unique<Context>()) {
    context_->credentials = std::move(credentials);
    SMBCCTX* handle = smbc_new_context();
    if (handle == nullptr) return;
    smbc_setDebug(handle, 0);
    smbc_setOptionDebugToStderr(handle, 1);
    smbc_setTimeout(handle, static_cast<int>(timeout.count()));
    smbc_setOptionUserData(handle, &context_->credentials);
    smbc_setFunctionAuthDataWithContext(handle, FillAuth);
    smbc_setOptionNoAutoAnonymousLogin(handle, 1);
    if (context_->credentials.useKerberos) {
        smbc_setOptionUseKerberos(handle, 1);
        smbc_setOptionFallbackAfterKerberos(handle, 0);
        smbc_setOptionUseCCache(handle, 1);
    }
    if (smbc_init_context(handle) == nullptr) {
        smbc_free_context(handle, 1);
        return;
    }
    context_->handle = handle;
}

SmbClient::~SmbClient() {
    if (context_->handle != nullptr) smbc_free_context(context_->handle, 1);
}

SmbStatus SmbClient::Stat(const std::string& url, SmbEntryKind& kind) {
    kind = SmbEntryKind::Absent;
    if (context_->handle == nullptr) return NotReady(url);
    struct stat info {};
    errno = 0;
    if (smbc_getFunctionStat(context_->handle)(context_->handle, url.c_str(), &info) < 0) {
        if (errno == ENOENT) return {};
        return Failure("stat", url);
    }
    kind = S_ISDIR(info.st_mode) ? SmbEntryKind::Directory : SmbEntryKind::File;
    return {};
}

SmbStatus SmbClient::MakeDirectory(const std::string& url) {
    if (context_->handle == nullptr) return NotReady(url);
    errno = 0;
    if (smbc_getFunctionMkdir(context_->handle)(context_->handle, url.c_str(), 0755) < 0) {
        return Failure("mkdir", url);
    }
    return {};
}

SmbStatus SmbClient::RemoveTree(const std::string& url) {
    if (context_->handle == nullptr) return NotReady(url);
    SmbStatus status = RemoveEntries(url, 0);
    if (!status.ok()) return status;
    errno = 0;
    if (smbc_getFunctionRmdir(context_->handle)(context_->handle, url.c_str()) < 0) {
        return Failure("rmdir", url);
    }
    return {};
}

SmbStatus SmbClient::RemoveEntries(const std::string& url, int depth) {
    if (depth > kMaxTreeDepth) return SmbStatus{ELOOP, "folder tree too deep: " + url};
    SMBCCTX* handle = context_->handle;
    errno = 0;
    SMBCFILE* dir = smbc_getFunctionOpendir(handle)(handle, url.c_str());
    if (dir == nullptr) return Failure("opendir", url);

    // Read the whole listing before changing anything in the folder.
    std::vector<std::pair<std::string, bool>> entries;
    while (struct smbc_dirent* entry = smbc_getFunctionReaddir(handle)(handle, dir)) {
        std::string name(entry->name);
        if (name == "." || name == "..") continue;
        if (entry->smbc_type != SMBC_DIR && entry->smbc_type != SMBC_FILE) continue;
        entries.emplace_back(name, entry->smbc_type == SMBC_DIR);
    }
    smbc_getFunctionClosedir(handle)(handle, dir);

    for (const auto& [name, isDirectory] : entries) {
        std::string child = url + "/" + Escape(name);
        if (isDirectory) {
            SmbStatus status = RemoveEntries(child, depth + 1);
            if (!status.ok()) return status;
            errno = 0;
            if (smbc_getFunctionRmdir(handle)(handle, child.c_str()) < 0) {
                return Failure("rmdir", child);
            }
        } else {
            errno = 0;
            if (smbc_getFunctionUnlink(handle)(handle, child.c_str()) < 0) {
                return Failure("unlink", child);
            }
        }
    }
    return {};
}

SmbStatus SmbClient::ReadSecurity(const std::string& url, SmbSecurity& out) {
    if (context_->handle == nullptr) return NotReady(url);
    std::vector<char> buffer(8192);
    // A descriptor with many entries needs a larger buffer; the library says so with ERANGE.
    for (;;) {
        errno = 0;
        std::fill(buffer.begin(), buffer.end(), '\0');
        // Success is 0, not the length: the text ends at its NUL.
        int result = smbc_getFunctionGetxattr(context_->handle)(
            context_->handle, url.c_str(), kSecurityAttribute, buffer.data(), buffer.size() - 1);
        if (result >= 0) {
            std::string text(buffer.data());
            if (!ParseSecurityText(text, out)) {
                return SmbStatus{EBADMSG, "unreadable security descriptor of " + url};
            }
            return {};
        }
        if (errno != ERANGE || buffer.size() >= (1u << 20)) return Failure("getxattr", url);
        buffer.resize(buffer.size() * 4);
    }
}

SmbStatus SmbClient::WriteDacl(const std::string& url, const std::vector<SmbAce>& dacl) {
    if (context_->handle == nullptr) return NotReady(url);
    std::string text = FormatDaclText(dacl);
    errno = 0;
    if (smbc_getFunctionSetxattr(context_->handle)(context_->handle, url.c_str(),
                                                   kSecurityAttribute, text.c_str(),
                                                   text.size() + 1, 0) < 0) {
        return Failure("setxattr", url);
    }
    return {};
}

}  // namespace orin::platform
