#include "base/Messages.h"

#include <algorithm>

#include "base/MessageTable.h"
#include "base/RunContext.h"

namespace orin {

std::optional<std::string_view> MessageTemplate(int32_t code) {
    auto entries = MessageEntries();
    auto it = std::ranges::lower_bound(entries, code, {}, &MessageEntry::code);
    if (it == entries.end() || it->code != code) return std::nullopt;
    return it->text;
}

std::string FillMessage(std::string_view text, std::string_view arg1, std::string_view arg2,
                        std::string_view aceArg) {
    std::string out;
    out.reserve(text.size() + arg1.size() + arg2.size() + aceArg.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 1 < text.size()) {
            const char next = text[i + 1];
            if (next == '1' || next == '2' || next == '3') {
                out += next == '1' ? arg1 : next == '2' ? arg2 : aceArg;
                ++i;
                continue;
            }
        }
        out += text[i];
    }
    return out;
}

std::optional<std::string> MessageText(int32_t code) {
    auto text = MessageTemplate(code);
    if (!text) return std::nullopt;
    return FillMessage(*text, gRun.MsgArg1, gRun.MsgArg2, gRun.AceArg);
}

}  // namespace orin
