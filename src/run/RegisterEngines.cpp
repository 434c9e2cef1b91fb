#include "run/RegisterEngines.h"

#include "engines/group/GroupEngines.h"
#include "engines/group/GroupFastPath.h"
#include "engines/ou/OUFastPath.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUProduction.h"
#include "export/ExportOU.h"
#include "run/DriversExportHooks.h"
#include "run/RowLoop.h"

namespace orin {
namespace {

// The slots of one kind, by RowOperation: production 0-3, imitation 4-7, compare 8-11 and the
// compare of an export file, 12. A kind leaves a slot empty where it has no such engine.
void FillSlots(ObjectKind kind, std::initializer_list<RowEngine> engines) {
    RowOperation op = 0;
    for (const RowEngine& engine : engines) SetRowEngine(kind, op++, engine);
}

}  // namespace

void RegisterAllEngines() {
    FillSlots(ObjectKind::OU,
              {AddOU, DeleteOU, MoveOU, ModifyOU,                              // production
               ImitateAddOU, ImitateDeleteOU, ImitateMoveOU, ImitateModifyOU,  // imitation
               CompareAddOU, CompareDeleteOU, CompareMoveOU, CompareModifyOU,  // compare
               CompareExportOU});
    FillSlots(
        ObjectKind::Group,
        {AddGroup, DeleteGroup, MoveGroup, ModifyGroup,                              // production
         ImitateAddGroup, ImitateDeleteGroup, ImitateMoveGroup, ImitateModifyGroup,  // imitation
         CompareAddGroup, CompareDeleteGroup, CompareMoveGroup, CompareModifyGroup,  // compare
         CompareExportGroup});
    SetCancelledOURollBack(DeleteOUOfLine);
    SetExportRoutines(ObjectKind::OU, {GetExpInfo_OU, ExportOUOfDomain});
}

void UseFastPaths(bool enabled) {
    SetOUFastPath(enabled);
    SetGroupFastPath(enabled);
}

}  // namespace orin
