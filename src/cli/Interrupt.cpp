#include "cli/Interrupt.h"

#include "platform/StopSignals.h"

namespace orin::cli {
namespace {

bool gTaken = false;

}  // namespace

void InstallInterruptHandler() {
    platform::CatchStopSignals();
    // The runs make their directory requests on this thread.
    platform::BlockStopSignalsHere();
}

bool TakeInterrupt() {
    if (platform::StopSignal() == 0 || gTaken) return false;
    gTaken = true;
    return true;
}

int InterruptSignal() {
    return platform::StopSignal();
}

}  // namespace orin::cli
