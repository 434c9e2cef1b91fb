#pragma once
// The operator, as a run sees it: message boxes, the progress window (frmProgress) and the
// yield at which Cancel arrives. The Qt shell, the command line and the tests each implement it.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "base/Identifiers.h"

namespace orin {

enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgButtons { Ok, YesNo };
enum class MsgAnswer { Ok, Yes, No };

// The domain fields of one operation tab of the main window (txtDomainDNS_<op>,
// txtDomainNetBIOS_<op>), as typed.
struct DomainFields {
    std::string dns;
    std::string netbios;
};

class Operator {
  public:
    virtual ~Operator() = default;

    // What GetRunInputs reads from the main window for the tab of `op`.
    virtual DomainFields MainWindowDomainFields(OperationKind op) = 0;

    // A modal message box. The text may hold "\r" (a carriage return) between its sentences.
    virtual MsgAnswer MessageBox(std::string_view title, std::string_view text, MsgIcon icon,
                                 MsgButtons buttons) = 0;
    // A message box whose fixed text comes with the reason behind it (a server's own words):
    // the window keeps it under "詳細", the command line prints it as a line of its own. A front
    // end with no place for it shows the box alone.
    virtual MsgAnswer DetailedMessageBox(std::string_view title, std::string_view text,
                                         std::string_view /*detail*/, MsgIcon icon,
                                         MsgButtons buttons) {
        return MessageBox(title, text, icon, buttons);
    }

    // frmProgress: window caption; Label1 (status text, red after a cancel); Label3 and Label9
    // (captions of the two counters); Label5 (total, also the bar's maximum); Label6, Label7,
    // Label8 (counter values); ProgressBar1's value; Command1's caption ("ｷｬﾝｾﾙ" or "OK").
    virtual void SetProgressTitle(std::string_view caption) = 0;
    virtual void SetStatus(std::string_view text, bool red) = 0;
    virtual void SetCounterCaptions(std::string_view first, std::string_view second) = 0;
    virtual void SetTotal(int32_t total) = 0;
    virtual void SetCounters(int32_t label6, int32_t label7, int32_t label8) = 0;
    virtual void SetProgressValue(int32_t value) = 0;
    virtual void SetCommandCaption(std::string_view caption) = 0;

    // Lets the window system deliver pending events; a Cancel press sets gRun.intCancel to 1.
    virtual void Yield() = 0;

    // How long a window waits, yielding, before work takes the thread, so that it paints
    // first (the progress window before its run, the wait window before the binds). A front
    // end without windows has nothing to paint and answers 0.
    virtual double PaintWaitSeconds() const { return 1.0; }

    // Shows the event log to the operator, without waiting (Notepad on Windows).
    virtual void OpenEventLog(const std::filesystem::path& path) = 0;

    // The modal windows a driver opens. Each returns when its window has closed.
    //
    // frmLogin: lets the operator edit the connection fields of gSession (names, method, DC,
    // user, password, NeverShowAgain); Cancel sets gSession.LoginCancelled (and clears
    // Connected and LoginFromMenu).
    virtual void ShowLogin() = 0;
    // frmWait in its connection role: runs `connect` (ConnectLocal or ConnectRemote) while the
    // window shows; it has no Cancel.
    virtual void ShowConnectWait(const std::function<void()>& connect) = 0;
    // frmWait in its collecting role ahead of an export: runs `collect` while the window shows
    // with the run's title; its Cancel sets gRun.blnWaitCancelled, which `collect` polls.
    virtual void ShowCollectWait(std::string_view title, const std::function<void()>& collect) = 0;
    // frmProgress: shows the progress window and runs `run` (the window's load and activation:
    // captions, the one-second wait, the Start method). Returns when the operator has closed
    // the window with "OK" (a front end without a window returns when `run` is done).
    virtual void ShowProgress(const std::function<void()>& run) = 0;
    // Closes frmProgress from within its run, without waiting for "OK": an export whose file
    // can't be written ends so. ShowProgress returns once `run` is done.
    virtual void HideProgress() {}
};

// The operator of this process. The shell, the command line or a test installs it before a run.
Operator& TheOperator();
void SetOperator(Operator* op);

}  // namespace orin
