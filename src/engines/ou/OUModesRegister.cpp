#include "engines/ou/OUModes.h"
#include "run/RowLoop.h"

namespace orin {

void RegisterOUModeEngines() {
    SetRowEngine(ObjectKind::OU, 4, ImitateAddOU);
    SetRowEngine(ObjectKind::OU, 5, ImitateDeleteOU);
    SetRowEngine(ObjectKind::OU, 6, ImitateMoveOU);
    SetRowEngine(ObjectKind::OU, 7, ImitateModifyOU);
    SetRowEngine(ObjectKind::OU, 8, CompareAddOU);
    SetRowEngine(ObjectKind::OU, 9, CompareDeleteOU);
    SetRowEngine(ObjectKind::OU, 10, CompareMoveOU);
    SetRowEngine(ObjectKind::OU, 11, CompareModifyOU);
    SetRowEngine(ObjectKind::OU, kCompareOfExport, CompareExportOU);
}

}  // namespace orin
