#include "engines/ou/OUFastPath.h"

#include <algorithm>

#include "base/Trace.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Trustee.h"
#include "engines/access/ObjectDacl.h"
#include "platform/Strings.h"

namespace orin {
namespace {

bool gFastPath = true;

void TraceFast(std::string_view procName, std::string_view text) {
    WriteTrace(TraceMode, true, kTraceFunction, procName, text);
}

}  // namespace

void SetOUFastPath(bool enabled) {
    gFastPath = enabled;
}

bool OUFastPathEnabled() {
    return gFastPath;
}

bool FastAddOU(std::string_view ouPath, const std::vector<PropertyWrite>& properties,
               const Cells& cells, const ManagerCells& manager, DirObject& created) {
    if (!gFastPath) return false;
    std::string managerDn;
    if (!manager.rdn.empty() && !ManagerForFastPath(cells, manager, ouPath, managerDn)) {
        return false;
    }

    auto made = gSession.RootObject.Create(kOUClass, ouPath);
    if (!made.ok()) return false;
    DirObject ou = *made;
    std::vector<std::string> written;
    for (const PropertyWrite& p : properties) {
        ou.Put(p.attribute, p.value);
        written.push_back(p.attribute);
    }
    if (!managerDn.empty()) {
        ou.Put("managedBy", managerDn);
        written.push_back("managedBy");
    }
    DirStatus status = ou.SetInfo();
    if (!status.ok()) {
        TraceFast("FastAddOU", "add refused, the exact way follows: " + status.message);
        return false;
    }
    if (!written.empty() && !MayWriteAll(ou, written)) {
        TraceFast("FastAddOU", "attribute rights differ from the add, the exact way follows");
        DirStatus undone = gSession.RootObject.Delete(kOUClass, ouPath);
        if (!undone.ok()) TraceFast("FastAddOU", "the new OU stays: " + undone.message);
        return false;
    }
    created = ou;
    return true;
}

bool FastModifyOU(DirObject& ou, const std::vector<PropertyWrite>& properties, const Cells& cells,
                  const ManagerCells& manager) {
    if (!gFastPath) return false;
    std::string managerDn;
    bool clearManager = !manager.rdn.empty() && IsClearMarker(manager.rdn);
    if (!manager.rdn.empty() && !clearManager &&
        !ManagerForFastPath(cells, manager, {}, managerDn)) {
        return false;
    }
    for (const PropertyWrite& p : properties) {
        if (p.clear) {
            ou.PutEx(PutExControl::Clear, p.attribute);
        } else {
            ou.Put(p.attribute, p.value);
        }
    }
    if (clearManager) ou.PutEx(PutExControl::Clear, "managedBy");
    if (!managerDn.empty()) ou.Put("managedBy", managerDn);
    DirStatus status = ou.SetInfo();
    if (!status.ok()) {
        TraceFast("FastModifyOU", "modify refused, the exact way follows: " + status.message);
        return false;
    }
    return true;
}

bool FastNewAce(DirObject& object, std::string_view account, uint32_t mask, uint8_t type,
                const CodedValue& flags) {
    if (!gFastPath || flags.IsError()) return false;
    auto sid = SidForTrustee(TrusteeName(account));
    if (!sid) return false;
    auto dacl = ReadObjectDacl(object);
    if (!dacl) return false;
    std::string name = TrusteeName(account);
    if (dacl->descriptor.Dacl) {
        std::erase_if(dacl->descriptor.Dacl->Aces,
                      [&](const Ace& ace) { return IsAceOf(ace, name); });
    }
    Ace ace;
    ace.AceType = type;
    ace.AccessMask = mask;
    ace.AceFlags = flags.IsNumber() ? static_cast<uint8_t>(flags.Number()) : 0;
    ace.TrusteeSid = std::move(*sid);
    InsertAce(dacl->Dacl(), std::move(ace));
    if (!dacl->Write()) {
        TraceFast("FastNewAce", "descriptor refused, the exact way follows");
        return false;
    }
    return true;
}

}  // namespace orin
