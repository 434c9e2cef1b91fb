#pragma once
// Where a row stands in its object's chain of Mirror rows, read from gRun.MirrorFlags ("Y", "N"
// or "?" per ordinal, filled by ReadMirrorFlags before the run) and gRun.lngDataRowCnt.

#include <cstdint>

namespace orin {

// The row ends its object: it is the last data row, or the next row is "N" or "?".
bool IsObjectEnd(int32_t ordinal);
// The row is the last of a chain for the modify engines: the last data row, or the next row is
// "N" and this one "Y" or "N". A "?" on either side gives false.
bool IsLastMirrorRow(int32_t ordinal);
// The chain ends here: the last data row, or this row is "N" or "Y" and the next one "N".
bool ChainEnds(int32_t ordinal);

}  // namespace orin
