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
#include "run/RunTestSupport.h"
#include "support/ScriptedOperator.h"

namespace fs = std::filesystem;
using namespace orin;
using test::ReadBytes;

namespace {

using Lines = std::vector<std::string>;

// The six settings of gSession, in the file's order.
Lines Settings() {
    return {gSession.DomainDNSName,  gSession.DomainNetBIOSName,
            gSession.DcComputerName, gSession.UserName,
            gSession.Method,         gSession.NeverShowAgain ? "true" : "false"};
}

void SetSettings(const Lines& v) {
    gSession.DomainDNSName = v[0];
    gSession.DomainNetBIOSName = v[1];
    gSession.DcComputerName = v[2];
    gSession.UserName = v[3];
    gSession.Method = v[4];
    gSession.NeverShowAgain = v[5] == "true";
}

const std::string kIniError = "INIﾌｧｲﾙ関連ｴﾗｰ";
const std::string kFileError = "ﾌｧｲﾙｱｸｾｽｴﾗｰ";

// Each test gets an empty ORIN_HOME, a fresh session and an operator that records its boxes.
class OrinIniTest : public ::testing::Test {
  protected:
    void SetUp() override {
        SetHome(home_.path());
        gSession = DirectorySession{};
    }
    void TearDown() override {
        unsetenv("ORIN_HOME");
        gSession = DirectorySession{};
    }

    static void SetHome(const fs::path& folder) { setenv("ORIN_HOME", folder.c_str(), 1); }

    // Writes Orin.ini as the operator's editor would: CP932, CR LF.
    void WriteIni(const Lines& lines) { ASSERT_TRUE(platform::WriteLines(Ini(), lines)); }
    Lines IniLines() { return test::ReadLines(Ini()); }
    fs::path Ini() const { return home_ / "Orin.ini"; }

    // Exactly these critical boxes, which are then forgotten.
    void ExpectBoxes(const std::string& title, const Lines& texts) {
        ASSERT_EQ(op_.boxes.size(), texts.size());
        for (size_t i = 0; i < texts.size(); ++i) {
            EXPECT_EQ(op_.boxes[i].title, title);
            EXPECT_EQ(op_.boxes[i].text, texts[i]);
            EXPECT_EQ(op_.boxes[i].icon, MsgIcon::Critical);
        }
        op_.boxes.clear();
    }

    test::ScratchFolder home_;
    test::ScriptedOperator op_;
};

}  // namespace

TEST_F(OrinIniTest, FirstStartWritesTheDefaultFileAndReadsItsDefaults) {
    SetSettings({"stale.example", "", "", "", "remote", "true"});
    CreateDefaultIni();
    ReadIni();

    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(Settings(), (Lines{"", "", "", "", "local", "false"}));
    EXPECT_EQ(ReadBytes(Ini()),
              platform::Utf8ToCp932(";Orin.ini\r\n"
                                    "\r\n"
                                    "[UserInput]\t\t;ユーザーの入力情報\r\n"
                                    "DomainDNSName=\t\t\t;ドメインの完全なDNS名\r\n"
                                    "DomainNetBIOSName=\t\t\t;ドメインのNetBIOS名\r\n"
                                    "DcComputerName=\t\t\t;ドメインコントローラのコンピュータ名\r\n"
                                    "UserName=\t\t\t;ドメイン接続時ログオンするユーザー名\r\n"
                                    "\r\n"
                                    "[Connect]\t\t;「ドメイン接続方式」画面の設定情報\r\n"
                                    "Method=local\t\t\t;ドメイン接続方式\r\n"
                                    "NeverShowAgain=false\t\t\t;以降この画面を表示させない\r\n"));

    // A file that is there already is left alone.
    WriteIni({"UserName=kept"});
    CreateDefaultIni();
    EXPECT_EQ(IniLines(), Lines{"UserName=kept"});
}

