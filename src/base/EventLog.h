#pragma once
// Event.log, the operator's record of every run: a header block when a run starts, one line
// per failure, warning or difference, a summary block at the end. Each writer opens the file,
// appends and closes it again, so the file is complete whenever a run dies.

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/Identifiers.h"

namespace orin {

enum class EventClass : int16_t { Failure = 0, Warning = 1, Difference = 2 };

// What kind of run a summary closes: one with a row loop, or an export.
enum class SummaryKind : int16_t { RowLoop = 0, Export = 1 };

// Writes the header block for the run of `code`. `sourcePath` is the CSV file, or in a bulk run
// (gRun.blnDBMode) the database file. When the file can't be written the operator is told, and
// the run goes on without a header. True when the block was written.
bool WriteLogHeader(const std::filesystem::path& logPath, std::string_view sourcePath,
                    OperationCode code);

// Writes one row line: "12行, 失敗, <message>" in a CSV run; in a bulk run the kind
// (gRun.BulkKind) and gRun.strPubLDAPName instead of a line number. A line that can't be
// written is lost without a word. True when the line was written.
bool WriteRowEvent(const std::filesystem::path& logPath, int32_t lineNumber, EventClass cls,
                   std::string_view message);

// Writes the summary block from the counters of gRun, with the elapsed time when
// gRun.blnShowElapsedTime is on and the cancel lines. True when the block was written.
bool WriteLogSummary(const std::filesystem::path& logPath, SummaryKind kind, int32_t objectCount);

// The closing box of a run: tells of failures, warnings or differences and offers to open the
// log. Shows nothing after a clean run.
void ShowRunResult(std::string_view title);

// The seconds between two RunTimer() values, rounded half to even. The count is a 16-bit
// number; a run of more than 32,767 seconds (about nine hours) is shown as 32,767 seconds
// rather than overflowing, and a negative span as 0.
int16_t ElapsedSeconds(double start, double end);

// "1時間2分3秒"; parts that are 0 are left out, so 0 seconds give "".
std::string FormatElapsed(int16_t seconds);

// The lines of the header block for a run started at `now` (local time).
std::vector<std::string> LogHeaderLines(std::string_view sourcePath, OperationCode code,
                                        const std::tm& now);

}  // namespace orin
