#include "run/ProgressWindow.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "base/Operator.h"
#include "base/RunContext.h"
#include "run/StartMethods.h"

namespace orin {
namespace {

double gStartWaitSeconds = 1.0;

constexpr const char* kPleaseWait = "しています。しばらくお待ちください･･･";

}  // namespace

std::string ProgressStatusText(ObjectKind kind, OperationKind op, RunMode mode) {
    const std::string label = KindLabel(kind);
    const bool exp = op == OperationKind::Exp;
    switch (mode) {
        case RunMode::Production:
            if (exp) return label + "をｴｸｽﾎﾟｰﾄ" + kPleaseWait;
            return label + "を本番" + OperationWord(op) + kPleaseWait;
        case RunMode::Imitate:
            return label + "を模擬" + OperationWord(op) + kPleaseWait;
        case RunMode::Compare:
            if (exp) return label + "ｴｸｽﾎﾟｰﾄのﾃﾞｰﾀを照合しています。しばらくお待ちください･･･";
            return label + OperationWord(op) + "のﾃﾞｰﾀを照合しています。しばらくお待ちください･･･";
    }
    return {};
}

void LoadProgressWindow(ObjectKind kind, OperationKind op, RunMode mode) {
    Operator& window = TheOperator();
    window.SetProgressTitle(RunTitle(OperationCodeFor(kind, op, mode)));
    window.SetStatus(ProgressStatusText(kind, op, mode), false);
    if (mode == RunMode::Compare) {
        window.SetCounterCaptions("一致数", "相違数");
    } else {
        window.SetCounterCaptions("成功数", "警告数");
    }
    window.SetCounters(0, 0, 0);
    window.SetProgressValue(0);
    window.SetCommandCaption("ｷｬﾝｾﾙ");
    window.SetTotal(gRun.lngObjectCnt);
}

bool ActivateProgressWindow(ObjectKind kind, OperationKind op, RunMode mode) {
    const double end = RunTimer() + std::min(gStartWaitSeconds, TheOperator().PaintWaitSeconds());
    for (;;) {
        TheOperator().Yield();
        if (RunTimer() >= end) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }

    bool ranToItsEnd = false;
    if (StartMethod method = FindStartMethod(kind, op, mode == RunMode::Compare)) {
        ranToItsEnd = method();
    }
    TheOperator().SetCommandCaption("OK");
    return ranToItsEnd;
}

void SetProgressStartWait(double seconds) {
    gStartWaitSeconds = seconds < 0 ? 0 : seconds;
}

}  // namespace orin
