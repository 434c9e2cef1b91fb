#include "engines/ou/OUProduction.h"

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"

namespace orin {

void DeleteOUOfLine(const Cells& cells, const Columns& columns) {
    const OURow row(cells, columns);
    // Every OU column list starts with OU-Start and OU-End.
    const std::string ouPath = row.Path(OUAddSlot::OUStart, OUAddSlot::OUEnd);
    if (ouPath.empty()) return;
    const std::string parent = ParentOUPath(ouPath);
    DirObject container = gSession.RootObject;
    if (!parent.empty() && !BindObject(WholePath(parent), container)) return;
    container.Delete(kOUClass, "OU=" + FirstOUName(ouPath));
}

}  // namespace orin
