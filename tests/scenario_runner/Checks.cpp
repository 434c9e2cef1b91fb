#include "scenario_runner/Checks.h"

#include <algorithm>
#include <cstdio>
#include <regex>

#include "directory/Bind.h"
#include "directory/DirObject.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/access/AccessCodes.h"
#include "engines/access/ObjectDacl.h"
#include "platform/Strings.h"
#include "support/TestDc.h"

namespace orin::scenario {
namespace {

const std::string kStars(50, '*');

std::string RegexEscape(const std::string& text) {
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    return std::regex_replace(text, special, R"(\$&)");
}

bool LineMatches(const std::string& actual, const std::string& expected,
                 const Placeholders& values) {
    if (!expected.starts_with("~ ")) return actual == Substitute(expected, values);
    Placeholders escaped;
    for (const auto& [key, value] : values) escaped[key] = RegexEscape(value);
    return std::regex_match(actual, std::regex(Substitute(expected.substr(2), escaped)));
}

// Shows a line with its control characters, as the expected files write them.
std::string Visible(const std::string& line) {
    std::string out;
    for (char c : line) {
        if (c == '\r')
            out += "\\r";
        else if (c == '\t')
            out += "\\t";
        else
            out += c;
    }
    return out;
}

std::string Decode(const std::string& value) {
    std::string out;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            out += value[i];
            continue;
        }
        const char c = value[++i];
        out += c == 'r' ? '\r' : c == 'n' ? '\n' : c == 't' ? '\t' : c;
    }
    return out;
}

std::string Encode(const std::string& value) {
    std::string out;
    for (char c : value) {
        if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (c == '\\')
            out += "\\\\";
        else
            out += c;
    }
    return out;
}

std::string AceText(const Ace& ace) {
    char text[64];
    std::snprintf(text, sizeof text, "%s 0x%08X 0x%02X", ace.IsDeny() ? "deny" : "allow",
                  ace.AccessMask, ace.AceFlags);
    std::string line = text;
    if (ace.HasObjectType()) line += " " + ace.ObjectType.ToString();
    return line;
}

// One object of the expected state with its check lines.
struct ObjectCheck {
    std::string dn;
    bool absent = false;
    std::vector<std::string> lines;  // "key: value", placeholders in place
};

// What the directory holds for the check lines' keys, in the same form, sorted within a key.
std::vector<std::string> Actual(DirObject& object, const std::vector<std::string>& keys) {
    std::vector<std::string> lines;
    std::optional<ObjectDacl> dacl;
    auto readDacl = [&] {
        if (!dacl) dacl = ReadObjectDacl(object);
        return dacl.has_value();
    };
    for (const std::string& key : keys) {
        std::vector<std::string> found;
        if (key == "dacl") {
            if (readDacl())
                found.push_back(dacl->descriptor.Control & kSeDaclProtected ? "protected"
                                                                            : "inherits");
        } else if (key == "explicit aces") {
            if (readDacl())
                found.push_back(
                    std::to_string(std::count_if(dacl->Aces().begin(), dacl->Aces().end(),
                                                 [](const Ace& a) { return !a.IsInherited(); })));
        } else if (key.starts_with("ace ")) {
            if (readDacl()) {
                const std::string trustee = TrusteeName(key.substr(4));
                for (const Ace& ace : dacl->Aces())
                    if (IsAceOf(ace, trustee)) found.push_back(AceText(ace));
                if (found.empty()) found.push_back("none");
            }
        } else if (auto values = object.GetEx(key); values.ok()) {
            for (const std::string& v : *values) found.push_back(Encode(v));
        }
        std::sort(found.begin(), found.end());
        if (found.empty()) lines.push_back(key + ":");
        for (const std::string& v : found) lines.push_back(key + ": " + v);
    }
    return lines;
}

std::string KeyOf(const std::string& line) {
    const size_t colon = line.find(':');
    return Trim(line.substr(0, colon));
}

// The expected lines in the form Actual gives them: values decoded and encoded again, sorted
// within a key, "key:" for no value.
std::vector<std::string> Normal(const std::vector<std::string>& lines,
                                std::vector<std::string>& keys) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const std::string& line : lines) {
        const std::string key = KeyOf(line);
        const size_t colon = line.find(':');
        const std::string value = colon == std::string::npos ? "" : Trim(line.substr(colon + 1));
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(key);
        if (!value.empty()) pairs.emplace_back(key, Encode(Decode(value)));
    }
    std::vector<std::string> normal;
    for (const std::string& key : keys) {
        std::vector<std::string> values;
        for (const auto& [k, v] : pairs)
            if (k == key) values.push_back(v);
        std::sort(values.begin(), values.end());
        if (values.empty()) normal.push_back(key + ":");
        for (const std::string& v : values) normal.push_back(key + ": " + v);
    }
    return normal;
}

