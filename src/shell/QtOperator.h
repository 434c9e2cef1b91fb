#pragma once
// The operator of the desktop program. Message boxes are Qt message boxes with the run's
// titles and icons; a run works on a worker thread while frmProgress (or frmWait) stays
// responsive, so the window repaints and Cancel is taken at once even while a directory call
// blocks. Cancel still acts only where the row loop looks at gRun.intCancel.
//
// Calls from the worker thread are carried over to the window thread: progress setters are
// posted (they never hold the run up), while a message box, the login dialog or a question
// about the main window blocks the worker until the operator has answered.

#include <QObject>
#include <QPointer>
#include <atomic>
#include <filesystem>
#include <functional>

#include "base/Operator.h"

class QWidget;

namespace orin::shell {

class frmProgress;
class frmTop;
class frmWait;

class QtOperator final : public QObject, public Operator {
    Q_OBJECT
  public:
    // Installs itself as the process's operator; the previous one comes back when it goes.
    // `mainWindow` may be null (then the domain fields read as empty, and the dialogs have no
    // owner).
    explicit QtOperator(frmTop* mainWindow = nullptr);
    ~QtOperator() override;

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
    void OpenEventLog(const std::filesystem::path& path) override;
    void ShowLogin() override;
    void ShowConnectWait(const std::function<void()>& connect) override;
    void ShowCollectWait(std::string_view title, const std::function<void()>& collect) override;
    void ShowProgress(const std::function<void()>& run) override;
    void HideProgress() override;

    // The session ends under the program (SIGTERM, SIGHUP, Ctrl-C): the run in work stops at
    // its next yield as Cancel stops it and writes its summary. From now on nobody answers: a
    // question is answered No and a message goes to the trace, the login dialog counts as
    // cancelled, and the progress window closes by itself once its run has ended.
    void EndSession();
    bool SessionEnding() const { return ending_; }

    // The progress window of the run in hand, or null between runs.
    frmProgress* progressWindow() const { return progress_; }
    frmWait* waitWindow() const { return wait_; }

  private:
    bool OnWindowThread() const;
    // Runs `work` on the window thread and waits for it.
    void OnWindowThreadAndWait(const std::function<void()>& work);
    // Runs `change` on the progress window when there is one, without waiting.
    void PostToProgress(std::function<void(frmProgress&)> change);
    // The window a dialog or box opens over: the modal window in front, else the main window.
    QWidget* Owner() const;
    void ShowWait(int role, std::string_view title, const std::function<void()>& work);

    QPointer<frmTop> main_;
    frmProgress* progress_ = nullptr;
    frmWait* wait_ = nullptr;
    Operator* previous_;
    double lastYield_ = 0;
    std::atomic<bool> ending_{false};
};

// Runs `work` on a thread of its own while this (the window) thread keeps serving events, and
// returns when it is done. An exception the work throws is thrown again here.
void RunOffWindowThread(const std::function<void()>& work);

}  // namespace orin::shell
