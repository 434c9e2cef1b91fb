#pragma once
// The header names that each (kind, operation) knows, the column sets of the export files, and
// the Japanese caption of every name. The drivers fill gRun.ColumnNames from here, ReadHeader
// maps them to file positions in gRun.ColumnIndex, and the engines find a column by its name.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Identifiers.h"

namespace orin {

// The names that a run of (kind, op) looks up, the same for Production, Imitate and Compare.
// With `compareOfExport` (or op Exp) the list is the export file's column set. A combination
// that has no run (GpoLink other than the compare of an export) gives an empty list. The OU Add
// list keeps one empty placeholder entry so that its entries have their usual positions; an
// empty name never matches a column.
std::vector<std::string> ColumnNamesFor(ObjectKind kind, OperationKind op,
                                        bool compareOfExport = false);

// Step 1 of a row-loop driver: gRun.ColumnNames := the list, gRun.ColumnIndex := -1 for each.
void PrepareRunColumns(ObjectKind kind, OperationKind op, bool compareOfExport = false);

// The columns of an export file of `kind`, in file order.
std::span<const std::string_view> ExportColumnNames(ObjectKind kind);

// Position of `name` in `names`, ignoring case; -1 when it isn't there (or is empty).
int FindColumnSlot(const std::vector<std::string>& names, std::string_view name);

// The file position of a named column in this run: gRun.ColumnIndex at the name's entry of
// gRun.ColumnNames; -1 when the run's list lacks the name or the file lacks the column.
int16_t ColumnIndexOf(std::string_view name);

// The trimmed cell of a named column in a split row; "" when the column or cell is absent.
std::string CellOf(const std::vector<std::string>& cells, std::string_view name);

// The caption line text of a column: "ミラー" for Mirror, "管理者の名前" for MgrRDN... Some
// names read differently by kind (a group's RDN is its group name, a user's its full name).
// Names are matched ignoring case; "" for a name that no list of the kind holds.
std::string_view ColumnCaption(ObjectKind kind, std::string_view name);

}  // namespace orin
