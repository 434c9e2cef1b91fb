// The templates run as they stand against the test DC, through the drivers and the real engines.
//
// So that each test works in an OU of its own, a template is moved into the test's OU before
// the run: every span whose first cell is the top of the templates' tree ("IT事業本部") gets
// the test OU's name in front of it, and the header one more unnamed column in every span.
// Spans naming "Users", "Computers" or the domain root stay; no line is added or taken away,
// so the event log's line numbers are those of the template itself.

#include <gtest/gtest.h>

#include <regex>

#include "TemplateTestSupport.h"
#include "base/Messages.h"
#include "base/RunContext.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/Strings.h"
#include "run/Drivers.h"
#include "run/ProgressWindow.h"
#include "run/RegisterEngines.h"
#include "run/RowLoop.h"
#include "run/RunTestSupport.h"
#include "support/TestDc.h"

namespace orin {
namespace {

constexpr std::string_view kTreeTop = "IT事業本部";

// A failure the run is expected to report: the template's line, and the code's message.
struct ExpectedFailure {
    int32_t line;
    int32_t code;
};

// One "<line>行, 失敗, <message>" line of the event log (the message's first line).
struct LoggedEvent {
    int32_t line;
    std::string kind;  // "失敗", "警告", "相違"
    std::string message;
};

std::string Describe(const std::vector<LoggedEvent>& events) {
    std::string text;
    for (const LoggedEvent& e : events)
        text += "\n  " + std::to_string(e.line) + "行 " + e.kind + " " + e.message;
    return text.empty() ? " (none)" : text;
}

class TemplateDcTest : public test::DcTest {
  protected:
    void SetUp() override {
        test::DcTest::SetUp();
        test::ResetRun(folder.path());
        RegisterAllEngines();
        SetProgressStartWait(0);
        op.defaultAnswer = MsgAnswer::Yes;
        op.domainFields = {test::TestDc().dnsDomain, test::TestDc().netbiosDomain};
        gSession.NeverShowAgain = true;  // connected by the fixture: no login
        scope = ou().Rdn().substr(3);
    }
    void TearDown() override {
        SetProgressStartWait(1.0);
        gSession.NeverShowAgain = false;
        test::DcTest::TearDown();
    }

    bool HasEngines(ObjectKind kind) {
        return GetRowEngine(kind, RowOperationOf(OperationKind::Add, RunMode::Production)) &&
               GetRowEngine(kind, RowOperationOf(OperationKind::Add, RunMode::Imitate));
    }

    // The template of (kind, op), moved into the test's OU (see the top of the file).
    std::vector<std::string> ScopedTemplate(ObjectKind kind, OperationKind op) {
        std::vector<std::string> lines = TemplateLines(kind, op);
        std::vector<std::string> header = SplitCells(lines.at(0));
        std::vector<size_t> spanStarts;
        for (size_t i = 0; i < header.size(); ++i) {
            const std::string name = i == 0 ? header[i].substr(1) : header[i];
            if (name.ends_with("-Start")) spanStarts.push_back(i);
        }
        for (std::string& line : lines) {
            if (line.empty() || line.starts_with("#,")) continue;  // the notes
            std::vector<std::string> cells = SplitCells(line);
            // From the right, so that the positions to the left stay valid.
            for (auto s = spanStarts.rbegin(); s != spanStarts.rend(); ++s) {
                const auto at = cells.begin() + static_cast<long>(*s);
                if (ClassifyLine(line) == LineKind::Data && Trim(*at) == kTreeTop)
                    cells.insert(at, scope);
                else
                    cells.insert(at + 1, "");
            }
            line = Join(cells, ",");
        }
        return lines;
    }

    // Runs the scoped template of (kind, op) and checks in the event log that it fails exactly
    // where expected, with the expected code, and that every other object goes through without
    // a warning.
    void ExpectFailures(ObjectKind kind, OperationKind op, RunMode mode,
                        const std::vector<ExpectedFailure>& expected) {
        SCOPED_TRACE(TemplateName(kind, op) + (mode == RunMode::Production ? " 本番" : " 模擬"));
        const std::filesystem::path csv = folder / "template.csv";
        test::WriteCsv(csv, ScopedTemplate(kind, op));
        std::filesystem::remove(gRun.strEventLogPath);
        ASSERT_EQ(RunFromButton(kind, op, mode, csv.string()), DriverEnd::Completed);

        std::vector<LoggedEvent> events;
        const std::regex row(R"(^(\d+)行, (失敗|警告|相違), (.*)$)");
        for (const std::string& line : test::ReadLines(gRun.strEventLogPath)) {
            std::smatch m;
            if (std::regex_match(line, m, row)) events.push_back({std::stoi(m[1]), m[2], m[3]});
        }
        ASSERT_EQ(events.size(), expected.size()) << "the run reported:" << Describe(events);
        for (size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(events[i].kind, "失敗");
            EXPECT_EQ(events[i].line, expected[i].line);
            // The message's own words up to its first argument or line break.
            std::string words(MessageTemplate(expected[i].code).value_or("?"));
            words = words.substr(0, std::min(words.find('%'), words.find('\r')));
            EXPECT_TRUE(events[i].message.starts_with(words))
                << events[i].message << " is not code " << expected[i].code;
        }
        EXPECT_GT(gRun.lngObjectCnt, 0);
        EXPECT_EQ(gRun.lngFailureCnt, static_cast<int32_t>(expected.size()));
        EXPECT_EQ(gRun.lngSuccessCnt, gRun.lngObjectCnt - gRun.lngFailureCnt);
    }

