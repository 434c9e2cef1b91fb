#include "run/StartMethods.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/EventLog.h"
#include "base/Operator.h"
#include "base/RunContext.h"
#include "csv/CsvReader.h"
#include "csv/ExportHeader.h"
#include "run/DriversExportHooks.h"
#include "run/RowLoop.h"

namespace orin {
namespace {

using K = ObjectKind;
using O = OperationKind;

void ShowFinished(const std::string& title) {
    TheOperator().SetStatus(title + "処理が完了しました。", false);
}

}  // namespace

bool StartRowLoopRun(ObjectKind kind, OperationKind op, bool compare) {
    const auto o = static_cast<RowOperation>(op);
    ReadHeader(gRun.strCsvPath, gRun.ColumnNames, gRun.ColumnIndex);
    RowOperation rowOperation = o;
    if (compare) {
        rowOperation = op == O::Exp ? kCompareOfExport : static_cast<RowOperation>(o + 8);
    } else if (gRun.blnImitate) {
        rowOperation = static_cast<RowOperation>(o + 4);
    }
    const std::string title = RowOperationTitle(kind, rowOperation);
    WriteLogHeader(gRun.strEventLogPath, gRun.strCsvPath, OperationCodeForRow(kind, rowOperation));

    RunRows(RowLoopRulesOf(kind), gRun.strCsvPath, rowOperation, gRun.ColumnIndex);

    gRun.sngEndTime = RunTimer();
    WriteLogSummary(gRun.strEventLogPath, SummaryKind::RowLoop, gRun.lngObjectCnt);
    // A cancelled run keeps the caption the row loop gave it.
    if (gRun.intCancel == 0) ShowFinished(title);
    ShowRunResult(title);
    return true;
}

bool StartExportRun(ObjectKind kind) {
    const OperationCode code = OperationCodeFor(kind, O::Exp, RunMode::Production);
    const std::string title = RunTitle(code);
    const ExportRoutines& routines = GetExportRoutines(kind);
    if (!routines.exportRows ||
        !WriteExportHeader(kind, gRun.strCsvPath, gRun.intOULevel, gRun.intMgrLevel)) {
        TheOperator().MessageBox(title,
                                 "ﾌｧｲﾙへの書込みが失敗しました！\r"
                                 "ﾌｧｲﾙが使用中かまたはﾌｧｲﾙやﾃﾞｨﾚｸﾄﾘの書込み権限があるかを確認"
                                 "してください。",
                                 MsgIcon::Critical, MsgButtons::Ok);
        TheOperator().HideProgress();
        return false;
    }

    // The OU export writes its log header after the walk, so its header block stands behind
    // anything the walk wrote to the log; the other kinds write it first.
    if (kind == K::OU) {
        routines.exportRows(gRun.strCsvPath);
        gRun.sngEndTime = RunTimer();
        WriteLogHeader(gRun.strEventLogPath, gRun.strCsvPath, code);
    } else {
        WriteLogHeader(gRun.strEventLogPath, gRun.strCsvPath, code);
        routines.exportRows(gRun.strCsvPath);
        gRun.sngEndTime = RunTimer();
    }

    WriteLogSummary(gRun.strEventLogPath, SummaryKind::Export, gRun.lngObjectCnt);
    if (gRun.intCancel == 0) ShowFinished(title);
    return true;  // an export never offers the log
}

// clang-format off
bool StartAdd_OU() { return StartRowLoopRun(K::OU, O::Add, false); }
bool StartCompareAdd_OU() { return StartRowLoopRun(K::OU, O::Add, true); }
bool StartDel_OU() { return StartRowLoopRun(K::OU, O::Del, false); }
bool StartMov_OU() { return StartRowLoopRun(K::OU, O::Mov, false); }
bool StartMdf_OU() { return StartRowLoopRun(K::OU, O::Mdf, false); }
bool StartExp_OU() { return StartExportRun(K::OU); }
bool StartAdd_Grp() { return StartRowLoopRun(K::Group, O::Add, false); }
bool StartDel_Grp() { return StartRowLoopRun(K::Group, O::Del, false); }
bool StartMov_Grp() { return StartRowLoopRun(K::Group, O::Mov, false); }
bool StartMdf_Grp() { return StartRowLoopRun(K::Group, O::Mdf, false); }
bool StartExp_Grp() { return StartExportRun(K::Group); }
bool StartAdd_Usr() { return StartRowLoopRun(K::User, O::Add, false); }
bool StartDel_Usr() { return StartRowLoopRun(K::User, O::Del, false); }
bool StartMov_Usr() { return StartRowLoopRun(K::User, O::Mov, false); }
bool StartMdf_Usr() { return StartRowLoopRun(K::User, O::Mdf, false); }
bool StartExp_Usr() { return StartExportRun(K::User); }
bool StartAdd_Com() { return StartRowLoopRun(K::Computer, O::Add, false); }
bool StartDel_Com() { return StartRowLoopRun(K::Computer, O::Del, false); }
bool StartExp_Com() { return StartExportRun(K::Computer); }
bool StartMov_Com() { return StartRowLoopRun(K::Computer, O::Mov, false); }
bool StartMdf_Com() { return StartRowLoopRun(K::Computer, O::Mdf, false); }
bool StartAdd_Share() { return StartRowLoopRun(K::SharedFolder, O::Add, false); }
bool StartDel_Share() { return StartRowLoopRun(K::SharedFolder, O::Del, false); }
bool StartMov_Share() { return StartRowLoopRun(K::SharedFolder, O::Mov, false); }
bool StartMdf_Share() { return StartRowLoopRun(K::SharedFolder, O::Mdf, false); }
bool StartExp_Share() { return StartExportRun(K::SharedFolder); }
bool StartExp_GPO() { return StartExportRun(K::GpoLink); }
bool StartCompareDel_OU() { return StartRowLoopRun(K::OU, O::Del, true); }
bool StartCompareMov_OU() { return StartRowLoopRun(K::OU, O::Mov, true); }
bool StartCompareMdf_OU() { return StartRowLoopRun(K::OU, O::Mdf, true); }
bool StartCompareExp_OU() { return StartRowLoopRun(K::OU, O::Exp, true); }
bool StartCompareAdd_Grp() { return StartRowLoopRun(K::Group, O::Add, true); }
bool StartCompareDel_Grp() { return StartRowLoopRun(K::Group, O::Del, true); }
bool StartCompareMov_Grp() { return StartRowLoopRun(K::Group, O::Mov, true); }
bool StartCompareMdf_Grp() { return StartRowLoopRun(K::Group, O::Mdf, true); }
bool StartCompareExp_Grp() { return StartRowLoopRun(K::Group, O::Exp, true); }
bool StartCompareAdd_Usr() { return StartRowLoopRun(K::User, O::Add, true); }
bool StartCompareDel_Usr() { return StartRowLoopRun(K::User, O::Del, true); }
bool StartCompareMov_Usr() { return StartRowLoopRun(K::User, O::Mov, true); }
bool StartCompareMdf_Usr() { return StartRowLoopRun(K::User, O::Mdf, true); }
bool StartCompareExp_Usr() { return StartRowLoopRun(K::User, O::Exp, true); }
bool StartCompareAdd_Com() { return StartRowLoopRun(K::Computer, O::Add, true); }
bool StartCompareDel_Com() { return StartRowLoopRun(K::Computer, O::Del, true); }
bool StartCompareMov_Com() { return StartRowLoopRun(K::Computer, O::Mov, true); }
bool StartCompareMdf_Com() { return StartRowLoopRun(K::Computer, O::Mdf, true); }
bool StartCompareExp_Com() { return StartRowLoopRun(K::Computer, O::Exp, true); }
bool StartCompareAdd_Share() { return StartRowLoopRun(K::SharedFolder, O::Add, true); }
bool StartCompareDel_Share() { return StartRowLoopRun(K::SharedFolder, O::Del, true); }
bool StartCompareMov_Share() { return StartRowLoopRun(K::SharedFolder, O::Mov, true); }
bool StartCompareMdf_Share() { return StartRowLoopRun(K::SharedFolder, O::Mdf, true); }
bool StartCompareExp_Share() { return StartRowLoopRun(K::SharedFolder, O::Exp, true); }
bool StartCompareExp_GPO() { return StartRowLoopRun(K::GpoLink, O::Exp, true); }

namespace {

constexpr std::array<StartSlot, 52> kSlots = {{
    {"StartAdd_OU", K::OU, O::Add, false, StartAdd_OU},
    {"StartCompareAdd_OU", K::OU, O::Add, true, StartCompareAdd_OU},
    {"StartDel_OU", K::OU, O::Del, false, StartDel_OU},
    {"StartMov_OU", K::OU, O::Mov, false, StartMov_OU},
    {"StartMdf_OU", K::OU, O::Mdf, false, StartMdf_OU},
    {"StartExp_OU", K::OU, O::Exp, false, StartExp_OU},
    {"StartAdd_Grp", K::Group, O::Add, false, StartAdd_Grp},
    {"StartDel_Grp", K::Group, O::Del, false, StartDel_Grp},
    {"StartMov_Grp", K::Group, O::Mov, false, StartMov_Grp},
    {"StartMdf_Grp", K::Group, O::Mdf, false, StartMdf_Grp},
    {"StartExp_Grp", K::Group, O::Exp, false, StartExp_Grp},
    {"StartAdd_Usr", K::User, O::Add, false, StartAdd_Usr},
    {"StartDel_Usr", K::User, O::Del, false, StartDel_Usr},
    {"StartMov_Usr", K::User, O::Mov, false, StartMov_Usr},
    {"StartMdf_Usr", K::User, O::Mdf, false, StartMdf_Usr},
    {"StartExp_Usr", K::User, O::Exp, false, StartExp_Usr},
    {"StartAdd_Com", K::Computer, O::Add, false, StartAdd_Com},
    {"StartDel_Com", K::Computer, O::Del, false, StartDel_Com},
    {"StartExp_Com", K::Computer, O::Exp, false, StartExp_Com},
    {"StartMov_Com", K::Computer, O::Mov, false, StartMov_Com},
    {"StartMdf_Com", K::Computer, O::Mdf, false, StartMdf_Com},
    {"StartAdd_Share", K::SharedFolder, O::Add, false, StartAdd_Share},
    {"StartDel_Share", K::SharedFolder, O::Del, false, StartDel_Share},
    {"StartMov_Share", K::SharedFolder, O::Mov, false, StartMov_Share},
    {"StartMdf_Share", K::SharedFolder, O::Mdf, false, StartMdf_Share},
    {"StartExp_Share", K::SharedFolder, O::Exp, false, StartExp_Share},
    {"StartExp_GPO", K::GpoLink, O::Exp, false, StartExp_GPO},
    {"StartCompareDel_OU", K::OU, O::Del, true, StartCompareDel_OU},
    {"StartCompareMov_OU", K::OU, O::Mov, true, StartCompareMov_OU},
    {"StartCompareMdf_OU", K::OU, O::Mdf, true, StartCompareMdf_OU},
    {"StartCompareExp_OU", K::OU, O::Exp, true, StartCompareExp_OU},
    {"StartCompareAdd_Grp", K::Group, O::Add, true, StartCompareAdd_Grp},
    {"StartCompareDel_Grp", K::Group, O::Del, true, StartCompareDel_Grp},
    {"StartCompareMov_Grp", K::Group, O::Mov, true, StartCompareMov_Grp},
    {"StartCompareMdf_Grp", K::Group, O::Mdf, true, StartCompareMdf_Grp},
    {"StartCompareExp_Grp", K::Group, O::Exp, true, StartCompareExp_Grp},
    {"StartCompareAdd_Usr", K::User, O::Add, true, StartCompareAdd_Usr},
    {"StartCompareDel_Usr", K::User, O::Del, true, StartCompareDel_Usr},
    {"StartCompareMov_Usr", K::User, O::Mov, true, StartCompareMov_Usr},
    {"StartCompareMdf_Usr", K::User, O::Mdf, true, StartCompareMdf_Usr},
    {"StartCompareExp_Usr", K::User, O::Exp, true, StartCompareExp_Usr},
    {"StartCompareAdd_Com", K::Computer, O::Add, true, StartCompareAdd_Com},
    {"StartCompareDel_Com", K::Computer, O::Del, true, StartCompareDel_Com},
    {"StartCompareMov_Com", K::Computer, O::Mov, true, StartCompareMov_Com},
    {"StartCompareMdf_Com", K::Computer, O::Mdf, true, StartCompareMdf_Com},
    {"StartCompareExp_Com", K::Computer, O::Exp, true, StartCompareExp_Com},
    {"StartCompareAdd_Share", K::SharedFolder, O::Add, true, StartCompareAdd_Share},
    {"StartCompareDel_Share", K::SharedFolder, O::Del, true, StartCompareDel_Share},
    {"StartCompareMov_Share", K::SharedFolder, O::Mov, true, StartCompareMov_Share},
    {"StartCompareMdf_Share", K::SharedFolder, O::Mdf, true, StartCompareMdf_Share},
    {"StartCompareExp_Share", K::SharedFolder, O::Exp, true, StartCompareExp_Share},
    {"StartCompareExp_GPO", K::GpoLink, O::Exp, true, StartCompareExp_GPO},
}};

}  // namespace
// clang-format on

std::span<const StartSlot> StartMethodTable() {
    return kSlots;
}

StartMethod FindStartMethod(ObjectKind kind, OperationKind op, bool compare) {
    auto it = std::ranges::find_if(kSlots, [&](const StartSlot& slot) {
        return slot.kind == kind && slot.op == op && slot.compare == compare;
    });
    return it == kSlots.end() ? nullptr : it->method;
}

}  // namespace orin
