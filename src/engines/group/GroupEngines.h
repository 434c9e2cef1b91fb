#pragma once
// The engines of the group kind, one per RowOperation, each with the row-engine signature of
// run/RowLoop.h and reporting only by the codes it raises.

#include <cstdint>

#include "engines/common/EngineCells.h"

namespace orin {

void AddGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);
void DeleteGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);
void MoveGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);
void ModifyGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);
void ImitateModifyGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns);

void ImitateAddGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns);
void ImitateDeleteGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns);
void ImitateMoveGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                      const Columns& columns);

void CompareAddGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns);
void CompareDeleteGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns);
void CompareMoveGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                      const Columns& columns);
void CompareModifyGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns);
// The compare of an export file: the compare of an add on the export's columns.
void CompareExportGroup(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                        const Columns& columns);

}  // namespace orin