    void ExpectClean(ObjectKind kind, OperationKind op, RunMode mode) {
        ExpectFailures(kind, op, mode, {});
    }

    // The delete, move and modify templates of a kind, imitated on what its add made.
    void ImitateTheOthers(ObjectKind kind) {
        for (OperationKind op : {OperationKind::Mdf, OperationKind::Mov, OperationKind::Del})
            ExpectClean(kind, op, RunMode::Imitate);
    }

    // The templates of a kind other than OU on the OU tree (and the groups, for the kinds whose
    // samples join them): the add imitated, then made with the expected failures, so that
    // `made` stands; then the others imitated. Skipped while the kind has no engines yet.
    void RunKind(ObjectKind kind, bool needsGroups, const std::string& made,
                 const std::vector<ExpectedFailure>& failures = {}) {
        if (!HasEngines(kind) || (needsGroups && !HasEngines(ObjectKind::Group)))
            GTEST_SKIP() << "no engines for this kind in this build yet";
        ExpectClean(ObjectKind::OU, OperationKind::Add, RunMode::Production);
        if (needsGroups) ExpectClean(ObjectKind::Group, OperationKind::Add, RunMode::Production);
        ExpectClean(kind, OperationKind::Add, RunMode::Imitate);
        ExpectFailures(kind, OperationKind::Add, RunMode::Production, failures);
        EXPECT_TRUE(Exists(made)) << made;
        ImitateTheOthers(kind);
    }

    // The line of the template of (kind, op) whose first data cell after the path is `rdn`.
    int32_t LineOf(ObjectKind kind, OperationKind op, std::string_view rdn) {
        const std::vector<std::string> lines = TemplateLines(kind, op);
        for (size_t i = 2; i < lines.size(); ++i)
            if (ClassifyLine(lines[i]) == LineKind::Data && SplitCells(lines[i]).at(4) == rdn)
                return static_cast<int32_t>(i + 1);
        ADD_FAILURE() << "no sample row for " << rdn;
        return 0;
    }

    bool Exists(const std::string& relative) {
        DirObject object;
        return BindObject("LDAP://" + relative + "," + ou().Dn(), object);
    }

    test::ScratchFolder folder;
    std::string scope;  // the name of the test's OU
};

TEST_F(TemplateDcTest, OuTemplatesBuildTheTreeAndWorkOnIt) {
    ExpectClean(ObjectKind::OU, OperationKind::Add, RunMode::Imitate);
    EXPECT_EQ(gRun.lngSuccessCnt, 6);
    ExpectClean(ObjectKind::OU, OperationKind::Add, RunMode::Production);
    EXPECT_EQ(gRun.lngSuccessCnt, 6);
    // The deepest OU stands inside the test's OU, and so do its parents.
    EXPECT_TRUE(
        Exists("OU=クライアント,OU=ネットワーク設計グループ,OU=ITソリューション部,OU=IT事業本部"));
    ImitateTheOthers(ObjectKind::OU);
}

TEST_F(TemplateDcTest, GroupTemplatesWorkOnTheTree) {
    RunKind(ObjectKind::Group, false,
            "CN=ネットワーク設計チーム,OU=ネットワーク設計グループ,OU=ITソリューション部,"
            "OU=IT事業本部");
}

// The test domain asks for complex passwords of at least seven characters, and one sample
// password is a plain lower-case word: that row fails, and its user is taken away again. The
// other templates leave this person out.
TEST_F(TemplateDcTest, UserTemplatesWorkOnTheTreeAndItsGroups) {
    RunKind(ObjectKind::User, true, "CN=森　健二,OU=ITソリューション部,OU=IT事業本部",
            {{LineOf(ObjectKind::User, OperationKind::Add, "林　三郎"), 3016}});
    EXPECT_FALSE(
        Exists("CN=林　三郎,OU=ネットワーク設計グループ,OU=ITソリューション部,OU=IT事業本部"));
}

TEST_F(TemplateDcTest, ComputerTemplatesWorkOnTheTreeAndItsGroups) {
    RunKind(ObjectKind::Computer, true, "CN=client001,OU=クライアント,OU=IT事業本部");
}

TEST_F(TemplateDcTest, SharedFolderTemplatesWorkOnTheTree) {
    RunKind(ObjectKind::SharedFolder, false, "CN=IT事業本部共有,OU=IT事業本部");
}

}  // namespace
}  // namespace orin
