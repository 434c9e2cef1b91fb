// OU delete: one row removes an OU, and with IfDelSubObj its whole subtree. A Mirror row does
// nothing but end ("削除処理を行わない"): it only counts as part of the chain.

#include "base/Operator.h"
#include "base/Outcome.h"
#include "base/RunContext.h"
#include "base/Trace.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "engines/ou/OUProduction.h"
#include "platform/Strings.h"

namespace orin {
namespace {

using Slot = OUDelSlot;

// A number outside every band: the row ends silently, as for any error the engine doesn't
// translate into a code of its own.
constexpr int32_t kUnforeseenError = 9999;

void TraceDelete(std::string_view text) {
    WriteTrace(TraceMode, true, kTraceFunction, "DelOUAndSubObj", text);
}

}  // namespace

bool DelOUAndSubObj(DirObject& ou, std::string_view ouPath) {
    auto children = ou.Children();
    if (!children.ok()) {
        TraceDelete("Exit. " + children.status().message);
        return false;
    }
    for (DirObject& child : *children) {
        const std::string cls = child.Class();
        if (cls == kOUClass) {
            TraceDelete("ｻﾌﾞｵﾌﾞｼﾞｪｸﾄはOUである。objItem.Class = " + cls);
            std::string childPath =
                "OU=" + child.Get("ou").value_or({}) + "," + std::string(ouPath);
            TraceDelete("ｻﾌﾞOU削除開始。 OUﾊﾟｽ=" + childPath);
            // The result isn't looked at: the delete of this OU fails below if the child stayed.
            DelOUAndSubObj(child, childPath);
        } else {
            if (!ou.Delete(cls, child.Name()).ok()) {
                TraceDelete("Exit. OUでないｻﾌﾞｵﾌﾞｼﾞｪｸﾄ削除失敗！");
                return false;
            }
            TraceDelete("OUでないｻﾌﾞｵﾌﾞｼﾞｪｸﾄを削除済み。");
        }
        TheOperator().Yield();
    }
    if (!gSession.RootObject.Delete(kOUClass, ouPath).ok()) {
        TraceDelete("Exit. OU削除失敗！");
        return false;
    }
    TraceDelete("Exit. 正常終了");
    return true;
}

void DeleteOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const OURow row(cells, columns);

        // 1. Mirror.
        MirrorCell mirror = ReadMirrorCell(row.Cell(Slot::Mirror));
        if (mirror == MirrorCell::Invalid) Raise(1031);
        // 2. A Mirror row only ends.
        if (mirror == MirrorCell::Yes) Raise(gRun.blnRowFailed ? ERRNUM_60_000 : ERRNUM_60_001);
        // 3. The OU span.
        CheckSpan(row.Index(Slot::OUStart), row.Index(Slot::OUEnd), 1000, 1001);
        // 4.
        const std::string ouPath = row.Path(Slot::OUStart, Slot::OUEnd);
        if (ouPath.empty()) Raise(2100);
        // 5.
        DirObject ou;
        if (!BindObject(WholePath(ouPath), ou)) Raise(1134);

        // 6. IfDelSubObj; a bad value is reported with the Mirror column's text.
        if (row.Index(Slot::IfDelSubObj) == -1) Raise(1070);
        std::string withChildren = ToUpperAscii(row.Cell(Slot::IfDelSubObj));
        if (withChildren != "YES" && withChildren != "NO" && !withChildren.empty()) Raise(1031);

        if (withChildren == "YES") {
            // 7.
            if (!DelOUAndSubObj(ou, ouPath)) Raise(2041);
        } else {
            // 8. Only an empty OU goes.
            auto children = ou.Children();
            if (!children.ok()) Raise(kUnforeseenError);
            if (!children->empty()) {
                Raise(10050);
            } else if (!DelOUAndSubObj(ou, ouPath)) {
                Raise(2041);
            }
        }

        // 9.
        RaiseVerdict();
    });
}

}  // namespace orin
