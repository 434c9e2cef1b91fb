// What one OU add row costs, with the fast path and the exact way alone: seconds and LDAP
// requests per row, for rows with the six properties, and for rows with a manager and one ACE
// as well. Drives the same chain as orin-cli (RunFromButton: the driver, the progress window's
// run, the row loop, the engines) against the test domain controller; each run adds its rows
// into a fresh OU, and everything is removed at the end.
//
// The test DC's names come from the environment that `scripts/testdc.sh env` prints.
//
//   ou_rows_bench [--count N] [--fast-only | --exact-only]      (default 100 rows per run)

#include <unistd.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "base/Operator.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/Connect.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/ou/OUFastPath.h"
#include "engines/ou/OUProduction.h"
#include "platform/LdapConnection.h"
#include "platform/TextFile.h"
#include "run/Drivers.h"
#include "run/ProgressWindow.h"
#include "run/RegisterEngines.h"

namespace orin {
namespace {

// Answers every question Yes and shows nothing but the boxes, on stderr.
class QuietOperator : public Operator {
  public:
    DomainFields fields;

    DomainFields MainWindowDomainFields(OperationKind) override { return fields; }
    MsgAnswer MessageBox(std::string_view title, std::string_view text, MsgIcon,
                         MsgButtons buttons) override {
        if (buttons == MsgButtons::Ok) {
            std::fprintf(stderr, "[%.*s] %.*s\n", static_cast<int>(title.size()), title.data(),
                         static_cast<int>(text.size()), text.data());
            return MsgAnswer::Ok;
        }
        return MsgAnswer::Yes;
    }
    void SetProgressTitle(std::string_view) override {}
    void SetStatus(std::string_view, bool) override {}
    void SetCounterCaptions(std::string_view, std::string_view) override {}
    void SetTotal(int32_t) override {}
    void SetCounters(int32_t, int32_t, int32_t) override {}
    void SetProgressValue(int32_t) override {}
    void SetCommandCaption(std::string_view) override {}
    void Yield() override {}
    void OpenEventLog(const std::filesystem::path&) override {}
    void ShowLogin() override {}
    void ShowConnectWait(const std::function<void()>& connect) override { connect(); }
    void ShowCollectWait(std::string_view, const std::function<void()>& collect) override {
        collect();
    }
    void ShowProgress(const std::function<void()>& run) override { run(); }
};

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool MakeEntry(const std::string& cls, const std::string& relative, const std::string& sam = {}) {
    auto made = gSession.RootObject.Create(cls, relative);
    if (!made.ok()) return false;
    if (!sam.empty()) made->Put("sAMAccountName", sam);
    return made->SetInfo().ok();
}

struct Figure {
    double seconds = 0;
    long requests = 0;
    int32_t success = 0;
};

// Adds `count` OUs below `container` (an OU name at the domain root, then the run's own OU).
Figure RunAdd(const std::filesystem::path& folder, const std::string& base, const std::string& own,
              int count, bool withManagerAndAce, const std::string& group) {
    std::vector<std::string> lines = {
        "!OU-Start,,OU-End,c,postalCode,st,l,street,description,MgrOU-Start,MgrOU-End,MgrRDN,"
        "Mirror,AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption"};
    for (int i = 1; i <= count; ++i) {
        char name[16];
        std::snprintf(name, sizeof name, "ou%05d", i);
        std::string row = base + "," + own + "," + name +
                          ",JP,100-0001,東京都,千代田区,丸の内1-1<Rtn>2F,ﾍﾞﾝﾁﾏｰｸ " +
                          std::to_string(i);
        row += withManagerAndAce ? "," + base + ",,benchmgr,," + group + ",0,1,," : ",,,,,,,,,";
        lines.push_back(row);
    }
    const std::filesystem::path csv = folder / (own + ".csv");
    platform::WriteLines(csv, lines);

    const long before = gSession.Connection->RequestCount();
    const auto start = std::chrono::steady_clock::now();
    RunFromButton(ObjectKind::OU, OperationKind::Add, RunMode::Production, csv.string());
    const auto end = std::chrono::steady_clock::now();
    return {std::chrono::duration<double>(end - start).count(),
            gSession.Connection->RequestCount() - before, gRun.lngSuccessCnt};
}

void Print(const char* rows, const char* way, int count, const Figure& f) {
    std::printf("%-22s %-6s %6d %9.2f %10.1f %13.2f %8d\n", rows, way, count, f.seconds,
                1000.0 * f.seconds / count, static_cast<double>(f.requests) / count, f.success);
}

int Main(int argc, char** argv) {
    int count = 100;
    struct {
        bool fast = true, exact = true;
    } ways;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--count" && i + 1 < argc) {
            count = std::atoi(argv[++i]);
        } else if (arg == "--fast-only") {
            ways.exact = false;
        } else if (arg == "--exact-only") {
            ways.fast = false;
        } else {
            std::fprintf(stderr, "usage: ou_rows_bench [--count N] [--fast-only | --exact-only]\n");
            return 64;
        }
    }
    if (count <= 0 || Env("ORIN_TESTDC_FQDN").empty()) {
        std::fprintf(stderr,
                     "needs --count > 0 and the test DC's environment "
                     "(eval \"$(scripts/testdc.sh env)\")\n");
        return 64;
    }

