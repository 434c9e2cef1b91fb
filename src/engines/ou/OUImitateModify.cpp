// The imitation of an OU modify. Properties are neither written nor checked; what is checked is
// where the OU, its parent and its manager stand, taking into account the renames that earlier
// rows of the run would have made (the rename ledger), the access-control cells, and the new
// name at the end of the chain.

#include <string>

#include "base/MirrorChain.h"
#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirObject.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/Ledgers.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUModesAcl.h"
#include "engines/ou/OUModesCommon.h"
#include "platform/Strings.h"

namespace orin {

using namespace oumodes;

namespace {

// The NewRDN of the chain's first row, kept until the chain's last row renames the OU.
std::string PendingNewName;

void RaiseWithLine(int32_t code, int32_t entry) {
    gRun.MsgArg1 = RenameLedger.Get(0, entry);
    Raise(code);
}

// The manager's container as it will stand when this row runs: a path that holds an OU renamed
// away above can't be found any more (1120); a path written with new names is looked for under
// the old ones (1121 when it isn't there either).
std::string ManagerContainer(const Cells& cells, const Columns& columns) {
    const std::string path = SpanPath(cells, columns, "MgrOU-Start", "MgrOU-End");
    if (path.empty()) return gSession.DomainDN;
    const int32_t renamed = FindRenamedPath(path, RenameLedger, 2);
    if (renamed >= 0) RaiseWithLine(1120, renamed);
    if (OUPathExists(path)) return FullDn(path);

    bool withNewNames = false;
    const std::string before = PathBeforeRenames(path, &withNewNames);
    if (withNewNames) {
        if (!OUPathExists(before)) Raise(1121);
        return FullDn(before);
    }
    auto container = DefaultContainerOf(cells, columns, "MgrOU-Start", "MgrOU-End");
    if (!container) Raise(2020);
    return *container;
}

void CheckManager(const Cells& cells, const Columns& columns) {
    const std::string manager = Cell(cells, columns, "MgrRDN");
    if (manager.empty() || IsClearMarker(manager)) return;
    CheckSpan(columns, "MgrOU-Start", "MgrOU-End", 1005, 1006);
    const std::string container = ManagerContainer(cells, columns);
    DirObject object;
    if (!BindObject("LDAP://CN=" + manager + "," + container, object)) Raise(1122);
    if (object.Class() != "user") Raise(1123);
}

// The rename at the chain's end: the new name must be free, also of what earlier rows renamed
// to it, and the parent must be there. The rename goes into the ledger.
void ImitateRename(const std::string& ouPath, int32_t lineNumber) {
    const std::string parent = ParentOUPath(ouPath);
    const std::string suffix = parent.empty() ? std::string() : "," + parent;
    const std::string parentNow = PathBeforeRenames(parent);
    const std::string suffixNow = parent.empty() ? std::string() : "," + parentNow;

    if (OUPathExists("CN=" + PendingNewName + suffixNow)) Raise(2060);
    if (!parent.empty() && !OUPathExists(parentNow)) Raise(3012);

    const std::string newPath = "OU=" + PendingNewName + suffix;
    const int32_t taken = FindLedgerEntry(RenameLedger, 1, newPath, RenameCount);
    if (taken >= 0) RaiseWithLine(2006, taken);
    const bool freed = FindLedgerEntry(RenameLedger, 2, newPath, RenameCount) >= 0;
    if (!freed && OUPathExists("OU=" + PendingNewName + suffixNow)) Raise(2060);

    RenameLedger.Set(0, RenameCount, std::to_string(lineNumber));
    RenameLedger.Set(1, RenameCount, newPath);
    RenameLedger.Set(2, RenameCount, ouPath);
    ++RenameCount;
}

}  // namespace

void ImitateModifyOU(const Cells& cells, int32_t lineNumber, int32_t ordinal,
                     const Columns& columns) {
    if (ordinal == 1) {
        ResetLedgers(ObjectKind::OU, gRun.lngDataRowCnt);
        PendingNewName.clear();
    }
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const bool mirror = ReadMirror(cells, columns);
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        const std::string ouPath = RowOUPath(cells, columns);

        // The OU: named by an earlier rename, or in the directory (under the old names of OUs
        // above it that earlier rows renamed).
        DirObject ou;
        const bool renamedHere = FindLedgerEntry(RenameLedger, 1, ouPath, RenameCount) >= 0;
        const std::string pathNow = PathBeforeRenames(ouPath);
        if (!BindOUPath(pathNow, ou) && !renamedHere) Raise(1134);

        const std::string parent = ParentOUPath(ouPath);
        if (!parent.empty()) {
            const int32_t renamed = FindRenamedPath(parent, RenameLedger, 2);
            if (renamed >= 0) RaiseWithLine(2007, renamed);
        }

        if (!mirror) {
            PendingNewName = Cell(cells, columns, "NewRDN");
            if (IsClearMarker(PendingNewName)) Raise(3030);
            CheckManager(cells, columns);
            CheckInheritanceCells(cells, columns);
        }
        ImitateAceChecks(cells, columns, ou.IsBound() ? &ou : nullptr);

        if (ChainEnds(ordinal) && !PendingNewName.empty()) ImitateRename(ouPath, lineNumber);
        RaiseVerdict();
    });
}

}  // namespace orin
