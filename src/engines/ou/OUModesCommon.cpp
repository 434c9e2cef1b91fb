#include "engines/ou/OUModesCommon.h"

#include "base/Outcome.h"

namespace orin::oumodes {

std::string RowOUPath(const Cells& cells, const Columns& columns) {
    CheckSpan(columns, "OU-Start", "OU-End", 1000, 1001);
    std::string path = SpanPath(cells, columns, "OU-Start", "OU-End");
    if (path.empty()) Raise(2100);
    return path;
}

}  // namespace orin::oumodes
