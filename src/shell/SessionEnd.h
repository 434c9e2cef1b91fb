#pragma once
// The end of the session under the program: SIGTERM (a shutdown, a logout), SIGHUP (the
// terminal or the remote session that started it closed) and Ctrl-C in that terminal. The
// signals are caught (platform/StopSignals.h) and handed to the window thread, where the run in
// work is cancelled as the Cancel button cancels it, its summary written, and the program ends
// as the main window's close ends it (Orin.ini is updated).

#include <QObject>

class QSocketNotifier;

namespace orin::shell {

class QtOperator;
class frmTop;

class SessionEnd : public QObject {
    Q_OBJECT
  public:
    // Catches the stop signals from now on and ends `window`'s session at the first of them.
    SessionEnd(frmTop& window, QtOperator& screen);

  private:
    void SignalArrived();

    frmTop& window_;
    QtOperator& screen_;
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace orin::shell
