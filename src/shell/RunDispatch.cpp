#include "shell/RunDispatch.h"

#include "run/Operator.h"

namespace orin::shell {

void DispatchRun(ObjectKind kind, OperationKind op, RunMode mode) {
    (void)kind;
    (void)op;
    (void)mode;
    // The batch drivers are not in the program yet: say so rather than pretend to run.
    TheOperator().MessageBox("ORIN  管理ｺﾝｿｰﾙ", "この処理はまだ使用できません。",
                             MsgIcon::Exclamation, MsgButtons::Ok);
}

}  // namespace orin::shell