    QuietOperator screen;
    SetOperator(&screen);
    screen.fields = {Env("ORIN_TESTDC_DNS_DOMAIN"), Env("ORIN_TESTDC_NETBIOS_DOMAIN")};
    gSession.DomainDNSName = screen.fields.dns;
    gSession.DomainNetBIOSName = screen.fields.netbios;
    gSession.DomainDN = BuildDomainDN(gSession.DomainDNSName);
    gSession.Method = "remote";
    gSession.DcComputerName = Env("ORIN_TESTDC_FQDN");
    gSession.UserName = Env("ORIN_TESTDC_ADMIN_USER");
    gSession.Password = Env("ORIN_TESTDC_ADMIN_PASSWORD");
    gSession.CaFile = Env("ORIN_TESTDC_CA_FILE");
    const auto connectStart = std::chrono::steady_clock::now();
    ConnectRemote();
    if (!gSession.Connected) return 4;
    std::printf(
        "connect: %.2f s\n",
        std::chrono::duration<double>(std::chrono::steady_clock::now() - connectStart).count());
    gSession.NeverShowAgain = true;  // the standing connection serves every run
    RegisterAllEngines();
    SetProgressStartWait(0);  // the window's one-second wait isn't part of what a row costs

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("ou_rows_bench-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    gRun.strEventLogPath = (folder / "Event.log").string();

    const std::string base = "ouRowsBench-" + std::to_string(getpid());
    const std::string group = "benchgrp" + std::to_string(getpid());
    const std::string baseRdn = "OU=" + base;
    bool ready =
        MakeEntry("organizationalUnit", baseRdn) &&
        MakeEntry("user", "CN=benchmgr," + baseRdn, "benchmgr" + std::to_string(getpid())) &&
        MakeEntry("group", "CN=benchgrp," + baseRdn, group);
    for (const char* own : {"fast", "exact", "fast-acl", "exact-acl"})
        ready = ready && MakeEntry("organizationalUnit", "OU=" + std::string(own) + "," + baseRdn);

    if (ready) {
        std::printf("%-22s %-6s %6s %9s %10s %13s %8s\n", "rows", "way", "count", "seconds",
                    "ms/row", "requests/row", "success");
        for (bool withManagerAndAce : {false, true}) {
            for (bool fast : {true, false}) {
                if ((fast && !ways.fast) || (!fast && !ways.exact)) continue;
                SetOUFastPath(fast);
                const std::string own =
                    std::string(fast ? "fast" : "exact") + (withManagerAndAce ? "-acl" : "");
                Print(withManagerAndAce ? "+ manager, one ACE" : "six properties",
                      fast ? "fast" : "exact", count,
                      RunAdd(folder, base, own, count, withManagerAndAce, group));
            }
        }
        SetOUFastPath(true);
    } else {
        std::fprintf(stderr, "could not prepare %s\n", baseRdn.c_str());
    }

    // Everything goes again, whatever happened above.
    DirObject baseOu;
    if (BindObject("LDAP://" + baseRdn + "," + gSession.DomainDN, baseOu) &&
        !DelOUAndSubObj(baseOu, baseRdn)) {
        std::fprintf(stderr, "could not remove %s\n", baseRdn.c_str());
    }
    std::filesystem::remove_all(folder);
    SetOperator(nullptr);
    return ready ? 0 : 1;
}

}  // namespace
}  // namespace orin

int main(int argc, char** argv) {
    return orin::Main(argc, argv);
}
