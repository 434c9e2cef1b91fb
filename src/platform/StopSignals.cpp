#include "platform/StopSignals.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <csignal>
#include <thread>

namespace orin::platform {
namespace {

volatile std::sig_atomic_t gFirstSignal = 0;
int gPipe[2] = {-1, -1};

extern "C" void OnStopSignal(int signo) {
    if (gFirstSignal == 0) {
        gFirstSignal = signo;
        if (gPipe[1] >= 0) {
            const char byte = 1;
            [[maybe_unused]] ssize_t written = write(gPipe[1], &byte, 1);
        }
        return;
    }
    if (signo == SIGINT) {
        std::signal(SIGINT, SIG_DFL);
        std::raise(SIGINT);
    }
}

sigset_t StopSet() {
    sigset_t set;
    sigemptyset(&set);
    for (int signo : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, signo);
    return set;
}

void Catch(int signo) {
    struct sigaction previous {};
    if (sigaction(signo, nullptr, &previous) != 0) return;
    if (signo == SIGHUP && previous.sa_handler == SIG_IGN) return;
    struct sigaction action {};
    action.sa_handler = OnStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(signo, &action, nullptr);
}

}  // namespace

void CatchStopSignals() {
    static bool caught = false;
    if (caught) return;
    caught = true;
    if (pipe2(gPipe, O_CLOEXEC | O_NONBLOCK) != 0) gPipe[0] = gPipe[1] = -1;
    for (int signo : {SIGINT, SIGTERM, SIGHUP}) Catch(signo);
    // The receiving thread does nothing but wait: the handler runs on it.
    std::thread([] {
        const sigset_t stops = StopSet();
        pthread_sigmask(SIG_UNBLOCK, &stops, nullptr);
        for (;;) pause();
    }).detach();
}

void BlockStopSignalsHere() {
    const sigset_t stops = StopSet();
    pthread_sigmask(SIG_BLOCK, &stops, nullptr);
}

int StopSignal() {
    return gFirstSignal;
}

int StopSignalDescriptor() {
    return gPipe[0];
}

}  // namespace orin::platform
