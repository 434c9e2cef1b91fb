#pragma once
// The operator of a test: answers message boxes from a script and records everything the run
// showed, so that tests can assert on boxes, captions and counters.

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "base/Operator.h"

namespace orin::test {

struct ShownBox {
    std::string title;
    std::string text;
    MsgIcon icon;
    MsgButtons buttons;
    MsgAnswer answer;
    std::string detail = {};  // what a detailed box keeps behind its text
};

class ScriptedOperator : public Operator {
  public:
    // Installs itself as the process's operator; restores the previous one when destroyed.
    ScriptedOperator();
    ~ScriptedOperator() override;

    // Answers for the next Yes/No boxes, in order. When the script runs out, Yes/No boxes are
    // answered with `defaultAnswer` (No unless changed). Ok boxes are always answered Ok.
    void QueueAnswers(std::initializer_list<MsgAnswer> answers);
    MsgAnswer defaultAnswer = MsgAnswer::No;

    // Called at every Yield with the number of yields so far (from 1); a test uses it to press
    // Cancel at a chosen moment, by setting gRun.intCancel.
    std::function<void(int)> onYield;

    // What the main window's domain fields hold, for every operation tab.
    DomainFields domainFields;

    // Called by ShowLogin: a test fills gSession here, or sets gSession.LoginCancelled.
    std::function<void()> onLogin;
    int logins = 0;
    int connectWaits = 0;
    int collectWaits = 0;
    int progressWindows = 0;

    // What the run showed.
    std::vector<ShownBox> boxes;
    std::string progressTitle;
    std::string status;
    bool statusRed = false;
    std::string counterCaption1, counterCaption2;
    int32_t total = 0;
    int32_t label6 = 0, label7 = 0, label8 = 0;
    int32_t progressValue = 0;
    std::vector<int32_t> progressValues;  // every value set, in order
    std::string commandCaption;
    int yields = 0;
    std::vector<std::string> openedLogs;

    DomainFields MainWindowDomainFields(OperationKind) override { return domainFields; }
    MsgAnswer MessageBox(std::string_view title, std::string_view text, MsgIcon icon,
                         MsgButtons buttons) override;
    MsgAnswer DetailedMessageBox(std::string_view title, std::string_view text,
                                 std::string_view detail, MsgIcon icon,
                                 MsgButtons buttons) override;
    void SetProgressTitle(std::string_view caption) override;
    void SetStatus(std::string_view text, bool red) override;
    void SetCounterCaptions(std::string_view first, std::string_view second) override;
    void SetTotal(int32_t value) override;
    void SetCounters(int32_t a, int32_t b, int32_t c) override;
    void SetProgressValue(int32_t value) override;
    void SetCommandCaption(std::string_view caption) override;
    void Yield() override;
    void OpenEventLog(const std::filesystem::path& path) override;
    void ShowLogin() override;
    void ShowConnectWait(const std::function<void()>& connect) override;
    void ShowCollectWait(std::string_view title, const std::function<void()>& collect) override;
    void ShowProgress(const std::function<void()>& run) override;

  private:
    std::deque<MsgAnswer> answers_;
    Operator* previous_;
};

}  // namespace orin::test
