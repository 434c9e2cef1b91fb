#include "export/ExportOU.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/Identifiers.h"
#include "base/Operator.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "export/ExportScan.h"
#include "platform/Strings.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

using Row = std::vector<std::string>;

// The cells of a comma-separated list of OU names, top level first.
void AppendNames(Row& row, const std::string& names) {
    if (names.empty()) return;
    for (std::string& name : Split(names, ',')) row.push_back(std::move(name));
}

// Empty cells up to the span's size. A span has at least its Start and End columns.
void PadSpan(Row& row, size_t spanStart, int16_t level) {
    const size_t cells = static_cast<size_t>(std::max<int>(level, 2));
    if (row.size() - spanStart < cells) row.resize(spanStart + cells);
}

std::string Attribute(DirObject& object, std::string_view name) {
    return object.Get(name).value_or("");
}

// The manager's container cells and its name. A manager that can't be reached leaves the cells
// empty.
void AppendManager(Row& row, DirObject& ou, int16_t mgrLevel) {
    const size_t spanStart = row.size();
    std::string name;
    DirObject manager;
    const std::string managedBy = Attribute(ou, "managedBy");
    if (!managedBy.empty() && BindObject("LDAP://" + managedBy, manager)) {
        const std::string parent = manager.Parent();
        switch (PathKind(parent)) {
            case ContainerKind::OU:
                AppendNames(row, OUFieldsFromPath(parent));
                break;
            case ContainerKind::DefaultContainer:  // "CN=Users" and its kind: one cell
                row.push_back(RdnValue(FirstRdn(DnFromPath(parent))));
                break;
            case ContainerKind::Domain:
                break;
        }
        name = RdnValue(FirstRdn(manager.DN()));
    }
    PadSpan(row, spanStart, mgrLevel);
    row.push_back(std::move(name));
}

Row OURow(DirObject& ou, int16_t ouLevel, int16_t mgrLevel) {
    Row row;
    AppendNames(row, OUFieldsFromPath(ou.Parent()));
    auto name = ou.Get("ou");
    row.push_back(name.ok() ? *name : RdnValue(FirstRdn(ou.DN())));
    PadSpan(row, 0, ouLevel);
    row.emplace_back();  // Mirror
    for (std::string_view attribute : {"c", "postalCode", "st", "l"}) {
        row.push_back(Attribute(ou, attribute));
    }
    row.push_back(ReplaceAll(Attribute(ou, "street"), "\r\n", "<Rtn>"));
    row.push_back(Attribute(ou, "description"));
    AppendManager(row, ou, mgrLevel);
    return row;
}

std::string ExportTitle() {
    return RunTitle(OperationCodeFor(ObjectKind::OU, OperationKind::Exp, RunMode::Production));
}

}  // namespace

bool ExportOU(const std::filesystem::path& path, DirObject& container, int16_t intOULevel,
              int16_t intMgrLevel) {
    auto children = container.Children({"organizationalUnit"});
    if (!children.ok()) return true;  // nothing to write below this container
    Operator& op = TheOperator();
    for (DirObject& child : *children) {
        if (gRun.intCancel == 1) {
            op.SetStatus(ExportTitle() + "処理がﾕｰｻﾞｰに中断されました。", true);
            return true;
        }
        if (!platform::AppendLine(path, Join(OURow(child, intOULevel, intMgrLevel), ","))) {
            return false;
        }
        ++gRun.lngSuccessCnt;
        op.SetProgressValue(gRun.lngSuccessCnt);
        op.SetCounters(gRun.lngSuccessCnt, gRun.lngFailureCnt, gRun.lngWarningCnt);
        op.Yield();
        ExportOU(path, child, intOULevel, intMgrLevel);
    }
    return true;
}

void GetExpInfo_OU() {
    RunExpInfoScan(ObjectKind::OU,
                   [] { CollectExportInfo(gSession.RootObject, "organizationalUnit"); });
}

bool ExportOUOfDomain(const std::filesystem::path& csvPath) {
    return ExportOU(csvPath, gSession.RootObject, gRun.intOULevel, gRun.intMgrLevel);
}

}  // namespace orin
