#pragma once
// How a row ends. An engine raises one number per decision, and the number's band picks the
// handler:
//
//   1000-9998    failure     HandleImportFailure, the engine's failure cleanup, the row is over
//   10000-59999  warning     HandleImportWarning, the engine goes on (Production, Imitate)
//   20000-59999  difference  HandleCompareDifference, the engine goes on (Compare)
//   60000-65534  verdict     HandleWhenFinished, the engine ends
//   anything else            the row ends silently, with a line in the trace only
//
// An engine is written as its steps, inside EngineRun:
//
//   void AddSomething(const Cells& cells, int32_t line, int32_t ordinal, const Columns& cols) {
//       EngineRun(line, ordinal, [&](RowScope& row) {
//           if (mirror is invalid) Raise(1031);            // failure: nothing below runs
//           if (gRun.blnRowFailed) Raise(ERRNUM_60_000);   // verdict: the engine ends
//           ... create the object ...
//           row.OnFailure([&] { delete it again if gRun.blnRowCreatedObject });
//           if (a value was odd) Raise(10300);             // warning: goes on with the next line
//           RaiseVerdict();
//       });
//   }
//
// Raise may be called from any helper that an engine calls: it reaches the innermost EngineRun.
// Engine code must not swallow what Raise throws (no catch (...) around a Raise).

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace orin {

// Where a raised number goes. Production covers Imitate; Bulk is the database import, whose
// trap sends everything below 10000 to the failure handler and everything from 60000 on to
// the verdict.
enum class EngineFamily { Production, Compare, Bulk };
enum class CodeBand { Failure, Warning, Difference, Verdict, None };

CodeBand BandOf(int32_t code, EngineFamily family);
// The family of the run in hand, from gRun.blnDBMode and gRun.blnCompare.
EngineFamily CurrentEngineFamily();

// The four handlers. They write the row's line in the event log (gRun.strEventLogPath), set
// the row flags and move the counters on the row that ends the object.
void HandleImportFailure(int32_t code, int32_t lineNumber, int32_t ordinal);
void HandleImportWarning(int32_t code, int32_t lineNumber, int32_t ordinal);
void HandleCompareDifference(int32_t code, int32_t lineNumber, int32_t ordinal);
void HandleWhenFinished(int32_t code, int32_t lineNumber, int32_t ordinal);

// A bulk import clears the holding mark of the object in its table when a held object fails on
// its last row in a retry pass. The bulk import installs the routine; none is the default.
void SetHoldingMarkClearer(std::function<void()> clearer);

// How EngineRun came back.
enum class RowEnd {
    Failed,    // a failure was handled and the cleanup ran
    Finished,  // a verdict was handled
    Silent,    // a number outside the bands, or an unexpected error: nothing was counted
    Returned,  // the engine returned without raising a verdict
};

// The row in hand while an engine runs.
class RowScope {
  public:
    RowScope(const RowScope&) = delete;
    RowScope& operator=(const RowScope&) = delete;

    // What to do after a failure has been handled: delete a half-made object, and so on. Runs
    // only on a failure, never on a verdict or a silent end, and runs inside the Raise, so it
    // may use the engine's locals. A later call replaces the earlier.
    void OnFailure(std::function<void()> cleanup) { cleanup_ = std::move(cleanup); }

    int32_t LineNumber() const { return lineNumber_; }
    int32_t Ordinal() const { return ordinal_; }
    EngineFamily Family() const { return family_; }

  private:
    RowScope(int32_t lineNumber, int32_t ordinal, EngineFamily family, std::string_view traceName);

    friend void Raise(int32_t code);
    friend RowEnd EngineRun(int32_t, int32_t, const std::function<void(RowScope&)>&, EngineFamily,
                            std::string_view);

    void Trace(std::string_view text) const;
    void RunCleanup();

    int32_t lineNumber_;
    int32_t ordinal_;
    EngineFamily family_;
    std::string traceName_;
    std::function<void()> cleanup_;
    bool ending_ = false;
};

// Runs one row of an engine. `traceName` names the engine in the trace; the bulk engines give
// it and get "Exit: Failure", "Warning" and "Exit: Success" lines, the CSV engines leave it
// empty.
RowEnd EngineRun(int32_t lineNumber, int32_t ordinal, const std::function<void(RowScope&)>& body,
                 EngineFamily family = CurrentEngineFamily(), std::string_view traceName = {});

// Raises a row code inside EngineRun. Returns for a warning or a difference; otherwise the row
// ends and control goes back to EngineRun. Outside EngineRun it throws std::logic_error.
void Raise(int32_t code);

// The closing raise of an engine: 60002 or 60001 in Production and Imitate (by
// gRun.blnRowWarned), 60003 or 60004 in Compare (by gRun.blnRowDiffered).
void RaiseVerdict();

}  // namespace orin
