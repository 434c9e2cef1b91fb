#pragma once
// Shared by the driver tests: a scratch folder with its Event.log, a scripted operator that
// answers Yes, a session that is already connected (and kept, as "never show again" allows),
// and engines of the test's own in every slot, which raise the codes written in the row's
// `description` cell ("1000;10300") and close with the verdict.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "directory/DirectorySession.h"
#include "platform/Strings.h"
#include "run/Drivers.h"
#include "run/DriversExportHooks.h"
#include "run/ProgressWindow.h"
#include "run/RowLoop.h"
#include "run/RunTestSupport.h"
#include "support/ScriptedOperator.h"

namespace orin::test {

struct EngineCall {
    RowOperation op;
    int32_t line;
};

class DriverTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetRun(folder.path());
        SetProgressStartWait(0);
        gSession.Connected = true;
        gSession.NeverShowAgain = true;
        gSession.LoginCancelled = false;
        op.domainFields = {"orin.test", "ORIN"};
        op.defaultAnswer = MsgAnswer::Yes;
        for (int k = 0; k <= 5; ++k)
            for (RowOperation r = 0; r < kRowOperationCount; ++r)
                SetRowEngine(static_cast<ObjectKind>(k), r, CodeEngine(r));
    }

    void TearDown() override {
        for (int k = 0; k <= 5; ++k) {
            for (RowOperation r = 0; r < kRowOperationCount; ++r)
                SetRowEngine(static_cast<ObjectKind>(k), r, nullptr);
            SetExportRoutines(static_cast<ObjectKind>(k), {});
        }
        SetProgressStartWait(1.0);
        gSession.Connected = false;
        gSession.NeverShowAgain = false;
    }

    RowEngine CodeEngine(RowOperation r) {
        return [this, r](const std::vector<std::string>& cells, int32_t line, int32_t ordinal,
                         const std::vector<int16_t>&) {
            calls.push_back({r, line});
            EngineRun(line, ordinal, [&](RowScope&) {
                if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
                for (const std::string& code : Split(CellOf(cells, "description"), ';'))
                    if (!code.empty()) Raise(std::stoi(code));
                RaiseVerdict();
            });
        };
    }

    // Writes a CSV file (CP932, CR LF) into the scratch folder.
    std::string Csv(const std::vector<std::string>& lines, const std::string& name = "run.csv") {
        const std::filesystem::path path = folder / name;
        WriteCsv(path, lines);
        return path.string();
    }

    DriverEnd Run(ObjectKind kind, OperationKind operation, RunMode mode, const std::string& csv) {
        return RunFromButton(kind, operation, mode, csv);
    }

    std::filesystem::path LogPath() const { return gRun.strEventLogPath; }
    std::vector<std::string> LogLines() const { return ReadLines(LogPath()); }

    std::vector<std::string> BoxTexts() const {
        std::vector<std::string> texts;
        for (const ShownBox& box : op.boxes) texts.push_back(box.text);
        return texts;
    }

    ScratchFolder folder;
    ScriptedOperator op;
    std::vector<EngineCall> calls;
};

}  // namespace orin::test
