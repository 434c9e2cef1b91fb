#pragma once
// Conversion between CP932 (Japanese Windows ANSI), the encoding of every file the operator
// sees, and UTF-8, the encoding of every string inside the program.

#include <string>
#include <string_view>

namespace orin::platform {

// Decodes CP932 bytes. A byte that does not start a valid CP932 character becomes U+FFFD
// (one per bad byte) and decoding goes on with the next byte, so a damaged file is still read
// line by line and the damage stays visible in what the program reports.
std::string Cp932ToUtf8(std::string_view bytes);

// Encodes UTF-8 text. A character that CP932 cannot hold, and a byte that is not valid UTF-8,
// becomes "?", as Windows does when it writes ANSI text.
std::string Utf8ToCp932(std::string_view utf8);

}  // namespace orin::platform
