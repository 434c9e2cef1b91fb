// The operations that change a DACL: each reads the descriptor anew, changes the list and
// writes it back.

#include <algorithm>
#include <vector>

#include "directory/Trustee.h"
#include "engines/access/AccessControl.h"
#include "engines/access/ObjectDacl.h"
#include "platform/Strings.h"

namespace orin {
namespace {

uint8_t AceFlagsOf(const CodedValue& flags) {
    return flags.IsNumber() ? static_cast<uint8_t>(flags.Number()) : 0;
}

void RemoveMatching(ObjectDacl& dacl, const auto& predicate) {
    if (dacl.descriptor.Dacl) std::erase_if(dacl.descriptor.Dacl->Aces, predicate);
}

// The seven properties by which SetInheritance recognises the copy of an inherited ACE.
bool SameEntry(const Ace& a, const Ace& b) {
    return a.TrusteeSid == b.TrusteeSid && a.AccessMask == b.AccessMask && a.AceType == b.AceType &&
           a.AceFlags == b.AceFlags && a.Flags == b.Flags && a.ObjectType == b.ObjectType &&
           a.InheritedObjectType == b.InheritedObjectType;
}

}  // namespace

bool RemoveAce(DirObject& object, std::string_view account, bool& found) {
    found = false;
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    std::string name = TrusteeName(account);
    RemoveMatching(*dacl, [&](const Ace& ace) {
        bool match = IsAceOf(ace, name);
        found = found || match;
        return match;
    });
    return dacl->Write();
}

bool RemoveDefaultAcl(DirObject& object, std::string_view exceptions, std::string& notFound) {
    notFound.clear();
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    std::vector<std::string> parts = Split(exceptions, ';');
    std::vector<std::string> names;
    for (const std::string& part : parts) names.push_back(TrusteeName(part));
    std::vector<bool> met(parts.size(), false);
    RemoveMatching(*dacl, [&](const Ace& ace) {
        bool keep = false;
        for (size_t i = 0; i < names.size(); ++i) {
            if (IsAceOf(ace, names[i])) {
                keep = true;
                met[i] = true;
            }
        }
        return !keep;
    });
    if (!dacl->Write()) return false;
    std::vector<std::string> missing;
    for (size_t i = 0; i < parts.size(); ++i) {
        std::string name = Trim(parts[i]);
        if (!met[i] && !name.empty()) missing.push_back(name);
    }
    notFound = Join(missing, ";");
    return true;
}

bool AddAceToObject(DirObject& object, std::string_view account, uint32_t mask, uint8_t type,
                    const CodedValue& flags) {
    if (flags.IsError()) return false;
    // An unknown account fails here, as the directory would refuse an ACE it can't resolve.
    auto sid = SidForTrustee(TrusteeName(account));
    if (!sid) return false;
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    Ace ace;
    ace.AceType = type;
    ace.AccessMask = mask;
    ace.AceFlags = AceFlagsOf(flags);  // "SP": left unset
    ace.TrusteeSid = std::move(*sid);
    InsertAce(dacl->Dacl(), std::move(ace));
    return dacl->Write();
}

bool MergeAceMask(DirObject& object, std::string_view account, uint32_t mask, uint8_t type,
                  const CodedValue& flags) {
    if (flags.IsError()) return false;
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    std::string name = TrusteeName(account);
    uint8_t aceFlags = AceFlagsOf(flags);
    if (dacl->descriptor.Dacl) {
        for (Ace& ace : dacl->descriptor.Dacl->Aces) {
            if (ace.AceType == type && ace.AceFlags == aceFlags && IsAceOf(ace, name)) {
                ace.AccessMask |= mask;
            }
        }
    }
    return dacl->Write();
}

bool OverwriteAce(DirObject& object, std::string_view inheritCode, std::string_view account,
                  uint32_t mask, uint8_t type) {
    std::string code = Trim(inheritCode);
    std::vector<uint32_t> halves;
    if (code == "0") {
        halves = {0, 10};
    } else if (code == "1") {
        halves = {0};
    } else if (code == "2") {
        halves = {10};
    } else if (code == "3") {
        halves = {0, 14};
    } else if (code == "4") {
        halves = {14};
    } else {
        return false;
    }
    for (uint32_t flags : halves) {
        bool done = AceExists(object, account, type, flags)
                        ? MergeAceMask(object, account, mask, type, flags)
                        : AddAceToObject(object, account, mask, type, flags);
        if (!done) return false;
    }
    return true;
}

bool SetInheritance(DirObject& object, bool keepCopies) {
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    std::vector<Ace> saved;
    if (!keepCopies) {
        for (const Ace& ace : dacl->Aces()) {
            if (!ace.IsInherited() || !ace.Raw.empty()) continue;
            saved.push_back(ace);
            saved.back().AceFlags &= ~kInheritedAce;
        }
    }
    dacl->descriptor.Control |= kSeDaclProtected;
    if (!dacl->Write()) return false;
    if (saved.empty()) return true;

    // The directory has turned the inherited ACEs into explicit copies; take those out again.
    auto copies = ReadObjectDacl(object);
    if (!copies) return false;
    RemoveMatching(*copies, [&](const Ace& ace) {
        return ace.Raw.empty() && std::any_of(saved.begin(), saved.end(),
                                              [&](const Ace& s) { return SameEntry(ace, s); });
    });
    return copies->Write();
}

bool ClearInheritanceBlock(DirObject& object) {
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    dacl->descriptor.Control &= ~kSeDaclProtected;
    return dacl->Write();
}

}  // namespace orin
