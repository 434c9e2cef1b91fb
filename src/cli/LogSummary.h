#pragma once
// The summary block that a run has just appended to Event.log, for the command line to print.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orin::cli {

// The size of the log before the run; 0 when there is no log yet.
std::uintmax_t LogSizeNow(const std::filesystem::path& log);

// The last summary block written after `offset`: from the line "ｵﾌﾞｼﾞｪｸﾄ総数： ..." through the
// line of dashes, as UTF-8. Empty when the run wrote none.
std::vector<std::string> SummaryWrittenSince(const std::filesystem::path& log,
                                             std::uintmax_t offset);

}  // namespace orin::cli
