#include "run/RowLoop.h"

#include <exception>
#include <string>

#include "base/MirrorChain.h"
#include "base/Operator.h"
#include "base/RunContext.h"
#include "base/Trace.h"
#include "csv/CsvReader.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

constexpr int kKindCount = 6;

std::array<std::array<RowEngine, kRowOperationCount>, kKindCount>& EngineSlots() {
    static std::array<std::array<RowEngine, kRowOperationCount>, kKindCount> slots;
    return slots;
}

CancelledOURollBack& OURollBack() {
    static CancelledOURollBack rollBack;
    return rollBack;
}

bool ValidSlot(ObjectKind kind, RowOperation op) {
    const auto k = static_cast<int>(kind);
    return k >= 0 && k < kKindCount && op >= 0 && op < kRowOperationCount;
}

constexpr std::array<bool, kRowOperationCount> kAddOperations = {
    true, false, false, false, true, false, false, false, true, false, false, false, false};
// The shared-folder loop leaves out Imitate Add.
constexpr std::array<bool, kRowOperationCount> kAddOperationsNoImitate = {
    true, false, false, false, false, false, false, false, true, false, false, false, false};
constexpr std::array<bool, kRowOperationCount> kNoOperations = {};

const RowLoopRules kRules[kKindCount] = {
    {ObjectKind::OU, kAddOperations, false, true, false},
    {ObjectKind::Group, kAddOperations, false, false, false},
    {ObjectKind::User, kAddOperations, true, false, false},
    {ObjectKind::Computer, kAddOperations, false, false, false},
    {ObjectKind::SharedFolder, kAddOperationsNoImitate, false, false, false},
    {ObjectKind::GpoLink, kNoOperations, false, false, true},
};

std::string_view FlagOf(int32_t ordinal) {
    if (ordinal < 0 || static_cast<size_t>(ordinal) >= gRun.MirrorFlags.size()) return {};
    return gRun.MirrorFlags[static_cast<size_t>(ordinal)];
}

void TraceLoop(std::string_view text) {
    WriteTrace(TraceMode, true, kTraceSub, "RunRows", text);
}

void CallEngine(ObjectKind kind, RowOperation op, const std::vector<std::string>& cells,
                int32_t lineNumber, int32_t ordinal, const std::vector<int16_t>& columns) {
    static const RowEngine kNone;
    const RowEngine& engine = ValidSlot(kind, op) ? GetRowEngine(kind, op) : kNone;
    if (!engine) {
        TraceLoop("no engine, RowOperation = " + std::to_string(op) +
                  ", LineNumber = " + std::to_string(lineNumber));
        return;
    }
    // Engines handle their own errors; this only keeps an unforeseen one from ending the run.
    try {
        engine(cells, lineNumber, ordinal, columns);
    } catch (const std::exception& error) {
        TraceLoop(std::string("unexpected error, ") + error.what() +
                  ", LineNumber = " + std::to_string(lineNumber));
    } catch (...) {
        TraceLoop("unexpected error, LineNumber = " + std::to_string(lineNumber));
    }
}

// Clears the flags that live as long as one object, once its last row is through.
void ClearObjectFlags(const RowLoopRules& rules, RowOperation op, int32_t ordinal) {
    if (op < 0 || op >= kRowOperationCount || !rules.clearsMirrorGroup[op]) return;
    if (ordinal < gRun.lngDataRowCnt) {
        if (FlagOf(ordinal + 1) != "Y") {
            gRun.blnMirrorGroupCreated = false;
            if (rules.clearsUserHomeSet) gRun.blnUserHomeSet = false;
        }
    } else if (FlagOf(ordinal) != "Y") {
        gRun.blnMirrorGroupCreated = false;
    }
}

void ShowCounters(RowOperation op) {
    Operator& screen = TheOperator();
    if (op >= 8 && op <= 12) {
        screen.SetCounters(gRun.lngMatchCnt, gRun.lngFailureCnt, gRun.lngDiffCnt);
    } else {
        screen.SetCounters(gRun.lngSuccessCnt, gRun.lngFailureCnt, gRun.lngWarningCnt);
    }
}

}  // namespace

void SetRowEngine(ObjectKind kind, RowOperation op, RowEngine engine) {
    if (!ValidSlot(kind, op)) return;
    EngineSlots()[static_cast<size_t>(kind)][static_cast<size_t>(op)] = std::move(engine);
}

