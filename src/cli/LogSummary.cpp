#include "cli/LogSummary.h"

#include <fstream>
#include <iterator>

#include "platform/Cp932.h"
#include "platform/Strings.h"

namespace orin::cli {

std::uintmax_t LogSizeNow(const std::filesystem::path& log) {
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(log, ec);
    return ec ? 0 : size;
}

std::vector<std::string> SummaryWrittenSince(const std::filesystem::path& log,
                                             std::uintmax_t offset) {
    std::ifstream in(log, std::ios::binary);
    if (!in) return {};
    // A log that shrank meanwhile was replaced: all of it is new.
    if (offset > LogSizeNow(log)) offset = 0;
    in.seekg(static_cast<std::streamoff>(offset));
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    std::vector<std::string> lines = Split(platform::Cp932ToUtf8(bytes), '\n');
    for (std::string& line : lines)
        if (!line.empty() && line.back() == '\r') line.pop_back();

    const std::string dashes(50, '-');
    for (size_t first = lines.size(); first-- > 0;) {
        if (!lines[first].starts_with("ｵﾌﾞｼﾞｪｸﾄ総数： ")) continue;
        for (size_t last = first; last < lines.size(); ++last) {
            if (lines[last] == dashes) {
                return {lines.begin() + static_cast<std::ptrdiff_t>(first),
                        lines.begin() + static_cast<std::ptrdiff_t>(last) + 1};
            }
        }
        return {};
    }
    return {};
}

}  // namespace orin::cli
