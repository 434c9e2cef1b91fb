#pragma once
// The batch drivers: one per (kind, operation, mode), 72 in all. A driver lists the columns its
// engines look up, resets the run, takes the inputs, makes sure of the connection, checks the
// file, asks the operator and shows the progress window, in which the run happens. Every stop
// before the run is a message box; nothing is written to the event log until the run begins.
//
// The drivers differ only in their data (DriverSpec); RunDriver is the one sequence they share.

#include <span>
#include <string_view>

#include "base/Identifiers.h"

namespace orin {

// One driver: what it runs and which row flags its reset clears. The counters, blnRowWarned,
// blnWaitCancelled, LoginCancelled and intCancel are cleared by every driver; these three row
// flags only by some, and the difference matters: a Del or Mov run that follows a run cancelled
// between the Mirror rows of a failed object keeps blnRowFailed set.
struct DriverSpec {
    std::string_view name;  // "RunOUAdd", "ImitateGrpMdf", "CompareGPOExp"...
    ObjectKind kind;
    OperationKind op;
    RunMode mode;  // an export driver (RunOUExp...) is a Production one
    bool clearsRowFailed;
    bool clearsRowCreatedObject;
    bool clearsMirrorGroupCreated;
};

// All 72 drivers.
std::span<const DriverSpec> DriverTable();
// The driver of (kind, op, mode); nullptr where there is none (Imitate of an export, a GPO link
// run other than the export and its compare).
const DriverSpec* FindDriver(ObjectKind kind, OperationKind op, RunMode mode);

// How a driver ended.
enum class DriverEnd {
    Completed,     // the run went through to its summary
    Cancelled,     // the operator cancelled the run; the summary says so
    Failed,        // the run began but ended early: the export file could not be written
    Stopped,       // a check or a question stopped it before the run began (a box told why)
    NoConnection,  // the login was cancelled or the domain could not be reached
};

// Runs the driver's sequence. The mode flags (blnImitate, blnCompare) follow the driver.
// gRun.strCsvPath, gRun.strEventLogPath and blnDBMode are the front end's (RunFromButton).
DriverEnd RunDriver(const DriverSpec& driver);

// What a run button of the main window does: blnDBMode off, the trimmed path into strCsvPath,
// the mode flags, then the driver of (kind, op, mode). Stopped for a combination that has no
// driver.
DriverEnd RunFromButton(ObjectKind kind, OperationKind op, RunMode mode, std::string_view csvPath);

// The RowOperation a row-loop run of (op, mode) hands to the loop: op, op + 4 in Imitate,
// op + 8 in Compare, 12 for the compare of an export; -1 for an export.
RowOperation RowOperationOf(OperationKind op, RunMode mode);

// Reads the domain fields of the tab of `op` into strDomainDNS and strDomainNetBIOS, trimmed,
// and checks the path and the names, in that order, each with its "入力情報不足" box. True when
// the inputs are complete.
bool GetRunInputs(OperationKind op);

// The connection step of a run: the login dialog (unless NeverShowAgain and Connected are both
// set: then the standing connection serves), the connection wait, and RetryConnect after a
// failure. False when the run must stop: the login was cancelled.
bool ConnectForRun();

// Login and connection wait again and again until the domain is reached, the login is
// cancelled or the run is cancelled.
void RetryConnect();

// The 72 drivers by name. Each is RunDriver of its row in DriverTable().
void RunOUAdd();
void RunOUDel();
void RunOUMov();
void RunOUMdf();
void RunOUExp();
void ImitateOUAdd();
void ImitateOUDel();
void ImitateOUMov();
void ImitateOUMdf();
void CompareOUAdd();
void CompareOUDel();
void CompareOUMov();
void CompareOUMdf();
void CompareOUExp();

void RunGrpAdd();
void RunGrpDel();
void RunGrpMov();
void RunGrpMdf();
void RunGrpExp();
void ImitateGrpAdd();
void ImitateGrpDel();
void ImitateGrpMov();
void ImitateGrpMdf();
void CompareGrpAdd();
void CompareGrpDel();
void CompareGrpMov();
void CompareGrpMdf();
void CompareGrpExp();

void RunUsrAdd();
void RunUsrDel();
void RunUsrMov();
void RunUsrMdf();
void RunUsrExp();
void ImitateUsrAdd();
void ImitateUsrDel();
void ImitateUsrMov();
void ImitateUsrMdf();
void CompareUsrAdd();
void CompareUsrDel();
void CompareUsrMov();
void CompareUsrMdf();
void CompareUsrExp();

void RunComAdd();
void RunComDel();
void RunComMov();
void RunComMdf();
void RunComExp();
void ImitateComAdd();
void ImitateComDel();
void ImitateComMov();
void ImitateComMdf();
void CompareComAdd();
void CompareComDel();
void CompareComMov();
void CompareComMdf();
void CompareComExp();

void RunShrAdd();
void RunShrDel();
void RunShrMov();
void RunShrMdf();
void RunShrExp();
void ImitateShrAdd();
void ImitateShrDel();
void ImitateShrMov();
void ImitateShrMdf();
void CompareShrAdd();
void CompareShrDel();
void CompareShrMov();
void CompareShrMdf();
void CompareShrExp();

void RunGPOExp();
void CompareGPOExp();

}  // namespace orin