std::string Indented(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += "        " + line + "\n";
    return text;
}

}  // namespace

std::vector<std::string> LogBlocks(const std::vector<std::string>& log,
                                   const std::vector<std::string>& csvPaths) {
    static const std::regex date(R"(日付： \d{4}/\d{2}/\d{2})");
    static const std::regex time(R"(時刻： \d{2}:\d{2}:\d{2})");
    std::vector<std::string> blocks;
    for (size_t i = 0; i < log.size(); ++i) {
        const bool header =
            i + 6 < log.size() && log[i].empty() && log[i + 1] == kStars &&
            log[i + 2].starts_with("処理内容： ") && std::regex_match(log[i + 3], date) &&
            std::regex_match(log[i + 4], time) && log[i + 6] == kStars &&
            std::any_of(csvPaths.begin(), csvPaths.end(),
                        [&](const std::string& p) { return log[i + 5] == "CSVﾌｧｲﾙﾊﾟｽ： " + p; });
        if (!header) {
            blocks.push_back(log[i]);
            continue;
        }
        blocks.push_back("== " + log[i + 2].substr(std::string("処理内容： ").size()));
        i += 6;
    }
    return blocks;
}

std::string CompareLog(const std::vector<std::string>& actual,
                       const std::vector<std::string>& expected, const Placeholders& values) {
    size_t first = 0;
    while (first < actual.size() && first < expected.size() &&
           LineMatches(actual[first], expected[first], values))
        ++first;
    if (first == actual.size() && first == expected.size()) return "";
    std::string report = "Event.log differs from expected.log at line " +
                         std::to_string(first + 1) + " (marked >>).\n--- Event.log:\n";
    for (size_t i = 0; i < actual.size(); ++i)
        report += (i == first ? ">> " : "   ") + Visible(actual[i]) + "\n";
    report += "--- expected.log:\n";
    for (size_t i = 0; i < expected.size(); ++i)
        report += (i == first ? ">> " : "   ") + Visible(Substitute(expected[i], values)) + "\n";
    return report;
}

std::string CheckState(const std::vector<std::string>& expected, const Placeholders& values,
                       const std::string& scenarioOuDn) {
    std::vector<ObjectCheck> objects;
    for (const std::string& raw : expected) {
        if (Trim(raw).empty() || Trim(raw).starts_with("#")) continue;
        const std::string line = Substitute(raw, values);
        if (line.front() == ' ' || line.front() == '\t') {
            if (objects.empty()) return "expected.state: a check before any object: " + raw;
            objects.back().lines.push_back(Trim(line));
            continue;
        }
        ObjectCheck object;
        std::string dn = Trim(line);
        if (dn.ends_with(" absent")) {
            object.absent = true;
            dn = Trim(dn.substr(0, dn.size() - 7));
        }
        if (dn == ".")
            dn = scenarioOuDn;
        else if (!EqualsIgnoreCase(
                     dn.substr(dn.size() - std::min(dn.size(), gSession.DomainDN.size())),
                     gSession.DomainDN))
            dn += "," + scenarioOuDn;
        object.dn = dn;
        objects.push_back(object);
    }

    std::string report;
    for (ObjectCheck& check : objects) {
        DirObject object;
        const bool exists = BindObject("LDAP://" + check.dn, object);
        if (exists == check.absent) {
            report += check.dn + (exists ? ": exists, and should not\n" : ": does not exist\n");
            continue;
        }
        if (!exists) continue;
        std::vector<std::string> keys;
        const std::vector<std::string> want = Normal(check.lines, keys);
        const std::vector<std::string> have = Actual(object, keys);
        if (want != have)
            report += check.dn + ":\n    expected:\n" + Indented(want) +
                      "    the directory holds:\n" + Indented(have);
    }
    // What the runs put outside the scenario's OU goes, so that the next run starts clean: the
    // objects named there whose relative name holds the run's tag.
    const std::string tag = values.at("{U}");
    for (const ObjectCheck& check : objects) {
        if (check.dn.ends_with(scenarioOuDn) || FirstRdn(check.dn).find(tag) == std::string::npos)
            continue;
        DirObject object;
        if (BindObject("LDAP://" + check.dn, object)) test::DeleteTree(check.dn);
    }
    return report;
}

}  // namespace orin::scenario
