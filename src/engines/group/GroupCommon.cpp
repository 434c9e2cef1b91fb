#include "engines/group/GroupCommon.h"

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/Ledgers.h"
#include "platform/Strings.h"

namespace orin {

std::optional<int16_t> ScopeOfRangeCell(std::string_view cell) {
    if (cell.empty()) return kScopeNone;
    if (cell == "0") return kScopeDomainLocal;
    if (cell == "1") return kScopeGlobal;
    if (cell == "2") return kScopeUniversal;
    return std::nullopt;
}

int64_t ScopeBitsOf(int16_t scope) {
    switch (scope) {
        case kScopeDomainLocal:
            return kGroupTypeDomainLocal;
        case kScopeGlobal:
            return kGroupTypeGlobal;
        case kScopeUniversal:
            return kGroupTypeUniversal;
        default:
            return 0;
    }
}

AddTypeCells ReadAddTypeCells(std::string_view range, std::string_view cls) {
    AddTypeCells type;
    const std::optional<int16_t> scope = ScopeOfRangeCell(range);
    if (!scope) {
        type.failure = 1030;
        return type;
    }
    if (*scope == kScopeNone) {
        type.scopeDefaulted = true;
    } else {
        type.scopeBits = ScopeBitsOf(*scope);
    }
    if (cls == "1") {
        type.classBits = 0;
    } else if (cls.empty()) {
        type.classDefaulted = true;
    } else if (cls != "0") {
        type.failure = 1040;
    }
    return type;
}

int32_t GroupTypeValue(int64_t scopeBits, int64_t classBits) {
    return static_cast<int32_t>(static_cast<uint32_t>(scopeBits | classBits));
}

bool ScopeAccepts(int16_t inner, int16_t outer) {
    switch (inner) {
        case kScopeDomainLocal:
            return outer == kScopeDomainLocal;
        case kScopeGlobal:
            return outer == kScopeDomainLocal || outer == kScopeGlobal || outer == kScopeUniversal;
        case kScopeUniversal:
            return outer == kScopeDomainLocal || outer == kScopeUniversal;
        default:
            return false;
    }
}

int32_t MemberScopeCode(int16_t outerScope, int16_t memberScope) {
    return ScopeRefusalCode(outerScope, memberScope);
}

int32_t JoinScopeCode(int16_t targetScope, int16_t innerScope) {
    if (targetScope == kScopeGlobal && innerScope == kScopeDomainLocal) return 3053;
    if (targetScope == kScopeGlobal && innerScope == kScopeUniversal) return 3054;
    if (targetScope == kScopeUniversal && innerScope == kScopeDomainLocal) return 3055;
    return 0;
}

int32_t JoinRefusalCode(int16_t outerScope, int16_t innerScope) {
    switch (outerScope) {
        case kScopeDomainLocal:
            return innerScope == kScopeUniversal || innerScope == kScopeNone ? 3015 : 3005;
        case kScopeGlobal:
            if (innerScope == kScopeDomainLocal) return 3051;
            if (innerScope == kScopeGlobal) return 3005;
            if (innerScope == kScopeUniversal) return 3050;
            return 3015;
        case kScopeUniversal:
            return innerScope == kScopeDomainLocal ? 3052 : 3015;
        default:
            return 3015;
    }
}

int32_t RowNamingScopeCode(int32_t code) {
    return code >= 3050 && code <= 3055 ? code + 40 : code;
}

namespace {

int32_t FindChange(int field, std::string_view path, bool needsNewPath) {
    for (int32_t i = 0; i < ChangeCount; ++i) {
        if (needsNewPath && ChangeLedger.Get(2, i).empty()) continue;
        if (PathsEqual(ChangeLedger.Get(field, i), path)) return i;
    }
    return -1;
}

}  // namespace

int32_t FindRenamedAway(std::string_view path) {
    return FindChange(1, path, true);
}

int32_t FindRenamedTo(std::string_view path) {
    return FindChange(2, path, false);
}

void RaiseWithChangeLine(int32_t code, int32_t entry) {
    if (entry < 0) return;
    gRun.MsgArg1 = ChangeLedger.Get(0, entry);
    Raise(code);
}

GroupPlace PlaceGroup(const Cells& cells, const Columns& columns, bool rdnFirst) {
    GroupPlace place;
    const auto checkRdn = [&] {
        if (ColumnOf(columns, "RDN") == -1) Raise(1010);
        place.rdn = Cell(cells, columns, "RDN");
        if (place.rdn.empty()) Raise(1011);
    };
    if (rdnFirst) checkRdn();
    CheckSpan(columns, "OU-Start", "OU-End", 1000, 1001);
    if (!rdnFirst) checkRdn();
    const std::optional<std::string> container = ResolveContainer(
        cells, ColumnOf(columns, "OU-Start"), ColumnOf(columns, "OU-End"), &place.container);
    if (!container) Raise(2000);
    place.containerDn = *container;
    place.dn = "CN=" + place.rdn + "," + place.containerDn;
    place.path = "LDAP://" + place.dn;
    return place;
}

std::string RelativeToDomain(std::string_view dn) {
    const std::string& domain = gSession.DomainDN;
    if (EqualsIgnoreCase(dn, domain)) return {};
    if (dn.size() > domain.size() + 1 &&
        EqualsIgnoreCase(dn.substr(dn.size() - domain.size()), domain)) {
        return std::string(dn.substr(0, dn.size() - domain.size() - 1));
    }
    return std::string(dn);
}

std::string PathInSpan(const Cells& cells, const Columns& columns, std::string_view start,
                       std::string_view end, std::string_view name) {
    const std::string dn =
        ObjectDnInContainer(cells, ColumnOf(columns, start), ColumnOf(columns, end), name);
    return dn.empty() ? std::string() : "LDAP://" + dn;
}

std::string OUFormPath(const Cells& cells, const Columns& columns, std::string_view start,
                       std::string_view end, std::string_view name) {
    return "LDAP://CN=" + std::string(name) + "," + FullDn(SpanPath(cells, columns, start, end));
}

}  // namespace orin
