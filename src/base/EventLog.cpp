#include "base/EventLog.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "base/Operator.h"
#include "base/RunContext.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

const std::string kStars(50, '*');
const std::string kDashes(50, '-');

std::tm LocalNow() {
    std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    return local;
}

std::string DateText(const std::tm& tm) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d/%02d/%02d", tm.tm_year + 1900, tm.tm_mon + 1,
                  tm.tm_mday);
    return buffer;
}

std::string TimeText(const std::tm& tm) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buffer;
}

const char* ClassWord(EventClass cls) {
    switch (cls) {
        case EventClass::Failure:
            return "失敗, ";
        case EventClass::Warning:
            return "警告, ";
        case EventClass::Difference:
            return "相違, ";
    }
    return "";
}

}  // namespace

std::vector<std::string> LogHeaderLines(std::string_view sourcePath, OperationCode code,
                                        const std::tm& now) {
    const char* pathCaption = gRun.blnDBMode ? "ﾃﾞｰﾀﾍﾞｰｽﾌｧｲﾙﾊﾟｽ： " : "CSVﾌｧｲﾙﾊﾟｽ： ";
    return {
        "",
        kStars,
        "処理内容： " + RunTitle(code),
        "日付： " + DateText(now),
        "時刻： " + TimeText(now),
        pathCaption + std::string(sourcePath),
        kStars,
    };
}

bool WriteLogHeader(const std::filesystem::path& logPath, std::string_view sourcePath,
                    OperationCode code) {
    if (platform::AppendLines(logPath, LogHeaderLines(sourcePath, code, LocalNow()))) return true;
    TheOperator().MessageBox("ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成",
                             "ｲﾍﾞﾝﾄﾛｸﾞﾌｧｲﾙの作成が失敗しました！\r"
                             "作成先のﾃﾞｨﾚｸﾄﾘが書込み可能かどうかを確認してください。",
                             MsgIcon::Critical, MsgButtons::Ok);
    return false;
}

bool WriteRowEvent(const std::filesystem::path& logPath, int32_t lineNumber, EventClass cls,
                   std::string_view message) {
    std::string line;
    if (gRun.blnDBMode) {
        // A database has no line numbers: the object is named by its kind and path instead.
        line = ClassWord(cls);
        line += "種別: ";
        line += KindLabel(gRun.BulkKind);
        line += ", LDAP名: \"";
        line += gRun.strPubLDAPName;
        line += "\", ";
    } else {
        line = std::to_string(lineNumber) + "行, " + ClassWord(cls);
    }
    line += message;
    return platform::AppendLine(logPath, line);
}

bool WriteLogSummary(const std::filesystem::path& logPath, SummaryKind kind, int32_t objectCount) {
    std::vector<std::string> lines;
    lines.push_back("ｵﾌﾞｼﾞｪｸﾄ総数： " + std::to_string(objectCount));
    if (gRun.blnCompare) {
        const int64_t done = int64_t{gRun.lngMatchCnt} + gRun.lngDiffCnt + gRun.lngFailureCnt;
        lines.push_back("処理完了数： " + std::to_string(done));
        lines.push_back("一致数： " + std::to_string(gRun.lngMatchCnt));
        lines.push_back("相違数： " + std::to_string(gRun.lngDiffCnt));
        lines.push_back("失敗数： " + std::to_string(gRun.lngFailureCnt));
    } else {
        const int64_t done = int64_t{gRun.lngSuccessCnt} + gRun.lngWarningCnt + gRun.lngFailureCnt;
        lines.push_back("処理完了数： " + std::to_string(done));
        lines.push_back("処理成功数： " + std::to_string(gRun.lngSuccessCnt));
        lines.push_back("処理警告数： " + std::to_string(gRun.lngWarningCnt));
        lines.push_back("処理失敗数： " + std::to_string(gRun.lngFailureCnt));
    }
    if (gRun.blnShowElapsedTime) {
        lines.push_back("経過時間： " +
                        FormatElapsed(ElapsedSeconds(gRun.sngStartTime, gRun.sngEndTime)));
    }
    if (gRun.intCancel == 1) {
        lines.push_back("ｷｬﾝｾﾙによる中断の有無： 有");
        if (kind == SummaryKind::RowLoop) {
            lines.push_back("ｷｬﾝｾﾙ時の処理済最終行： " + std::to_string(gRun.lngCancelLine));
        }
    } else {
        lines.push_back("ｷｬﾝｾﾙによる中断の有無： 無");
    }
    lines.push_back(kDashes);
    return platform::AppendLines(logPath, lines);
}

void ShowRunResult(std::string_view title) {
    int32_t failures = gRun.lngFailureCnt;
    int32_t others = gRun.blnCompare ? gRun.lngDiffCnt : gRun.lngWarningCnt;
    const char* both =
        gRun.blnCompare ? "処理に失敗と相違がありました。" : "処理に失敗と警告がありました。";
    const char* onlyOthers =
        gRun.blnCompare ? "処理に相違がありました。" : "処理に警告がありました。";
    if (gRun.blnDBMode) {
        failures = gRun.lngFailureTotal;
        others = gRun.lngWarningTotal;
        both = "処理に失敗と警告がありました。";
        onlyOthers = "処理に警告がありました。";
    }

    const char* sentence = nullptr;
    MsgIcon icon = MsgIcon::Critical;
    if (failures > 0 && others > 0) {
        sentence = both;
    } else if (failures > 0) {
        sentence = "処理に失敗がありました。";
    } else if (others > 0) {
        sentence = onlyOthers;
        icon = MsgIcon::Exclamation;
    } else {
        return;
    }

    std::string text(title);
    text += sentence;
    text += "\rｲﾍﾞﾝﾄﾛｸﾞを開きますか？";
    if (TheOperator().MessageBox(title, text, icon, MsgButtons::YesNo) == MsgAnswer::Yes) {
        TheOperator().OpenEventLog(gRun.strEventLogPath);
    }
}

int16_t ElapsedSeconds(double start, double end) {
    // The count is 16-bit: a run longer than 32,767 seconds is clamped to that rather than
    // overflowing, and a clock that went backwards gives 0.
    const double span = std::nearbyint(end - start);  // the default mode rounds half to even
    if (!(span > 0)) return 0;
    if (span > 32767) return 32767;
    return static_cast<int16_t>(span);
}

std::string FormatElapsed(int16_t seconds) {
    if (seconds <= 0) return {};
    const int hours = seconds / 3600;
    const int minutes = seconds % 3600 / 60;
    const int rest = seconds % 60;
    std::string text;
    if (hours != 0) text += std::to_string(hours) + "時間";
    if (minutes != 0) text += std::to_string(minutes) + "分";
    if (rest != 0) text += std::to_string(rest) + "秒";
    return text;
}

}  // namespace orin
