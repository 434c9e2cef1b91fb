#include "base/MirrorChain.h"

#include <string>
#include <string_view>
#include <vector>

#include "base/RunContext.h"

namespace orin {
namespace {

// The flag of an ordinal; "" for an ordinal that has none (out of range, or no flags read).
std::string_view FlagAt(int64_t ordinal) {
    const std::vector<std::string>& flags = gRun.MirrorFlags;
    if (ordinal < 0 || ordinal >= static_cast<int64_t>(flags.size())) return {};
    return flags[static_cast<size_t>(ordinal)];
}

}  // namespace

bool IsObjectEnd(int32_t ordinal) {
    if (ordinal >= gRun.lngDataRowCnt) return true;
    std::string_view next = FlagAt(int64_t{ordinal} + 1);
    return next == "N" || next == "?";
}

bool IsLastMirrorRow(int32_t ordinal) {
    if (ordinal >= gRun.lngDataRowCnt) return true;
    std::string_view self = FlagAt(ordinal);
    std::string_view next = FlagAt(int64_t{ordinal} + 1);
    return next == "N" && (self == "Y" || self == "N");
}

bool ChainEnds(int32_t ordinal) {
    if (ordinal == gRun.lngDataRowCnt) return true;
    std::string_view self = FlagAt(ordinal);
    std::string_view next = FlagAt(int64_t{ordinal} + 1);
    return (self == "N" || self == "Y") && next == "N";
}

}  // namespace orin