const RowEngine& GetRowEngine(ObjectKind kind, RowOperation op) {
    static const RowEngine kNone;
    if (!ValidSlot(kind, op)) return kNone;
    return EngineSlots()[static_cast<size_t>(kind)][static_cast<size_t>(op)];
}

const RowLoopRules& RowLoopRulesOf(ObjectKind kind) {
    const auto k = static_cast<int>(kind);
    return kRules[k >= 0 && k < kKindCount ? k : 0];
}

void RunRows(const RowLoopRules& rules, const std::filesystem::path& csvPath, RowOperation op,
             const std::vector<int16_t>& columns) {
    platform::LineReader reader(csvPath);
    int32_t lineNumber = 0;
    int32_t ordinal = 0;
    int32_t progress = 0;

    // One line is read ahead, so that Cancel is tested only while the file has a line left.
    std::string line;
    bool haveLine = reader.ReadLine(line);
    bool cancelled = false;
    for (; haveLine; haveLine = reader.ReadLine(line)) {
        if (gRun.intCancel == 1) {
            cancelled = true;
            break;
        }
        ++lineNumber;
        if (IsIgnoredLine(line)) continue;
        std::vector<std::string> cells = SplitCells(line);
        if (rules.compareOfExportOnly && op != kCompareOfExport) continue;
        if (IsRowEmpty(cells)) continue;
        ++ordinal;

        CallEngine(rules.kind, op, cells, lineNumber, ordinal, columns);

        // Progress counts objects: a Mirror row followed by another doesn't move it.
        if (IsObjectEnd(ordinal)) ++progress;
        ClearObjectFlags(rules, op, ordinal);
        TheOperator().SetProgressValue(progress);
        ShowCounters(op);
        TheOperator().Yield();
    }
    if (reader.BadLine() != 0) {
        // The file was checked before the run: it changed under it. What follows isn't read.
        TraceLoop("line is not CP932 text, LineNumber = " + std::to_string(reader.BadLine()));
    }
    reader.Close();
    if (!cancelled) return;

    TheOperator().SetStatus(RowOperationTitle(rules.kind, op) + "処理がﾕｰｻﾞｰに中断されました。",
                            true);
    TheOperator().SetCommandCaption("OK");
    gRun.lngCancelLine = lineNumber;
    if (rules.rollsBackCancelledOU && !gRun.blnImitate) RollBackCancelledOU(csvPath, columns);
}

void RunRows_OU(const std::filesystem::path& csvPath, RowOperation op,
                const std::vector<int16_t>& columns) {
    RunRows(RowLoopRulesOf(ObjectKind::OU), csvPath, op, columns);
}

void RunRows_Grp(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns) {
    RunRows(RowLoopRulesOf(ObjectKind::Group), csvPath, op, columns);
}

void RunRows_Usr(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns) {
    RunRows(RowLoopRulesOf(ObjectKind::User), csvPath, op, columns);
}

void RunRows_Com(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns) {
    RunRows(RowLoopRulesOf(ObjectKind::Computer), csvPath, op, columns);
}

void RunRows_Shr(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns) {
    RunRows(RowLoopRulesOf(ObjectKind::SharedFolder), csvPath, op, columns);
}

void RunRows_GPO(const std::filesystem::path& csvPath, RowOperation op,
                 const std::vector<int16_t>& columns) {
    RunRows(RowLoopRulesOf(ObjectKind::GpoLink), csvPath, op, columns);
}

void RollBackCancelledOU(const std::filesystem::path& csvPath,
                         const std::vector<int16_t>& columns) {
    if (gRun.lngLastCreatedLine <= 0) return;
    platform::LineReader reader(csvPath);
    std::string line;
    int32_t lineNumber = 0;
    while (lineNumber < gRun.lngLastCreatedLine && reader.ReadLine(line)) ++lineNumber;
    reader.Close();
    if (lineNumber < gRun.lngLastCreatedLine) return;  // the file has no such line

    if (!gRun.blnMirrorGroupCreated || !OURollBack()) return;
    try {
        OURollBack()(SplitCells(line), columns);
    } catch (...) {
        // A failed roll-back is not reported.
        TraceLoop("RollBackCancelledOU did not finish");
    }
}

void SetCancelledOURollBack(CancelledOURollBack rollBack) {
    OURollBack() = std::move(rollBack);
}

}  // namespace orin
