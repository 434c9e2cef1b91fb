#pragma once
// The fast path of the group add.
//
// The exact way costs a row at least seven round trips: the container's bind, the create, a
// write per property, the manager's write, the member's container and its add, the group to
// join, its container and its add. The fast path makes a row that goes well three writes:
//
// - Steps 4, 9 and 10 (container, create, properties, manager): one add carrying the type, the
//   account name, the properties and managedBy, at the OU form of the group's path. The manager
//   is looked up first, as the exact way looks it up; a lookup that fails leaves the row to the
//   exact way. The container isn't bound: an add into an OU that doesn't exist is refused, and a
//   default container ("Users") is such a refusal too. A refused add creates nothing, so the
//   exact way then starts from the same state and finds the same code. A directory checks the
//   right to write each attribute on a modify but not on an add, so the attributes the exact way
//   writes after the create must all be in allowedAttributesEffective of the new group; that
//   answer depends on the container, the class and the account, and is asked once per
//   container in a run. If one is missing, the group is deleted again and the row replayed.
// - Steps 12 and 13 (member, group to join): one modify each, at the OU form of the paths,
//   without binding their containers or the group to join. A modify is applied whole or not at
//   all: a refused one changes nothing, and the exact step follows, which finds the path, makes
//   the same modify and, refused again, works out the code.
//
// The warnings of the type cells (10000, 10001) are raised once the add stands; when it falls
// back, the exact way raises them in their place.

#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"
#include "engines/common/FastPathSupport.h"

namespace orin {

// On by default. Off, every row goes the exact way: for tests that compare the two, and for the
// benchmark's before-and-after figures.
void SetGroupFastPath(bool enabled);
bool GroupFastPathEnabled();

// What the add of steps 9 and 10 writes.
struct GroupAddPlan {
    std::string relativeName;  // "CN=" + RDN + "," + OU path, relative to the domain
    std::string accountName;
    int32_t groupType = 0;
    std::vector<PropertyWrite> properties;
    ManagerCells manager;
};

// Steps 4, 9 and 10 in one add. True when the group stands with its properties and manager, as
// the exact way would leave it after step 10; `created` is then the new group. False when
// nothing was changed.
bool FastAddGroup(const GroupAddPlan& plan, const Cells& cells, DirObject& created);

// One membership write (`group` takes `memberPath` as a member) without looking anything up.
// True when done; false when nothing was changed and the exact step is to follow.
bool FastAddMember(DirObject& group, std::string_view memberPath);

}  // namespace orin
