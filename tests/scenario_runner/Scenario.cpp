#include "scenario_runner/Scenario.h"

#include <fstream>
#include <sstream>

#include "platform/Strings.h"

namespace orin::scenario {
namespace {

std::vector<std::string> Words(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

bool ParseRun(const std::string& line, RunStep& step, std::string& error) {
    const size_t arrow = line.rfind("=>");
    std::vector<std::string> words = Words(line.substr(0, arrow));
    if (arrow == std::string::npos || words.size() < 5) {
        error = "expected \"run <kind> <op> <mode> <csv> [<option>...] => <exit status>\": " + line;
        return false;
    }
    try {
        step.exitStatus = std::stoi(line.substr(arrow + 2));
    } catch (const std::exception&) {
        error = "no exit status after \"=>\": " + line;
        return false;
    }
    step.csv = words[4];
    step.args = {"--kind", words[1], "--op", words[2], "--mode", words[3]};
    step.args.insert(step.args.end(), words.begin() + 5, words.end());
    step.text = Trim(line);
    return true;
}

}  // namespace

bool ReadTextLines(const std::filesystem::path& path, std::vector<std::string>& lines) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    lines.clear();
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return true;
}

bool LoadScenario(const std::filesystem::path& folder, Scenario& scenario, std::string& error) {
    scenario.folder = folder;
    scenario.name = folder.parent_path().filename().string() + "/" + folder.filename().string();
    std::vector<std::string> lines;
    if (!ReadTextLines(folder / "scenario", lines)) {
        error = "no file " + (folder / "scenario").string();
        return false;
    }
    for (const std::string& raw : lines) {
        const std::string line = Trim(raw);
        if (line.empty() || line.starts_with("#")) continue;
        std::vector<std::string> words = Words(line);
        if (words[0] == "run") {
            RunStep step;
            if (!ParseRun(line, step, error)) return false;
            if (!std::filesystem::exists(folder / step.csv)) {
                error = "no CSV file " + step.csv + " for: " + line;
                return false;
            }
            scenario.runs.push_back(step);
        } else if (words[0] == "ways") {
            scenario.ways.assign(words.begin() + 1, words.end());
            for (const std::string& way : scenario.ways) {
                if (way != "fast" && way != "exact") {
                    error = "a way is \"fast\" or \"exact\": " + line;
                    return false;
                }
            }
        } else {
            error = "a line of the scenario file is \"run ...\" or \"ways ...\": " + line;
            return false;
        }
    }
    if (scenario.runs.empty() || scenario.ways.empty()) {
        error = "the scenario file names no run, or no way";
        return false;
    }
    if (!ReadTextLines(folder / "expected.log", scenario.expectedLog)) {
        error = "no file expected.log";
        return false;
    }
    ReadTextLines(folder / "expected.state", scenario.expectedState);
    ReadTextLines(folder / "setup.ldif", scenario.setupLdif);
    ReadTextLines(folder / "teardown.ldif", scenario.teardownLdif);
    return true;
}

std::string Substitute(std::string text, const Placeholders& values) {
    for (const auto& [key, value] : values) text = ReplaceAll(text, key, value);
    return text;
}

}  // namespace orin::scenario
