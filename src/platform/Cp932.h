#pragma once
// Conversion between CP932 (Japanese Windows ANSI), the encoding of every file the operator
// sees, and UTF-8, the encoding of every string inside the program.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orin::platform {

// Decodes CP932 bytes. Bytes that are not valid CP932 are never replaced by anything: the
// result is then nullopt, and `badOffset`, when given, gets the offset of the first of them
// (a lead byte cut off by the end of the input counts as bad).
std::optional<std::string> DecodeCp932(std::string_view bytes, size_t* badOffset = nullptr);

// Decodes CP932 text to show it to a person (the summary the command line prints, a test's
// report): each byte that is not valid CP932 shows as "\xNN". Never for text that goes on into
// the directory, a log or an export: that takes DecodeCp932 and refuses what doesn't decode.
std::string Cp932ToUtf8(std::string_view bytes);

// Encodes UTF-8 text. A character that CP932 cannot hold, and a byte that is not valid UTF-8,
// becomes "?", as Windows does when it writes ANSI text.
std::string Utf8ToCp932(std::string_view utf8);

}  // namespace orin::platform
