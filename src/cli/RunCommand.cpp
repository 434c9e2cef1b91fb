#include "cli/RunCommand.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "base/RunContext.h"
#include "base/Trace.h"
#include "cli/Interrupt.h"
#include "cli/LogSummary.h"
#include "cli/Password.h"
#include "cli/TerminalOperator.h"
#include "directory/DirectorySession.h"
#include "platform/AppFolder.h"
#include "platform/Strings.h"
#include "run/Drivers.h"
#include "run/OrinIni.h"
#include "run/RegisterEngines.h"

namespace orin::cli {
namespace {

// The options that were given take the place of the settings of Orin.ini.
void ApplyOptions(const RunOptions& options) {
    if (options.dns) gSession.DomainDNSName = Trim(*options.dns);
    if (options.netbios) gSession.DomainNetBIOSName = Trim(*options.netbios);
    if (options.method) gSession.Method = *options.method;
    if (options.server) gSession.DcComputerName = Trim(*options.server);
    if (options.user) gSession.UserName = Trim(*options.user);
    if (options.caFile) gSession.CaFile = *options.caFile;
    if (options.auth) {
        gSession.RemoteAuthentication = *options.auth == "tls"        ? RemoteAuth::TlsOnly
                                        : *options.auth == "kerberos" ? RemoteAuth::KerberosOnly
                                                                      : RemoteAuth::Automatic;
    }
    gSession.TrustAnyCertificate = options.trustTestDc;
}

// The CSV path as the log will name it: a relative path is taken from the current folder.
std::string FullCsvPath(const std::string& given) {
    const std::string trimmed = Trim(given);
    if (trimmed.empty()) return trimmed;
    std::error_code ec;
    const std::filesystem::path full = std::filesystem::absolute(trimmed, ec);
    return ec ? trimmed : full.string();
}

bool IsExportRun(const RunOptions& options) {
    return options.op == OperationKind::Exp && options.mode != RunMode::Compare;
}

int StatusOfCompletedRun(const RunOptions& options) {
    const bool compare = options.mode == RunMode::Compare;
    const int32_t others = compare ? gRun.lngDiffCnt : gRun.lngWarningCnt;
    const int32_t good = compare ? gRun.lngMatchCnt : gRun.lngSuccessCnt;
    if (gRun.lngFailureCnt > 0) return kExitFailure;
    if (others > 0) return kExitWarning;
    // Rows that ended without a verdict were not done: the run did not succeed as a whole.
    if (!IsExportRun(options) && good < gRun.lngObjectCnt) return kExitFailure;
    return kExitSuccess;
}

// A run that a stop signal ended, whether it had begun or not: Ctrl-C has a status of its own.
int StatusOfStop() {
    return InterruptSignal() == SIGTERM || InterruptSignal() == SIGHUP ? kExitTerminated
                                                                       : kExitInterrupted;
}

}  // namespace

int RunCommand(const RunOptions& options) {
    std::optional<std::string> filePassword;
    if (options.passwordFile) {
        filePassword = ReadPasswordFile(*options.passwordFile);
        if (!filePassword) {
            std::cerr << "ﾊﾟｽﾜｰﾄﾞﾌｧｲﾙを読み込めません: " << *options.passwordFile << "\n";
            return kExitUsage;
        }
    }
    auto password = [&]() -> std::string {
        if (filePassword) return *filePassword;
        if (auto fromEnvironment = PasswordFromEnvironment()) return *fromEnvironment;
        return PromptPassword("ﾄﾞﾒｲﾝ管理者ﾊﾟｽﾜｰﾄﾞ：").value_or("");
    };
    TerminalOperator terminal(options.yes, password);
    InstallInterruptHandler();

    const std::filesystem::path folder = platform::AppFolder();
    TraceMode = 0;
    InitTraceFilePath(folder);
    gRun.strEventLogPath = (folder / "Event.log").string();
    CreateDefaultIni();
    ReadIni();
    ApplyOptions(options);
    RegisterAllEngines();
    // ORIN_FAST_PATH=0: every row the exact way, for diagnosis (README).
    if (const char* fast = std::getenv("ORIN_FAST_PATH"); fast && std::string_view(fast) == "0")
        UseFastPaths(false);

    const std::uintmax_t logSize = LogSizeNow(gRun.strEventLogPath);
    const DriverEnd end =
        RunFromButton(options.kind, options.op, options.mode, FullCsvPath(options.csv));
    UpdateIni();

    if (end == DriverEnd::Completed || end == DriverEnd::Cancelled) {
        for (const std::string& line : SummaryWrittenSince(gRun.strEventLogPath, logSize))
            std::cout << line << "\n";
        std::cout << std::flush;
    }
    if (end == DriverEnd::Completed) return StatusOfCompletedRun(options);
    // The command line's only Cancel is a stop signal, which also stops a run that hasn't begun.
    if (end == DriverEnd::Cancelled || InterruptSignal() != 0) return StatusOfStop();
    if (end == DriverEnd::Failed) return kExitFailure;
    // A login whose values are missing never tried to connect: that is a stop.
    if (end == DriverEnd::NoConnection && terminal.ConnectionFailed()) return kExitNoConnection;
    return kExitStopped;
}

}  // namespace orin::cli
