#pragma once
// What the engines of every kind share to read a row and find what it names: a cell by its
// column name, the Mirror cell, the header checks of a span, the path a span names, the
// container rule (an OU first, a one-level default container second) and the manager lookup.
// Functions that "raise" do so through Raise (base/Outcome.h) and must run inside EngineRun.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"

namespace orin {

using Cells = std::vector<std::string>;
using Columns = std::vector<int16_t>;

// The file position of a named column: the entry of `columns` that stands at the name's place
// in gRun.ColumnNames; -1 when the run's list lacks the name or the file lacks the column.
int16_t ColumnOf(const Columns& columns, std::string_view name);
// The trimmed cell of a named column; "" when the column or the cell is absent.
std::string Cell(const Cells& cells, const Columns& columns, std::string_view name);

// The Mirror cell: true for "YES", false for "NO" or "" (any case). Anything else raises 1031.
bool ReadMirror(const Cells& cells, const Columns& columns);

// Raises `absentCode` when either end of a span is missing from the header, and `reversedCode`
// when its end stands before its start (equal positions pass).
void CheckSpan(int16_t start, int16_t end, int32_t absentCode, int32_t reversedCode);
void CheckSpan(const Columns& columns, std::string_view start, std::string_view end,
               int32_t absentCode, int32_t reversedCode);
// The OU path of a span ("" when it is empty or absent).
std::string SpanPath(const Cells& cells, const Columns& columns, std::string_view start,
                     std::string_view end);

// The distinguished name of a path relative to the domain: the path + "," + DomainDN, or
// DomainDN for "".
std::string FullDn(std::string_view relativePath);
// "LDAP://" + FullDn: the whole path of a relative path, the domain itself for "".
std::string WholePath(std::string_view relativePath);
// True when the whole path binds.
bool Binds(std::string_view wholePath);
// Binds an OU path relative to the domain.
bool BindOUPath(std::string_view ouPath, DirObject& out);
bool OUPathExists(std::string_view ouPath);

// True for "!C" in any letter case: a modify cell that clears its property.
bool IsClearMarker(std::string_view cell);
// Every "<Rtn>", in any letter case, as a carriage return and a line feed.
std::string ExpandRtn(std::string_view text);

// The one-level default container rule: when exactly the first cell of the span is filled and
// "CN=" + that cell exists under the domain, its distinguished name ("CN=Users,DC=..").
std::optional<std::string> DefaultContainerOf(const Cells& cells, const Columns& columns,
                                              std::string_view start, std::string_view end);

// The distinguished name of the container that cells[first..last] name: the domain when the span
// is empty, the OU when it binds, the default container ("CN=" form) when exactly one level is
// given and only that binds; no value when none is found. `bound`, when given, receives the
// container (the session's root for the domain).
std::optional<std::string> ResolveContainer(const Cells& cells, int16_t first, int16_t last,
                                            DirObject* bound = nullptr);
// "CN=" + name + "," + the container of ResolveContainer; "" when the container isn't found.
std::string ObjectDnInContainer(const Cells& cells, int16_t first, int16_t last,
                                std::string_view name);

// The manager of a row, looked up without writing anything: its distinguished name, or the
// code the manager step fails with (1005, 1006, 2020, 1007, 1123).
struct ManagerLookup {
    int32_t failure = 0;
    std::string dn;
    std::string containerPath;  // the OU path of the manager's span
};
ManagerLookup LookUpManager(const Cells& cells, int16_t mgrStart, int16_t mgrEnd,
                            std::string_view mgrRdn);

// How a step of an engine fails: a plain Raise, or, in an add, with the new object marked for
// removal first.
using FailStep = std::function<void(int32_t code)>;

// True when an object of any class has this sAMAccountName.
bool AccountExists(std::string_view samAccountName);

// The flag of the row in gRun.MirrorFlags ("" outside the list).
std::string_view MirrorFlagOf(int32_t ordinal);

}  // namespace orin
