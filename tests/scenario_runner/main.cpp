// Runs one scenario folder (tests/scenarios/<kind>/<name>) against the test DC through the real
// orin-cli: an OU of the scenario's own with the folder's setup.ldif in it, the folder's CSV
// files written out as the operator's files are (CP932, CR LF), the runs of its scenario file in
// order, then Event.log against expected.log and the directory against expected.state. A
// scenario with "ways fast exact" goes through all of it twice, from a new OU each time.
//
// Usage: scenario_runner <scenario folder>

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "cli/CliTestSupport.h"
#include "directory/DirectorySession.h"
#include "platform/TextFile.h"
#include "scenario_runner/Checks.h"
#include "scenario_runner/Scenario.h"
#include "support/TestDc.h"

namespace orin::scenario {
namespace {

std::filesystem::path gFolder;

// A tag of at most five characters, unique to this process, for names that must be unique in
// the domain (sAMAccountName holds 20 characters at most).
std::string Tag() {
    const char* digits = "0123456789abcdefghijklmnopqrstuvwxyz";
    std::string tag;
    for (unsigned long n = static_cast<unsigned long>(getpid()); n > 0; n /= 36)
        tag.insert(tag.begin(), digits[n % 36]);
    return tag;
}

// Loads a setup or teardown LDIF with ldapmodify, as an administrator would. "" when it went in.
std::string LoadLdif(const std::vector<std::string>& ldif, const Placeholders& values,
                     const std::filesystem::path& scratch) {
    const std::filesystem::path file = scratch / "load.ldif";
    {
        std::ofstream out(file, std::ios::binary);
        for (const std::string& line : ldif) out << Substitute(line, values) << "\n";
    }
    const test::TestDcInfo& dc = test::TestDc();
    const std::filesystem::path output = scratch / "ldapmodify.out";
    const std::string command =
        "LDAPTLS_CACERT=" + test::ShellQuote(dc.caFile) + " ldapmodify -a -x -H ldaps://" +
        dc.fqdn + " -D " + test::ShellQuote(dc.adminUser + "@" + dc.dnsDomain) + " -w " +
        test::ShellQuote(dc.adminPassword) + " -f " + test::ShellQuote(file.string()) + " >" +
        test::ShellQuote(output.string()) + " 2>&1";
    if (std::system(command.c_str()) == 0) return "";
    return "the LDIF did not load:\n" + test::ReadBytes(output);
}

void RunWay(const Scenario& scenario, const std::string& way) {
    SCOPED_TRACE("way: " + way);
    const test::TestDcInfo& dc = test::TestDc();
    test::ScopedOu ou(scenario.folder.filename().string());
    ASSERT_TRUE(ou.ok());
    const Placeholders values = {
        {"{T}", ou.Rdn().substr(3)}, {"{TDN}", ou.Dn()},         {"{DN}", gSession.DomainDN},
        {"{DNS}", dc.dnsDomain},     {"{NB}", dc.netbiosDomain}, {"{U}", Tag()},
        {"{SHARE}", dc.homeShare},
    };

    test::ScratchFolder home;
    if (!scenario.setupLdif.empty()) {
        const std::string failure = LoadLdif(scenario.setupLdif, values, home.path());
        ASSERT_EQ(failure, "");
    }
    std::vector<std::string> csvPaths;
    for (const auto& entry : std::filesystem::directory_iterator(scenario.folder)) {
        if (entry.path().extension() != ".csv") continue;
        std::vector<std::string> lines;
        ASSERT_TRUE(ReadTextLines(entry.path(), lines));
        for (std::string& line : lines) line = Substitute(line, values);
        const std::filesystem::path written = home / entry.path().filename().string();
        ASSERT_TRUE(platform::WriteLines(written, lines));
        csvPaths.push_back(written.string());
    }
    const std::string password = (home / "password").string();
    std::ofstream(password) << dc.adminPassword << "\n";

    std::map<std::string, std::string> env;
    if (way == "exact") env["ORIN_FAST_PATH"] = "0";
    for (const RunStep& step : scenario.runs) {
        std::vector<std::string> args = {"run"};
        for (const std::string& arg : step.args) args.push_back(Substitute(arg, values));
        for (const std::string& arg : std::vector<std::string>{
                 "--csv", (home / step.csv).string(), "--dns", dc.dnsDomain, "--netbios",
                 dc.netbiosDomain, "--method", "remote", "--server", dc.fqdn, "--user",
                 dc.adminUser, "--password-file", password, "--ca-file", dc.caFile, "--yes"})
            args.push_back(arg);
        const test::CliResult result = test::RunCli(home.path(), args, env);
        EXPECT_EQ(result.status, step.exitStatus) << step.text << "\n--- stdout:\n"
                                                  << result.out << "--- stderr:\n"
                                                  << result.err;
    }

    const std::vector<std::string> log = LogBlocks(test::ReadLines(home / "Event.log"), csvPaths);
    const std::string logReport = CompareLog(log, scenario.expectedLog, values);
    EXPECT_TRUE(logReport.empty()) << logReport;
    const std::string stateReport = CheckState(scenario.expectedState, values, ou.Dn());
    EXPECT_TRUE(stateReport.empty()) << "expected.state does not hold:\n" << stateReport;
    if (!scenario.teardownLdif.empty()) {
        EXPECT_EQ(LoadLdif(scenario.teardownLdif, values, home.path()), "");
    }
}

TEST(Scenario, Runs) {
    Scenario scenario;
    std::string error;
    ASSERT_TRUE(LoadScenario(gFolder, scenario, error)) << error;
    ASSERT_TRUE(std::filesystem::exists(test::CliPath())) << "build the orin-cli target";
    std::string why;
    ASSERT_TRUE(test::FindTestDc(&why)) << why;
    ASSERT_TRUE(test::ConnectTestDc(test::ConnectMethod::Remote));
    for (const std::string& way : scenario.ways) RunWay(scenario, way);
}

}  // namespace
}  // namespace orin::scenario

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: scenario_runner <scenario folder>\n");
        return 64;
    }
    orin::scenario::gFolder = argv[1];
    return RUN_ALL_TESTS();
}
