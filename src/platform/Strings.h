#pragma once
// Small string helpers shared by every layer. Strings are UTF-8; case folding touches ASCII
// letters only, which is all that keywords, attribute names and path prefixes need.

#include <string>
#include <string_view>
#include <vector>

namespace orin {

// Removes half-width blanks (U+0020) from both ends; tabs and full-width blanks stay.
std::string Trim(std::string_view text);
std::string ToUpperAscii(std::string_view text);
std::string ToLowerAscii(std::string_view text);
bool EqualsIgnoreCase(std::string_view a, std::string_view b);
// Position of `needle` in `text` ignoring ASCII case, or npos.
size_t FindIgnoreCase(std::string_view text, std::string_view needle, size_t from = 0);
bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix);
// Splits on every separator: "a,,b" gives "a", "", "b"; "" gives one empty part.
std::vector<std::string> Split(std::string_view text, char separator);
std::string Join(const std::vector<std::string>& parts, std::string_view separator);
// Replaces every occurrence of `from` (ignoring ASCII case when asked) by `to`.
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to,
                       bool ignoreCase = false);

}  // namespace orin
