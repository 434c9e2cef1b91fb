#include "base/Outcome.h"

#include <exception>
#include <stdexcept>
#include <string>

#include "base/EventLog.h"
#include "base/Identifiers.h"
#include "base/Messages.h"
#include "base/MirrorChain.h"
#include "base/RunContext.h"
#include "base/Trace.h"

namespace orin {
namespace {

// Thrown by Raise to leave the engine's body; caught only by the EngineRun that owns `scope`.
// Deliberately not a std::exception, so that an engine's own catch of std::exception can't
// swallow the end of its row.
struct RowEnded {
    const RowScope* scope;
    RowEnd how;
};

thread_local RowScope* tCurrentRow = nullptr;

std::function<void()>& HoldingMarkClearer() {
    static std::function<void()> clearer;
    return clearer;
}

void TraceSub(std::string_view procName, std::string_view text) {
    WriteTrace(TraceMode, true, kTraceSub, procName, text);
}

void LogRow(int32_t code, int32_t lineNumber, EventClass cls) {
    // A code without a message writes nothing; its handler still does the rest.
    if (auto text = MessageText(code)) WriteRowEvent(gRun.strEventLogPath, lineNumber, cls, *text);
}

// The bulk run's counting of a held object that is settled in a retry pass.
void SettleHeldObject() {
    if (!gRun.blnHolding) return;
    --gRun.lngHoldingCnt;
    gRun.blnAlreadyHeld = false;
}

void FinishCsvRow(int32_t code, int32_t ordinal) {
    if (!IsObjectEnd(ordinal)) return;
    switch (code) {
        case ERRNUM_60_000:
            ++gRun.lngFailureCnt;
            gRun.blnRowFailed = false;
            break;
        case ERRNUM_60_001:
            ++gRun.lngSuccessCnt;
            break;
        case ERRNUM_60_002:
            ++gRun.lngWarningCnt;
            gRun.blnRowWarned = false;
            break;
        case ERRNUM_60_003:
            ++gRun.lngDiffCnt;
            gRun.blnRowDiffered = false;
            break;
        case ERRNUM_60_004:
            ++gRun.lngMatchCnt;
            break;
        default:
            break;
    }
}

void FinishBulkRow(int32_t code) {
    if (gRun.bytEndOfObjData != 1) return;
    switch (code) {
        case ERRNUM_60_000:
            ++gRun.lngFailureCnt;
            gRun.blnRowFailed = false;
            SettleHeldObject();
            break;
        case ERRNUM_60_001:
            ++gRun.lngSuccessCnt;
            SettleHeldObject();
            break;
        case ERRNUM_60_002:
            // An object that ends with a warning in a retry pass stays counted as held.
            ++gRun.lngWarningCnt;
            gRun.blnRowWarned = false;
            break;
        case ERRNUM_60_005:
            ++gRun.lngHoldingCnt;
            gRun.blnAlreadyHeld = false;
            break;
        default:
            break;
    }
    gRun.blnObjCreated = false;
}

}  // namespace

CodeBand BandOf(int32_t code, EngineFamily family) {
    if (family == EngineFamily::Bulk) {
        if (code < 10000) return CodeBand::Failure;
        if (code < 60000) return CodeBand::Warning;
        return CodeBand::Verdict;
    }
    if (code >= 1000 && code <= 9998) return CodeBand::Failure;
    if (code >= 60000 && code <= 65534) return CodeBand::Verdict;
    if (family == EngineFamily::Compare) {
        if (code >= 20000 && code <= 59999) return CodeBand::Difference;
    } else if (code >= 10000 && code <= 59999) {
        return CodeBand::Warning;
    }
    return CodeBand::None;
}

EngineFamily CurrentEngineFamily() {
    if (gRun.blnDBMode) return EngineFamily::Bulk;
    return gRun.blnCompare ? EngineFamily::Compare : EngineFamily::Production;
}

void HandleImportFailure(int32_t code, int32_t lineNumber, int32_t ordinal) {
    TraceSub("HandleImportFailure", "Enter");
    LogRow(code, lineNumber, EventClass::Failure);
    gRun.blnRowFailed = true;
    gRun.blnRowWarned = false;
    gRun.blnRowDiffered = false;
    if (!gRun.blnDBMode) {
        // The object is counted on its last row; until then blnRowFailed skips its other rows.
        if (IsObjectEnd(ordinal)) {
            gRun.blnRowFailed = false;
            ++gRun.lngFailureCnt;
        }
    } else if (gRun.bytEndOfObjData == 1) {
        ++gRun.lngFailureCnt;
        TraceSub("HandleImportFailure",
                 "bytEndOfObjData = 1, lngFailureCnt = " + std::to_string(gRun.lngFailureCnt));
        gRun.blnRowFailed = false;
        if (gRun.blnHolding) {
            if (HoldingMarkClearer()) HoldingMarkClearer()();
            SettleHeldObject();
            TraceSub("HandleImportFailure",
                     "bytEndOfObjData = 1, blnHolding = True, lngHoldingCnt = " +
                         std::to_string(gRun.lngHoldingCnt));
        }
    }
    TraceSub("HandleImportFailure", "Exit");
}

void HandleImportWarning(int32_t code, int32_t lineNumber, int32_t /*ordinal*/) {
    LogRow(code, lineNumber, EventClass::Warning);
    gRun.blnRowWarned = true;
}

void HandleCompareDifference(int32_t code, int32_t lineNumber, int32_t /*ordinal*/) {
    LogRow(code, lineNumber, EventClass::Difference);
    gRun.blnRowDiffered = true;
}

void HandleWhenFinished(int32_t code, int32_t /*lineNumber*/, int32_t ordinal) {
    if (gRun.blnDBMode) {
        FinishBulkRow(code);
    } else {
        FinishCsvRow(code, ordinal);
    }
}

void SetHoldingMarkClearer(std::function<void()> clearer) {
    HoldingMarkClearer() = std::move(clearer);
}

RowScope::RowScope(int32_t lineNumber, int32_t ordinal, EngineFamily family,
                   std::string_view traceName)
    : lineNumber_(lineNumber), ordinal_(ordinal), family_(family), traceName_(traceName) {}

void RowScope::Trace(std::string_view text) const {
    TraceSub(traceName_.empty() ? std::string_view("EngineRun") : std::string_view(traceName_),
             text);
}

void RowScope::RunCleanup() {
    ending_ = true;
    if (!cleanup_) return;
    try {
        cleanup_();
    } catch (...) {
        // A failing cleanup is not reported: the row has failed already.
        Trace("the failure cleanup did not finish");
    }
}

void Raise(int32_t code) {
    RowScope* row = tCurrentRow;
    if (!row) throw std::logic_error("Raise(" + std::to_string(code) + ") outside an engine row");
    if (row->ending_) {
        // A raise from the failure cleanup: the row is already over, nothing more is counted.
        row->Trace("Raise during cleanup, code = " + std::to_string(code));
        throw RowEnded{row, RowEnd::Failed};
    }
    switch (BandOf(code, row->family_)) {
        case CodeBand::Failure:
            HandleImportFailure(code, row->lineNumber_, row->ordinal_);
            // The cleanup runs here, before the engine's frame unwinds, so that it still has
            // the engine's objects and names at hand.
            row->RunCleanup();
            if (!row->traceName_.empty()) row->Trace("Exit: Failure");
            throw RowEnded{row, RowEnd::Failed};
        case CodeBand::Warning:
            HandleImportWarning(code, row->lineNumber_, row->ordinal_);
            if (!row->traceName_.empty()) row->Trace("Warning");
            return;
        case CodeBand::Difference:
            HandleCompareDifference(code, row->lineNumber_, row->ordinal_);
            return;
        case CodeBand::Verdict:
            HandleWhenFinished(code, row->lineNumber_, row->ordinal_);
            if (!row->traceName_.empty()) row->Trace("Exit: Success");
            throw RowEnded{row, RowEnd::Finished};
        case CodeBand::None:
            break;
    }
    row->Trace("Exit: silent end of row, code = " + std::to_string(code) +
               ", LineNumber = " + std::to_string(row->lineNumber_));
    throw RowEnded{row, RowEnd::Silent};
}

void RaiseVerdict() {
    const EngineFamily family = tCurrentRow ? tCurrentRow->Family() : CurrentEngineFamily();
    if (family == EngineFamily::Compare) {
        Raise(gRun.blnRowDiffered ? ERRNUM_60_003 : ERRNUM_60_004);
    } else {
        Raise(gRun.blnRowWarned ? ERRNUM_60_002 : ERRNUM_60_001);
    }
}

RowEnd EngineRun(int32_t lineNumber, int32_t ordinal, const std::function<void(RowScope&)>& body,
                 EngineFamily family, std::string_view traceName) {
    RowScope row(lineNumber, ordinal, family, traceName);
    RowScope* outer = tCurrentRow;
    tCurrentRow = &row;
    struct Restore {
        RowScope* outer;
        ~Restore() { tCurrentRow = outer; }
    } restore{outer};

    RowEnd how = RowEnd::Returned;
    try {
        body(row);
    } catch (const RowEnded& ended) {
        if (ended.scope != &row) throw;  // belongs to an outer row
        how = ended.how;
    } catch (const std::exception& error) {
        row.Trace(std::string("Exit: unexpected error, ") + error.what());
        return RowEnd::Silent;
    } catch (...) {
        row.Trace("Exit: unexpected error");
        return RowEnd::Silent;
    }

    return how;
}

}  // namespace orin
