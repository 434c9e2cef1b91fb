#pragma once
// The object scan ahead of an export: it counts the objects that the export will write and finds
// how many cells each column span of the export file needs for the deepest path it will hold.

#include <string_view>

#include "directory/DirObject.h"

namespace orin {

// Walks the tree below `container` for objects of `className`, adding each to gRun.lngObjectCnt
// and raising the level numbers of gRun (intOULevel, intMgrLevel, ...) to what its paths need.
// Tests gRun.blnWaitCancelled before each object and gives up at once when it is set; yields to
// the operator after each object.
//
// Classes scanned so far: "organizationalUnit". Any other class counts nothing.
void CollectExportInfo(DirObject& container, std::string_view className);

}  // namespace orin
