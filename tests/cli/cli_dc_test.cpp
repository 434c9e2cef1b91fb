// orin-cli against the test DC: the exit statuses of real runs through the OU engines, the
// summary on stdout, the questions with and without --yes, and where the password comes from.

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>
#include <tuple>

#include "CliTestSupport.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "support/TestDc.h"

namespace orin {
namespace {

using test::CliResult;
using Lines = std::vector<std::string>;

class CliDcTest : public test::DcTest {
  protected:
    void SetUp() override {
        test::DcTest::SetUp();
        ASSERT_TRUE(std::filesystem::exists(test::CliPath())) << "build the orin-cli target";
        name = ou().Rdn().substr(3);
        password = (home / "password").string();
        std::ofstream(password) << test::TestDc().adminPassword << "\n";
    }

    // The OU CSV of a run: the test's OU first in every path.
    std::string Csv(const Lines& rows,
                    const std::string& header = "!OU-Start,,OU-End,Mirror,description") {
        Lines lines = {header};
        for (const std::string& row : rows) lines.push_back(name + "," + row);
        const std::string path = (home / "run.csv").string();
        test::WriteCsv(path, lines);
        return path;
    }

    // The arguments of an OU run on the test DC by the remote method. No value holds a blank.
    Lines Args(const std::string& op, const std::string& mode, const std::string& csv,
               bool yes = true) {
        const test::TestDcInfo& dc = test::TestDc();
        Lines args = Split("run --kind ou --op " + op + " --mode " + mode + " --csv " + csv +
                               " --dns " + dc.dnsDomain + " --netbios " + dc.netbiosDomain +
                               " --method remote --server " + dc.fqdn + " --user " + dc.adminUser +
                               " --password-file " + password + " --ca-file " + dc.caFile,
                           ' ');
        if (yes) args.push_back("--yes");
        return args;
    }
    CliResult Cli(const Lines& args, const std::map<std::string, std::string>& env = {}) {
        return test::RunCli(home.path(), args, env);
    }

    // The last summary block of Event.log, as the CLI should have printed it.
    Lines LastSummary() {
        const Lines log = test::ReadLines(home / "Event.log");
        for (size_t i = log.size(); i-- > 0;)
            if (log[i].starts_with("ｵﾌﾞｼﾞｪｸﾄ総数： ")) return {log.begin() + long(i), log.end()};
        return {};
    }
    bool Exists(const std::string& relative) {
        DirObject object;
        return BindObject("LDAP://" + relative + "," + ou().Dn(), object);
    }

    test::ScratchFolder home;
    std::string name;
    std::string password;
};

TEST_F(CliDcTest, CleanImitationExitsZeroAndPrintsItsSummary) {
    const CliResult result = Cli(Args("add", "imitate", Csv({"a,,,", "a,b,,"})));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(test::OutLines(result),
              (Lines{"ｵﾌﾞｼﾞｪｸﾄ総数： 2", "処理完了数： 2", "処理成功数： 2", "処理警告数： 0",
                     "処理失敗数： 0", "ｷｬﾝｾﾙによる中断の有無： 無", std::string(50, '-')}));
    EXPECT_EQ(test::OutLines(result), LastSummary());
    EXPECT_NE(result.err.find("組織単位の模擬追加: 組織単位の模擬追加処理を開始してよろしいですか？"
                              " [y/n] y\n"),
              std::string::npos);
    EXPECT_FALSE(Exists("OU=a"));

    // The settings that were used are kept for the next start, the password never.
    const std::string ini = Join(test::ReadLines(home / "Orin.ini"), "\n");
    EXPECT_NE(ini.find("DcComputerName=" + test::TestDc().fqdn), std::string::npos);
    EXPECT_NE(ini.find("Method=remote"), std::string::npos);
    EXPECT_EQ(ini.find(test::TestDc().adminPassword), std::string::npos);
}

TEST_F(CliDcTest, WithoutYesAndWithoutATerminalTheStartQuestionIsAnsweredNo) {
    const CliResult result = Cli(Args("add", "production", Csv({"a,,,"}), false));
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "組織単位の本番追加: 組織単位の本番追加処理を開始してよろしいですか？ [y/n] n\n");
    EXPECT_FALSE(std::filesystem::exists(home / "Event.log"));
    EXPECT_FALSE(Exists("OU=a"));
}

TEST_F(CliDcTest, AFailedRowExitsOneADifferenceTwoAndDeleteAsksTwice) {
    const CliResult add = Cli(Args("add", "production", Csv({"made,,,", "missing,child,,"})));
    EXPECT_EQ(add.status, 1) << add.err;
    EXPECT_TRUE(Exists("OU=made"));
    const Lines summary = test::OutLines(add);
    ASSERT_EQ(summary.size(), 7u);
    EXPECT_EQ(summary[4], "処理失敗数： 1");

    // The test's own OU has no description.
    const CliResult compare = Cli(Args("add", "compare", Csv({",,,not what it says"})));
    EXPECT_EQ(compare.status, 2) << compare.err;
    ASSERT_EQ(test::OutLines(compare).size(), 7u);
    EXPECT_EQ(test::OutLines(compare)[3], "相違数： 1");
    EXPECT_EQ(test::OutLines(compare), LastSummary());

    const CliResult del =
        Cli(Args("del", "production", Csv({"made,,,No"}, "!OU-Start,,OU-End,Mirror,IfDelSubObj")));
    EXPECT_EQ(del.status, 0) << del.err;
    EXPECT_NE(del.err.find("本番削除処理を続行しますか？ [y/n] y"), std::string::npos);
    EXPECT_NE(del.err.find("組織単位の本番削除処理を開始してよろしいですか？ [y/n] y"),
              std::string::npos);
    EXPECT_FALSE(Exists("OU=made"));
}

TEST_F(CliDcTest, ARefusedPasswordExitsFour) {
    std::ofstream(password) << "not-the-password\n";
    const CliResult result = Cli(Args("add", "imitate", Csv({"a,,,"})));
    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    // The box's two fixed lines, then the server's own result and words.
    EXPECT_TRUE(
        result.err.starts_with("ﾄﾞﾒｲﾝ接続: ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\n"
                               "完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。\n"
                               "bind as Administrator@orin.test: result 49 Invalid "
                               "credentials: "))
        << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 3);
    EXPECT_FALSE(std::filesystem::exists(home / "Event.log"));
}

