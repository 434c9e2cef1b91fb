#include "run/Drivers.h"

#include <string>

#include "base/Operator.h"
#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "directory/Connect.h"
#include "directory/DirectorySession.h"
#include "directory/Trustee.h"
#include "engines/Ledgers.h"
#include "platform/Strings.h"
#include "run/DriversExportHooks.h"
#include "run/ProgressWindow.h"
#include "run/RowLoop.h"

namespace orin {
namespace {

void Box(std::string_view title, std::string_view text, MsgIcon icon) {
    TheOperator().MessageBox(title, text, icon, MsgButtons::Ok);
}

bool AskYes(std::string_view title, std::string_view text, MsgIcon icon) {
    return TheOperator().MessageBox(title, text, icon, MsgButtons::YesNo) == MsgAnswer::Yes;
}

std::string TitleOf(const DriverSpec& driver) {
    return RunTitle(OperationCodeFor(driver.kind, driver.op, driver.mode));
}

bool IsExport(const DriverSpec& driver) {
    return driver.op == OperationKind::Exp && driver.mode != RunMode::Compare;
}

// A run whose engine (or export) is not built into this program is refused before anything
// happens, rather than going through its rows without doing anything.
bool RefuseMissingEngine(const DriverSpec& driver) {
    const bool present =
        IsExport(driver)
            ? HasExportRoutines(driver.kind)
            : static_cast<bool>(GetRowEngine(driver.kind, RowOperationOf(driver.op, driver.mode)));
    if (present) return false;
    Box(TitleOf(driver), "この処理を実行するｴﾝｼﾞﾝが組み込まれていません。", MsgIcon::Critical);
    return true;
}

// Step 2 of every driver: the counters that the run shows, the cancel and login state, and the
// row flags of the driver's own list.
void ResetRun(const DriverSpec& driver) {
    if (driver.mode == RunMode::Compare) {
        gRun.lngMatchCnt = gRun.lngDiffCnt = gRun.lngFailureCnt = 0;
    } else {
        gRun.lngSuccessCnt = gRun.lngFailureCnt = gRun.lngWarningCnt = 0;
    }
    gRun.blnRowWarned = false;
    gRun.blnWaitCancelled = false;
    gSession.LoginCancelled = false;
    gRun.intCancel = 0;
    gSession.ConnectPending = true;
    if (driver.clearsRowFailed) gRun.blnRowFailed = false;
    if (driver.clearsRowCreatedObject) gRun.blnRowCreatedObject = false;
    if (driver.clearsMirrorGroupCreated) gRun.blnMirrorGroupCreated = false;
    if (IsExport(driver)) {
        gRun.intOULevel = gRun.intMgrLevel = gRun.intMemberLevel = gRun.intGrpLevel = 1;
    }
    // An account renamed or made anew since the last run must be looked up again.
    ClearTrusteeCache();
}

// frmProgress: its load and activation run inside the front end's window.
DriverEnd ShowProgressWindow(const DriverSpec& driver) {
    bool ranToItsEnd = false;
    TheOperator().ShowProgress([&] {
        LoadProgressWindow(driver.kind, driver.op, driver.mode);
        ranToItsEnd = ActivateProgressWindow(driver.kind, driver.op, driver.mode);
    });
    if (!ranToItsEnd) return DriverEnd::Failed;
    return gRun.intCancel == 1 ? DriverEnd::Cancelled : DriverEnd::Completed;
}

DriverEnd RunRowLoopDriver(const DriverSpec& driver) {
    const std::string title = TitleOf(driver);
    PrepareRunColumns(driver.kind, driver.op, driver.op == OperationKind::Exp);
    ResetRun(driver);
    if (!GetRunInputs(driver.op)) return DriverEnd::Stopped;
    if (!ConnectForRun()) return DriverEnd::NoConnection;

    const std::string& csv = gRun.strCsvPath;
    if (!CheckFileOpens(csv)) {
        Box(title, "CSVﾌｧｲﾙ読込み失敗！\rﾊﾟｽを確認して正しいﾌｧｲﾙ名を入力してください。",
            MsgIcon::Critical);
        return DriverEnd::Stopped;
    }
    if (const int32_t line = CheckFileText(csv); line != 0) {
        // Every reader stops at such a line: the file is refused whole, before its first row.
        Box(title,
            "CSVﾌｧｲﾙの" + std::to_string(line) +
                "行目にCP932(Shift_JIS)ではない文字があります！\r"
                "ﾌｧｲﾙをCP932(Shift_JIS)で保存し直してください。",
            MsgIcon::Critical);
        return DriverEnd::Stopped;
    }
    if (!HasHeaderLine(csv)) {
        Box(title, "CSVﾌｧｲﾙにﾍｯﾀﾞ行が見つかりません！\rﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙを参照しﾍｯﾀﾞを定義してください。",
            MsgIcon::Critical);
        return DriverEnd::Stopped;
    }
    if (driver.mode == RunMode::Production && driver.op == OperationKind::Del &&
        !AskYes(title,
                "ｵﾌﾞｼﾞｪｸﾄの本番削除を実行しようとしています！\r"
                "本番削除処理を実行するとｵﾌﾞｼﾞｪｸﾄがActive Directoryから削除され回復できなく"
                "なります。\r本番削除処理を続行しますか？",
                MsgIcon::Exclamation)) {
        return DriverEnd::Stopped;
    }
    if (!AskYes(title, title + "処理を開始してよろしいですか？", MsgIcon::Question)) {
        return DriverEnd::Stopped;
    }

    gRun.sngStartTime = RunTimer();
    gRun.lngObjectCnt = CountObjects(csv);
    if (gRun.lngObjectCnt == 0) {
        Box(title, "CSVﾌｧｲﾙにﾃﾞｰﾀがありません！", MsgIcon::Exclamation);
        return DriverEnd::Stopped;
    }
    if (!ReadMirrorFlags(csv, gRun.MirrorFlags)) {
        Box(title, "ﾍｯﾀﾞ行にﾍｯﾀﾞ[MIRROR]が見つかりません！このﾍｯﾀﾞを定義してください。",
            MsgIcon::Exclamation);
        return DriverEnd::Stopped;
    }
    ResetLedgers(driver.kind, gRun.lngDataRowCnt);
    return ShowProgressWindow(driver);
}

DriverEnd RunExportDriver(const DriverSpec& driver) {
    const std::string title = TitleOf(driver);
    ResetRun(driver);
    if (!GetRunInputs(driver.op)) return DriverEnd::Stopped;
    if (!ConnectForRun()) return DriverEnd::NoConnection;

    if (gRun.strCsvPath.empty()) {
        Box(title, "CSVﾌｧｲﾙ名が指定されていません。", MsgIcon::Critical);
        return DriverEnd::Stopped;
    }
    if (FileExists(gRun.strCsvPath) &&
        !AskYes(title, "同名のCSVﾌｧｲﾙはすでに存在します。\r上書きしますか？", MsgIcon::Question)) {
        return DriverEnd::Stopped;
    }
    if (!AskYes(title, title + "処理を開始してよろしいですか？", MsgIcon::Question)) {
        return DriverEnd::Stopped;
    }

    gRun.sngStartTime = RunTimer();
    gSession.CollectPending = true;
    TheOperator().ShowCollectWait(title, GetExportRoutines(driver.kind).getExpInfo);
    gSession.CollectPending = false;
    if (gRun.blnNothingToExport || gRun.blnWaitCancelled) return DriverEnd::Stopped;
    return ShowProgressWindow(driver);
}

void ConnectByMethod() {
    if (ToUpperAscii(gSession.Method) == "LOCAL") {
        ConnectLocal();
    } else {
        ConnectRemote();
    }
    if (gSession.Connected) gSession.ConnectPending = false;
}

void ShowConnectionWait() {
    gSession.ConnectPending = true;
    TheOperator().ShowConnectWait(ConnectByMethod);
}

bool KeepsStandingConnection() {
    return gSession.NeverShowAgain && gSession.Connected;
}

}  // namespace

RowOperation RowOperationOf(OperationKind op, RunMode mode) {
    const auto o = static_cast<RowOperation>(op);
    if (op == OperationKind::Exp) return mode == RunMode::Compare ? kCompareOfExport : -1;
    switch (mode) {
        case RunMode::Production:
            return o;
        case RunMode::Imitate:
            return static_cast<RowOperation>(o + 4);
        case RunMode::Compare:
            return static_cast<RowOperation>(o + 8);
    }
    return -1;
}

bool GetRunInputs(OperationKind op) {
    const DomainFields fields = TheOperator().MainWindowDomainFields(op);
    gRun.strDomainDNS = Trim(fields.dns);
    gRun.strDomainNetBIOS = Trim(fields.netbios);

    const char* missing = nullptr;
    if (gRun.strCsvPath.empty()) {
        missing = "CSVﾌｧｲﾙをﾌﾙﾊﾟｽで指定してください。";
    } else if (gRun.strDomainDNS.empty()) {
        missing = "ﾄﾞﾒｲﾝの完全なDNS名を入力してください｡";
    } else if (gRun.strDomainNetBIOS.empty()) {
        missing = "ﾄﾞﾒｲﾝのNetBIOS名を入力してください｡";
    }
    if (!missing) return true;
    Box("入力情報不足", missing, MsgIcon::Exclamation);
    return false;
}

bool ConnectForRun() {
    gSession.LoginCancelled = false;
    // Once connected, "never show again" lets the standing connection serve every later run.
    if (KeepsStandingConnection()) return true;
    TheOperator().ShowLogin();
    if (gSession.LoginCancelled) return false;
    ShowConnectionWait();
    if (!gSession.Connected) RetryConnect();
    return gSession.Connected && !gSession.LoginCancelled;
}

void RetryConnect() {
    while (gRun.intCancel != 1 && !gSession.Connected) {
        if (gSession.LoginCancelled) return;
        if (!KeepsStandingConnection()) TheOperator().ShowLogin();
        if (gSession.LoginCancelled) return;
        ShowConnectionWait();
    }
}

DriverEnd RunDriver(const DriverSpec& driver) {
    gRun.blnImitate = driver.mode == RunMode::Imitate;
    gRun.blnCompare = driver.mode == RunMode::Compare;
    if (RefuseMissingEngine(driver)) return DriverEnd::Stopped;
    return IsExport(driver) ? RunExportDriver(driver) : RunRowLoopDriver(driver);
}

DriverEnd RunFromButton(ObjectKind kind, OperationKind op, RunMode mode, std::string_view csvPath) {
    gRun.blnDBMode = false;
    gRun.strCsvPath = Trim(csvPath);
    const DriverSpec* driver = FindDriver(kind, op, mode);
    if (!driver) return DriverEnd::Stopped;
    return RunDriver(*driver);
}

}  // namespace orin
