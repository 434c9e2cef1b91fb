#include "cli/TerminalOperator.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <optional>

#include "base/RunContext.h"
#include "cli/Interrupt.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/Strings.h"

namespace orin::cli {
namespace {

// A box's text holds "\r" where its lines break.
std::string BoxText(std::string_view text) {
    return ReplaceAll(ReplaceAll(text, "\r\n", "\n"), "\r", "\n");
}

bool IsYes(std::string answer) {
    answer = ToLowerAscii(Trim(answer));
    return answer == "y" || answer == "yes" || answer == "はい";
}

constexpr int kBarWidth = 30;

// A line typed at the terminal; nothing at the end of the input, or when a stop signal comes
// before the answer.
std::optional<std::string> ReadAnswer() {
    pollfd terminal{STDIN_FILENO, POLLIN, 0};
    while (InterruptSignal() == 0) {
        const bool buffered = std::cin.rdbuf()->in_avail() > 0;
        const int ready = buffered ? 1 : poll(&terminal, 1, 200);
        if (ready < 0 && errno != EINTR) return std::nullopt;
        if (ready <= 0) continue;
        std::string line;
        if (!std::getline(std::cin, line)) return std::nullopt;
        return line;
    }
    return std::nullopt;
}

}  // namespace

TerminalOperator::TerminalOperator(bool assumeYes, std::function<std::string()> password)
    : assumeYes_(assumeYes),
      password_(std::move(password)),
      stdinTerminal_(isatty(STDIN_FILENO) != 0),
      stderrTerminal_(isatty(STDERR_FILENO) != 0),
      previous_(&TheOperator()) {
    SetOperator(this);
}

TerminalOperator::~TerminalOperator() {
    SetOperator(previous_);
}

DomainFields TerminalOperator::MainWindowDomainFields(OperationKind) {
    // The command line has one set of domain names for every operation.
    return {gSession.DomainDNSName, gSession.DomainNetBIOSName};
}

MsgAnswer TerminalOperator::MessageBox(std::string_view title, std::string_view text, MsgIcon,
                                       MsgButtons buttons) {
    ClearBar();
    std::cerr << title << ": " << BoxText(text);
    if (buttons == MsgButtons::Ok) {
        std::cerr << "\n" << std::flush;
        return MsgAnswer::Ok;
    }
    std::cerr << " [y/n] " << std::flush;
    // Once a stop signal has come, nothing more is begun.
    if (InterruptSignal() != 0) {
        std::cerr << "n\n";
        return MsgAnswer::No;
    }
    if (assumeYes_) {
        std::cerr << "y\n";
        return MsgAnswer::Yes;
    }
    if (!stdinTerminal_) {
        std::cerr << "n\n";
        return MsgAnswer::No;
    }
    const std::optional<std::string> answer = ReadAnswer();
    if (!answer) {
        std::cerr << "\n";
        return MsgAnswer::No;
    }
    return IsYes(*answer) ? MsgAnswer::Yes : MsgAnswer::No;
}

MsgAnswer TerminalOperator::DetailedMessageBox(std::string_view title, std::string_view text,
                                               std::string_view detail, MsgIcon icon,
                                               MsgButtons buttons) {
    if (detail.empty()) return MessageBox(title, text, icon, buttons);
    return MessageBox(title, std::string(text) + "\r" + std::string(detail), icon, buttons);
}

void TerminalOperator::SetProgressTitle(std::string_view caption) {
    if (stderrTerminal_) std::cerr << caption << "\n";
}

void TerminalOperator::SetStatus(std::string_view text, bool red) {
    // A cancel's caption is news for a script too; the others only for a person watching.
    if (!red && !stderrTerminal_) return;
    ClearBar();
    std::cerr << text << "\n" << std::flush;
    DrawBar();
}

void TerminalOperator::SetCounterCaptions(std::string_view first, std::string_view second) {
    firstCaption_ = first;
    secondCaption_ = second;
}

void TerminalOperator::SetTotal(int32_t total) {
    total_ = total;
    DrawBar();
}

void TerminalOperator::SetCounters(int32_t label6, int32_t label7, int32_t label8) {
    counters_[0] = label6;
    counters_[1] = label7;
    counters_[2] = label8;
    DrawBar();
}

void TerminalOperator::SetProgressValue(int32_t value) {
    value_ = value;
    DrawBar();
}

void TerminalOperator::SetCommandCaption(std::string_view) {}

void TerminalOperator::Yield() {
    if (!TakeInterrupt()) return;
    if (collecting_) {
        gRun.blnWaitCancelled = true;
    } else {
        gRun.intCancel = 1;
    }
}

void TerminalOperator::OpenEventLog(const std::filesystem::path&) {
    // The command line prints the run's summary instead.
}

bool TerminalOperator::CheckLogin() {
    const char* missing = nullptr;
    const bool remote = ToUpperAscii(gSession.Method) != "LOCAL";
    if (gSession.DomainDNSName.empty()) {
        missing = "ﾄﾞﾒｲﾝの完全なDNS名を入力してください｡";
    } else {
        gSession.DomainDN = BuildDomainDN(gSession.DomainDNSName);
        if (gSession.DomainNetBIOSName.empty()) {
            missing = "ﾄﾞﾒｲﾝのNetBIOS名を入力してください｡";
        } else if (remote && gSession.DcComputerName.empty()) {
            missing = "ﾄﾞﾒｲﾝｺﾝﾄﾛｰﾗｻｰﾊﾞｰ名を入力してください｡";
        } else if (remote && gSession.UserName.empty()) {
            missing = "ﾄﾞﾒｲﾝ管理者ﾕｰｻﾞｰ名を入力してください｡";
        }
    }
    if (!missing) return true;
    MessageBox("ﾄﾞﾒｲﾝ接続", missing, MsgIcon::Exclamation, MsgButtons::Ok);
    return false;
}

void TerminalOperator::ShowLogin() {
    gSession.LoginFromMenu = false;
    // Nobody can type other values: after a failed attempt the login ends as cancelled.
    bool cancel = connectFailed_;
    if (!cancel) {
        gSession.DomainDNSName = Trim(gSession.DomainDNSName);
        gSession.DomainNetBIOSName = Trim(gSession.DomainNetBIOSName);
        gSession.DcComputerName = Trim(gSession.DcComputerName);
        gSession.UserName = Trim(gSession.UserName);
        cancel = !CheckLogin();
    }
    if (!cancel) {
        const bool remote = ToUpperAscii(gSession.Method) != "LOCAL";
        gSession.Method = remote ? "remote" : "local";
        if (remote && !passwordTaken_ && password_) {
            gSession.Password = Trim(password_());
            passwordTaken_ = true;
        }
    }
    if (cancel) {
        gSession.LoginCancelled = true;
        gSession.Connected = false;
    }
}

void TerminalOperator::ShowConnectWait(const std::function<void()>& connect) {
    if (stderrTerminal_) std::cerr << "ﾄﾞﾒｲﾝに接続しています･･･\n" << std::flush;
    connect();
    if (!gSession.Connected) connectFailed_ = true;
}

void TerminalOperator::ShowCollectWait(std::string_view, const std::function<void()>& collect) {
    if (stderrTerminal_) std::cerr << "ｵﾌﾞｼﾞｪｸﾄの情報を収集しています･･･\n" << std::flush;
    collecting_ = true;
    if (collect) collect();
    collecting_ = false;
}

void TerminalOperator::ShowProgress(const std::function<void()>& run) {
    progressShown_ = true;
    run();
    ClearBar();
    progressShown_ = false;
}

void TerminalOperator::DrawBar() {
    // Nothing to show until the window's load has set the total.
    if (!stderrTerminal_ || !progressShown_ || total_ <= 0) return;
    const int filled = total_ > 0 ? static_cast<int>(int64_t{value_} * kBarWidth / total_) : 0;
    std::string bar(static_cast<size_t>(std::clamp(filled, 0, kBarWidth)), '#');
    bar.resize(kBarWidth, ' ');
    std::cerr << "\r[" << bar << "] " << value_ << "/" << total_ << "  " << firstCaption_ << " "
              << counters_[0] << "  失敗数 " << counters_[1] << "  " << secondCaption_ << " "
              << counters_[2] << "\033[K" << std::flush;
    barDrawn_ = true;
}

void TerminalOperator::ClearBar() {
    if (!barDrawn_) return;
    std::cerr << "\r\033[K" << std::flush;
    barDrawn_ = false;
}

}  // namespace orin::cli
