// Scope codes of groupType values and the table of refused membership changes. The six usual
// groupType values are read from real groups in membership_dc_test.

#include <gtest/gtest.h>

#include "directory/GroupHelpers.h"

namespace orin {
namespace {

TEST(GroupScopeTest, ScopeBitsAreReadInTheOrderDomainLocalGlobalUniversal) {
    EXPECT_EQ(ScopeOfGroupType(4 | 2 | 8), kScopeDomainLocal);
    EXPECT_EQ(ScopeOfGroupType(-2147483648LL | 2 | 8), kScopeGlobal);
    EXPECT_EQ(ScopeOfGroupType(-2147483648LL | 8), kScopeUniversal);
    EXPECT_EQ(ScopeOfGroupType(0), kScopeNone);
    EXPECT_EQ(ScopeOfGroupType(-2147483648LL), kScopeNone);  // security bit alone
    EXPECT_EQ(ScopeOfGroupType(1), kScopeNone);              // the builtin-system bit alone
}

TEST(GroupScopeTest, OnlyThreeScopePairsExplainARefusal) {
    const int16_t scopes[] = {kScopeDomainLocal, kScopeGlobal, kScopeUniversal, kScopeNone};
    for (int16_t outer : scopes) {
        for (int16_t inner : scopes) {
            int expected = 0;
            if (outer == kScopeGlobal && inner == kScopeUniversal) expected = 3050;
            if (outer == kScopeGlobal && inner == kScopeDomainLocal) expected = 3051;
            if (outer == kScopeUniversal && inner == kScopeDomainLocal) expected = 3052;
            EXPECT_EQ(ScopeRefusalCode(outer, inner), expected) << outer << " " << inner;
        }
    }
}

}  // namespace
}  // namespace orin
