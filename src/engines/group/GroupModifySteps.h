#pragma once
// The steps of a group modify row after its head, in production and in imitation alike
// (GroupModifyView.h tells the difference): the member, the group to join or leave, and the
// chain's end.

#include <cstdint>

#include "engines/common/EngineCells.h"
#include "engines/group/GroupModifyView.h"

namespace orin {

// MemberRDN with MemberProcFlg: add or remove one member, or defer the add to the chain's end
// when only the chain's new scope allows it.
void ChangeMember(Seen& group, const Cells& cells, const Columns& columns, int32_t lineNumber);
// groupRDN with GroupProcFlg: join or leave one group, or defer the join in the same way.
void ChangeGroupMembership(Seen& group, const Cells& cells, const Columns& columns,
                           int32_t lineNumber);
// The chain's end: the scope checks over the members and the groups, the change of type, the
// deferred memberships, the rename, and the entry in the change ledger.
void EndChain(Seen& group);

}  // namespace orin
