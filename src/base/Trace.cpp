#include "base/Trace.h"

#include <cstdio>
#include <ctime>

#include "platform/TextFile.h"

namespace orin {

int16_t TraceMode = 0;
std::filesystem::path TraceFilePath;

namespace {

std::tm LocalNow() {
    std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    return local;
}

std::string DateTimeText(const std::tm& tm) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04d/%02d/%02d %02d:%02d:%02d", tm.tm_year + 1900,
                  tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buffer;
}

}  // namespace

std::string TraceFileName(const std::tm& start) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "Debug_%04d%02d%02d_%02d%02d%02d.log",
                  start.tm_year + 1900, start.tm_mon + 1, start.tm_mday, start.tm_hour,
                  start.tm_min, start.tm_sec);
    return buffer;
}

void InitTraceFilePath(const std::filesystem::path& folder) {
    TraceFilePath = folder / TraceFileName(LocalNow());
}

bool WriteTrace(int16_t mode, bool enabled, int16_t kind, std::string_view procName,
                std::string_view text) {
    bool write = mode == 1 || (mode == 2 && enabled);
    if (!write) return true;
    std::string line = DateTimeText(LocalNow());
    line += "【";
    line += kind == kTraceFunction ? "Function" : "Sub";
    line += ": ";
    line += procName;
    line += "】";
    line += text;
    return platform::AppendLine(TraceFilePath, line);
}

}  // namespace orin
