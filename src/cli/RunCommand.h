#pragma once

#include "cli/CliOptions.h"

namespace orin::cli {

// `orin-cli run`: one batch run through its driver, as the main window's button would start it.
// Returns the exit status.
int RunCommand(const RunOptions& options);

}  // namespace orin::cli
