#pragma once
// The object scan ahead of an export: it counts the objects that the export will write and finds
// how many cells each column span of the export file needs for the deepest path it will hold.

#include <functional>
#include <string_view>

#include "base/Identifiers.h"

#include "directory/DirObject.h"

namespace orin {

// Walks the tree below `container` for objects of `className`, adding each to gRun.lngObjectCnt
// and raising the level numbers of gRun (intOULevel, intMgrLevel, ...) to what its paths need.
// Tests gRun.blnWaitCancelled before each object and gives up at once when it is set; yields to
// the operator after each object.
//
// Classes scanned so far: "organizationalUnit". Any other class counts nothing.
void CollectExportInfo(DirObject& container, std::string_view className);

// The frame of a GetExpInfo routine around its scan: a moment's wait, yielding, so that frmWait
// paints; lngObjectCnt to 0 and the level numbers to 1; the scan (CollectExportInfo with the
// kind's class); then, unless the scan was cancelled, the "<kind>が存在しません。" box when no
// object was found, and blnNothingToExport.
void RunExpInfoScan(ObjectKind kind, const std::function<void()>& scan);

}  // namespace orin
