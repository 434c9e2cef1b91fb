#pragma once
// The developer's trace: procedure entries, exits and key values, one line at a time, in a
// file of its own (Debug_<yyyymmdd>_<hhmmss>.log in the application folder). Silent unless
// TraceMode is raised; the shipped program never raises it.

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

namespace orin {

// 0 writes nothing, 1 writes every call, 2 only calls whose own `enabled` flag is true.
extern int16_t TraceMode;
// Computed at start whether or not tracing is on.
extern std::filesystem::path TraceFilePath;

// "Debug_yyyymmdd_hhmmss.log" for a start at the given local time.
std::string TraceFileName(const std::tm& start);
// Sets TraceFilePath in `folder` for the current local time.
void InitTraceFilePath(const std::filesystem::path& folder);

inline constexpr int16_t kTraceFunction = 0;
inline constexpr int16_t kTraceSub = 1;

// Appends "<date time>【Function: procName】text" (or "Sub"). True unless the file could not be
// opened; a call that writes nothing by the mode returns true at once.
bool WriteTrace(int16_t mode, bool enabled, int16_t kind, std::string_view procName,
                std::string_view text);

}  // namespace orin
