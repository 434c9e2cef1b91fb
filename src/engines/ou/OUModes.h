#pragma once
// The OU engines of the imitation and comparison runs (RowOperation 4 to 12).
//
// An imitate engine runs the checks of its production twin in the same order and raises the
// same codes, but writes nothing; the ledgers (engines/Ledgers.h) remember what the earlier rows
// of the run would have done. A compare engine reads the directory after a production run and
// raises a difference (20000-59999) for every place where it departs from the row, going on
// with the next check after each.
//
// All have the row-engine signature of run/RowLoop.h.

#include <cstdint>
#include <string>
#include <vector>

namespace orin {

using OUCells = std::vector<std::string>;
using OUColumns = std::vector<int16_t>;

void ImitateAddOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                  const OUColumns& columns);
void ImitateDeleteOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                     const OUColumns& columns);
void ImitateMoveOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                   const OUColumns& columns);
void ImitateModifyOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                     const OUColumns& columns);

void CompareAddOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                  const OUColumns& columns);
void CompareDeleteOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                     const OUColumns& columns);
void CompareMoveOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                   const OUColumns& columns);
void CompareModifyOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                     const OUColumns& columns);
// The compare of an export file: the compare of an add on the export's columns, without ACL.
void CompareExportOU(const OUCells& cells, int32_t lineNumber, int32_t ordinal,
                     const OUColumns& columns);

}  // namespace orin
