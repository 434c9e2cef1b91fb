#pragma once
// The versions of the libraries the program runs with, as they report themselves at run time,
// for the "ｼｽﾃﾑ情報" of the about box and for bug reports.

#include <string>
#include <utility>
#include <vector>

namespace orin::platform {

// Pairs of (library, version), such as ("OpenLDAP", "2.5.13"); a library that can't tell its
// version is listed with "?".
std::vector<std::pair<std::string, std::string>> LibraryVersions();

}  // namespace orin::platform
