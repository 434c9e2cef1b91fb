#include "cli/TemplateCommand.h"

#include "cli/TerminalOperator.h"
#include "csv/CsvReader.h"
#include "csv/Templates.h"
#include "platform/Strings.h"

namespace orin::cli {

int TemplateCommand(const TemplateOptions& options) {
    TerminalOperator terminal(options.yes, nullptr);
    constexpr const char* kTitle = "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成";

    const std::string path = Trim(options.out);
    if (path.empty()) {
        terminal.MessageBox(kTitle, "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙ名が指定されていません。", MsgIcon::Critical,
                            MsgButtons::Ok);
        return kExitStopped;
    }
    if (FileExists(path) &&
        terminal.MessageBox(kTitle, "同名のCSVﾌｧｲﾙはすでに存在します。\r上書きしますか？",
                            MsgIcon::Question, MsgButtons::YesNo) != MsgAnswer::Yes) {
        return kExitStopped;
    }
    if (!WriteTemplate(options.kind, options.op, path)) {
        terminal.MessageBox(kTitle,
                            "ﾌｧｲﾙへの書込みが失敗しました！\r"
                            "ﾌｧｲﾙが使用中かまたはﾌｧｲﾙやﾃﾞｨﾚｸﾄﾘの書込み権限があるかを確認して"
                            "ください。",
                            MsgIcon::Critical, MsgButtons::Ok);
        return kExitFailure;
    }
    return kExitSuccess;
}

}  // namespace orin::cli
