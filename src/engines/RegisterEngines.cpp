#include "engines/RegisterEngines.h"

#include "engines/ou/OUModes.h"
#include "export/ExportOU.h"

// Each engine family adds its registration call here, one line each.

namespace orin {

void RegisterAllEngines() {
    RegisterOUModeEngines();
    RegisterOUExport();
}

}  // namespace orin
