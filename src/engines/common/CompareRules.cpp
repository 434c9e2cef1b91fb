#include "engines/common/CompareRules.h"

#include <optional>
#include <string>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/Ledgers.h"
#include "platform/Strings.h"

namespace orin {
namespace {

constexpr std::string_view kLineBreak = "<改行>";

std::string ValueOf(DirObject& object, std::string_view attribute) {
    return object.Get(attribute).value_or("");
}

// The manager at `managerDn` against the object's managedBy, both in canonical form.
void CompareManagerDn(DirObject& object, const std::string& managerDn) {
    RaiseIfDifferent(CanonicalPath(managerDn), CanonicalPath(ValueOf(object, "managedBy")), 20107);
}

}  // namespace

void RaiseIfDifferent(std::string expected, std::string actual, int32_t code) {
    const bool differ = ToUpperAscii(expected) != ToUpperAscii(actual);
    gRun.MsgArg1 = std::move(expected);
    gRun.MsgArg2 = std::move(actual);
    if (differ) Raise(code);
}

void CompareProperty(DirObject& object, const Cells& cells, const Columns& columns,
                     const PropertyRule& property, bool clearMarker) {
    std::string expected = Cell(cells, columns, property.column);
    if (expected.empty()) return;
    std::string actual = ValueOf(object, property.column);
    if (clearMarker && IsClearMarker(expected)) {
        if (!actual.empty()) Raise(property.notClearedCode);
        return;
    }
    if (property.multiline) {
        expected = ReplaceAll(expected, "<Rtn>", kLineBreak, true);
        actual = ReplaceAll(actual, "\r\n", kLineBreak);
    }
    RaiseIfDifferent(std::move(expected), std::move(actual), property.differenceCode);
}

void CompareManagerOfAdd(DirObject& target, const Cells& cells, const Columns& columns) {
    const std::string manager = Cell(cells, columns, "MgrRDN");
    if (manager.empty()) return;
    CheckSpan(columns, "MgrOU-Start", "MgrOU-End", 1005, 1006);
    const std::string managerDn = ObjectDnInContainer(cells, ColumnOf(columns, "MgrOU-Start"),
                                                      ColumnOf(columns, "MgrOU-End"), manager);
    if (managerDn.empty()) Raise(2020);
    DirObject object;
    if (!BindObject("LDAP://" + managerDn, object)) Raise(1007);
    CompareManagerDn(target, managerDn);
}

void CompareManagerOfModify(DirObject& target, const Cells& cells, const Columns& columns) {
    const std::string manager = Cell(cells, columns, "MgrRDN");
    if (manager.empty()) return;
    if (IsClearMarker(manager)) {
        if (!ValueOf(target, "managedBy").empty()) Raise(20114);
        return;
    }
    CheckSpan(columns, "MgrOU-Start", "MgrOU-End", 1005, 1006);

    const std::string path = ReplaceAll(
        PathAfterRenames(SpanPath(cells, columns, "MgrOU-Start", "MgrOU-End")), "\\/", "/");
    std::optional<std::string> container;
    if (path.empty()) {
        container = gSession.DomainDN;
    } else if (OUPathExists(path)) {
        container = FullDn(path);
    } else {
        container = DefaultContainerOf(cells, columns, "MgrOU-Start", "MgrOU-End");
    }
    if (!container) {
        Raise(20115);
        return;
    }
    const std::string managerDn = "CN=" + manager + "," + *container;
    DirObject object;
    if (!BindObject("LDAP://" + managerDn, object)) {
        Raise(20116);
        return;
    }
    CompareManagerDn(target, managerDn);
}

}  // namespace orin
