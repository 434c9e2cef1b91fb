#pragma once
// Puts every engine built into this program into its slot: the row engines of each kind
// (SetRowEngine), the OU cancel roll-back and the export routines. The front ends and the tests
// call it once before the first run; calling it again changes nothing.

namespace orin {

void RegisterAllEngines();

// Whether the engines that have a fast path (one request per row, replayed the exact way when
// the server refuses it) take it. On by default; off, every row goes the exact way, one request
// per property, which is slower and leaves the same state: a switch for diagnosis.
void UseFastPaths(bool enabled);

}  // namespace orin
