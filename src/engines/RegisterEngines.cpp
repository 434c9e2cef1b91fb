#include "engines/RegisterEngines.h"

#include "engines/ou/OUModes.h"
#include "engines/ou/OUProduction.h"
#include "export/ExportOU.h"

// Each engine family adds its registration call here, one line each.

namespace orin {

void RegisterAllEngines() {
    RegisterOUProductionEngines();
    RegisterOUModeEngines();
    RegisterOUExport();
}

}  // namespace orin
