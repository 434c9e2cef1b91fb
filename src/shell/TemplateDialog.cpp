#include "shell/TemplateDialog.h"

#include <QWidget>

#if __has_include("shell/frmCreateTemplate.h")
#include "shell/frmCreateTemplate.h"
#define ORIN_HAS_TEMPLATE_DIALOG 1
#else
#define ORIN_HAS_TEMPLATE_DIALOG 0
#endif

namespace orin::shell {

bool TemplateDialogAvailable() {
    return ORIN_HAS_TEMPLATE_DIALOG != 0;
}

void ShowTemplateDialog(QWidget* owner, ObjectKind kind, OperationKind op) {
#if ORIN_HAS_TEMPLATE_DIALOG
    frmCreateTemplate dialog(owner, kind, op);
    dialog.move(owner->frameGeometry().topLeft());
    dialog.exec();
#else
    (void)owner;
    (void)kind;
    (void)op;
#endif
}

}  // namespace orin::shell
