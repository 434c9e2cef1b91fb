#pragma once
// The one process-wide record of a run. There is one run at a time; engines, drivers, the row
// loop and the outcome handlers read and write it directly.

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Identifiers.h"

namespace orin {

struct RunContext {
    // Inputs of the run.
    std::string strCsvPath;
    std::string strDomainDNS;
    std::string strDomainNetBIOS;
    std::string strEventLogPath;
    bool blnImitate = false;
    bool blnCompare = false;
    bool blnDBMode = false;
    std::vector<std::string> ColumnNames;
    std::vector<int16_t> ColumnIndex;
    std::vector<std::string> MirrorFlags;  // "Y", "N" or "?" per row ordinal; index 0 unused
    int32_t lngDataRowCnt = 0;

    // Counters and progress.
    int32_t lngObjectCnt = 0;
    int32_t lngSuccessCnt = 0;
    int32_t lngFailureCnt = 0;
    int32_t lngWarningCnt = 0;
    int32_t lngMatchCnt = 0;
    int32_t lngDiffCnt = 0;
    int32_t lngHoldingCnt = 0;
    int32_t lngCancelLine = 0;
    double sngStartTime = 0;  // RunTimer() just before the run
    double sngEndTime = 0;    // RunTimer() just after the run

    // The row in hand.
    bool blnRowFailed = false;
    bool blnRowWarned = false;
    bool blnRowDiffered = false;
    bool blnRowCreatedObject = false;
    bool blnMirrorGroupCreated = false;
    bool blnUserHomeSet = false;
    int32_t lngLastCreatedLine = 0;
    std::string MsgArg1;
    std::string MsgArg2;
    std::string AceArg;
    std::string strPubLDAPName;

    // Bulk database run: the row in hand ends its object / the walk is a retry pass.
    int16_t bytEndOfObjData = 0;
    bool blnHolding = false;
    bool blnAlreadyHeld = false;           // some row of the object in hand has been held back
    bool blnObjCreated = false;            // the object in hand was made new by this import
    ObjectKind BulkKind = ObjectKind::OU;  // the kind in work; labels the event lines
    // Sums over all kinds for the closing box of a bulk run.
    int32_t lngObjectTotal = 0;
    int32_t lngSuccessTotal = 0;
    int32_t lngWarningTotal = 0;
    int32_t lngFailureTotal = 0;

    // Cancel and window state. intCancel is set by the window thread while a run works on
    // another thread, hence atomic; only the value 1 means cancelled.
    std::atomic<int> intCancel{0};
    std::atomic<bool> blnWaitCancelled{false};  // set by the wait window while the scan runs
    bool blnNothingToExport = false;

    // Export: how many cells each OU span of the export file has, found by the object scan and
    // set to 1 by the export driver.
    int16_t intOULevel = 1;      // OU-Start..OU-End
    int16_t intMgrLevel = 1;     // MgrOU-Start..MgrOU-End
    int16_t intMemberLevel = 1;  // MemberOU-Start..MemberOU-End
    int16_t intGrpLevel = 1;     // GrpOU-Start..GrpOU-End

    // Options kept in memory only.
    bool blnShowElapsedTime = false;  // "経過時間： " line in the summary block

    RunMode Mode() const {
        if (blnCompare) return RunMode::Compare;
        return blnImitate ? RunMode::Imitate : RunMode::Production;
    }
};

// The process-wide run record.
extern RunContext gRun;

// A monotonic clock in seconds for the run's start and end times.
double RunTimer();

}  // namespace orin
