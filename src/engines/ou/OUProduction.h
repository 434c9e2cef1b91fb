#pragma once
// The production engines of the OU kind: add, delete, move and modify, one data row a call
// (the row loop's engine signature), each reporting only by the codes it raises.

#include <cstdint>
#include <string_view>

#include "directory/DirObject.h"
#include "engines/ou/OUCommon.h"

namespace orin {

void AddOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);
void DeleteOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);
void MoveOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);
void ModifyOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns);

// Deletes the OU `ou` at `ouPath` (an OU path) with everything below it, depth first: child OUs
// by recursion, other children one by one, yielding to the operator after each child, then the
// OU itself. False at the first child that can't be deleted, or when the OU itself can't be.
// The bulk import uses it as well.
bool DelOUAndSubObj(DirObject& ou, std::string_view ouPath);

// The OU roll-back of a cancelled run: deletes the OU named by the OU-Start..OU-End cells of a
// CSV line. A failure is not reported.
void DeleteOUOfLine(const Cells& cells, const Columns& columns);

}  // namespace orin
