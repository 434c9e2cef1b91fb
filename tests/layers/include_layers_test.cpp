// The folders under src/ form layers, and every include points down a layer (or stays in its
// own folder). A new folder must be given its place here before it can include anything.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace {

// Higher includes lower; folders of one rank don't include each other.
const std::map<std::string, int> kRank = {
    {"platform", 0},                    // libldap, SASL, SMB, SQLite, iconv, processes
    {"base", 1},                        // identifiers, run record, outcomes, operator, trace
    {"csv", 2},      {"directory", 2},  // files and the directory object model
    {"engines", 3},                     // one engine per (kind, operation, mode)
    {"export", 4},                      // CSV export, which reads as the engines read
    {"bulk", 5},                        // the whole-domain database, beside the add engines
    {"run", 6},                         // drivers, row loops, start methods, engine slots
    {"cli", 7},      {"shell", 7},      // the two front ends
};

struct Violation {
    std::string file;
    std::string include;
};

std::vector<Violation> Violations() {
    const std::filesystem::path src = std::filesystem::path(ORIN_SOURCE_DIR) / "src";
    const std::regex projectInclude(R"(^\s*#\s*include\s+"([a-z_]+)/)");
    const std::regex qtInclude(R"(^\s*#\s*include\s+<Qt?[A-Z][A-Za-z]*)");
    std::vector<Violation> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(src)) {
        const std::string ext = entry.path().extension().string();
        if (!entry.is_regular_file() || (ext != ".cpp" && ext != ".h")) continue;
        const std::string relative = std::filesystem::relative(entry.path(), src).string();
        const std::string folder = relative.substr(0, relative.find('/'));
        const auto own = kRank.find(folder);
        std::ifstream in(entry.path());
        std::string line;
        while (std::getline(in, line)) {
            std::smatch m;
            if (std::regex_search(line, m, projectInclude)) {
                const auto target = kRank.find(m[1].str());
                const bool allowed = own != kRank.end() && target != kRank.end() &&
                                     (target == own || target->second < own->second);
                if (!allowed) found.push_back({relative, line});
            } else if (folder != "shell" && std::regex_search(line, qtInclude)) {
                found.push_back({relative, line});
            }
        }
    }
    return found;
}

TEST(Layers, EveryIncludePointsDownAndOnlyTheShellSeesQt) {
    std::string report;
    for (const Violation& v : Violations()) report += v.file + ": " + v.include + "\n";
    EXPECT_EQ(report, "");
}

}  // namespace
