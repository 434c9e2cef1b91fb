#pragma once
// What the OU engines share: the column slots of the four OU lists, reading a row by slot, the
// whole path of an OU, the manager lookup, the ACE columns of an add or modify row, and the
// new name that a modify chain carries to its last row.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"
#include "engines/common/EngineCells.h"

namespace orin {

// Slots of the OU column lists (ColumnNamesFor(ObjectKind::OU, op)): the position of a name in
// the run's ColumnIndex. Every OU list starts with OU-Start and OU-End.
enum class OUAddSlot {
    OUStart,
    OUEnd,
    c,
    postalCode,
    st,
    l,
    Unused,  // the add list keeps the modify list's postOfficeBox position empty
    street,
    description,
    MgrOUStart,
    MgrOUEnd,
    MgrRDN,
    Mirror,
    RemDefaultACL,
    DoNotRemTheseACE,
    AceSamAccountName,
    AceOpeMode,
    AccessRight,
    PermitOrDeny,
    InheritOption,
    InheritParentACL,
};
enum class OUDelSlot { OUStart, OUEnd, IfDelSubObj, Mirror };
enum class OUMovSlot { OUStart, OUEnd, NewOUStart, NewOUEnd, NewRDN, Mirror };
enum class OUMdfSlot {
    OUStart,
    OUEnd,
    NewRDN,
    c,
    postalCode,
    st,
    l,
    postOfficeBox,  // accepted in the header, never read
    street,
    description,
    MgrOUStart,
    MgrOUEnd,
    MgrRDN,
    RemDefaultACL,
    DoNotRemTheseACE,
    AceSamAccountName,
    AceOpeMode,
    AccessRight,
    PermitOrDeny,
    InheritOption,
    Mirror,
    InheritParentACL,
};

// One data row with the run's ColumnIndex, read by slot.
class OURow {
  public:
    OURow(const Cells& cells, const Columns& columns) : cells_(cells), columns_(columns) {}

    // The file position of a slot's column, -1 when the file has no such column.
    template <class Slot>
    int16_t Index(Slot slot) const {
        auto at = static_cast<size_t>(slot);
        return at < columns_.size() ? columns_[at] : int16_t{-1};
    }
    // The trimmed cell of a slot; "" when the column or the cell is absent.
    template <class Slot>
    std::string Cell(Slot slot) const {
        return CellAtIndex(Index(slot));
    }
    // The OU path of the span between two slots (BuildOUPath).
    template <class Slot>
    std::string Path(Slot first, Slot last) const {
        return PathBetween(Index(first), Index(last));
    }
    const Cells& cells() const { return cells_; }

  private:
    std::string CellAtIndex(int16_t index) const;
    std::string PathBetween(int16_t first, int16_t last) const;

    const Cells& cells_;
    const Columns& columns_;
};

// The Mirror cell, upper-cased: "YES" continues the object above, "NO" and "" start one,
// anything else is refused with 1031.
enum class MirrorCell { No, Yes, Invalid };
MirrorCell ReadMirrorCell(std::string_view cell);

// The ACE columns of one row, trimmed.
struct AceCells {
    std::string account;  // AceSamAccountName
    std::string mode;     // AceOpeMode
    std::string accessRight;
    std::string permitOrDeny;
    std::string inheritOption;
};

// The ACE step of an add or modify row: nothing without an account; otherwise the checks of
// AccessRight (6003), PermitOrDeny (6004) and InheritOption (6005) for the modes "0" and "2",
// then by mode: "0" removes the account's ACEs (1401) and adds one (6006), "1" removes them
// (1401, or the warning 10200 when there was none), "2" overwrites (6008); any other mode 6007.
void ApplyAceCells(DirObject& object, const AceCells& ace, const FailStep& fail);

// The new name of a modify chain: NewRDN of the chain's first row, renamed to at its last row.
extern std::string PendingNewName;

// Whether an object of class organizationalUnit.
inline constexpr std::string_view kOUClass = "organizationalUnit";

}  // namespace orin