TEST_F(OrinIniTest, ADamagedFileIsNotReadButKeptAsideAndReplacedByTheDefaults) {
    SetSettings({"stale.example", "", "", "", "remote", "true"});
    const std::string damaged =
        "DomainDNSName=corp.example\r\nDcComputerName=dc1\r\n"
        "UserName=\x81 x\r\nMethod=remote\r\n";
    std::ofstream(Ini(), std::ios::binary) << damaged;
    ReadIni();

    ExpectBoxes(kIniError, {"iniﾌｧｲﾙの3行目にCP932(Shift_JIS)ではない文字があります！\r"
                            "既定値のOrin.iniを作り直しました。元のﾌｧｲﾙはOrin_bad.iniに残して"
                            "あります。"});
    EXPECT_EQ(Settings(), (Lines{"", "", "", "", "local", "false"}));
    EXPECT_EQ(ReadBytes(home_ / "Orin_bad.ini"), damaged);
    EXPECT_EQ(IniLines().size(), 11u);
    // What the session holds goes into the new file at the end.
    gSession.UserName = "admin";
    UpdateIni();
    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(IniLines()[6], "UserName=admin\t\t\t;ドメイン接続時ログオンするユーザー名");
}

TEST_F(OrinIniTest, NotFoundValueDrawsTheMessageAndLeavesTheField) {
    SetSettings({"", "", "", "before", "", "true"});
    WriteIni({"UserName=NotFound\t\t\t;c", "NeverShowAgain=NotFound", "Method=notfound"});
    ReadIni();

    ExpectBoxes(kIniError, {"iniﾌｧｲﾙから環境変数が見つかりません。\rUserName",
                            "iniﾌｧｲﾙから環境変数が見つかりません。\rNeverShowAgain"});
    // The sentinel is compared with exact case: any other spelling is a value.
    EXPECT_EQ(Settings(), (Lines{"", "", "", "before", "notfound", "true"}));
}

