#pragma once
// One scenario folder of tests/scenarios: what it runs and what it expects. The folder's format
// is told in tests/scenarios/README.md.

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orin::scenario {

// One orin-cli run: "run <kind> <op> <mode> <csv> [<option>...] => <exit status>".
struct RunStep {
    std::vector<std::string> args;  // the orin-cli arguments after "run", without connection ones
    std::string csv;                // the CSV file's name inside the folder
    int exitStatus = 0;
    std::string text;  // the line as written, for messages
};

struct Scenario {
    std::filesystem::path folder;
    std::string name;  // "ou/add-tree"
    std::vector<RunStep> runs;
    std::vector<std::string> ways = {"fast"};  // "fast", "exact"
    std::vector<std::string> expectedLog;      // placeholders still in place
    std::vector<std::string> expectedState;    // empty when the folder has none
    std::vector<std::string> setupLdif;        // empty when the folder has none
    std::vector<std::string> teardownLdif;     // loaded after the checks; empty when none
};

// Reads the folder; on a malformed folder, an empty optional and the reason in `error`.
bool LoadScenario(const std::filesystem::path& folder, Scenario& scenario, std::string& error);

// The lines of a UTF-8 text file, without line endings; false when it can't be read.
bool ReadTextLines(const std::filesystem::path& path, std::vector<std::string>& lines);

// The values that the placeholders stand for in one run of a scenario.
using Placeholders = std::map<std::string, std::string>;  // "{T}" -> "add-tree-1234"
std::string Substitute(std::string text, const Placeholders& values);

}  // namespace orin::scenario
