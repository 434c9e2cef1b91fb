#pragma once
// The operator of the command line. Message boxes go to stderr as "title: text", with a box's
// detail as a line of its own; questions are answered Yes with --yes, asked on the terminal
// otherwise, and answered No when there is no terminal to ask or a stop signal has come. The
// progress window is a bar on stderr when stderr is a terminal; Ctrl-C, SIGTERM and SIGHUP are
// its Cancel button. The login dialog has nothing to ask: the values come from the options and
// Orin.ini, and a login that failed once is not offered again.

#include <cstdint>
#include <functional>
#include <string>

#include "base/Operator.h"

namespace orin::cli {

class TerminalOperator : public Operator {
  public:
    // `password` is asked for the remote method's password the first time the login needs it.
    TerminalOperator(bool assumeYes, std::function<std::string()> password);
    ~TerminalOperator() override;
    TerminalOperator(const TerminalOperator&) = delete;
    TerminalOperator& operator=(const TerminalOperator&) = delete;

    // A connection was attempted and did not succeed.
    bool ConnectionFailed() const { return connectFailed_; }

    DomainFields MainWindowDomainFields(OperationKind op) override;
    MsgAnswer MessageBox(std::string_view title, std::string_view text, MsgIcon icon,
                         MsgButtons buttons) override;
    MsgAnswer DetailedMessageBox(std::string_view title, std::string_view text,
                                 std::string_view detail, MsgIcon icon,
                                 MsgButtons buttons) override;
    void SetProgressTitle(std::string_view caption) override;
    void SetStatus(std::string_view text, bool red) override;
    void SetCounterCaptions(std::string_view first, std::string_view second) override;
    void SetTotal(int32_t total) override;
    void SetCounters(int32_t label6, int32_t label7, int32_t label8) override;
    void SetProgressValue(int32_t value) override;
    void SetCommandCaption(std::string_view caption) override;
    void Yield() override;
    // No window to paint: the runs start at once.
    double PaintWaitSeconds() const override { return 0; }
    void OpenEventLog(const std::filesystem::path& path) override;
    void ShowLogin() override;
    void ShowConnectWait(const std::function<void()>& connect) override;
    void ShowCollectWait(std::string_view title, const std::function<void()>& collect) override;
    void ShowProgress(const std::function<void()>& run) override;

  private:
    void DrawBar();
    void ClearBar();
    bool CheckLogin();

    bool assumeYes_;
    std::function<std::string()> password_;
    bool stdinTerminal_;
    bool stderrTerminal_;
    Operator* previous_;

    bool loginShown_ = false;
    bool passwordTaken_ = false;
    bool connectFailed_ = false;
    bool collecting_ = false;
    bool progressShown_ = false;
    bool barDrawn_ = false;

    std::string firstCaption_ = "成功数";
    std::string secondCaption_ = "警告数";
    int32_t total_ = 0;
    int32_t value_ = 0;
    int32_t counters_[3] = {0, 0, 0};
};

}  // namespace orin::cli
