#include "engines/common/FastPathSupport.h"

#include <algorithm>
#include <map>

#include "directory/Bind.h"
#include "platform/Strings.h"

namespace orin {
namespace {

// Container DN and class, upper-cased -> the attributes the account may write there.
std::map<std::string, std::vector<std::string>>& WriteRights() {
    static std::map<std::string, std::vector<std::string>> rights;
    return rights;
}

bool AllowedAttributes(const DirObject& object, std::vector<std::string>& allowed) {
    auto records =
        ExecuteSearch("<" + object.ADsPath() + ">;(objectClass=*);allowedAttributesEffective;Base");
    if (!records.ok() || records->size() != 1) return false;
    allowed = records->front().Values("allowedAttributesEffective");
    return true;
}

bool AllListed(const std::vector<std::string>& allowed,
               const std::vector<std::string>& attributes) {
    return std::all_of(attributes.begin(), attributes.end(), [&](const std::string& attribute) {
        return std::any_of(allowed.begin(), allowed.end(),
                           [&](const std::string& a) { return EqualsIgnoreCase(a, attribute); });
    });
}

}  // namespace

bool ManagerForFastPath(const Cells& cells, const ManagerCells& manager, std::string_view newOuPath,
                        std::string& dn) {
    ManagerLookup found = LookUpManager(cells, manager.start, manager.end, manager.rdn);
    if (found.failure != 0) return false;
    // A manager in the OU being added is looked up after the create by the exact way, where
    // the OU's own name then shadows a default container of the same name.
    if (!newOuPath.empty() && EqualsIgnoreCase(found.containerPath, newOuPath)) return false;
    dn = found.dn;
    return true;
}

bool MayWriteAll(const DirObject& object, const std::vector<std::string>& attributes) {
    std::vector<std::string> allowed;
    return AllowedAttributes(object, allowed) && AllListed(allowed, attributes);
}

bool MayWriteAllCached(const DirObject& object, std::string_view cls,
                       const std::vector<std::string>& attributes) {
    const std::string key = ToUpperAscii(ParentDn(object.DN())) + "|" + ToUpperAscii(cls);
    auto known = WriteRights().find(key);
    if (known == WriteRights().end()) {
        std::vector<std::string> allowed;
        if (!AllowedAttributes(object, allowed)) return false;
        known = WriteRights().emplace(key, std::move(allowed)).first;
    }
    return AllListed(known->second, attributes);
}

void ForgetWriteRights() {
    WriteRights().clear();
}

}  // namespace orin
