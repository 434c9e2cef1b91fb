#pragma once
// Users' home folders. A path "\\server\share\folder" is a folder on a network share, reached
// over SMB with the session's identity: the Kerberos ticket of the logged-on user for the local
// method, the session's user name, password and domain for the remote method. Any other path is
// a folder of this machine's file system.
//
// The operations report a status; the engines turn a failure into their own code. The detail
// text is for the trace, never for the operator.

#include <chrono>
#include <string>
#include <string_view>

namespace orin {

struct HomeFolderStatus {
    bool ok = true;
    std::string detail;
};

// How long one SMB request may wait for the server before it fails.
inline constexpr std::chrono::milliseconds kHomeFolderTimeout{15000};

// True when the folder exists. A path that can't be reached (no such server or share, access
// refused) counts as absent, as a folder test does.
bool FolderExists(std::string_view path);

// Makes the folder; its parent must exist, and the folder must not.
HomeFolderStatus CreateFolder(std::string_view path);

// Removes the folder with everything in it.
HomeFolderStatus DeleteFolder(std::string_view path);

// The rights of a new home folder: full control for DOMAIN\sam (the session's NetBIOS domain)
// and for Administrators, inherited by everything created inside; every entry for Everyone and
// for Users removed; the entries the folder had from its parent kept, but as its own, so that
// it no longer takes anything from its parent. Network paths only: there is no equivalent for
// Windows accounts on a local Linux folder, and a local path fails.
HomeFolderStatus SetHomeFolderRights(std::string_view path, std::string_view sam);

}  // namespace orin
