#pragma once
// Orin.ini: the connection settings the operator last typed (domain names, DC, user name,
// connection method and the login dialog's "never show again"), kept in the application
// folder so that the main window and frmLogin come up filled in. The password is never
// written to it.
//
// At start: CreateDefaultIni, then ReadIni. At exit: UpdateIni. Nothing else touches the file.
// Failures are shown to the operator and never stop the start or the exit.

#include <filesystem>
#include <string>
#include <string_view>

namespace orin {

// The settings file and the scratch copy that exists only while UpdateIni runs (or after a
// failed update), both in platform::AppFolder().
std::filesystem::path IniFilePath();
std::filesystem::path IniTmpFilePath();
// Where a damaged Orin.ini goes when ReadIni replaces it by the default file.
std::filesystem::path IniBadFilePath();

// Writes the default Orin.ini when there is none; an existing file is left alone.
void CreateDefaultIni();

// Fills the six settings fields of gSession from Orin.ini. A field whose key is missing from
// the file keeps its value. A file with a line that isn't CP932 text is never half read: it is
// reported, kept as Orin_bad.ini and replaced by the default file, and the session takes the
// defaults.
void ReadIni();

// Writes the settings fields of gSession back into Orin.ini, keeping every other line where it
// stands. A key that is not in the file is not added.
void UpdateIni();

// The value of `key` on a settings line: the text after the line's first "=", cut at its first
// ";", trimmed of blanks, with every tab removed. The line is not checked for holding `key`;
// callers find the key first.
std::string GetEnvValue(std::string_view line, std::string_view key);

}  // namespace orin
