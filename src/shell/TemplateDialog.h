#pragma once
// Opening the template dialog (frmCreateTemplate) for a (kind, operation) of the main window.

#include "run/Identifiers.h"

class QWidget;

namespace orin::shell {

// False while the program has no template dialog.
bool TemplateDialogAvailable();

// Shows frmCreateTemplate modally at the top left corner of `owner`.
void ShowTemplateDialog(QWidget* owner, ObjectKind kind, OperationKind op);

}  // namespace orin::shell
