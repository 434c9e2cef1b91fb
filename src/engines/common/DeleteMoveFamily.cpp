#include "engines/common/DeleteMoveFamily.h"

#include <optional>
#include <string>

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"

namespace orin {
namespace {

enum class Mode { Production, Imitate, Compare };

void ResetOnFirstRow(const DeleteMoveFamily& family, int32_t ordinal) {
    if (ordinal == 1) ResetLedgers(family.kind, gRun.lngDataRowCnt);
}

// The Mirror cell. A Mirror row only counts as part of its chain: it ends here. Production
// gives 60001 whatever the chain's warnings; the other modes give the row's verdict.
void EndIfMirror(const Cells& cells, const Columns& columns, Mode mode) {
    if (!ReadMirror(cells, columns)) return;
    if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
    if (mode == Mode::Production) Raise(ERRNUM_60_001);
    RaiseVerdict();
}

// The object's span (1000, 1001) and name (1010, 1011).
std::string CheckSpanAndName(const Cells& cells, const Columns& columns) {
    CheckSpan(columns, "OU-Start", "OU-End", 1000, 1001);
    if (ColumnOf(columns, "RDN") == -1) Raise(1010);
    std::string rdn = Cell(cells, columns, "RDN");
    if (rdn.empty()) Raise(1011);
    return rdn;
}

// The container a span names, by the container rule; `failure` when it isn't found.
std::string ContainerOf(const Cells& cells, const Columns& columns, std::string_view start,
                        std::string_view end, int32_t failure, DirObject* bound = nullptr) {
    std::optional<std::string> dn =
        ResolveContainer(cells, ColumnOf(columns, start), ColumnOf(columns, end), bound);
    if (!dn) Raise(failure);
    return *dn;
}

// The line of the first entry in force whose `field` is `path`, into MsgArg1; false for none.
bool FoundInLedger(const DeleteMoveFamily& family, const Ledger& ledger, int field,
                   const std::string& path) {
    const int32_t entry = FindLedgerEntry(ledger, field, path, *family.count);
    if (entry < 0) return false;
    gRun.MsgArg1 = ledger.Get(0, entry);
    return true;
}

// The end of a row that did its work: a warned row gives 60002 and leaves its entry out of
// force; otherwise the entry counts and the row gives 60001.
void EndRow(const DeleteMoveFamily& family, int32_t ordinal) {
    if (gRun.blnRowWarned) Raise(ERRNUM_60_002);
    if (MirrorFlagOf(ordinal) != "Y") ++*family.count;
    Raise(ERRNUM_60_001);
}

void EnterDelete(const DeleteMoveFamily& family, int32_t lineNumber, const std::string& path) {
    family.deleteLedger->Set(0, *family.count, std::to_string(lineNumber));
    family.deleteLedger->Set(1, *family.count, path);
}

// What a move row names, up to the move itself.
struct MoveRow {
    std::string rdn;
    std::string newName;  // "CN=" + NewRDN, "" to keep the name
    std::string sourcePath;
    std::string targetDn;
    std::string movedPath;  // where the object stands after the move
    DirObject target;
    // The "OU=" form of the name at the target.
    std::string OUFormAtTarget() const {
        return "LDAP://OU=" + (newName.empty() ? rdn : newName.substr(3)) + "," + targetDn;
    }
};

// Steps 1 to 5 of a move: spans, name, the same place (4000), the source's container (2000),
// the new name (with the family's warning when it is the old one), the target (4001). The
// compare reads the new name as it stands.
MoveRow ReadMoveRow(const DeleteMoveFamily& family, const Cells& cells, const Columns& columns,
                    Mode mode) {
    MoveRow row;
    row.rdn = CheckSpanAndName(cells, columns);
    CheckSpan(columns, "NewOU-Start", "NewOU-End", 1060, 1061);
    // Compared as written, letter case included: a rename in place is no move.
    if (SpanPath(cells, columns, "OU-Start", "OU-End") ==
        SpanPath(cells, columns, "NewOU-Start", "NewOU-End")) {
        Raise(4000);
    }
    row.sourcePath =
        "LDAP://CN=" + row.rdn + "," + ContainerOf(cells, columns, "OU-Start", "OU-End", 2000);
    const std::string newRdn = Cell(cells, columns, "NewRDN");
    if (!newRdn.empty()) {
        row.newName = "CN=" + newRdn;
        if (mode != Mode::Compare && newRdn == row.rdn) {
            Raise(family.nameUnchanged);
            row.newName.clear();
        }
    }
    row.targetDn = ContainerOf(cells, columns, "NewOU-Start", "NewOU-End", 4001, &row.target);
    row.movedPath =
        "LDAP://" + (row.newName.empty() ? "CN=" + row.rdn : row.newName) + "," + row.targetDn;
    return row;
}

void EnterMove(const DeleteMoveFamily& family, int32_t lineNumber, const MoveRow& row) {
    family.moveLedger->Set(0, *family.count, std::to_string(lineNumber));
    family.moveLedger->Set(1, *family.count, row.sourcePath);
    family.moveLedger->Set(2, *family.count, row.movedPath);
}

}  // namespace

void DeleteOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                    int32_t ordinal, const Columns& columns) {
    ResetOnFirstRow(family, ordinal);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        EndIfMirror(cells, columns, Mode::Production);
        const std::string rdn = CheckSpanAndName(cells, columns);
        DirObject container;
        const std::string path =
            "LDAP://CN=" + rdn + "," +
            ContainerOf(cells, columns, "OU-Start", "OU-End", 2000, &container);

        if (!container.Delete(family.classWord, "CN=" + rdn).ok()) {
            DirObject object;
            if (!BindObject(path, object)) {
                if (FoundInLedger(family, *family.deleteLedger, 1, path)) Raise(1200);
                Raise(1134);
            }
            if (object.Class() != family.classWord) Raise(family.notThatClass);
            // A kind without a code of its own goes on as if the delete had worked.
            if (family.deleteRefused != 0) Raise(family.deleteRefused);
        }
        EnterDelete(family, lineNumber, path);
        EndRow(family, ordinal);
    });
}

void MoveOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                  int32_t ordinal, const Columns& columns) {
    ResetOnFirstRow(family, ordinal);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        EndIfMirror(cells, columns, Mode::Production);
        MoveRow row = ReadMoveRow(family, cells, columns, Mode::Production);
        DirObject source;
        if (BindObject(row.sourcePath, source) && source.Class() != family.classWord) {
            Raise(family.notThatClass);
        }

        if (!row.target.MoveHere(row.sourcePath, row.newName).ok()) {
            if (!Binds(row.sourcePath)) {
                if (FoundInLedger(family, *family.moveLedger, 1, row.sourcePath)) Raise(1210);
                Raise(4002);
            }
            if (Binds(row.movedPath)) {
                if (FoundInLedger(family, *family.moveLedger, 2, row.movedPath)) Raise(1211);
                Raise(4003);
            }
            if (Binds(row.OUFormAtTarget())) Raise(4003);
            Raise(family.moveFailed);
        }
        EnterMove(family, lineNumber, row);
        EndRow(family, ordinal);
    });
}

void ImitateDeleteOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                           int32_t ordinal, const Columns& columns) {
    ResetOnFirstRow(family, ordinal);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        EndIfMirror(cells, columns, Mode::Imitate);
        const std::string rdn = CheckSpanAndName(cells, columns);
        const std::string path =
            "LDAP://CN=" + rdn + "," + ContainerOf(cells, columns, "OU-Start", "OU-End", 2000);
        DirObject object;
        if (!BindObject(path, object)) {
            if (FoundInLedger(family, *family.deleteLedger, 1, path)) Raise(1200);
            Raise(1134);
        }
        if (object.Class() != family.classWord) Raise(family.notThatClass);
        // The directory still holds what an earlier row would have deleted.
        if (FoundInLedger(family, *family.deleteLedger, 1, path)) Raise(1200);
        EnterDelete(family, lineNumber, path);
        EndRow(family, ordinal);
    });
}

void ImitateMoveOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                         int32_t ordinal, const Columns& columns) {
    ResetOnFirstRow(family, ordinal);
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        EndIfMirror(cells, columns, Mode::Imitate);
        const MoveRow row = ReadMoveRow(family, cells, columns, Mode::Imitate);
        DirObject source;
        if (!BindObject(row.sourcePath, source)) {
            if (FoundInLedger(family, *family.moveLedger, 1, row.sourcePath)) Raise(1210);
            Raise(4002);
        }
        if (source.Class() != family.classWord) Raise(family.notThatClass);
        if (FoundInLedger(family, *family.moveLedger, 1, row.sourcePath)) Raise(1210);
        if (Binds(row.movedPath)) Raise(4003);
        if (FoundInLedger(family, *family.moveLedger, 2, row.movedPath)) Raise(1211);
        if (Binds(row.OUFormAtTarget())) Raise(4003);
        EnterMove(family, lineNumber, row);
        EndRow(family, ordinal);
    });
}

void CompareDeleteOfFamily(const DeleteMoveFamily& /*family*/, const Cells& cells,
                           int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        EndIfMirror(cells, columns, Mode::Compare);
        const std::string rdn = CheckSpanAndName(cells, columns);
        const std::string path =
            "LDAP://CN=" + rdn + "," + ContainerOf(cells, columns, "OU-Start", "OU-End", 2000);
        if (Binds(path)) Raise(20410);
        RaiseVerdict();
    });
}

void CompareMoveOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                         int32_t ordinal, const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        EndIfMirror(cells, columns, Mode::Compare);
        const MoveRow row = ReadMoveRow(family, cells, columns, Mode::Compare);
        if (Binds(row.sourcePath)) {
            Raise(20400);
        } else if (!Binds(row.movedPath)) {
            Raise(20401);
        }
        RaiseVerdict();
    });
}

}  // namespace orin
