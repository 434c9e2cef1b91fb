#include "run/OrinIni.h"

#include <array>
#include <system_error>
#include <vector>

#include "base/Operator.h"
#include "directory/DirectorySession.h"
#include "platform/AppFolder.h"
#include "platform/Strings.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

constexpr const char* kIniFileName = "Orin.ini";
constexpr const char* kFileAccessTitle = "ﾌｧｲﾙｱｸｾｽｴﾗｰ";
constexpr const char* kIniErrorTitle = "INIﾌｧｲﾙ関連ｴﾗｰ";

// The keys in the order in which a line is tested: the first key found on a line decides.
// `field` is the session's text field (none for the NeverShowAgain flag); `comment` is the
// key's comment in the default file, written back behind the value.
struct KeyInfo {
    const char* name;
    std::string DirectorySession::*field;
    const char* comment;
};

constexpr std::array<KeyInfo, 6> kKeys = {{
    {"DomainDNSName", &DirectorySession::DomainDNSName, ";ドメインの完全なDNS名"},
    {"DomainNetBIOSName", &DirectorySession::DomainNetBIOSName, ";ドメインのNetBIOS名"},
    {"DcComputerName", &DirectorySession::DcComputerName, ";ドメインコントローラのコンピュータ名"},
    {"UserName", &DirectorySession::UserName, ";ドメイン接続時ログオンするユーザー名"},
    {"Method", &DirectorySession::Method, ";ドメイン接続方式"},
    {"NeverShowAgain", nullptr, ";以降この画面を表示させない"},
}};

// The key a settings line stands for: the first of the table whose name and "=" occur anywhere
// in the line, ignoring case. Comment lines and section headers are not exempt.
const KeyInfo* FindKey(std::string_view line) {
    for (const KeyInfo& info : kKeys) {
        std::string probe = std::string(info.name) + "=";
        if (FindIgnoreCase(line, probe) != std::string_view::npos) return &info;
    }
    return nullptr;
}

std::string CurrentValue(const KeyInfo& info) {
    if (!info.field) return gSession.NeverShowAgain ? "true" : "false";
    return gSession.*info.field;
}

void ShowCritical(const char* title, std::string_view headline, std::string_view detail) {
    std::string text(headline);
    text += "\r";
    text += detail;
    TheOperator().MessageBox(title, text, MsgIcon::Critical, MsgButtons::Ok);
}

bool IniExists() {
    std::error_code ec;
    return std::filesystem::is_regular_file(IniFilePath(), ec);
}

// Replaces `target` by a copy of `source`; false when any step fails.
bool CopyOver(const std::filesystem::path& source, const std::filesystem::path& target) {
    std::error_code ec;
    std::filesystem::copy_file(source, target, std::filesystem::copy_options::overwrite_existing,
                               ec);
    return !ec;
}

bool ForceRemove(const std::filesystem::path& path) {
    std::error_code ec;
    std::filesystem::remove(path, ec);
    return !ec;
}

void ShowUpdateFailed() {
    ShowCritical(kFileAccessTitle, "iniﾌｧｲﾙの更新が失敗しました！", kIniFileName);
}

void UpdateIniOnce(bool mayCreate) {
    if (!IniExists()) {
        // Create the default and update that. When even the default can't be written,
        // CreateDefaultIni has told the operator and there is nothing to update.
        if (!mayCreate) return;
        CreateDefaultIni();
        UpdateIniOnce(false);
        return;
    }

    std::vector<std::string> lines;
    if (!platform::ReadAllLines(IniFilePath(), lines)) {
        ShowUpdateFailed();
        return;
    }
    for (std::string& line : lines) {
        const KeyInfo* info = FindKey(line);
        if (!info) continue;
        line = std::string(info->name) + "=" + CurrentValue(*info) + "\t\t\t" + info->comment;
    }

    // Orin.ini is only replaced once the scratch copy stands whole.
    if (!platform::WriteLines(IniTmpFilePath(), lines)) {
        ShowUpdateFailed();
        return;
    }
    if (!ForceRemove(IniFilePath()) || !CopyOver(IniTmpFilePath(), IniFilePath()) ||
        !ForceRemove(IniTmpFilePath())) {
        ShowUpdateFailed();
    }
}

}  // namespace

std::filesystem::path IniFilePath() {
    return platform::AppFolder() / kIniFileName;
}

