#pragma once
// How a compare engine holds a row against the directory: a property's cell against the
// attribute, and the manager. Each difference is raised with the CSV value in MsgArg1 and the
// directory's value in MsgArg2, and the engine goes on.

#include <cstdint>
#include <string>
#include <string_view>

#include "directory/DirObject.h"
#include "engines/common/EngineCells.h"

namespace orin {

struct PropertyRule {
    std::string_view column;  // the CSV column, also the attribute
    int32_t differenceCode;   // the values differ
    int32_t notClearedCode;   // "!C" in a modify row, and the attribute still has a value
    bool multiline;           // "<Rtn>" stands for a line break
};

// MsgArg1 := expected, MsgArg2 := actual; raises `code` when they differ, ignoring case.
void RaiseIfDifferent(std::string expected, std::string actual, int32_t code);

// Compares the cell of `property` with the attribute, ignoring case; an empty cell isn't
// compared. With `clearMarker` a "!C" cell expects no value. Line breaks of a multi-line
// property are compared, and reported, as "<改行>".
void CompareProperty(DirObject& object, const Cells& cells, const Columns& columns,
                     const PropertyRule& property, bool clearMarker);

// The manager of an add or an export row: a container or a manager that can't be found fails
// the row (2020, 1007); otherwise both names are compared in canonical form (20107).
void CompareManagerOfAdd(DirObject& object, const Cells& cells, const Columns& columns);

// The manager of a modify row: "!C" expects none (20114); a manager whose container or object
// isn't found is a difference (20115, 20116); the manager's OU path is first taken through the
// renames that earlier rows of the run made (the rename ledger).
void CompareManagerOfModify(DirObject& object, const Cells& cells, const Columns& columns);

}  // namespace orin
