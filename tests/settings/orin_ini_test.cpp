#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "directory/DirectorySession.h"
#include "platform/Cp932.h"
#include "platform/TextFile.h"
#include "run/OrinIni.h"
#include "support/ScriptedOperator.h"

namespace fs = std::filesystem;
using namespace orin;

namespace {

std::string ReadBytes(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Each test gets an empty ORIN_HOME, a fresh session and an operator that records its boxes.
class OrinIniTest : public ::testing::Test {
  protected:
    void SetUp() override {
        home_ = fs::temp_directory_path() /
                ("orin_ini_" +
                 std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(home_);
        fs::create_directories(home_);
        SetHome(home_);
        gSession = DirectorySession{};
    }
    void TearDown() override {
        unsetenv("ORIN_HOME");
        fs::permissions(home_, fs::perms::owner_all, fs::perm_options::add);
        fs::remove_all(home_);
        gSession = DirectorySession{};
    }

    static void SetHome(const fs::path& folder) { setenv("ORIN_HOME", folder.c_str(), 1); }

    // Writes Orin.ini as the operator's editor would: CP932, CR LF.
    void WriteIni(const std::vector<std::string>& lines) {
        ASSERT_TRUE(platform::WriteLines(home_ / "Orin.ini", lines));
    }
    std::vector<std::string> IniLines() {
        std::vector<std::string> lines;
        EXPECT_TRUE(platform::ReadAllLines(home_ / "Orin.ini", lines));
        return lines;
    }

    void ExpectOneBox(const std::string& title, const std::string& text) {
        ASSERT_EQ(op_.boxes.size(), 1u);
        EXPECT_EQ(op_.boxes[0].title, title);
        EXPECT_EQ(op_.boxes[0].text, text);
        EXPECT_EQ(op_.boxes[0].icon, MsgIcon::Critical);
    }

    fs::path home_;
    test::ScriptedOperator op_;
};

const std::string kIniError = "INIﾌｧｲﾙ関連ｴﾗｰ";
const std::string kFileError = "ﾌｧｲﾙｱｸｾｽｴﾗｰ";

}  // namespace

TEST_F(OrinIniTest, FirstStartCreatesTheDefaultFileAndReadsItsDefaults) {
    gSession.DomainDNSName = "stale.example";
    gSession.Method = "remote";
    gSession.NeverShowAgain = true;

    CreateDefaultIni();
    ReadIni();

    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(gSession.DomainDNSName, "");
    EXPECT_EQ(gSession.DomainNetBIOSName, "");
    EXPECT_EQ(gSession.DcComputerName, "");
    EXPECT_EQ(gSession.UserName, "");
    EXPECT_EQ(gSession.Method, "local");
    EXPECT_FALSE(gSession.NeverShowAgain);
}

TEST_F(OrinIniTest, DefaultFileIsCp932WithCrLfAndTabs) {
    CreateDefaultIni();
    std::string bytes = ReadBytes(home_ / "Orin.ini");

    const std::string expectedUtf8 =
        ";Orin.ini\r\n"
        "\r\n"
        "[UserInput]\t\t;ユーザーの入力情報\r\n"
        "DomainDNSName=\t\t\t;ドメインの完全なDNS名\r\n"
        "DomainNetBIOSName=\t\t\t;ドメインのNetBIOS名\r\n"
        "DcComputerName=\t\t\t;ドメインコントローラのコンピュータ名\r\n"
        "UserName=\t\t\t;ドメイン接続時ログオンするユーザー名\r\n"
        "\r\n"
        "[Connect]\t\t;「ドメイン接続方式」画面の設定情報\r\n"
        "Method=local\t\t\t;ドメイン接続方式\r\n"
        "NeverShowAgain=false\t\t\t;以降この画面を表示させない\r\n";
    EXPECT_EQ(bytes, platform::Utf8ToCp932(expectedUtf8));
    // The third line byte by byte, so that an encoder fault can't hide behind the line above.
    EXPECT_NE(bytes.find("\r\n[UserInput]\t\t;\x83\x86\x81[\x83U\x81[\x82\xCC\x93\xFC\x97\xCD\x8F"
                         "\xEE\x95\xF1\r\n"),
              std::string::npos);
    EXPECT_EQ(bytes.find('?'), std::string::npos);
}

TEST_F(OrinIniTest, CreateDefaultLeavesAnExistingFileAlone) {
    WriteIni({"UserName=kept"});
    std::string before = ReadBytes(home_ / "Orin.ini");
    CreateDefaultIni();
    EXPECT_EQ(ReadBytes(home_ / "Orin.ini"), before);
}

TEST_F(OrinIniTest, ReadWithoutFileShowsTheBoxAndLeavesTheSession) {
    gSession.UserName = "typed";
    gSession.Method = "remote";
    ReadIni();
    ExpectOneBox(kFileError, "iniﾌｧｲﾙが存在しません。\rOrin.ini");
    EXPECT_EQ(gSession.UserName, "typed");
    EXPECT_EQ(gSession.Method, "remote");
}

TEST_F(OrinIniTest, NotFoundValueDrawsTheMessageAndLeavesTheField) {
    gSession.UserName = "before";
    gSession.NeverShowAgain = true;
    WriteIni({"UserName=NotFound\t\t\t;c", "NeverShowAgain=NotFound", "Method=notfound"});
    ReadIni();

    ASSERT_EQ(op_.boxes.size(), 2u);
    EXPECT_EQ(op_.boxes[0].title, kIniError);
    EXPECT_EQ(op_.boxes[0].text, "iniﾌｧｲﾙから環境変数が見つかりません。\rUserName");
    EXPECT_EQ(op_.boxes[0].icon, MsgIcon::Critical);
    EXPECT_EQ(op_.boxes[1].text, "iniﾌｧｲﾙから環境変数が見つかりません。\rNeverShowAgain");
    EXPECT_EQ(gSession.UserName, "before");
    EXPECT_TRUE(gSession.NeverShowAgain);
    // The sentinel is compared with exact case: any other spelling is a value.
    EXPECT_EQ(gSession.Method, "notfound");
}

TEST_F(OrinIniTest, NeverShowAgainTakesTrueOrFalseInAnyCaseAndFlagsOtherValues) {
    struct Case {
        std::string line;
        bool before;
        bool expected;
        bool box;
    };
    const std::vector<Case> cases = {
        {"NeverShowAgain=TRUE", false, true, false},
        {"neverSHOWagain=True\t;x", false, true, false},
        {"NeverShowAgain=false", true, false, false},
        {"NeverShowAgain=FaLsE ", true, false, false},
        {"NeverShowAgain=Yes", true, false, true},
        {"NeverShowAgain=", true, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        op_.boxes.clear();
        gSession.NeverShowAgain = c.before;
        WriteIni({c.line});
        ReadIni();
        EXPECT_EQ(gSession.NeverShowAgain, c.expected);
        if (c.box) {
            ExpectOneBox(kIniError, "環境変数の値が正しくありません。\rNeverShowAgain");
        } else {
            EXPECT_TRUE(op_.boxes.empty());
        }
    }
}

TEST_F(OrinIniTest, KeysAreFoundAnywhereInAnyCaseAndNoLineIsExempt) {
    gSession.UserName = "untouched";
    WriteIni({
        ";Orin.ini",
        "[UserInput]\t\t;ユーザーの入力情報",
        "domaindnsname=Example.Test",
        "  see DomainNetBIOSName=EX",
        // The first key of the table decides, even when a later key opens the line.
        "UserName=u1 ;DcComputerName=x",
        "[Connect]\t\t;「ドメイン接続方式」画面の設定情報",
        // A comment line is read like any other.
        "# METHOD=remote",
    });
    ReadIni();

    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(gSession.DomainDNSName, "Example.Test");
    EXPECT_EQ(gSession.DomainNetBIOSName, "EX");
    EXPECT_EQ(gSession.DcComputerName, "u1");
    EXPECT_EQ(gSession.UserName, "untouched");
    EXPECT_EQ(gSession.Method, "remote");
}

TEST_F(OrinIniTest, LaterLinesOverwriteEarlierOnesIncludingCommentedOutKeys) {
    // ";" before "=" leaves nothing of the value: a commented-out key clears the field.
    WriteIni({"UserName=bob", ";UserName=alice", "Method=remote", "Method=local"});
    ReadIni();
    EXPECT_EQ(gSession.UserName, "");
    EXPECT_EQ(gSession.Method, "local");
}

TEST_F(OrinIniTest, ValuesAreCutAtTheFirstSemicolonTrimmedAndStrippedOfTabs) {
    WriteIni({
        "DomainDNSName=  example.test   ",
        "UserName=\tad\tmin\t\t;comment",
        "Method=remote",
        "DcComputerName=dc;01;x",
        // Blanks are trimmed before the tabs go, so a blank behind a tab stays.
        "DomainNetBIOSName=\t EX",
    });
    ReadIni();
    EXPECT_EQ(gSession.DomainDNSName, "example.test");
    EXPECT_EQ(gSession.UserName, "admin");
    EXPECT_EQ(gSession.Method, "remote");
    EXPECT_EQ(gSession.DcComputerName, "dc");
    EXPECT_EQ(gSession.DomainNetBIOSName, " EX");
}

TEST(GetEnvValue, CutsTheValueOutOfAnyLine) {
    EXPECT_EQ(GetEnvValue("UserName=a=b;c", "UserName"), "a=b");
    EXPECT_EQ(GetEnvValue("UserName=;comment", "UserName"), "");
    EXPECT_EQ(GetEnvValue("UserName=", "UserName"), "");
    EXPECT_EQ(GetEnvValue(";UserName=x", "UserName"), "");
    // A line without the key still gives a value: the not-found sentinel never comes back.
    EXPECT_EQ(GetEnvValue(" plain text ", "UserName"), "plain text");
    EXPECT_EQ(GetEnvValue("text;comment", "Method"), "text");
    EXPECT_EQ(GetEnvValue(";only comment", "Method"), "");
    EXPECT_EQ(GetEnvValue("", "Method"), "");
    EXPECT_EQ(GetEnvValue("Method=\t\t", "Method"), "");
    EXPECT_EQ(GetEnvValue("DcComputerName=ｻｰﾊﾞｰ1\t;名前", "DcComputerName"), "ｻｰﾊﾞｰ1");
}

TEST_F(OrinIniTest, UpdateRewritesKeyLinesAndKeepsEverythingElseInPlace) {
    WriteIni({
        "; my notes",
        "Password=hand-written line stays",
        "method=local   ;old comment",
        "",
        "[UserInput]",
        "DomainDNSName=old.example",
        "# UserName=seen as a key",
        "NeverShowAgain=false",
        "trailing line",
    });
    gSession.DomainDNSName = "New.Example";
    gSession.DomainNetBIOSName = "NEW";  // its key is not in the file
    gSession.UserName = "administrator";
    gSession.Password = "S3cret!pw";
    gSession.Method = "remote";
    gSession.NeverShowAgain = true;

    UpdateIni();

    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_FALSE(fs::exists(home_ / "Orin_tmp.ini"));
    const std::vector<std::string> expected = {
        "; my notes",
        "Password=hand-written line stays",
        "Method=remote\t\t\t;ドメイン接続方式",
        "",
        "[UserInput]",
        "DomainDNSName=New.Example\t\t\t;ドメインの完全なDNS名",
        "UserName=administrator\t\t\t;ドメイン接続時ログオンするユーザー名",
        "NeverShowAgain=true\t\t\t;以降この画面を表示させない",
        "trailing line",
    };
    EXPECT_EQ(IniLines(), expected);
    std::string bytes = ReadBytes(home_ / "Orin.ini");
    EXPECT_EQ(bytes.find("S3cret"), std::string::npos);
    EXPECT_EQ(bytes.find("NEW"), std::string::npos);
    EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n");
}

TEST_F(OrinIniTest, UpdateWithoutFileCreatesTheDefaultAndTheValuesReadBack) {
    gSession.DomainDNSName = "corp.example";
    gSession.DomainNetBIOSName = "CORP";
    gSession.DcComputerName = "dc1";
    gSession.UserName = "ops";
    gSession.Password = "never-in-file";
    gSession.Method = "remote";
    gSession.NeverShowAgain = true;
    UpdateIni();

    std::vector<std::string> lines = IniLines();
    ASSERT_EQ(lines.size(), 11u);
    EXPECT_EQ(lines[0], ";Orin.ini");
    EXPECT_EQ(lines[8], "[Connect]\t\t;「ドメイン接続方式」画面の設定情報");
    EXPECT_EQ(lines[10], "NeverShowAgain=true\t\t\t;以降この画面を表示させない");
    EXPECT_EQ(ReadBytes(home_ / "Orin.ini").find("never-in-file"), std::string::npos);

    DirectorySession written = gSession;
    gSession = DirectorySession{};
    ReadIni();
    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(gSession.DomainDNSName, written.DomainDNSName);
    EXPECT_EQ(gSession.DomainNetBIOSName, written.DomainNetBIOSName);
    EXPECT_EQ(gSession.DcComputerName, written.DcComputerName);
    EXPECT_EQ(gSession.UserName, written.UserName);
    EXPECT_EQ(gSession.Method, written.Method);
    EXPECT_TRUE(gSession.NeverShowAgain);
    EXPECT_EQ(gSession.Password, "");
}

TEST_F(OrinIniTest, UpdateOverwritesAReadOnlyFileAndAStaleScratchCopy) {
    WriteIni({"UserName=old"});
    fs::permissions(home_ / "Orin.ini", fs::perms::owner_read | fs::perms::group_read);
    ASSERT_TRUE(platform::WriteLines(home_ / "Orin_tmp.ini", std::vector<std::string>{"stale"}));
    gSession.UserName = "new";
    UpdateIni();
    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(IniLines(),
              std::vector<std::string>{"UserName=new\t\t\t;ドメイン接続時ログオンするユーザー名"});
    EXPECT_FALSE(fs::exists(home_ / "Orin_tmp.ini"));
}

TEST_F(OrinIniTest, FailedScratchWriteKeepsTheOldFile) {
    WriteIni({"UserName=old"});
    fs::create_directory(home_ / "Orin_tmp.ini");  // the scratch copy can't be written
    std::string before = ReadBytes(home_ / "Orin.ini");
    gSession.UserName = "new";
    UpdateIni();
    ExpectOneBox(kFileError, "iniﾌｧｲﾙの更新が失敗しました！\rOrin.ini");
    EXPECT_EQ(ReadBytes(home_ / "Orin.ini"), before);
}

TEST_F(OrinIniTest, UnwritableFolderShowsTheWriteFailureAndNothingCrashes) {
    // A folder below a plain file can't be created or written, even by root.
    ASSERT_TRUE(platform::WriteLines(home_ / "plain", std::vector<std::string>{"x"}));
    SetHome(home_ / "plain" / "app");

    CreateDefaultIni();
    ExpectOneBox(kFileError, "ﾌｧｲﾙへの書込みが失敗しました！\rOrin.ini");

    // The update tries the default once, reports that, and gives up.
    op_.boxes.clear();
    UpdateIni();
    ExpectOneBox(kFileError, "ﾌｧｲﾙへの書込みが失敗しました！\rOrin.ini");

    op_.boxes.clear();
    ReadIni();
    ExpectOneBox(kFileError, "iniﾌｧｲﾙが存在しません。\rOrin.ini");
}
