#pragma once
// Puts every engine built into this program into its slot: the row engines of each kind
// (SetRowEngine), the OU cancel roll-back and the export routines. The front ends and the tests
// call it once before the first run; calling it again changes nothing.

namespace orin {

void RegisterAllEngines();

}  // namespace orin
