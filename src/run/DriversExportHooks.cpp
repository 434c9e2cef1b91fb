#include "run/DriversExportHooks.h"

#include <array>
#include <chrono>
#include <string>
#include <thread>

#include "base/Operator.h"
#include "base/RunContext.h"

namespace orin {
namespace {

constexpr int kKindCount = 6;

std::array<ExportRoutines, kKindCount>& Routines() {
    static std::array<ExportRoutines, kKindCount> routines;
    return routines;
}

bool ValidKind(ObjectKind kind) {
    const auto k = static_cast<int>(kind);
    return k >= 0 && k < kKindCount;
}

}  // namespace

void SetExportRoutines(ObjectKind kind, ExportRoutines routines) {
    if (ValidKind(kind)) Routines()[static_cast<size_t>(kind)] = std::move(routines);
}

const ExportRoutines& GetExportRoutines(ObjectKind kind) {
    static const ExportRoutines kNone;
    return ValidKind(kind) ? Routines()[static_cast<size_t>(kind)] : kNone;
}

bool HasExportRoutines(ObjectKind kind) {
    const ExportRoutines& routines = GetExportRoutines(kind);
    return routines.getExpInfo && routines.exportRows;
}

}  // namespace orin
