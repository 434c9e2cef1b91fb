#pragma once
// The access-control columns of an OU row, as the imitate and compare engines treat them.

#include "directory/DirObject.h"
#include "engines/ou/OUModesCommon.h"

namespace orin::oumodes {

// InheritParentACL "", "0", "1", "2" pass, anything else raises 1080. RemDefaultACL "", "YES",
// "NO" (any case) pass, anything else raises 1082.
void CheckInheritanceCells(const Cells& cells, const Columns& columns);

// The ACE columns of an imitated row: the account must exist (1081, except SYSTEM and
// AUTHENTICATED USERS), the codes of AceOpeMode "0" and "2" must parse (6003, 6004, 6005), and
// the mode must be "0", "1" or "2" (6007). With `object` (the OU as it stands in the directory)
// mode "1" warns 10200 when the account has no ACE to remove.
void ImitateAceChecks(const Cells& cells, const Columns& columns, DirObject* object);

// InheritParentACL against the descriptor's protected bit (20200); "" expects inheritance
// unless `emptyMeansUnchanged`. Other values raise 1080.
void CompareInheritance(DirObject& ou, const Cells& cells, const Columns& columns,
                        bool emptyMeansUnchanged);
// RemDefaultACL "YES": every name of DoNotRemTheseACE must still have an ACE (20300). Values
// other than "YES", "NO" and "" raise 1082.
void CompareDefaultAcl(DirObject& ou, const Cells& cells, const Columns& columns);
// The ACE of the row: present with its flags, rights and type for modes "0" and "2" (20301,
// 20304, 20302, 20303), gone for mode "1" unless inherited (20305); 6003, 6004, 6005 and 6007
// for codes that don't parse.
void CompareAce(DirObject& ou, const Cells& cells, const Columns& columns);

}  // namespace orin::oumodes
