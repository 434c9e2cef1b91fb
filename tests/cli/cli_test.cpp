// orin-cli without a domain controller: the command line, the template command, and the runs
// that stop before they would connect.

#include <gtest/gtest.h>

#include "CliTestSupport.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

using test::RunCli;

class CliTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(std::filesystem::exists(test::CliPath())) << "build the orin-cli target";
    }
    test::ScratchFolder home;
};

TEST_F(CliTest, ABadCommandLineGetsItsReasonAndTheUsage) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "ｻﾌﾞｺﾏﾝﾄﾞを指定してください。"},
        {{"go"}, "不明なｻﾌﾞｺﾏﾝﾄﾞです: go"},
        {{"run", "--kind", "ou", "--op", "add", "--mode", "dry", "--csv", "a.csv"},
         "--mode の値が正しくありません: dry"},
        {{"run", "--kind", "gpo", "--op", "add", "--mode", "production", "--csv", "a.csv"},
         "--kind gpo には --op exp しか使えません。"},
        {{"run", "--kind", "ou", "--op", "exp", "--mode", "imitate", "--csv", "a.csv"},
         "--op exp は --mode imitate と組み合わせられません。"},
        {{"run", "--kind", "ou", "--op", "add", "--mode", "imitate"}, "--csv を指定してください。"},
        {{"run", "--kind", "ou", "--op", "add", "--mode", "imitate", "--csv", "a", "--password",
          "secret"},
         "ﾊﾟｽﾜｰﾄﾞはｺﾏﾝﾄﾞ行では受け付けません。"},
        {{"run", "--kind=ou", "--op=add", "--mode=imitate", "--csv=a", "--ca-file", "ca.pem",
          "--trust-test-dc"},
         "--ca-file と --trust-test-dc は同時に指定できません。"},
        {{"template", "--kind", "share", "--op", "add", "--out"},
         "ｵﾌﾟｼｮﾝ --out に値がありません。"},
        {{"template", "--kind", "ou", "--op", "exp", "--out", "t.csv"}, "ﾃﾝﾌﾟﾚｰﾄは"},
    };
    for (const auto& [args, reason] : cases) {
        const test::CliResult result = RunCli(home.path(), args);
        EXPECT_EQ(result.status, 64) << reason;
        EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
        EXPECT_NE(result.err.find("使い方:"), std::string::npos) << reason;
        EXPECT_EQ(result.out, "");
    }
    // Nothing was run, so no settings file was made either.
    EXPECT_FALSE(std::filesystem::exists(home / "Orin.ini"));

    const test::CliResult help = RunCli(home.path(), {"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.starts_with("使い方:"));
}

TEST_F(CliTest, TemplateIsWrittenOverwrittenOnlyWithYesAndItsBoxesGoToStderr) {
    const std::string out = (home / "t.csv").string();
    auto templateOf = [&](const std::string& kind, const std::string& op, const std::string& path,
                          bool yes = false) {
        std::vector<std::string> args = {"template", "--kind", kind, "--op", op, "--out", path};
        if (yes) args.push_back("--yes");
        return RunCli(home.path(), args);
    };
    ASSERT_EQ(templateOf("ou", "add", out).status, 0);
    EXPECT_TRUE(test::ReadLines(out).at(0).starts_with("!OU-Start,,,OU-End,Mirror,"));

    // No terminal to ask: the overwrite question is answered No and the file stays.
    platform::WriteLines(out, std::vector<std::string>{"!kept"});
    test::CliResult kept = templateOf("group", "del", out);
    EXPECT_EQ(kept.status, 3);
    EXPECT_EQ(kept.err,
              "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成: 同名のCSVﾌｧｲﾙはすでに存在します。\n上書きしますか？ [y/n] n\n");
    EXPECT_EQ(test::ReadLines(out), std::vector<std::string>{"!kept"});
    EXPECT_EQ(templateOf("group", "del", out, true).status, 0);
    EXPECT_TRUE(test::ReadLines(out).at(0).starts_with("!OU-Start,"));

    test::CliResult empty = templateOf("user", "mov", "  ");
    EXPECT_EQ(empty.status, 3);
    EXPECT_EQ(empty.err, "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成: ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙ名が指定されていません。\n");
    test::CliResult failed = templateOf("computer", "mdf", (home / "no" / "t.csv").string());
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err,
              "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成: ﾌｧｲﾙへの書込みが失敗しました！\nﾌｧｲﾙが使用中かまたは"
              "ﾌｧｲﾙやﾃﾞｨﾚｸﾄﾘの書込み権限があるかを確認してください。\n");
}

TEST_F(CliTest, RunsStopBeforeConnectingWhenInputsAreMissing) {
    const std::vector<std::string> run = {"run",   "--kind",   "ou",      "--op",
                                          "mdf",   "--mode",   "compare", "--csv",
                                          "x.csv", "--method", "remote"};
    // A first start makes the default Orin.ini, whose names are empty.
    test::CliResult noNames = RunCli(home.path(), run);
    EXPECT_EQ(noNames.status, 3);
    EXPECT_EQ(noNames.err, "入力情報不足: ﾄﾞﾒｲﾝの完全なDNS名を入力してください｡\n");
    EXPECT_TRUE(std::filesystem::exists(home / "Orin.ini"));
    EXPECT_FALSE(std::filesystem::exists(home / "Event.log"));

    // The names come from Orin.ini when the options don't give them; the remote method then
    // lacks its server, which the login refuses before any connection is tried.
    std::vector<std::string> ini;
    ASSERT_TRUE(platform::ReadAllLines(home / "Orin.ini", ini));
    for (std::string& line : ini) {
        if (line.starts_with("DomainDNSName=")) line = "DomainDNSName=orin.test";
        if (line.starts_with("DomainNetBIOSName=")) line = "DomainNetBIOSName=ORIN";
    }
    ASSERT_TRUE(platform::WriteLines(home / "Orin.ini", ini));
    test::CliResult noServer = RunCli(home.path(), run);
    EXPECT_EQ(noServer.status, 3);
    EXPECT_EQ(noServer.err, "ﾄﾞﾒｲﾝ接続: ﾄﾞﾒｲﾝｺﾝﾄﾛｰﾗｻｰﾊﾞｰ名を入力してください｡\n");

    // A password file that can't be read is refused at once.
    std::vector<std::string> withFile = run;
    withFile.insert(withFile.end(), {"--password-file", (home / "none").string()});
    test::CliResult noFile = RunCli(home.path(), withFile);
    EXPECT_EQ(noFile.status, 64);
    EXPECT_NE(noFile.err.find("ﾊﾟｽﾜｰﾄﾞﾌｧｲﾙを読み込めません"), std::string::npos);
}

}  // namespace
}  // namespace orin
