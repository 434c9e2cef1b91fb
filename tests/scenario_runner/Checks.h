#pragma once
// What a scenario checks after its runs: the event log's blocks and the directory's state.

#include <string>
#include <vector>

#include "scenario_runner/Scenario.h"

namespace orin::scenario {

// The lines of Event.log with each run's header block replaced by "== <title>" (the text of its
// "処理内容： " line). A header whose date, time or CSV path lines are not of their form stays as
// it is, so that the comparison shows it.
std::vector<std::string> LogBlocks(const std::vector<std::string>& eventLog,
                                   const std::vector<std::string>& csvPaths);

// Compares the log with the expected lines ("~ " first: the rest of the line is a regular
// expression for the whole line). "" when they agree, else both blocks, with the first differing
// line marked.
std::string CompareLog(const std::vector<std::string>& actual,
                       const std::vector<std::string>& expected, const Placeholders& values);

// Checks the expected state against the directory (gSession connected). "" when it holds, else
// one paragraph per object that differs, with what the directory holds. Objects named outside
// the scenario's OU whose relative name holds the run's tag ({U}) are deleted afterwards, so
// that the next run starts clean.
std::string CheckState(const std::vector<std::string>& expected, const Placeholders& values,
                       const std::string& scenarioOuDn);

}  // namespace orin::scenario
