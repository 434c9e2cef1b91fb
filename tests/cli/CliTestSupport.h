#pragma once
// Runs the real orin-cli as a caller would: stdin from /dev/null (no terminal), stdout and
// stderr caught apart, ORIN_HOME in a folder of the test's own, ORIN_PASSWORD unset unless
// given.

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

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

// The shell command that runs orin-cli so, its output going to cli.out and cli.err in `home`.
inline std::string CliCommand(const std::filesystem::path& home,
                              const std::vector<std::string>& args,
                              const std::map<std::string, std::string>& env) {
    std::string command = "exec env -u ORIN_PASSWORD ORIN_HOME=" + ShellQuote(home.string());
    for (const auto& [name, value] : env) command += " " + name + "=" + ShellQuote(value);
    command += " " + ShellQuote(CliPath());
    for (const std::string& arg : args) command += " " + ShellQuote(arg);
    return command + " </dev/null >" + ShellQuote((home / "cli.out").string()) + " 2>" +
           ShellQuote((home / "cli.err").string());
}

inline CliResult CliResultOf(const std::filesystem::path& home, int raw) {
    CliResult result;
    result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    result.out = ReadBytes(home / "cli.out");
    result.err = ReadBytes(home / "cli.err");
    return result;
}

inline CliResult RunCli(const std::filesystem::path& home, const std::vector<std::string>& args,
                        const std::map<std::string, std::string>& env = {}) {
    return CliResultOf(home, std::system(CliCommand(home, args, env).c_str()));
}

// Starts orin-cli as RunCli runs it, without waiting: the process id is orin-cli's own.
inline pid_t StartCli(const std::filesystem::path& home, const std::vector<std::string>& args) {
    const std::string command = CliCommand(home, args, {});
    const char* argv[] = {"sh", "-c", command.c_str(), nullptr};
    pid_t pid = -1;
    posix_spawn(&pid, "/bin/sh", nullptr, nullptr, const_cast<char**>(argv), environ);
    return pid;
}

inline CliResult WaitCli(const std::filesystem::path& home, pid_t pid) {
    int raw = 0;
    waitpid(pid, &raw, 0);
    return CliResultOf(home, raw);
}

// The lines of stdout.
inline std::vector<std::string> OutLines(const CliResult& result) {
    std::vector<std::string> lines = Split(result.out, '\n');
    if (lines.back().empty()) lines.pop_back();
    return lines;
}

}  // namespace orin::test
