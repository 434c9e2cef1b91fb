#pragma once
// The Start methods of frmProgress: what the progress window runs once it has shown itself.
// A row-loop run reads the header, writes the log header, runs the kind's row loop and closes
// with the summary and the result box; an export writes the file's header, runs the kind's
// export walk and writes the summary, in an order of its own (see StartExportRun).
//
// Production and Imitate share a method, which tells them apart by gRun.blnImitate.

#include <span>
#include <string_view>

#include "base/Identifiers.h"

namespace orin {

// A Start method returns false when the run ended before its summary: an export whose file
// could not be written, after the box that says so. The window is then closed already.
using StartMethod = bool (*)();

// The 52 methods in the order of their slots.
struct StartSlot {
    std::string_view name;  // "StartAdd_OU", "StartCompareExp_GPO"...
    ObjectKind kind;
    OperationKind op;
    bool compare;
    StartMethod method;
};
std::span<const StartSlot> StartMethodTable();
// The method for the kind and operation of the run and blnCompare; nullptr where none exists.
StartMethod FindStartMethod(ObjectKind kind, OperationKind op, bool compare);

// The two shapes of a Start method.
bool StartRowLoopRun(ObjectKind kind, OperationKind op, bool compare);
bool StartExportRun(ObjectKind kind);

bool StartAdd_OU();
bool StartCompareAdd_OU();
bool StartDel_OU();
bool StartMov_OU();
bool StartMdf_OU();
bool StartExp_OU();
bool StartAdd_Grp();
bool StartDel_Grp();
bool StartMov_Grp();
bool StartMdf_Grp();
bool StartExp_Grp();
bool StartAdd_Usr();
bool StartDel_Usr();
bool StartMov_Usr();
bool StartMdf_Usr();
bool StartExp_Usr();
bool StartAdd_Com();
bool StartDel_Com();
bool StartExp_Com();
bool StartMov_Com();
bool StartMdf_Com();
bool StartAdd_Share();
bool StartDel_Share();
bool StartMov_Share();
bool StartMdf_Share();
bool StartExp_Share();
bool StartExp_GPO();
bool StartCompareDel_OU();
bool StartCompareMov_OU();
bool StartCompareMdf_OU();
bool StartCompareExp_OU();
bool StartCompareAdd_Grp();
bool StartCompareDel_Grp();
bool StartCompareMov_Grp();
bool StartCompareMdf_Grp();
bool StartCompareExp_Grp();
bool StartCompareAdd_Usr();
bool StartCompareDel_Usr();
bool StartCompareMov_Usr();
bool StartCompareMdf_Usr();
bool StartCompareExp_Usr();
bool StartCompareAdd_Com();
bool StartCompareDel_Com();
bool StartCompareMov_Com();
bool StartCompareMdf_Com();
bool StartCompareExp_Com();
bool StartCompareAdd_Share();
bool StartCompareDel_Share();
bool StartCompareMov_Share();
bool StartCompareMdf_Share();
bool StartCompareExp_Share();
bool StartCompareExp_GPO();

}  // namespace orin
