#pragma once
// The fast path of the OU add and modify engines.
//
// The exact way writes every property with a request of its own, so that a refusal names the
// property: an add row with six properties and a manager costs eight writes, and a write on a
// domain controller costs far more than a read. The fast path sends those writes as one
// request and falls back to the exact way whenever it can't be sure of the same outcome:
//
// - Add, steps 7, 9 and 10 (create, properties, manager): one add carrying the properties and
//   managedBy. The manager is looked up first, with the same binds the exact way makes; a
//   lookup that fails, or a manager whose container is the OU being added (which exists only
//   after the create), leaves the row to the exact way. A refused add creates nothing, so the
//   exact way then starts from the same state. A directory checks the right to write each
//   attribute on a modify but not on an add (Samba 4.17 lets an account that may create OUs
//   add one with an attribute it may not write), so the new OU's allowedAttributesEffective
//   must list every attribute written; if not, the OU is deleted again and the row replayed
//   the exact way. That read is the price of the guarantee: about a quarter of a row's time.
// - Modify, steps 7 and 8 (properties, manager): one modify with every set and clear and the
//   manager. The manager is looked up first; a failing lookup leaves the row to the exact way,
//   which then writes the properties before failing at the manager, as it must. A modify is
//   applied whole or not at all, so a refused one changes nothing and the exact way replays
//   the steps one by one.
// - ACE mode "0" (remove the account's ACEs, then add one), on first and Mirror rows alike:
//   one read and one write of the descriptor instead of two of each. The directory keeps explicit
//   ACEs as written and rebuilds the inherited ones on every write, so the one write leaves the
//   same list as the two. An account that doesn't resolve, or a refused write, leaves the step to
//   the exact way with nothing written.
//
// Everything else goes the exact way: the bind of a Mirror row's OU, InheritParentACL and
// RemDefaultACL (the directory rewrites the list in between), ACE modes "1" and "2", the
// rename at a modify chain's end. Those steps run after the fast ones on the same object, in
// the same order, so their codes come in the same order as well.
//
// The one state the fast path can't undo: an account that may create OUs but may neither
// write one of the properties nor delete the new OU. The add then stays with all its values
// and the row is replayed, which fails with 2008 where the exact way would name the property.

#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"
#include "engines/access/AccessCodes.h"
#include "engines/common/FastPathSupport.h"
#include "engines/ou/OUCommon.h"

namespace orin {

// On by default. The exact way alone runs when it is off: for tests that compare the two, and
// for the benchmark's before-and-after figures.
void SetOUFastPath(bool enabled);
bool OUFastPathEnabled();

// Add steps 7, 9 and 10 in one add. True when the OU stands with its properties and manager,
// as the exact way would leave it after step 10; `created` is then the new OU. False when
// nothing was changed and the exact way must run the steps.
bool FastAddOU(std::string_view ouPath, const std::vector<PropertyWrite>& properties,
               const Cells& cells, const ManagerCells& manager, DirObject& created);

// Modify steps 7 and 8 in one modify. True when done; false when nothing was changed.
bool FastModifyOU(DirObject& ou, const std::vector<PropertyWrite>& properties, const Cells& cells,
                  const ManagerCells& manager);

// ACE mode "0" in one cycle of the descriptor. True when done; false when nothing was written.
bool FastNewAce(DirObject& object, std::string_view account, uint32_t mask, uint8_t type,
                const CodedValue& flags);

}  // namespace orin
