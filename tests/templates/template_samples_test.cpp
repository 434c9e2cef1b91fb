// The sample rows hang together: every template works on the tree of the OU add template, and
// the delete, move and modify templates of a kind name objects that the kind's add template
// makes, so that the templates can be run one after the other on a fresh domain.

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "TemplateTestSupport.h"
#include "csv/CsvReader.h"
#include "csv/Templates.h"
#include "directory/Paths.h"
#include "platform/Strings.h"

using namespace orin;
using namespace orin::test;

namespace {

// The sample rows of a template with the positions of its header names.
struct Samples {
    std::map<std::string, int, std::less<>> column;  // header name -> position
    std::vector<std::vector<std::string>> rows;

    std::string Cell(const std::vector<std::string>& row, std::string_view name) const {
        auto it = column.find(name);
        return it == column.end() ? std::string() : CellAt(row, static_cast<int16_t>(it->second));
    }
    // The OU path of a span ("OU", "MgrOU", ...) as the engines build it.
    std::string Path(const std::vector<std::string>& row, const std::string& span) const {
        auto start = column.find(span + "-Start");
        auto end = column.find(span + "-End");
        if (start == column.end() || end == column.end()) return {};
        return BuildOUPath(row, start->second, end->second);
    }
    bool IsMirror(const std::vector<std::string>& row) const {
        return ToUpperAscii(Cell(row, "Mirror")) == "YES";
    }
};

Samples ReadSamples(ObjectKind kind, OperationKind op) {
    Samples s;
    const std::vector<std::string> lines = TemplateLines(kind, op);
    std::vector<std::string> header = SplitCells(lines.at(0));
    header[0] = header[0].substr(1);  // the "!"
    for (size_t i = 0; i < header.size(); ++i)
        if (!header[i].empty()) s.column.emplace(header[i], static_cast<int>(i));
    for (const std::string& line : lines)
        if (ClassifyLine(line) == LineKind::Data) s.rows.push_back(SplitCells(line));
    return s;
}

// What a fresh domain has in its "Users" container that the samples may name.
const std::set<std::string, std::less<>> kFreshDomainAccounts = {
    "Administrator", "Guest", "Domain Users", "Domain Guests", "Domain Computers", "Domain Admins"};

}  // namespace

TEST(TemplateSamples, EveryRowStandsInTheTreeOfTheOuAddTemplate) {
    // The OU add template makes its OUs parents first (its run on the test DC shows it).
    std::set<std::string> tree;
    const Samples ouAdd = ReadSamples(ObjectKind::OU, OperationKind::Add);
    for (const auto& row : ouAdd.rows) tree.insert(ouAdd.Path(row, "OU"));

    for (const TemplatePair& pair : AllTemplatePairs()) {
        SCOPED_TRACE(pair.Name());
        const Samples s = ReadSamples(pair.kind, pair.op);
        for (const auto& row : s.rows) {
            const std::string path = s.Path(row, "OU");
            EXPECT_TRUE(tree.count(path)) << "object container " << path;
            if (pair.kind != ObjectKind::OU) {
                EXPECT_FALSE(s.Cell(row, "RDN").empty());
            }
            // The other spans name the tree, a default container or the domain root.
            for (const std::string span : {"MgrOU", "MemberOU", "GrpOU", "NewOU"}) {
                const std::string other = s.Path(row, span);
                EXPECT_TRUE(other.empty() || tree.count(other) || other == "OU=Users" ||
                            other == "OU=Computers")
                    << span << " " << other;
            }
            // A manager is the domain's administrator, or the modify's clear marker.
            const std::string manager = s.Cell(row, "MgrRDN");
            if (!manager.empty() && manager != "!C") {
                EXPECT_EQ(s.Path(row, "MgrOU"), "OU=Users");
                EXPECT_TRUE(kFreshDomainAccounts.count(manager)) << manager;
            }
        }
    }
}

TEST(TemplateSamples, OtherTemplatesNameWhatTheAddTemplatesMake) {
    // (container path, name) of every object an add template makes, by kind.
    std::map<ObjectKind, std::set<std::pair<std::string, std::string>>> made;
    for (ObjectKind kind :
         {ObjectKind::Group, ObjectKind::User, ObjectKind::Computer, ObjectKind::SharedFolder}) {
        const Samples add = ReadSamples(kind, OperationKind::Add);
        for (const auto& row : add.rows) {
            const auto object = std::make_pair(add.Path(row, "OU"), add.Cell(row, "RDN"));
            // A Mirror row continues an object of an earlier row.
            if (add.IsMirror(row)) {
                EXPECT_TRUE(made[kind].count(object)) << object.second;
            } else {
                EXPECT_TRUE(made[kind].insert(object).second) << "made twice: " << object.second;
            }
        }
    }

    for (const TemplatePair& pair : AllTemplatePairs()) {
        if (pair.kind == ObjectKind::OU || pair.op == OperationKind::Add) continue;
        SCOPED_TRACE(pair.Name());
        const Samples s = ReadSamples(pair.kind, pair.op);
        for (const auto& row : s.rows) {
            const auto object = std::make_pair(s.Path(row, "OU"), s.Cell(row, "RDN"));
            EXPECT_TRUE(made[pair.kind].count(object)) << object.second << " in " << object.first;
        }
    }

    // Groups that rows join or hold: made by the group add template, or there on a fresh
    // domain. The group add template may name its own groups of earlier rows only.
    std::set<std::pair<std::string, std::string>> groupsSoFar;
    for (const TemplatePair& pair : AllTemplatePairs()) {
        SCOPED_TRACE(pair.Name());
        const Samples s = ReadSamples(pair.kind, pair.op);
        const bool groupAdd = pair.kind == ObjectKind::Group && pair.op == OperationKind::Add;
        for (const auto& row : s.rows) {
            for (const auto& [span, name] :
                 {std::pair<std::string, std::string>{"GrpOU", "groupRDN"},
                  {"MemberOU", "MemberRDN"}}) {
                const std::string named = s.Cell(row, name);
                if (named.empty()) continue;
                const std::string container = s.Path(row, span);
                if (container == "OU=Users") {
                    EXPECT_TRUE(kFreshDomainAccounts.count(named)) << named;
                    continue;
                }
                const auto& known = groupAdd ? groupsSoFar : made[ObjectKind::Group];
                EXPECT_TRUE(known.count({container, named})) << named << " in " << container;
            }
            if (groupAdd) groupsSoFar.insert({s.Path(row, "OU"), s.Cell(row, "RDN")});
        }
    }
}
