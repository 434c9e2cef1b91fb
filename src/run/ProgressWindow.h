#pragma once
// frmProgress as the run sees it: its load (captions, counters at zero, the total, "ｷｬﾝｾﾙ") and
// its first activation (a wait so that the window paints, the Start method, then "OK"). The
// window itself is the front end's; this is what runs inside Operator::ShowProgress.

#include <string>

#include "base/Identifiers.h"

namespace orin {

// Label1's text while the run works: "組織単位を本番追加しています。しばらくお待ちください･･･"...
std::string ProgressStatusText(ObjectKind kind, OperationKind op, RunMode mode);

// The window's load: caption, Label1, the counter captions (一致数/相違数 in Compare, else
// 成功数/警告数), the counters and the bar at 0, the total from gRun.lngObjectCnt, "ｷｬﾝｾﾙ".
void LoadProgressWindow(ObjectKind kind, OperationKind op, RunMode mode);

// The first activation: waits, yielding all the while (a Cancel in that time stops the run
// before its first row), calls the Start method of (kind, op, Compare or not), then sets
// Command1 to "OK". Returns what the Start method returned.
bool ActivateProgressWindow(ObjectKind kind, OperationKind op, RunMode mode);

// The wait before the Start method, one second unless changed (tests shorten it). The window
// yields at least once even with no wait.
void SetProgressStartWait(double seconds);

}  // namespace orin
