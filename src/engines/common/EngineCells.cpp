#include "engines/common/EngineCells.h"

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/Strings.h"

namespace orin {

int16_t ColumnOf(const Columns& columns, std::string_view name) {
    const int slot = FindColumnSlot(gRun.ColumnNames, name);
    if (slot < 0 || static_cast<size_t>(slot) >= columns.size()) return -1;
    return columns[static_cast<size_t>(slot)];
}

std::string Cell(const Cells& cells, const Columns& columns, std::string_view name) {
    return CellAt(cells, ColumnOf(columns, name));
}

bool ReadMirror(const Cells& cells, const Columns& columns) {
    const std::string mirror = ToUpperAscii(Cell(cells, columns, "Mirror"));
    if (mirror == "YES") return true;
    if (mirror == "NO" || mirror.empty()) return false;
    Raise(1031);
    return false;
}

void CheckSpan(int16_t start, int16_t end, int32_t absentCode, int32_t reversedCode) {
    if (start == -1 || end == -1) Raise(absentCode);
    if (start > end) Raise(reversedCode);
}

void CheckSpan(const Columns& columns, std::string_view start, std::string_view end,
               int32_t absentCode, int32_t reversedCode) {
    CheckSpan(ColumnOf(columns, start), ColumnOf(columns, end), absentCode, reversedCode);
}

std::string SpanPath(const Cells& cells, const Columns& columns, std::string_view start,
                     std::string_view end) {
    return BuildOUPath(cells, ColumnOf(columns, start), ColumnOf(columns, end));
}

std::string FullDn(std::string_view relativePath) {
    if (relativePath.empty()) return gSession.DomainDN;
    return std::string(relativePath) + "," + gSession.DomainDN;
}

std::string WholePath(std::string_view relativePath) {
    return "LDAP://" + FullDn(relativePath);
}

bool Binds(std::string_view wholePath) {
    DirObject object;
    return BindObject(wholePath, object);
}

bool BindOUPath(std::string_view ouPath, DirObject& out) {
    return BindObject(WholePath(ouPath), out);
}

bool OUPathExists(std::string_view ouPath) {
    DirObject object;
    return BindOUPath(ouPath, object);
}

bool IsClearMarker(std::string_view cell) {
    return ToUpperAscii(Trim(cell)) == "!C";
}

std::string ExpandRtn(std::string_view text) {
    return ReplaceAll(text, "<Rtn>", "\r\n", true);
}

std::optional<std::string> DefaultContainerOf(const Cells& cells, const Columns& columns,
                                              std::string_view start, std::string_view end) {
    const int16_t first = ColumnOf(columns, start);
    const int16_t last = ColumnOf(columns, end);
    const std::string firstCell = CellAt(cells, first);
    if (firstCell.empty() || !BuildOUPath(cells, first + 1, last).empty()) return std::nullopt;
    const std::string dn = "CN=" + firstCell + "," + gSession.DomainDN;
    if (!Binds("LDAP://" + dn)) return std::nullopt;
    return dn;
}

std::optional<std::string> ResolveContainer(const Cells& cells, int16_t first, int16_t last,
                                            DirObject* bound) {
    DirObject container;
    const std::string ouPath = BuildOUPath(cells, first, last);
    std::optional<std::string> dn;
    if (ouPath.empty()) {
        container = gSession.RootObject;
        dn = gSession.DomainDN;
    } else if (BindOUPath(ouPath, container)) {
        dn = FullDn(ouPath);
    } else {
        // One level only, and no OU of that name: perhaps a default container such as "Users".
        const std::string firstCell = CellAt(cells, first);
        if (!firstCell.empty() && BuildOUPath(cells, first + 1, last).empty() &&
            BindObject(WholePath("CN=" + firstCell), container)) {
            dn = FullDn("CN=" + firstCell);
        }
    }
    if (dn && bound) *bound = container;
    return dn;
}

std::string ObjectDnInContainer(const Cells& cells, int16_t first, int16_t last,
                                std::string_view name) {
    const std::optional<std::string> container = ResolveContainer(cells, first, last);
    if (!container) return {};
    return "CN=" + std::string(name) + "," + *container;
}

ManagerLookup LookUpManager(const Cells& cells, int16_t mgrStart, int16_t mgrEnd,
                            std::string_view mgrRdn) {
    ManagerLookup found;
    if (mgrStart == -1 || mgrEnd == -1) {
        found.failure = 1005;
        return found;
    }
    if (mgrStart > mgrEnd) {
        found.failure = 1006;
        return found;
    }
    found.containerPath = BuildOUPath(cells, mgrStart, mgrEnd);
    found.dn = ObjectDnInContainer(cells, mgrStart, mgrEnd, mgrRdn);
    if (found.dn.empty()) {
        found.failure = 2020;
        return found;
    }
    DirObject manager;
    if (!BindObject("LDAP://" + found.dn, manager)) {
        found.failure = 1007;
    } else if (manager.Class() != "user") {
        found.failure = 1123;
    }
    return found;
}

bool AccountExists(std::string_view samAccountName) {
    const std::string command = "<" + gSession.RootLdapPath +
                                ">;(&(samAccountName=" + LdapFilterValue(samAccountName) +
                                ")(objectClass=*));cn;Subtree";
    auto found = ExecuteSearch(command);
    return found.ok() && !found->empty();
}

std::string_view MirrorFlagOf(int32_t ordinal) {
    if (ordinal < 0 || static_cast<size_t>(ordinal) >= gRun.MirrorFlags.size()) return {};
    return gRun.MirrorFlags[static_cast<size_t>(ordinal)];
}

}  // namespace orin
