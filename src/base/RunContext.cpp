#include "base/RunContext.h"

#include <chrono>

namespace orin {

RunContext gRun;

double RunTimer() {
    using namespace std::chrono;
    static const auto origin = steady_clock::now();
    return duration<double>(steady_clock::now() - origin).count();
}

}  // namespace orin
