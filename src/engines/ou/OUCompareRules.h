#pragma once
// How an OU compare engine holds a row against the directory: the six properties by the compare
// rule of every kind (engines/common/CompareRules.h), and the manager.

#include "engines/common/CompareRules.h"
#include "engines/ou/OUModesCommon.h"

namespace orin::oumodes {

using OUProperty = orin::PropertyRule;
using orin::CompareManagerOfAdd;
using orin::CompareManagerOfModify;
using orin::CompareProperty;

// c, postalCode, st, l, street, description, in the order they are compared.
inline constexpr OUProperty kOUProperties[6] = {
    {"c", 20000, 20108, false},     {"postalCode", 20002, 20109, false},
    {"st", 20004, 20110, false},    {"l", 20006, 20111, false},
    {"street", 20105, 20112, true}, {"description", 20214, 20113, false},
};

}  // namespace orin::oumodes
