#pragma once
// The delete and move engines of the objects named "CN=" + RDN in a container: groups, users,
// computers and shared folders. They are one family, told once and parameterised by the class
// word, the codes in which the kinds differ, and the ledgers that remember what earlier rows of
// the run did, so that a second row on the same object can say which row is to blame.
//
// Each engine has the row-engine signature of run/RowLoop.h behind its family argument; a kind
// binds its family (engines/group/GroupEngines.cpp shows how). A Mirror row does nothing but
// end. There is no rollback.

#include <cstdint>
#include <string_view>

#include "base/Identifiers.h"
#include "engines/Ledgers.h"
#include "engines/common/EngineCells.h"

namespace orin {

struct DeleteMoveFamily {
    ObjectKind kind;
    std::string_view classWord;  // "group", "user", "computer", "volume"
    int32_t notThatClass;        // an object of another class stands at the path
    // A refused delete of an object of the class that still stands there: this code, or 0 for
    // a kind whose refused delete counts as done (the row goes on as if it had worked).
    int32_t deleteRefused;
    int32_t moveFailed;     // a refused move whose cause isn't found
    int32_t nameUnchanged;  // warning: NewRDN equals RDN
    // The ledgers and the count of their entries in force: the delete ledger has the line and
    // the whole path, the move ledger the line, the old and the new whole path. The engines
    // empty them on the first row of a run.
    Ledger* deleteLedger;
    Ledger* moveLedger;
    int32_t* count;
};

void DeleteOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                    int32_t ordinal, const Columns& columns);
void MoveOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                  int32_t ordinal, const Columns& columns);

// The imitations: the checks of the production engines with the directory left as it is; what
// an earlier row would have deleted or moved comes from the ledgers.
void ImitateDeleteOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                           int32_t ordinal, const Columns& columns);
void ImitateMoveOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                         int32_t ordinal, const Columns& columns);

// The compares after a production run: a deleted object is gone (20410); a moved object stands
// at the target and no more at the source (20400, 20401).
void CompareDeleteOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                           int32_t ordinal, const Columns& columns);
void CompareMoveOfFamily(const DeleteMoveFamily& family, const Cells& cells, int32_t lineNumber,
                         int32_t ordinal, const Columns& columns);

}  // namespace orin
