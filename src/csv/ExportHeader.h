#pragma once
// The first two lines of an export file: the header line ("!" and the column names) and the
// caption line ("#" and their Japanese captions). The span of the object's container and the
// manager's span get empty columns between Start and End, enough for the deepest OU path that
// the object scan found: a level number of L gives L - 2 of them.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "base/Identifiers.h"

namespace orin {

// The two lines, without "\r\n". `ouLevel` sizes OU-Start..OU-End, `mgrLevel`
// MgrOU-Start..MgrOU-End (ignored by a kind without a manager).
std::vector<std::string> ExportHeaderLines(ObjectKind kind, int16_t ouLevel, int16_t mgrLevel);

// Replace the file with the two lines; false when it can't be written.
bool WriteExportHeader(ObjectKind kind, const std::filesystem::path& csvPath, int16_t ouLevel,
                       int16_t mgrLevel);

bool WriteExportHeader_OU(const std::filesystem::path& csvPath, int16_t ouLevel, int16_t mgrLevel);
bool WriteExportHeader_Grp(const std::filesystem::path& csvPath, int16_t ouLevel, int16_t mgrLevel);
bool WriteExportHeader_Usr(const std::filesystem::path& csvPath, int16_t ouLevel, int16_t mgrLevel);
bool WriteExportHeader_Com(const std::filesystem::path& csvPath, int16_t ouLevel, int16_t mgrLevel);
bool WriteExportHeader_Shr(const std::filesystem::path& csvPath, int16_t ouLevel, int16_t mgrLevel);
bool WriteExportHeader_GPO(const std::filesystem::path& csvPath, int16_t ouLevel, int16_t mgrLevel);

}  // namespace orin
