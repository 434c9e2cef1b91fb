#pragma once
// The row loop, the spine of a run: it reads the CSV file line by line, hands every data row
// to the engine that the RowOperation selects, moves the progress window and yields once per
// data row, which is where Cancel arrives. The six loops share one body; what differs between
// them is told by a RowLoopRules.

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/Identifiers.h"

namespace orin {

// The one signature of every engine: the row's cells, its physical line number, its ordinal
// among the data rows, and the run's ColumnIndex. The outcome goes by raised codes (Outcome.h).
using RowEngine = std::function<void(const std::vector<std::string>& cells, int32_t lineNumber,
                                     int32_t ordinal, const std::vector<int16_t>& columns)>;

// The engine slots of a kind, one per RowOperation. The engine files fill them in; an empty
// slot ends each row silently.
void SetRowEngine(ObjectKind kind, RowOperation op, RowEngine engine);
const RowEngine& GetRowEngine(ObjectKind kind, RowOperation op);

// What differs from loop to loop.
struct RowLoopRules {
    ObjectKind kind;
    // The RowOperations after whose rows blnMirrorGroupCreated is cleared at an object's end.
    std::array<bool, kRowOperationCount> clearsMirrorGroup;
    bool clearsUserHomeSet;     // User: clears blnUserHomeSet at the same place
    bool rollsBackCancelledOU;  // OU: RollBackCancelledOU after a cancel, outside Imitate
    bool compareOfExportOnly;   // GPO: data rows are skipped unless the RowOperation is 12
};

const RowLoopRules& RowLoopRulesOf(ObjectKind kind);

// The generic loop. Reports through gRun's counters, intCancel and lngCancelLine.
void RunRows(const RowLoopRules& rules, const std::filesystem::path& csvPath, RowOperation op,
             const std::vector<int16_t>& columns);

void RunRows_OU(const std::filesystem::path& csvPath, RowOperation op,
                const std::vector<int16_t>& columns);
void RunRows_Grp(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns);
void RunRows_Usr(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns);
void RunRows_Com(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns);
void RunRows_Shr(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns);
void RunRows_GPO(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns);

// Deletes the OU of a cancelled OU run. Cancel can strike between the rows of an OU that has
// Mirror rows: the OU Add engine has created it, and its ACE rows are not yet through. The
// directory work is the OU engines' (SetCancelledOURollBack); this reads the CSV line of
// gRun.lngLastCreatedLine and calls it when gRun.blnMirrorGroupCreated is still set.
void RollBackCancelledOU(const std::filesystem::path& csvPath, const std::vector<int16_t>& columns);

// Deletes the OU named by the cells of its CSV line; failures are not reported.
using CancelledOURollBack =
    std::function<void(const std::vector<std::string>& cells, const std::vector<int16_t>& columns)>;
void SetCancelledOURollBack(CancelledOURollBack rollBack);

}  // namespace orin
