#pragma once
// Where the export engines plug into the run chain. An export run has two halves per kind: the
// object scan that frmWait runs ahead of the run (GetExpInfo_<kind>), and the export walk that
// the start method runs under frmProgress (ExportOU, ExportGrp...). Each kind's export code
// registers both here; the export driver refuses a kind that has none, and the start method
// calls them.

#include <filesystem>
#include <functional>

#include "base/Identifiers.h"

namespace orin {

struct ExportRoutines {
    // GetExpInfo_<kind>: counts the objects of the kind below gSession.RootObject into
    // gRun.lngObjectCnt, raises the level numbers (intOULevel...), gives up when
    // gRun.blnWaitCancelled is set, and sets gRun.blnNothingToExport. RunExpInfoScan does all
    // of it but the scan itself.
    std::function<void()> getExpInfo;
    // The export walk: appends the rows of every object of the kind to `csvPath`, whose two
    // header lines are written already, sized by the level numbers of gRun; counts
    // lngSuccessCnt, moves the progress window and stops at gRun.intCancel. False when a line
    // could not be written (the start method does not look at it).
    std::function<bool(const std::filesystem::path& csvPath)> exportRows;
};

void SetExportRoutines(ObjectKind kind, ExportRoutines routines);
// The routines of a kind; both empty while the kind has no export.
const ExportRoutines& GetExportRoutines(ObjectKind kind);
bool HasExportRoutines(ObjectKind kind);

}  // namespace orin