TEST_F(OrinIniTest, NeverShowAgainTakesTrueOrFalseInAnyCaseAndFlagsOtherValues) {
    struct Case {
        std::string line;
        bool expected;  // the flag is set the other way before
        bool box;
    };
    const std::vector<Case> cases = {
        {"NeverShowAgain=TRUE", true, false},    {"neverSHOWagain=True\t;x", true, false},
        {"NeverShowAgain=FaLsE ", false, false}, {"NeverShowAgain=Yes", false, true},
        {"NeverShowAgain=", false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        gSession.NeverShowAgain = !c.expected;
        WriteIni({c.line});
        ReadIni();
        EXPECT_EQ(gSession.NeverShowAgain, c.expected);
        if (c.box) {
            ExpectBoxes(kIniError, {"環境変数の値が正しくありません。\rNeverShowAgain"});
        } else {
            EXPECT_TRUE(op_.boxes.empty());
        }
    }
}

TEST_F(OrinIniTest, EveryLineHoldingAKeyIsReadAndItsValueCutOut) {
    WriteIni({
        ";Orin.ini",
        "[UserInput]\t\t;ユーザーの入力情報",
        // Any case, anywhere in the line; blanks around the value are trimmed.
        "domaindnsname=  Example.Test   ",
        // The first key of the table decides, even when a later key opens the line.
        "UserName=u1 ;DcComputerName=x",
        // Blanks are trimmed before the tabs go, so a blank behind a tab stays.
        "  see DomainNetBIOSName=\t EX",
        // ";" before "=" leaves nothing of the value: a commented-out key clears the field.
        "UserName=bob",
        ";UserName=alice",
        // A comment line is read like any other; later lines overwrite earlier ones.
        "# METHOD=remote\t\t;c",
        "Method=lo\tcal;x",
        "Method=a=b;c",
    });
    ReadIni();
    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(Settings(), (Lines{"Example.Test", " EX", "u1", "", "a=b", "false"}));

    // Called on its own, a line without the key still gives a value, never the sentinel.
    EXPECT_EQ(GetEnvValue(" plain text ;c", "UserName"), "plain text");
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
    // The NetBIOS name's key is not in the file.
    SetSettings({"New.Example", "NEW", "", "administrator", "remote", "true"});
    gSession.Password = "S3cret!pw";

    UpdateIni();

    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(IniLines(), (Lines{
                              "; my notes",
                              "Password=hand-written line stays",
                              "Method=remote\t\t\t;ドメイン接続方式",
                              "",
                              "[UserInput]",
                              "DomainDNSName=New.Example\t\t\t;ドメインの完全なDNS名",
                              "UserName=administrator\t\t\t;ドメイン接続時ログオンするユーザー名",
                              "NeverShowAgain=true\t\t\t;以降この画面を表示させない",
                              "trailing line",
                          }));
    const std::string bytes = ReadBytes(Ini());
    EXPECT_EQ(bytes.find("S3cret"), std::string::npos);
    EXPECT_TRUE(bytes.ends_with("\r\n"));
}

TEST_F(OrinIniTest, UpdateWithoutFileCreatesTheDefaultAndTheValuesReadBack) {
    const Lines written = {"corp.example", "CORP", "dc1", "ops", "remote", "true"};
    SetSettings(written);
    gSession.Password = "never-in-file";
    UpdateIni();

    const Lines lines = IniLines();
    ASSERT_EQ(lines.size(), 11u);
    EXPECT_EQ(lines[8], "[Connect]\t\t;「ドメイン接続方式」画面の設定情報");
    EXPECT_EQ(ReadBytes(Ini()).find("never-in-file"), std::string::npos);

    gSession = DirectorySession{};
    ReadIni();
    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(Settings(), written);
}

TEST_F(OrinIniTest, UpdateGoesThroughAWholeScratchCopyOrKeepsTheOldFile) {
    // A read-only file and a stale scratch copy are both overwritten.
    WriteIni({"UserName=old"});
    fs::permissions(Ini(), fs::perms::owner_read | fs::perms::group_read);
    ASSERT_TRUE(platform::WriteLines(home_ / "Orin_tmp.ini", Lines{"stale"}));
    gSession.UserName = "new";
    UpdateIni();
    EXPECT_TRUE(op_.boxes.empty());
    EXPECT_EQ(IniLines(), Lines{"UserName=new\t\t\t;ドメイン接続時ログオンするユーザー名"});
    EXPECT_FALSE(fs::exists(home_ / "Orin_tmp.ini"));

    // A scratch copy that can't be written leaves the file as it was.
    fs::create_directory(home_ / "Orin_tmp.ini");
    const std::string before = ReadBytes(Ini());
    gSession.UserName = "newer";
    UpdateIni();
    ExpectBoxes(kFileError, {"iniﾌｧｲﾙの更新が失敗しました！\rOrin.ini"});
    EXPECT_EQ(ReadBytes(Ini()), before);
}

TEST_F(OrinIniTest, UnwritableFolderShowsTheWriteFailureAndNothingCrashes) {
    // A folder below a plain file can't be created or written, even by root.
    ASSERT_TRUE(platform::WriteLines(home_ / "plain", Lines{"x"}));
    SetHome(home_ / "plain" / "app");
    SetSettings({"", "", "", "typed", "remote", "false"});

    CreateDefaultIni();
    ExpectBoxes(kFileError, {"ﾌｧｲﾙへの書込みが失敗しました！\rOrin.ini"});
    // The update tries the default once, reports that, and gives up.
    UpdateIni();
    ExpectBoxes(kFileError, {"ﾌｧｲﾙへの書込みが失敗しました！\rOrin.ini"});
    // Without a file, the read leaves the session as it was.
    ReadIni();
    ExpectBoxes(kFileError, {"iniﾌｧｲﾙが存在しません。\rOrin.ini"});
    EXPECT_EQ(Settings(), (Lines{"", "", "", "typed", "remote", "false"}));
}
