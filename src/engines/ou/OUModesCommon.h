#pragma once
// Helpers shared by the OU imitate and compare engines: reading a row's cells by column name,
// the header checks that open every engine, and binding OU paths relative to the domain.
// Functions that "raise" do so through Raise (run/Outcome.h) and must run inside EngineRun.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"

namespace orin::oumodes {

using Cells = std::vector<std::string>;
using Columns = std::vector<int16_t>;

// The file position of a named column: the entry of `columns` that stands at the name's place
// in gRun.ColumnNames; -1 when the run's list lacks the name or the file lacks the column.
int16_t ColumnOf(const Columns& columns, std::string_view name);
// The trimmed cell of a named column; "" when the column or the cell is absent.
std::string Cell(const Cells& cells, const Columns& columns, std::string_view name);

// The Mirror cell: true for "YES", false for "NO" or "" (any case). Anything else raises 1031.
bool ReadMirror(const Cells& cells, const Columns& columns);

// Raises `absentCode` when either end of the span is missing from the file, `reversedCode` when
// its start stands behind its end.
void CheckSpan(const Columns& columns, std::string_view start, std::string_view end,
               int32_t absentCode, int32_t reversedCode);
// The OU path of a span ("" when it is empty or absent).
std::string SpanPath(const Cells& cells, const Columns& columns, std::string_view start,
                     std::string_view end);

// The OU path of the row (OU-Start..OU-End) after the header checks 1000 and 1001; raises 2100
// when it is empty.
std::string RowOUPath(const Cells& cells, const Columns& columns);

// "LDAP://" + the OU path + "," + DomainDN; the domain itself for an empty path.
std::string WholePath(std::string_view ouPath);
// The distinguished name of an OU path: the path + "," + DomainDN, or DomainDN.
std::string FullDn(std::string_view ouPath);
// Binds an OU path relative to the domain.
bool BindOUPath(std::string_view ouPath, DirObject& out);
bool OUPathExists(std::string_view ouPath);

// The one-level default container rule: when exactly the first cell of the span is filled and
// "CN=" + that cell exists under the domain, its distinguished name ("CN=Users,DC=..").
std::optional<std::string> DefaultContainerOf(const Cells& cells, const Columns& columns,
                                              std::string_view start, std::string_view end);
// True when an object of any class has this sAMAccountName.
bool AccountExists(std::string_view samAccountName);

// The flag of the row in gRun.MirrorFlags ("" outside the list).
std::string_view MirrorFlagOf(int32_t ordinal);

// "!C" in any case: the clear marker of the modify runs.
bool IsClearMarker(std::string_view cell);

}  // namespace orin::oumodes
