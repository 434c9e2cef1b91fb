#pragma once
// Ctrl-C, SIGTERM and SIGHUP on the command line (platform/StopSignals.h). The first of them is
// handed to the run at its next yield, where it counts as the Cancel button; a question not yet
// answered is answered No. A second Ctrl-C ends the process at once, for a directory call that
// doesn't come back.

namespace orin::cli {

void InstallInterruptHandler();

// True once, at the first call after a stop signal has come.
bool TakeInterrupt();

// The stop signal that came (SIGINT, SIGTERM or SIGHUP), 0 while none has.
int InterruptSignal();

}  // namespace orin::cli
