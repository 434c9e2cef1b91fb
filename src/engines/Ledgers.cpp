#include "engines/Ledgers.h"

#include <algorithm>

#include "platform/Strings.h"

namespace orin {

Ledger AddLedger;
Ledger RenameLedger;
int32_t RenameCount = 0;
Ledger ChangeLedger;
Ledger DeleteLedger;
Ledger MoveLedger;
int32_t ChangeCount = 0;

void Ledger::Reset(int fields, int32_t expectedEntries) {
    // Entries are made as rows write them: a run of a million rows that renames nothing
    // shouldn't hold a million blank entries. The expected count only reserves room.
    constexpr int32_t kReserveLimit = 4096;
    fields_ = std::max(fields, 0);
    entries_.clear();
    entries_.reserve(static_cast<size_t>(std::clamp<int32_t>(expectedEntries, 0, kReserveLimit)));
}

const std::string& Ledger::Get(int field, int32_t entry) const {
    static const std::string kBlank;
    if (field < 0 || field >= fields_ || entry < 0 || entry >= Entries()) return kBlank;
    return entries_[static_cast<size_t>(entry)][static_cast<size_t>(field)];
}

void Ledger::Set(int field, int32_t entry, std::string value) {
    if (field < 0 || field >= fields_ || entry < 0) return;
    if (entry >= Entries()) {
        entries_.resize(static_cast<size_t>(entry) + 1,
                        std::vector<std::string>(static_cast<size_t>(fields_)));
    }
    entries_[static_cast<size_t>(entry)][static_cast<size_t>(field)] = std::move(value);
}

void ResetLedgers(ObjectKind kind, int32_t rowCount) {
    AddLedger.Reset(kind == ObjectKind::OU ? 2 : 5, rowCount);
    RenameLedger.Reset(3, rowCount);
    RenameCount = 0;
    ChangeLedger.Reset(5, rowCount);
    DeleteLedger.Reset(2, rowCount);
    MoveLedger.Reset(3, rowCount);
    ChangeCount = 0;
}

bool PathsEqual(std::string_view a, std::string_view b) {
    return EqualsIgnoreCase(a, b);
}

bool PathLiesUnder(std::string_view path, std::string_view ancestor) {
    if (ancestor.empty() || path.size() < ancestor.size()) return false;
    const size_t start = path.size() - ancestor.size();
    if (!EqualsIgnoreCase(path.substr(start), ancestor)) return false;
    return start == 0 || path[start - 1] == ',';
}

int32_t FindLedgerEntry(const Ledger& ledger, int field, std::string_view path, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        if (PathsEqual(ledger.Get(field, i), path)) return i;
    }
    return -1;
}

int32_t FindRenamedPath(std::string_view path, const Ledger& ledger, int oldPathField) {
    for (int32_t i = 0; i < RenameCount; ++i) {
        const std::string& old = ledger.Get(oldPathField, i);
        if (!old.empty() && PathLiesUnder(path, old)) return i;
    }
    return -1;
}

bool IsPathRenamed(std::string_view path, const Ledger& ledger, int oldPathField) {
    return FindRenamedPath(path, ledger, oldPathField) >= 0;
}

namespace {

// Exchanges the `from` part of `path` for the `to` part of one rename entry, if it applies.
bool ApplyRename(std::string& path, int32_t entry, int from, int to) {
    const std::string& before = RenameLedger.Get(from, entry);
    if (before.empty() || !PathLiesUnder(path, before)) return false;
    path = path.substr(0, path.size() - before.size()) + RenameLedger.Get(to, entry);
    return true;
}

}  // namespace

std::string PathAfterRenames(std::string_view path, bool* changed) {
    std::string result(path);
    bool any = false;
    for (int32_t i = 0; i < RenameCount; ++i) any |= ApplyRename(result, i, 2, 1);
    if (changed) *changed = any;
    return result;
}

std::string PathBeforeRenames(std::string_view path, bool* changed) {
    std::string result(path);
    bool any = false;
    for (int32_t i = RenameCount - 1; i >= 0; --i) any |= ApplyRename(result, i, 1, 2);
    if (changed) *changed = any;
    return result;
}

}  // namespace orin
