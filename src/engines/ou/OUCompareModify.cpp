// The compare of an OU modify. "!C" expects a cleared property, an empty cell isn't compared,
// and an OU renamed by its row is looked for under its new name. The renames found go into the
// rename ledger, so that the later rows of the run, which name the OU and the containers below
// it by their old names, find them where they are now.

#include <string>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/DirObject.h"
#include "directory/Paths.h"
#include "engines/Ledgers.h"
#include "engines/ou/OUCompareRules.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUModesAcl.h"
#include "engines/ou/OUModesCommon.h"

namespace orin {

using namespace oumodes;

namespace {

void EnterRename(int32_t lineNumber, const std::string& newPath, const std::string& oldPath) {
    RenameLedger.Set(0, RenameCount, std::to_string(lineNumber));
    RenameLedger.Set(1, RenameCount, newPath);
    RenameLedger.Set(2, RenameCount, oldPath);
    ++RenameCount;
}

// Binds the OU of the row: under the new name when the row gives one (then under the old name,
// 1130 when neither is there), otherwise where it stands (1131).
DirObject FindOU(const std::string& ouPath, const std::string& newName, int32_t lineNumber) {
    DirObject ou;
    if (newName.empty() || IsClearMarker(newName)) {
        if (!BindOUPath(ouPath, ou)) Raise(1131);
        return ou;
    }
    const std::string parent = ParentOUPath(ouPath);
    const std::string newPath = "OU=" + newName + (parent.empty() ? std::string() : "," + parent);
    if (BindOUPath(newPath, ou)) {
        if (!PathsEqual(newPath, ouPath)) EnterRename(lineNumber, newPath, ouPath);
    } else if (!BindOUPath(ouPath, ou)) {
        Raise(1130);
    }
    return ou;
}

}  // namespace

void CompareModifyOU(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns) {
    if (ordinal == 1) ResetLedgers(ObjectKind::OU, gRun.lngDataRowCnt);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const bool mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const std::string ouPath = PathAfterRenames(RowOUPath(cells, columns));
        // The new name is the chain's first row's; a Mirror row finds the OU through the ledger.
        const std::string newName = mirror ? std::string() : Cell(cells, columns, "NewRDN");
        DirObject ou = FindOU(ouPath, newName, lineNumber);

        if (!mirror) {
            for (const OUProperty& property : kOUProperties) {
                CompareProperty(ou, cells, columns, property, true);
            }
            CompareManagerOfModify(ou, cells, columns);
            if (IsClearMarker(newName)) Raise(3030);
            CompareInheritance(ou, cells, columns, true);
            CompareDefaultAcl(ou, cells, columns);
        }
        CompareAce(ou, cells, columns);
        RaiseVerdict();
    });
}

}  // namespace orin
