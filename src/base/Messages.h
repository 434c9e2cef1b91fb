#pragma once
// Looking up and filling in the row messages of the event log.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orin {

// The message of a code as it stands in the table, with its %1, %2, %3 still in place;
// nothing for a code that has no message.
std::optional<std::string_view> MessageTemplate(int32_t code);

// Puts the arguments in place of %1, %2 and %3. The arguments go in as they are: a "%2" inside
// the first argument is not replaced again.
std::string FillMessage(std::string_view text, std::string_view arg1, std::string_view arg2,
                        std::string_view aceArg);

// The message of a code with gRun.MsgArg1, gRun.MsgArg2 and gRun.AceArg put in; nothing for a
// code that has no message.
std::optional<std::string> MessageText(int32_t code);

}  // namespace orin
