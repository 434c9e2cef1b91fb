#pragma once
// The ledgers: what earlier rows of this run did (or, in an imitation, would have done), so that
// a later row can be judged against the directory as it will be rather than as it is. Each
// ledger is a table of strings, field by entry, both counted from 0.
//
//   AddLedger     the objects added. For OUs: field 0 the CSV line number, field 1 the OU path.
//                 The entry of the row in hand is at gRun.lngSuccessCnt and counts only once
//                 the row has succeeded; entries at and above that index are not in force.
//   RenameLedger  the objects renamed, RenameCount entries: field 0 the line number, field 1
//                 the OU path after the rename, field 2 the OU path before it.
//   ChangeLedger  the objects a modify chain renamed, gave a new scope or a new account name,
//                 ChangeCount entries, one a chain: field 0 the line number, field 1 the whole
//                 path as the row named it, field 2 the whole new path if renamed ("" if not),
//                 field 3 the new scope code if GroupRange was given, field 4 the new account name
//                 if it changed.
//   DeleteLedger  the objects deleted, ChangeCount entries: field 0 the line number, field 1 the
//                 whole path.
//   MoveLedger    the objects moved, ChangeCount entries: field 0 the line number, field 1 the
//                 old whole path, field 2 the new one.
//
// A run is one operation, so the last three never fill at once and share their count. They
// are kept in production as well as in imitation: a second row on the same object can then
// say which row is to blame.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Identifiers.h"

namespace orin {

class Ledger {
  public:
    // Empties the table and gives it `fields` fields, with room for `expectedEntries`.
    void Reset(int fields, int32_t expectedEntries);

    int Fields() const { return fields_; }
    // One past the highest entry written so far.
    int32_t Entries() const { return static_cast<int32_t>(entries_.size()); }

    // "" for a field or an entry that hasn't been written.
    const std::string& Get(int field, int32_t entry) const;
    // Writes one field of an entry, making the entries up to it; a field outside the table is
    // ignored.
    void Set(int field, int32_t entry, std::string value);

  private:
    int fields_ = 0;
    std::vector<std::vector<std::string>> entries_;
};

extern Ledger AddLedger;
extern Ledger RenameLedger;
extern int32_t RenameCount;
extern Ledger ChangeLedger;
extern Ledger DeleteLedger;
extern Ledger MoveLedger;
extern int32_t ChangeCount;

// Empties the ledgers for a run of `kind` with `rowCount` data rows (a row adds at most one
// entry to each). The add ledger has 2 fields for OUs and 5 for the other kinds; the rename
// ledger 3, the change ledger 5, the delete ledger 2 and the move ledger 3. The engines that
// keep ledgers call it on the first row of their run.
void ResetLedgers(ObjectKind kind, int32_t rowCount);

// OU paths in the ledgers are compared whole and upper-cased. A path "lies under" another when
// it is that path or a path below it: "OU=c,OU=b,OU=a" lies under "OU=b,OU=a", not under "OU=b".
bool PathsEqual(std::string_view a, std::string_view b);
bool PathLiesUnder(std::string_view path, std::string_view ancestor);

// The first entry below `count` whose `field` equals `path` (upper-cased); -1 when none does.
int32_t FindLedgerEntry(const Ledger& ledger, int field, std::string_view path, int32_t count);

// The first of the RenameCount entries of `ledger` whose `oldPathField` isn't empty and holds a
// path that `path` lies under: `path` names an OU that an earlier row renamed away, or something
// inside it. -1 when none.
int32_t FindRenamedPath(std::string_view path, const Ledger& ledger, int oldPathField);
bool IsPathRenamed(std::string_view path, const Ledger& ledger, int oldPathField);

// Rewrites `path` through the RenameCount entries of the rename ledger: where the path lies
// under an entry's old path (field 2), that part is exchanged for its new path (field 1), entry
// after entry, so that a chain of renames is followed to its end. `changed` tells whether any
// entry applied.
std::string PathAfterRenames(std::string_view path, bool* changed = nullptr);
// The reverse: a path written with the new names, as the directory holds it before the renames.
std::string PathBeforeRenames(std::string_view path, bool* changed = nullptr);

}  // namespace orin
