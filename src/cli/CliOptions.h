#pragma once
// The command line of orin-cli: its two subcommands, their options, and the exit statuses.

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/Identifiers.h"

namespace orin::cli {

// What the process tells its caller.
enum ExitStatus : int {
    kExitSuccess = 0,        // every object succeeded (or matched)
    kExitFailure = 1,        // at least one object failed, or the run ended early
    kExitWarning = 2,        // warnings or differences, and no failure
    kExitStopped = 3,        // stopped before the run: a check, a question answered No
    kExitNoConnection = 4,   // the domain could not be reached, or the login was refused
    kExitTerminated = 5,     // SIGTERM or SIGHUP stopped it, as Ctrl-C does (130)
    kExitUsage = 64,         // bad command line
    kExitInterrupted = 130,  // Ctrl-C stopped it: the run in work cancelled, its summary written
};

struct RunOptions {
    ObjectKind kind = ObjectKind::OU;
    OperationKind op = OperationKind::Add;
    RunMode mode = RunMode::Production;
    std::string csv;
    // Not given: the value of Orin.ini stands.
    std::optional<std::string> dns;
    std::optional<std::string> netbios;
    std::optional<std::string> method;  // "local" or "remote"
    std::optional<std::string> server;
    std::optional<std::string> user;
    std::optional<std::string> passwordFile;
    std::optional<std::string> caFile;
    std::optional<std::string> auth;  // remote: "auto", "tls" or "kerberos"
    bool trustTestDc = false;
    bool yes = false;
};

struct TemplateOptions {
    ObjectKind kind = ObjectKind::OU;
    OperationKind op = OperationKind::Add;
    std::string out;
    bool yes = false;
};

struct HelpRequest {};

using Command = std::variant<RunOptions, TemplateOptions, HelpRequest>;

// Parses the arguments after the program's name. On a bad command line: nullopt, with the
// reason in `error`.
std::optional<Command> ParseCommandLine(const std::vector<std::string>& args, std::string& error);

// The usage text, UTF-8, lines ended by "\n".
const char* UsageText();

}  // namespace orin::cli
