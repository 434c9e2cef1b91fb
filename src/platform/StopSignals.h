#pragma once
// The signals that ask a process to stop: Ctrl-C (SIGINT), SIGTERM (a scheduler, systemctl
// stop, a shutdown) and SIGHUP (the terminal or the SSH session closed). Caught, they don't end
// the process: the first one is remembered, and the front end turns it into the Cancel button
// of the run in work, so that the row in work ends as a cancel ends it and the summary is
// written. A later Ctrl-C ends the process at once (a directory call that doesn't come back);
// a later SIGTERM or SIGHUP changes nothing, since the stop is under way.
//
// A signal must never cut a directory request short: the server would do what the program then
// takes for a failure. The threads that make requests keep the signals away from themselves
// (BlockStopSignalsHere); a thread of their own receives them.

namespace orin::platform {

// Catches SIGINT, SIGTERM and SIGHUP (SIGHUP unless the process was started with it ignored, as
// nohup starts it) and starts the thread that receives them. Calls after the first do nothing.
void CatchStopSignals();

// Keeps the stop signals away from the calling thread and from the threads it starts later.
void BlockStopSignalsHere();

// The first stop signal caught (SIGINT, SIGTERM or SIGHUP); 0 while none has come.
int StopSignal();

// A descriptor that turns readable once a stop signal has come, for an event loop to watch;
// -1 before CatchStopSignals.
int StopSignalDescriptor();

}  // namespace orin::platform
