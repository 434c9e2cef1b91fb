#include "shell/SessionEnd.h"

#include <QSocketNotifier>

#include "base/Trace.h"
#include "platform/StopSignals.h"
#include "shell/QtOperator.h"
#include "shell/frmTop.h"

namespace orin::shell {

SessionEnd::SessionEnd(frmTop& window, QtOperator& screen)
    : QObject(&window), window_(window), screen_(screen) {
    platform::CatchStopSignals();
    const int descriptor = platform::StopSignalDescriptor();
    if (descriptor < 0) return;
    notifier_ = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &SessionEnd::SignalArrived);
}

void SessionEnd::SignalArrived() {
    // One signal ends the session; the descriptor stays readable, so it is watched no more.
    notifier_->setEnabled(false);
    WriteTrace(TraceMode, true, kTraceSub, "SessionEnd",
               "signal = " + std::to_string(platform::StopSignal()));
    screen_.EndSession();
    window_.EndSession();
}

}  // namespace orin::shell
