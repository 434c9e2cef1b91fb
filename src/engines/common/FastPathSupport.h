#pragma once
// What the fast paths of the add and modify engines share. A fast path sends in one request the
// writes that the exact way makes one by one, so that a refusal names its property, and falls
// back to the exact way whenever it can't be sure of the same outcome (engines/ou/OUFastPath.h
// tells the pattern).

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "directory/DirObject.h"
#include "engines/common/EngineCells.h"

namespace orin {

// One property step of an add or modify row.
struct PropertyWrite {
    std::string attribute;
    std::string value;   // as written: "<Rtn>" already expanded
    bool clear = false;  // a modify's "!C"
    int32_t code = 0;    // the step's failure code
};

// The manager columns of a row.
struct ManagerCells {
    int16_t start = -1;  // MgrOU-Start
    int16_t end = -1;    // MgrOU-End
    std::string rdn;     // MgrRDN; "" leaves the manager alone
};

// The manager's distinguished name when a fast path may write it; false when the lookup fails
// (the exact way is to report it) or can't be made before the object exists (a manager in the
// OU `newOuPath` that is being added).
bool ManagerForFastPath(const Cells& cells, const ManagerCells& manager, std::string_view newOuPath,
                        std::string& dn);

// True when the directory lets this session write every attribute on the object: the exact way
// writes them one by one in modifies, where attribute rights are checked, while an add isn't
// checked attribute by attribute. One read of allowedAttributesEffective.
bool MayWriteAll(const DirObject& object, const std::vector<std::string>& attributes);

// The same answer, asked once per container and class in a run: the rights on a new object come
// from its container, its class and the account, which a run doesn't change. The cache holds
// the attributes allowed; ForgetWriteRights empties it at the start of a run.
bool MayWriteAllCached(const DirObject& object, std::string_view cls,
                       const std::vector<std::string>& attributes);
void ForgetWriteRights();

}  // namespace orin
