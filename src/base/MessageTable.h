#pragma once
// The message of every failure, warning and difference code that an engine can raise.
// %1 and %2 stand for gRun.MsgArg1 and gRun.MsgArg2, %3 for gRun.AceArg.

#include <cstdint>
#include <span>
#include <string_view>

namespace orin {

struct MessageEntry {
    int32_t code;
    std::string_view text;  // UTF-8, with "\r\n\t" where the message goes on in the next line
};

// All entries, in rising order of code, each code once.
std::span<const MessageEntry> MessageEntries();

}  // namespace orin
