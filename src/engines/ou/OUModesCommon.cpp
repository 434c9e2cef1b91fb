#include "engines/ou/OUModesCommon.h"

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/Strings.h"

namespace orin::oumodes {
namespace {

// A value inside an LDAP filter, with the characters that would change the filter escaped.
std::string FilterValue(std::string_view value) {
    static const char kHex[] = "0123456789abcdef";
    std::string out;
    for (char ch : value) {
        const auto byte = static_cast<unsigned char>(ch);
        if (ch == '*' || ch == '(' || ch == ')' || ch == '\\' || byte == 0) {
            out += '\\';
            out += kHex[byte >> 4];
            out += kHex[byte & 0x0F];
        } else {
            out += ch;
        }
    }
    return out;
}

}  // namespace

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

void CheckSpan(const Columns& columns, std::string_view start, std::string_view end,
               int32_t absentCode, int32_t reversedCode) {
    const int16_t first = ColumnOf(columns, start);
    const int16_t last = ColumnOf(columns, end);
    if (first == -1 || last == -1) Raise(absentCode);
    if (first > last) Raise(reversedCode);
}

std::string SpanPath(const Cells& cells, const Columns& columns, std::string_view start,
                     std::string_view end) {
    return BuildOUPath(cells, ColumnOf(columns, start), ColumnOf(columns, end));
}

std::string RowOUPath(const Cells& cells, const Columns& columns) {
    CheckSpan(columns, "OU-Start", "OU-End", 1000, 1001);
    std::string path = SpanPath(cells, columns, "OU-Start", "OU-End");
    if (path.empty()) Raise(2100);
    return path;
}

std::string FullDn(std::string_view ouPath) {
    if (ouPath.empty()) return gSession.DomainDN;
    return std::string(ouPath) + "," + gSession.DomainDN;
}

std::string WholePath(std::string_view ouPath) {
    return "LDAP://" + FullDn(ouPath);
}

bool BindOUPath(std::string_view ouPath, DirObject& out) {
    return BindObject(WholePath(ouPath), out);
}

bool OUPathExists(std::string_view ouPath) {
    DirObject object;
    return BindOUPath(ouPath, object);
}

std::optional<std::string> DefaultContainerOf(const Cells& cells, const Columns& columns,
                                              std::string_view start, std::string_view end) {
    const int16_t first = ColumnOf(columns, start);
    const int16_t last = ColumnOf(columns, end);
    const std::string firstCell = CellAt(cells, first);
    if (firstCell.empty() || !BuildOUPath(cells, first + 1, last).empty()) return std::nullopt;
    const std::string dn = "CN=" + firstCell + "," + gSession.DomainDN;
    DirObject container;
    if (!BindObject("LDAP://" + dn, container)) return std::nullopt;
    return dn;
}

bool AccountExists(std::string_view samAccountName) {
    const std::string command = "<" + gSession.RootLdapPath +
                                ">;(&(samAccountName=" + FilterValue(samAccountName) +
                                ")(objectClass=*));cn;Subtree";
    auto found = ExecuteSearch(command);
    return found.ok() && !found->empty();
}

std::string_view MirrorFlagOf(int32_t ordinal) {
    if (ordinal < 0 || static_cast<size_t>(ordinal) >= gRun.MirrorFlags.size()) return {};
    return gRun.MirrorFlags[static_cast<size_t>(ordinal)];
}

bool IsClearMarker(std::string_view cell) {
    return EqualsIgnoreCase(cell, "!C");
}

}  // namespace orin::oumodes
