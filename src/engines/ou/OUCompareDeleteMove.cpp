// The compares of an OU delete (the OU is gone) and of an OU move (the OU stands at its target).

#include <string>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Paths.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUModesCommon.h"
#include "platform/Strings.h"

namespace orin {

using namespace oumodes;

namespace {

// A Mirror row of a delete or a move did nothing in production: it only ends its chain.
void EndMirrorRow() {
    if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
    RaiseVerdict();
}

}  // namespace

void CompareDeleteOU(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        if (ReadMirror(cells, columns)) return EndMirrorRow();
        const std::string ouPath = RowOUPath(cells, columns);

        if (ColumnOf(columns, "IfDelSubObj") == -1) Raise(1070);
        const std::string withChildren = ToUpperAscii(Cell(cells, columns, "IfDelSubObj"));
        if (withChildren != "YES" && withChildren != "NO" && !withChildren.empty()) Raise(1031);
        // Without the flag the OU may rightly have stayed, when it wasn't empty.
        if (withChildren == "YES" && OUPathExists(ouPath)) Raise(20306);
        RaiseVerdict();
    });
}

void CompareMoveOU(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                   const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        if (ReadMirror(cells, columns)) return EndMirrorRow();
        const std::string ouPath = RowOUPath(cells, columns);
        const std::string parent = ParentOUPath(ouPath);

        CheckSpan(columns, "NewOU-Start", "NewOU-End", 1060, 1061);
        const std::string target = SpanPath(cells, columns, "NewOU-Start", "NewOU-End");
        if (target == parent) Raise(4000);
        if (!target.empty() && !OUPathExists(target)) Raise(4001);

        const std::string newName = Cell(cells, columns, "NewRDN");
        const std::string name = newName.empty() ? FirstOUName(ouPath) : newName;
        const std::string movedPath =
            "OU=" + name + (target.empty() ? std::string() : "," + target);

        const bool atSource = OUPathExists(ouPath);
        const bool atTarget = OUPathExists(movedPath);
        if (atSource) {
            Raise(20400);
        } else if (!atTarget) {
            Raise(20401);
        }
        RaiseVerdict();
    });
}

}  // namespace orin
