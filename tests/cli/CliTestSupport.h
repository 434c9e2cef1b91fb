#pragma once
// Runs the real orin-cli as a caller would: stdin from /dev/null (no terminal), stdout and
// stderr caught apart, ORIN_HOME in a folder of the test's own, ORIN_PASSWORD unset unless
// given.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "platform/Strings.h"
#include "run/RunTestSupport.h"

namespace orin::test {

struct CliResult {
    int status = -1;
    std::string out;  // UTF-8
    std::string err;  // UTF-8
};

inline std::string ShellQuote(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

inline std::string CliPath() {
    return std::string(ORIN_BINARY_DIR) + "/bin/orin-cli";
}

inline CliResult RunCli(const std::filesystem::path& home, const std::vector<std::string>& args,
                        const std::map<std::string, std::string>& env = {}) {
    std::string command = "env -u ORIN_PASSWORD ORIN_HOME=" + ShellQuote(home.string());
    for (const auto& [name, value] : env) command += " " + name + "=" + ShellQuote(value);
    command += " " + ShellQuote(CliPath());
    for (const std::string& arg : args) command += " " + ShellQuote(arg);
    const std::filesystem::path out = home / "cli.out";
    const std::filesystem::path err = home / "cli.err";
    command += " </dev/null >" + ShellQuote(out.string()) + " 2>" + ShellQuote(err.string());
    const int raw = std::system(command.c_str());
    CliResult result;
    result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    result.out = ReadBytes(out);
    result.err = ReadBytes(err);
    return result;
}

// The lines of stdout.
inline std::vector<std::string> OutLines(const CliResult& result) {
    std::vector<std::string> lines = Split(result.out, '\n');
    if (lines.back().empty()) lines.pop_back();
    return lines;
}

}  // namespace orin::test