TEST_F(CliDcTest, PasswordFromTheEnvironmentAndTheTestDcTrustedExplicitly) {
    Lines args = Args("mov", "imitate", Csv({"a,,,"}));
    // Neither the password file nor the CA file: ORIN_PASSWORD and --trust-test-dc instead.
    args.erase(args.end() - 5, args.end() - 1);
    args.push_back("--trust-test-dc");
    const CliResult result =
        Cli(args, {{"ORIN_PASSWORD", test::TestDc().adminPassword}, {"LDAPTLS_CACERT", ""}});
    // The imitated move of an OU that isn't there fails its row: the connection stood.
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_EQ(test::OutLines(result).size(), 7u);
}

// Ctrl-C, SIGTERM and SIGHUP in the middle of a file: each is the Cancel button. The OU in work,
// made but with its Mirror rows still to come, is taken away again, so that the directory holds
// exactly the objects the summary counts as done, and no row was cut short by the signal.
TEST_F(CliDcTest, EachStopSignalIsTheCancelButton) {
    const std::tuple<int, std::string, int> cases[] = {
        {SIGTERM, "TERM", 5}, {SIGHUP, "HUP", 5}, {SIGINT, "INT", 130}};
    for (const auto& [signal, tag, status] : cases) {
        SCOPED_TRACE(tag);
        Lines rows = {tag + ",,,"};
        for (int i = 0; i < 200; ++i) {
            const std::string object = tag + ",o" + std::to_string(i) + ",,";
            rows.push_back(object);
            for (int k = 0; k < 4; ++k) rows.push_back(object + "YES");
        }
        const pid_t cli = test::StartCli(
            home.path(), Args("add", "production", Csv(rows, "!OU-Start,,,OU-End,Mirror")));
        for (int i = 0; i < 600 && !Exists("OU=o2,OU=" + tag); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        kill(cli, signal);
        const CliResult result = test::WaitCli(home.path(), cli);
        EXPECT_EQ(result.status, status) << result.err;

        const Lines summary = test::OutLines(result);
        ASSERT_EQ(summary.size(), 8u) << result.out;
        EXPECT_EQ(summary, LastSummary());
        EXPECT_EQ(summary[5], "ｷｬﾝｾﾙによる中断の有無： 有");
        EXPECT_TRUE(summary[6].starts_with("ｷｬﾝｾﾙ時の処理済最終行： "));
        const std::string done = summary[2].substr(summary[2].find(' ') + 1);
        std::vector<platform::LdapEntry> made;
        ASSERT_TRUE(gSession.Connection
                        ->Search("OU=" + tag + "," + ou().Dn(), platform::LdapScope::Subtree,
                                 "(objectClass=organizationalUnit)", {"ou"}, made)
                        .ok());
        EXPECT_EQ(std::to_string(made.size()), done);
        EXPECT_LT(made.size(), 200u);
        EXPECT_EQ(Join(test::ReadLines(home / "Event.log"), "\n").find("行, 失敗"),
                  std::string::npos);
    }
}

// One byte that isn't CP932, on line 7: the file is refused before its first row.
TEST_F(CliDcTest, AFileThatIsNotCp932TextIsRefusedNamingTheLine) {
    Lines lines = {"!OU-Start,,OU-End,Mirror,description"};
    for (int i = 2; i <= 9; ++i) lines.push_back(name + ",ok" + std::to_string(i) + ",,,説明");
    std::string bytes = test::DiskBytes(lines);
    bytes.insert(bytes.find(platform::Utf8ToCp932(name + ",ok7")) + name.size() + 4, "\xFF");
    const std::filesystem::path csv = home / "bad.csv";
    std::ofstream(csv, std::ios::binary) << bytes;

    const CliResult result = Cli(Args("add", "production", csv.string()));
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "組織単位の本番追加: CSVﾌｧｲﾙの7行目にCP932(Shift_JIS)ではない文字があります！\n"
              "ﾌｧｲﾙをCP932(Shift_JIS)で保存し直してください。\n");
    EXPECT_FALSE(std::filesystem::exists(home / "Event.log"));
    EXPECT_FALSE(Exists("OU=ok2"));
}

}  // namespace
}  // namespace orin
