// The imitation of an OU add: the checks of the add, with the add ledger standing in for the
// OUs that earlier rows of the run would have made.

#include <string>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/DirObject.h"
#include "directory/Paths.h"
#include "engines/Ledgers.h"
#include "engines/ou/OUCommon.h"
#include "engines/ou/OUModes.h"
#include "engines/ou/OUModesAcl.h"
#include "engines/ou/OUModesCommon.h"
#include "platform/Strings.h"

namespace orin {

using namespace oumodes;

namespace {

// The manager must exist and be a user, found as the add finds it; nothing is written.
void CheckManager(const Cells& cells, const Columns& columns) {
    const std::string manager = Cell(cells, columns, "MgrRDN");
    if (manager.empty()) return;
    const ManagerLookup found = LookUpManager(cells, ColumnOf(columns, "MgrOU-Start"),
                                              ColumnOf(columns, "MgrOU-End"), manager);
    if (found.failure != 0) Raise(found.failure);
}

// Where the OU would stand: not in the directory yet, not added by an earlier row, and under a
// parent that exists or that an earlier row adds. Enters the row in the add ledger.
void CheckPlaceAndEnter(const std::string& ouPath, int32_t lineNumber) {
    if (OUPathExists(ouPath)) Raise(2008);
    const std::string parent = ParentOUPath(ouPath);
    const std::string cnForm =
        "CN=" + FirstOUName(ouPath) + (parent.empty() ? std::string() : "," + parent);
    if (OUPathExists(cnForm)) Raise(2009);

    const int32_t inForce = gRun.lngSuccessCnt;
    const int32_t duplicate = FindLedgerEntry(AddLedger, 1, ouPath, inForce);
    if (duplicate >= 0) {
        gRun.MsgArg1 = AddLedger.Get(0, duplicate);
        Raise(2005);
    }
    if (!parent.empty() && !OUPathExists(parent) &&
        FindLedgerEntry(AddLedger, 1, parent, inForce) < 0) {
        Raise(1100);
    }
    AddLedger.Set(0, inForce, std::to_string(lineNumber));
    AddLedger.Set(1, inForce, ouPath);
}

}  // namespace

void ImitateAddOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    if (ordinal == 1) ResetLedgers(ObjectKind::OU, gRun.lngDataRowCnt);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        // No test of blnRowFailed here: the rows of a failed OU are checked all the same.
        const bool mirror = ReadMirror(cells, columns);
        const std::string ouPath = RowOUPath(cells, columns);
        if (!mirror) {
            CheckPlaceAndEnter(ouPath, lineNumber);
            CheckManager(cells, columns);
            CheckInheritanceCells(cells, columns);
        }
        ImitateAceChecks(cells, columns, nullptr);

        if (gRun.blnRowWarned) Raise(ERRNUM_60_002);
        if (MirrorFlagOf(ordinal) != "Y") gRun.blnMirrorGroupCreated = true;
        if (gRun.blnRowFailed) {
            // A Mirror row of an OU that failed: its entry is not in force.
            AddLedger.Set(1, gRun.lngSuccessCnt, "");
            Raise(ERRNUM_60_000);
        }
        Raise(ERRNUM_60_001);
    });
}

}  // namespace orin