std::filesystem::path IniTmpFilePath() {
    return platform::AppFolder() / "Orin_tmp.ini";
}

std::filesystem::path IniBadFilePath() {
    return platform::AppFolder() / "Orin_bad.ini";
}

std::string GetEnvValue(std::string_view line, [[maybe_unused]] std::string_view key) {
    // The value is cut from the line whether or not "key=" occurs in it: a line without the key
    // does not give "NotFound". ReadIni's not-found message therefore only appears for a value
    // that itself reads "NotFound".
    //
    // Positions: `equal` is the first "=", `semicolon` the first ";" (npos when absent).
    size_t equal = line.find('=');
    size_t semicolon = line.find(';');
    size_t begin = equal == std::string_view::npos ? 0 : equal + 1;
    std::string_view value;
    if (semicolon == std::string_view::npos) {
        value = line.substr(begin);
    } else if (semicolon > begin) {
        value = line.substr(begin, semicolon - begin);
    }
    // A ";" right behind the "=", or before it (a commented-out line), leaves the value empty.
    return ReplaceAll(Trim(value), "\t", "");
}

void CreateDefaultIni() {
    if (IniExists()) return;
    const std::vector<std::string> lines = {
        ";Orin.ini",
        "",
        "[UserInput]\t\t;ユーザーの入力情報",
        "DomainDNSName=\t\t\t;ドメインの完全なDNS名",
        "DomainNetBIOSName=\t\t\t;ドメインのNetBIOS名",
        "DcComputerName=\t\t\t;ドメインコントローラのコンピュータ名",
        "UserName=\t\t\t;ドメイン接続時ログオンするユーザー名",
        "",
        "[Connect]\t\t;「ドメイン接続方式」画面の設定情報",
        "Method=local\t\t\t;ドメイン接続方式",
        "NeverShowAgain=false\t\t\t;以降この画面を表示させない",
    };
    if (!platform::WriteLines(IniFilePath(), lines))
        ShowCritical(kFileAccessTitle, "ﾌｧｲﾙへの書込みが失敗しました！", kIniFileName);
}

namespace {

// A settings file with a line that isn't CP932 text is not read at all: it goes aside as
// Orin_bad.ini, the default file takes its place, and the session takes the defaults.
void ReplaceDamagedIni(int32_t line) {
    std::error_code ec;
    std::filesystem::rename(IniFilePath(), IniBadFilePath(), ec);
    gSession.DomainDNSName.clear();
    gSession.DomainNetBIOSName.clear();
    gSession.DcComputerName.clear();
    gSession.UserName.clear();
    gSession.Method = "local";
    gSession.NeverShowAgain = false;
    ShowCritical(
        kIniErrorTitle,
        "iniﾌｧｲﾙの" + std::to_string(line) + "行目にCP932(Shift_JIS)ではない文字があります！",
        ec ? std::string("Orin.iniを読まずに既定値を使います。")
           : std::string("既定値のOrin.iniを作り直しました。元のﾌｧｲﾙはOrin_bad.iniに"
                         "残してあります。"));
    if (!ec) CreateDefaultIni();
}

}  // namespace

void ReadIni() {
    if (!IniExists()) {
        ShowCritical(kFileAccessTitle, "iniﾌｧｲﾙが存在しません。", kIniFileName);
        return;
    }
    if (const int32_t line = platform::FirstLineNotCp932(IniFilePath()); line != 0) {
        ReplaceDamagedIni(line);
        return;
    }
    // A file that exists but can't be read leaves the session as it is, like a missing key.
    platform::LineReader reader(IniFilePath());
    std::string line;
    while (reader.ReadLine(line)) {
        const KeyInfo* info = FindKey(line);
        if (!info) continue;
        std::string value = GetEnvValue(line, info->name);
        if (value == "NotFound") {
            ShowCritical(kIniErrorTitle, "iniﾌｧｲﾙから環境変数が見つかりません。", info->name);
            continue;
        }
        if (info->field) {
            gSession.*info->field = value;
            continue;
        }
        std::string flag = ToUpperAscii(value);
        gSession.NeverShowAgain = flag == "TRUE";
        if (flag != "TRUE" && flag != "FALSE")
            ShowCritical(kIniErrorTitle, "環境変数の値が正しくありません。", info->name);
    }
}

void UpdateIni() {
    UpdateIniOnce(true);
}

}  // namespace orin
