// The imitations of an OU delete and an OU move: the checks of the production runs, with the
// directory left as it is. Nothing is remembered: two rows that delete or move the same OU
// both pass.

#include <string>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/DirObject.h"
#include "directory/Paths.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUModesCommon.h"
#include "platform/Strings.h"

namespace orin {

using namespace oumodes;

namespace {

// A Mirror row of a delete or a move only counts as part of its chain: this ends the row.
void EndMirrorRow() {
    if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
    RaiseVerdict();
}

}  // namespace

void ImitateDeleteOU(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        if (ReadMirror(cells, columns)) return EndMirrorRow();
        const std::string ouPath = RowOUPath(cells, columns);
        DirObject ou;
        if (!BindOUPath(ouPath, ou)) Raise(1134);

        if (ColumnOf(columns, "IfDelSubObj") == -1) Raise(1070);
        const std::string withChildren = ToUpperAscii(Cell(cells, columns, "IfDelSubObj"));
        if (withChildren != "YES" && withChildren != "NO" && !withChildren.empty()) Raise(1031);
        if (withChildren != "YES") {
            // The delete stops at an OU that isn't empty.
            auto children = ou.Children();
            if (children.ok() && !children->empty()) Raise(10050);
        }
        RaiseVerdict();
    });
}

void ImitateMoveOU(const Cells& cells, int32_t lineNumber, int32_t ordinal,
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
        if (!newName.empty() && newName == FirstOUName(ouPath)) Raise(10101);

        // Where the move would be made, the OU must be found at its source.
        if (!OUPathExists(ouPath)) Raise(4002);
        RaiseVerdict();
    });
}

}  // namespace orin
