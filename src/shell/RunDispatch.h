#pragma once
// The one place where the start buttons of the main window meet the batch drivers: the run's
// inputs (gRun.strCsvPath, blnImitate, blnCompare, blnDBMode) are set by the button; this
// chooses the driver of (kind, operation, mode) and calls it.

#include "run/Identifiers.h"

namespace orin::shell {

void DispatchRun(ObjectKind kind, OperationKind op, RunMode mode);

}  // namespace orin::shell
