#include "cli/Interrupt.h"

#include <signal.h>

#include <csignal>

namespace orin::cli {
namespace {

volatile std::sig_atomic_t gPresses = 0;
volatile std::sig_atomic_t gTaken = 0;

extern "C" void OnInterrupt(int) {
    if (gPresses > 0) {
        std::signal(SIGINT, SIG_DFL);
        std::raise(SIGINT);
        return;
    }
    gPresses = 1;
}

}  // namespace

void InstallInterruptHandler() {
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;  // directory calls and prompts go on after the first press
    sigaction(SIGINT, &action, nullptr);
}

bool TakeInterrupt() {
    if (gPresses == 0 || gTaken != 0) return false;
    gTaken = 1;
    return true;
}

}  // namespace orin::cli
