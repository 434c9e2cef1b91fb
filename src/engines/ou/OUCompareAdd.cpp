// The compare of an OU add, and of an OU export file (the same rules on the export's columns,
// which carry no access control).

#include <string>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/DirObject.h"
#include "engines/ou/OUCompareRules.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUModesAcl.h"
#include "engines/ou/OUModesCommon.h"

namespace orin {

using namespace oumodes;

namespace {

void CompareAddedOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns,
                    bool withAcl) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const bool mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const std::string ouPath = RowOUPath(cells, columns);
        DirObject ou;
        if (!BindOUPath(ouPath, ou)) Raise(1131);

        // A Mirror row only added an ACE.
        if (!mirror) {
            for (const OUProperty& property : kOUProperties) {
                CompareProperty(ou, cells, columns, property, false);
            }
            CompareManagerOfAdd(ou, cells, columns);
            if (withAcl) {
                CompareInheritance(ou, cells, columns, false);
                CompareDefaultAcl(ou, cells, columns);
            }
        }
        if (withAcl) CompareAce(ou, cells, columns);
        RaiseVerdict();
    });
}

}  // namespace

void CompareAddOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    CompareAddedOU(cells, lineNumber, ordinal, columns, true);
}

void CompareExportOU(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns) {
    CompareAddedOU(cells, lineNumber, ordinal, columns, false);
}

}  // namespace orin
