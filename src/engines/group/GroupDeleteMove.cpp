// Group delete and move, in the three modes: the delete and move family with the group's class
// word and codes. A refused delete of a group that still stands counts as done.

#include "engines/common/DeleteMoveFamily.h"
#include "engines/group/GroupEngines.h"

namespace orin {
namespace {

const DeleteMoveFamily kGroupFamily{
    ObjectKind::Group,       "group",
    /*notThatClass=*/3068,
    /*deleteRefused=*/0,
    /*moveFailed=*/3080,
    /*nameUnchanged=*/10100, &DeleteLedger, &MoveLedger, &ChangeCount};

}  // namespace

void DeleteGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    DeleteOfFamily(kGroupFamily, cells, lineNumber, ordinal, columns);
}

void MoveGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    MoveOfFamily(kGroupFamily, cells, lineNumber, ordinal, columns);
}

void ImitateDeleteGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns) {
    ImitateDeleteOfFamily(kGroupFamily, cells, lineNumber, ordinal, columns);
}

void ImitateMoveGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                      const Columns& columns) {
    ImitateMoveOfFamily(kGroupFamily, cells, lineNumber, ordinal, columns);
}

void CompareDeleteGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns) {
    CompareDeleteOfFamily(kGroupFamily, cells, lineNumber, ordinal, columns);
}

void CompareMoveGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                      const Columns& columns) {
    CompareMoveOfFamily(kGroupFamily, cells, lineNumber, ordinal, columns);
}

}  // namespace orin
