#pragma once
// Ctrl-C on the command line. The first press is remembered and handed to the run at its next
// yield, where it counts as the Cancel button; a second press ends the process at once, for a
// directory call that doesn't come back.

namespace orin::cli {

void InstallInterruptHandler();

// True once for each press that hasn't been taken yet.
bool TakeInterrupt();

}  // namespace orin::cli
