#include "cli/Password.h"

#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

namespace orin::cli {

std::optional<std::string> ReadPasswordFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::string line;
    std::getline(in, line);
    if (in.bad()) return std::nullopt;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

std::optional<std::string> PasswordFromEnvironment() {
    const char* value = std::getenv("ORIN_PASSWORD");
    if (!value) return std::nullopt;
    return std::string(value);
}

std::optional<std::string> PromptPassword(const char* prompt) {
    if (!isatty(STDIN_FILENO)) return std::nullopt;
    std::cerr << prompt << std::flush;
    termios saved{};
    const bool canHide = tcgetattr(STDIN_FILENO, &saved) == 0;
    if (canHide) {
        termios hidden = saved;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    std::string line;
    std::getline(std::cin, line);
    if (canHide) tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
    std::cerr << "\n";
    return line;
}

}  // namespace orin::cli
