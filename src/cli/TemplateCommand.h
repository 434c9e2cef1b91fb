#pragma once

#include "cli/CliOptions.h"

namespace orin::cli {

// `orin-cli template`: writes the template of (kind, op), as the template dialog's Create button
// does. Returns the exit status.
int TemplateCommand(const TemplateOptions& options);

}  // namespace orin::cli
