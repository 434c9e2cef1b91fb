#include "engines/RegisterEngines.h"

// Each engine family adds its registration call here, one line each.

namespace orin {

void RegisterAllEngines() {}

}  // namespace orin
