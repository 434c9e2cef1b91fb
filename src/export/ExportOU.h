#pragma once
// The OU export: one row per OU in the column order of the export file (OU-Start..OU-End,
// Mirror, c, postalCode, st, l, street, description, MgrOU-Start..MgrOU-End, MgrRDN), so that
// the file can be edited and fed back, or checked by a compare of export.

#include <cstdint>
#include <filesystem>

#include "directory/DirObject.h"

namespace orin {

// Appends a row for every OU below `container`, depth first, each OU before the OUs inside it.
// The OU's span gets `intOULevel` cells and the manager's `intMgrLevel` (at least the two of
// Start and End, as the header writer gives them). Counts gRun.lngSuccessCnt, moves the progress
// window and yields once per OU; stops at gRun.intCancel, with the cancel caption. False when a
// line could not be written; that ends the walk of the container in hand only.
bool ExportOU(const std::filesystem::path& path, DirObject& container, int16_t intOULevel,
              int16_t intMgrLevel);

// The collecting step of an OU export run: the object scan of the whole domain, with the
// "組織単位が存在しません。" box when there is no OU.
void GetExpInfo_OU();

// The export walk of an OU export run: every OU of the domain, with the span sizes that the scan
// found (gRun.intOULevel, gRun.intMgrLevel).
bool ExportOUOfDomain(const std::filesystem::path& csvPath);

}  // namespace orin
