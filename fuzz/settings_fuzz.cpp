// Feeds arbitrary bytes to the settings file: the input becomes Orin.ini in a scratch
// application folder, then ReadIni, UpdateIni and GetEnvValue run over it. Besides crashes and
// sanitizer reports it checks what must hold for any file:
// - GetEnvValue never returns a value with a tab or with a blank at either end;
// - UpdateIni in a writable folder leaves Orin.ini with as many lines as before and no scratch
//   copy behind, and never writes the password;
// - a file with a line that isn't CP932 text is not read at all: the session holds the defaults
//   and the file is kept whole as Orin_bad.ini; no setting ever holds U+FFFD.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/Operator.h"
#include "directory/DirectorySession.h"
#include "platform/TextFile.h"
#include "run/OrinIni.h"

namespace fs = std::filesystem;
using namespace orin;

namespace {

// Answers every box; nothing else is ever asked of it here.
class AnsweringOperator final : public Operator {
  public:
    MsgAnswer MessageBox(std::string_view, std::string_view, MsgIcon, MsgButtons buttons) override {
        return buttons == MsgButtons::YesNo ? MsgAnswer::Yes : MsgAnswer::Ok;
    }
    void SetProgressTitle(std::string_view) override {}
    void SetStatus(std::string_view, bool) override {}
    void SetCounterCaptions(std::string_view, std::string_view) override {}
    void SetTotal(int32_t) override {}
    void SetCounters(int32_t, int32_t, int32_t) override {}
    void SetProgressValue(int32_t) override {}
    void SetCommandCaption(std::string_view) override {}
    void Yield() override {}
    void ShowLogin() override {}
    DomainFields MainWindowDomainFields(OperationKind) override { return {}; }
    void ShowConnectWait(const std::function<void()>& connect) override { connect(); }
    void ShowCollectWait(std::string_view, const std::function<void()>& collect) override {
        collect();
    }
    void ShowProgress(const std::function<void()>& run) override { run(); }
    void OpenEventLog(const fs::path&) override {}
};

const char* const kKeys[] = {"DomainDNSName", "DomainNetBIOSName", "DcComputerName", "UserName",
                             "Method",        "NeverShowAgain"};
const std::string kPassword = "orin-fuzz-password-marker";

fs::path gHome;
AnsweringOperator gOperator;

void RemoveHome() {
    std::error_code ec;
    fs::remove_all(gHome, ec);
}

size_t CountLines(const fs::path& path) {
    std::vector<std::string> lines;
    platform::ReadAllLines(path, lines);
    return lines.size();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    char pattern[] = "/tmp/orin_settings_fuzz_XXXXXX";
    if (!mkdtemp(pattern)) std::abort();
    gHome = pattern;
    setenv("ORIN_HOME", pattern, 1);
    std::atexit(RemoveHome);
    SetOperator(&gOperator);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const fs::path ini = gHome / "Orin.ini";
    std::error_code ec;
    fs::remove(gHome / "Orin_tmp.ini", ec);
    std::string input(reinterpret_cast<const char*>(data), size);
    std::ofstream(ini, std::ios::binary | std::ios::trunc) << input;

    gSession = DirectorySession{};
    gSession.Password = kPassword;
    gSession.DomainDNSName = "before.example";
    const bool damaged = platform::FirstLineNotCp932(ini) != 0;
    ReadIni();
    for (const std::string* value :
         {&gSession.DomainDNSName, &gSession.DomainNetBIOSName, &gSession.DcComputerName,
          &gSession.UserName, &gSession.Method}) {
        if (value->find("\xEF\xBF\xBD") != std::string::npos) std::abort();
    }
    if (damaged) {
        if (!gSession.DomainDNSName.empty() || gSession.Method != "local") std::abort();
        std::ifstream kept(gHome / "Orin_bad.ini", std::ios::binary);
        if (std::string((std::istreambuf_iterator<char>(kept)), {}) != input) std::abort();
    }

    std::vector<std::string> lines;
    platform::ReadAllLines(ini, lines);
    for (const std::string& line : lines) {
        for (const char* key : kKeys) {
            std::string value = GetEnvValue(line, key);
            // Blanks are trimmed before the tabs go, so "\t x" keeps its inner blank: only the
            // absence of tabs is certain.
            if (value.find('\t') != std::string::npos) std::abort();
        }
    }

    UpdateIni();
    if (fs::exists(gHome / "Orin_tmp.ini")) std::abort();
    if (CountLines(ini) != lines.size()) std::abort();
    std::ifstream in(ini, std::ios::binary);
    std::string written((std::istreambuf_iterator<char>(in)), {});
    if (input.find(kPassword) == std::string::npos && written.find(kPassword) != std::string::npos)
        std::abort();

    // What the update wrote must read again without trouble.
    ReadIni();
    return 0;
}
