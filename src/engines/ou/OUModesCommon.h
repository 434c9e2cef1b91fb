#pragma once
// Helpers of the OU imitate and compare engines. What they share with the engines of the other
// kinds (a cell by column name, the Mirror cell, spans, paths, the container rule) stands in
// engines/common/EngineCells.h and is named here too, so that the OU mode files read as before.
// Functions that "raise" do so through Raise (base/Outcome.h) and must run inside EngineRun.

#include <cstdint>
#include <string>
#include <string_view>

#include "engines/common/EngineCells.h"

namespace orin::oumodes {

using orin::AccountExists;
using orin::BindOUPath;
using orin::Cell;
using orin::Cells;
using orin::CheckSpan;
using orin::ColumnOf;
using orin::Columns;
using orin::DefaultContainerOf;
using orin::FullDn;
using orin::IsClearMarker;
using orin::MirrorFlagOf;
using orin::OUPathExists;
using orin::ReadMirror;
using orin::SpanPath;
using orin::WholePath;

// The OU path of the row (OU-Start..OU-End) after the header checks 1000 and 1001; raises 2100
// when it is empty.
std::string RowOUPath(const Cells& cells, const Columns& columns);

}  // namespace orin::oumodes
