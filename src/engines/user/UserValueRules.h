#pragma once
// Value checks of the user engines for the country, home-drive and home-folder cells. They
// report nothing: a false result makes the engine raise its own code.

#include <string>
#include <string_view>

namespace orin {

// A two-letter code of the country list (ISO 3166 as Active Directory knows it), any case.
bool IsCountryCode(std::string_view code);

// A drive letter such as "H:": after trimming exactly two characters, the second ":", the first a
// letter from C to Z in either case, full-width letters included ("Ｚ:").
bool IsDriveSpec(std::string_view drive);

// A network path "\\server\share[\...]": after trimming at least five characters, starting with
// two backslashes, another backslash after the server's first character, and not ending in one.
bool IsUncPath(std::string_view path);

// A local path "X:\...": after trimming, a letter from A to Z (full-width too) and ":\".
bool IsLocalPath(std::string_view path);

// The folder that holds a network home folder: "\\s\a\b" gives "\\s\a". A path directly on the
// share ("\\s\a") gives an empty parent. False, with `parent` empty, when the path is not a UNC
// path.
bool ParentOfUncPath(std::string_view path, std::string& parent);

}  // namespace orin
