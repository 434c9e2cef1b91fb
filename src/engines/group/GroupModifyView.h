#pragma once
// How a group modify run sees the directory. Production sees it as it is, and writes. An
// imitation writes nothing and must see it as the earlier rows of the run would have left it:
// the change ledger tells what they renamed and which scopes they set, and a record of the
// memberships they would have added, removed and cleared stands over the directory's own.
//
// Everything here reads gRun.blnImitate through the chain state's `imitate`.

#include <cstdint>
#include <string>
#include <vector>

#include "directory/DirObject.h"
#include "directory/GroupHelpers.h"

namespace orin {

// A line and a whole path, waiting for the chain's end.
struct DeferredEntry {
    int32_t line = 0;
    std::string path;
};

// The state that lives over the rows of one modify chain, cleared at its first row.
struct GroupChainState {
    bool imitate = false;
    int32_t firstLine = 0;  // the chain's first row: the line its ledger entry names
    std::string path;       // the group's whole path as the chain names it
    std::string realPath;   // where the directory holds it (an imitation follows renames)
    std::string rdn;
    std::string containerDn;
    std::string PendingNewName;
    std::string PendingNewPath;
    std::string PendingContainer;
    std::string PendingAccountName;
    int16_t CurrentScope = kScopeNone;
    int32_t CurrentScopeEntry = -1;  // an imitation's change entry that set CurrentScope
    int16_t EffectiveScope = kScopeNone;
    int64_t ScopeBits = 0;
    int64_t ClassBits = 0;
    bool ScopeGiven = false;
    bool ClassGiven = false;
    std::vector<DeferredEntry> DeferredMembers;
    std::vector<DeferredEntry> DeferredGroups;
};

extern GroupChainState GroupChain;

// Empties the chain state and the imitation's record of memberships: the first row of a run.
void ResetGroupModifyRun(bool imitate);

// An object that a modify row names: the group, a member, a group to join.
struct Seen {
    bool exists = false;
    int32_t renamedAway = -1;  // the change entry of an earlier row that renamed the path away
    std::string realPath;      // where the directory holds it
    DirObject object;          // bound there
};
// Production binds the path, and only when that fails asks the ledger whether an earlier row
// renamed it away. An imitation asks the ledger first (the directory still holds the old name)
// and finds a path that an earlier row renamed to under the old one.
Seen Look(const std::string& path);

// A scope as the run has it, with the change entry that set it in an imitation (-1 when it is
// the directory's).
struct RunScope {
    int16_t scope = kScopeNone;
    int32_t entry = -1;
};
RunScope ScopeNow(const std::string& realPath, int16_t directoryScope);
RunScope ScopeNow(Seen& group);

// Raises a scope code; one that a scope from the ledger decided gets its row-naming form with
// that row's line.
void RaiseScopeCode(int32_t code, const RunScope& decidedBy);

// Membership as the run has it. Paths are the directory's (Seen::realPath).
bool IsMemberNow(Seen& group, const std::string& memberPath);
size_t CountMembersNow(Seen& group);
bool HasGroupsNow(Seen& object);
// The groups among the members, and the groups holding the object, with their scopes now.
struct GroupNow {
    std::string path;
    RunScope scope;
};
std::vector<GroupNow> MemberGroupsNow(Seen& group);
std::vector<GroupNow> GroupsHoldingNow(Seen& object);

// What an imitated row would have done to the memberships.
void NoteAdded(const std::string& groupPath, const std::string& memberPath);
void NoteRemoved(const std::string& groupPath, const std::string& memberPath);
void NoteMembersCleared(const std::string& groupPath);
void NoteGroupsCleared(const std::string& memberPath);

}  // namespace orin
