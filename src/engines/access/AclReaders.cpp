// The operations that only read a DACL: existence tests and the checks of a compare run.

#include <algorithm>
#include <optional>
#include <vector>

#include "engines/access/AccessControl.h"
#include "engines/access/ObjectDacl.h"
#include "platform/Strings.h"

namespace orin {
namespace {

// The ACEs of `account` as the directory holds them now; nullopt if the DACL can't be read.
std::optional<std::vector<Ace>> AcesOf(DirObject& object, std::string_view account) {
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return std::nullopt;
    std::string name = TrusteeName(account);
    std::vector<Ace> aces;
    for (const Ace& ace : dacl->Aces()) {
        if (IsAceOf(ace, name)) aces.push_back(ace);
    }
    return aces;
}

// The AceFlags of the stored ACEs that together stand for an InheritOption: an entry for the
// object and its children is one ACE with flags 2 or the two halves 0 and 10.
template <class Predicate>
bool FlagsHeld(const std::vector<Ace>& aces, const CodedValue& flags, Predicate&& counts) {
    auto has = [&](uint8_t wanted) {
        return std::any_of(aces.begin(), aces.end(),
                           [&](const Ace& ace) { return ace.AceFlags == wanted && counts(ace); });
    };
    if (flags.IsSP()) return has(0);
    if (!flags.IsNumber()) return false;
    switch (flags.Number()) {
        case 2:
            return has(2) || (has(0) && has(10));
        case 10:
            return has(10);
        case 6:
            return has(0) && has(14);
        case 14:
            return has(14);
        default:
            return false;
    }
}

// The AceFlags of the ACEs that may hold the rights of an InheritOption.
std::vector<uint8_t> FlagsThatHoldRights(const CodedValue& flags) {
    if (flags.IsSP()) return {0};
    if (!flags.IsNumber()) return {};
    switch (flags.Number()) {
        case 2:
            return {2, 0, 10};
        case 10:
            return {10};
        case 6:
            return {0, 14};
        case 14:
            return {14};
        default:
            return {};
    }
}

}  // namespace

bool AceExists(DirObject& object, std::string_view account, uint8_t type, const CodedValue& flags) {
    if (flags.IsError()) return false;
    auto aces = AcesOf(object, account);
    if (!aces) return false;
    uint8_t wanted = flags.IsNumber() ? static_cast<uint8_t>(flags.Number()) : 0;
    return std::any_of(aces->begin(), aces->end(), [&](const Ace& ace) {
        return ace.AceType == type && ace.AceFlags == wanted;
    });
}

bool HasInheritedAce(DirObject& object, std::string_view account) {
    auto aces = AcesOf(object, account);
    return aces && std::any_of(aces->begin(), aces->end(),
                               [](const Ace& ace) { return ace.IsInherited(); });
}

bool HasAceFor(DirObject& object, std::string_view account) {
    auto aces = AcesOf(object, account);
    return aces && !aces->empty();
}

uint16_t GetDaclControl(DirObject& object) {
    auto dacl = ReadObjectDacl(object);
    return dacl ? dacl->descriptor.Control : 0;
}

bool AceFlagsMatch(DirObject& object, std::string_view account, const CodedValue& flags) {
    auto aces = AcesOf(object, account);
    return aces && FlagsHeld(*aces, flags, [](const Ace&) { return true; });
}

bool AceTypeMatches(DirObject& object, std::string_view account, uint8_t type,
                    const CodedValue& flags) {
    auto aces = AcesOf(object, account);
    return aces && FlagsHeld(*aces, flags, [type](const Ace& ace) { return ace.AceType == type; });
}

bool AceRightsMatch(DirObject& object, std::string_view account, std::string_view rights,
                    const CodedValue& flags, std::string& msgArg1) {
    std::vector<std::string> codes = Split(rights, ';');
    auto aces = AcesOf(object, account);
    if (!aces) {
        msgArg1 = Trim(codes.front());
        return false;
    }
    std::vector<uint8_t> eligible = FlagsThatHoldRights(flags);
    for (const std::string& code : codes) {
        CodedValue stored = ParseAccessRightsStored(code);
        CodedValue written = ParseAccessRights(code);
        bool held = std::any_of(aces->begin(), aces->end(), [&](const Ace& ace) {
            if (std::find(eligible.begin(), eligible.end(), ace.AceFlags) == eligible.end()) {
                return false;
            }
            // The halves that apply to the object itself hold the rights expanded.
            const CodedValue& mask = ace.AceFlags == 0 || ace.AceFlags == 2 ? stored : written;
            return mask.IsNumber() && (ace.AccessMask & mask.Number()) == mask.Number();
        });
        if (!held) {
            msgArg1 = Trim(code);
            return false;
        }
    }
    return true;
}

bool UserCannotChangePassword(DirObject& object) {
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    bool everyone = false, self = false;
    for (const Ace& ace : dacl->Aces()) {
        if (!ace.HasObjectType() || ace.ObjectType.ToString() != kChangePasswordRightGuid) continue;
        if (ace.AceType != kAccessDeniedObjectAceType) continue;
        std::string trustee = TrusteeOf(ace);
        if (trustee == "Everyone") everyone = true;
        if (trustee == "NT AUTHORITY\\SELF") self = true;
    }
    return everyone && self;
}

}  // namespace orin
