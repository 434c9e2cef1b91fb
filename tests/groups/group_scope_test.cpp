// Scope codes of groupType values and the table of refused membership changes.

#include <gtest/gtest.h>

#include "directory/GroupHelpers.h"

namespace orin {
namespace {

TEST(GroupScopeTest, ScopeFollowsTheScopeBitWhateverTheSecurityBit) {
    // groupType as the directory returns it: a signed 32-bit value, negative for security.
    EXPECT_EQ(ScopeOfGroupType(-2147483644), kScopeDomainLocal);  // 0x80000004
    EXPECT_EQ(ScopeOfGroupType(-2147483646), kScopeGlobal);       // 0x80000002
    EXPECT_EQ(ScopeOfGroupType(-2147483640), kScopeUniversal);    // 0x80000008
    EXPECT_EQ(ScopeOfGroupType(4), kScopeDomainLocal);
    EXPECT_EQ(ScopeOfGroupType(2), kScopeGlobal);
    EXPECT_EQ(ScopeOfGroupType(8), kScopeUniversal);
    EXPECT_EQ(ScopeOfGroupType(0), kScopeNone);
    EXPECT_EQ(ScopeOfGroupType(-2147483648LL), kScopeNone);  // security bit alone
    EXPECT_EQ(ScopeOfGroupType(1), kScopeNone);              // the builtin-system bit alone
}

TEST(GroupScopeTest, TwoScopeBitsAreReadInTheOrderDomainLocalGlobalUniversal) {
    EXPECT_EQ(ScopeOfGroupType(4 | 2 | 8), kScopeDomainLocal);
    EXPECT_EQ(ScopeOfGroupType(2 | 8), kScopeGlobal);
}

TEST(GroupScopeTest, OnlyThreeScopePairsExplainARefusal) {
    const int16_t scopes[] = {kScopeDomainLocal, kScopeGlobal, kScopeUniversal, kScopeNone};
    int explained = 0;
    for (int16_t outer : scopes) {
        for (int16_t inner : scopes) {
            int code = ScopeRefusalCode(outer, inner);
            if (code != 0) ++explained;
        }
    }
    EXPECT_EQ(explained, 3);
    EXPECT_EQ(ScopeRefusalCode(kScopeGlobal, kScopeUniversal), 3050);
    EXPECT_EQ(ScopeRefusalCode(kScopeGlobal, kScopeDomainLocal), 3051);
    EXPECT_EQ(ScopeRefusalCode(kScopeUniversal, kScopeDomainLocal), 3052);
    // The reverse directions are allowed nestings, not scope refusals.
    EXPECT_EQ(ScopeRefusalCode(kScopeUniversal, kScopeGlobal), 0);
    EXPECT_EQ(ScopeRefusalCode(kScopeDomainLocal, kScopeUniversal), 0);
}

}  // namespace
}  // namespace orin
