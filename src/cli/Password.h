#pragma once
// Where the command line gets the password of the remote method. Never from an argument: a
// password on the command line shows in the process list and in the shell's history.

#include <filesystem>
#include <optional>
#include <string>

namespace orin::cli {

// The first line of the file, without its line ending; nullopt when the file can't be read.
std::optional<std::string> ReadPasswordFile(const std::filesystem::path& path);

// The environment variable ORIN_PASSWORD, when it is set.
std::optional<std::string> PasswordFromEnvironment();

// Asks on the terminal without echo; nullopt when stdin is not a terminal.
std::optional<std::string> PromptPassword(const char* prompt);

}  // namespace orin::cli
