// OU move: one row moves an OU into another container, and may rename it on the way. A Mirror
// row does nothing but end ("移動処理を行わない").

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/ou/OUProduction.h"

namespace orin {

void MoveOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    using Slot = OUMovSlot;
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const OURow row(cells, columns);

        // 1. Mirror; a Mirror row only ends.
        MirrorCell mirror = ReadMirrorCell(row.Cell(Slot::Mirror));
        if (mirror == MirrorCell::Invalid) Raise(1031);
        if (mirror == MirrorCell::Yes) Raise(gRun.blnRowFailed ? ERRNUM_60_000 : ERRNUM_60_001);
        // 2. The OU span.
        CheckSpan(row.Index(Slot::OUStart), row.Index(Slot::OUEnd), 1000, 1001);
        const std::string ouPath = row.Path(Slot::OUStart, Slot::OUEnd);
        if (ouPath.empty()) Raise(2100);
        // 3. The source's container, "" at domain level.
        const std::string parent = ParentOUPath(ouPath);
        // 4. The target span.
        CheckSpan(row.Index(Slot::NewOUStart), row.Index(Slot::NewOUEnd), 1060, 1061);
        // 5. Compared as written, letter case included.
        const std::string target = row.Path(Slot::NewOUStart, Slot::NewOUEnd);
        if (target == parent) Raise(4000);
        // 6.
        DirObject container = gSession.RootObject;
        if (!target.empty() && !BindObject(WholePath(target), container)) Raise(4001);
        // 7. The new name.
        std::string newName;
        const std::string newRdn = row.Cell(Slot::NewRDN);
        if (row.Index(Slot::NewRDN) != -1 && !newRdn.empty()) {
            newName = "OU=" + newRdn;
            if (newRdn == FirstOUName(ouPath)) {
                Raise(10101);
                newName.clear();
            }
        }
        // 8, 9.
        const std::string source = WholePath(ouPath);
        if (!container.MoveHere(source, newName).ok()) {
            if (!Binds(source)) Raise(4002);
            Raise(2050);
        }
        // 10.
        RaiseVerdict();
    });
}

}  // namespace orin
