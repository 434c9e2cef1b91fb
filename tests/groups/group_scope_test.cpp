// Scope codes of groupType values and the tables that turn scopes into codes. The six usual
// groupType values are read from real groups in membership_dc_test.
//
// The group add gives the codes of these tables only after the directory refused a membership:
// a Windows DC refuses a universal or domain local group in a global one, and a domain local
// group in a universal one; Samba 4.17 takes every nesting, so those codes can't come from a
// run against the test DC and are tested here, on the helpers that decide them.

#include <gtest/gtest.h>

#include "directory/GroupHelpers.h"
#include "engines/group/GroupCommon.h"

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

const int16_t kScopes[] = {kScopeDomainLocal, kScopeGlobal, kScopeUniversal, kScopeNone};

// The refusal of the add's member step (a Windows DC answers "unwilling to perform" for these
// pairs) is read with the row's GroupRange as the outer scope: an empty cell explains nothing.
TEST(GroupScopeTest, TheAddsRefusedMemberIsExplainedByTheRowsRange) {
    EXPECT_EQ(MemberScopeCode(ScopeOfRangeCell("1").value(), kScopeUniversal), 3050);
    EXPECT_EQ(MemberScopeCode(ScopeOfRangeCell("1").value(), kScopeDomainLocal), 3051);
    EXPECT_EQ(MemberScopeCode(ScopeOfRangeCell("2").value(), kScopeDomainLocal), 3052);
    EXPECT_EQ(MemberScopeCode(ScopeOfRangeCell("").value(), kScopeDomainLocal), 0);
    EXPECT_EQ(MemberScopeCode(ScopeOfRangeCell("0").value(), kScopeUniversal), 0);
    EXPECT_FALSE(ScopeOfRangeCell("3").has_value());
}

// The refusal of the add's group step, when a Windows DC refuses to put this group (inner) into
// the target (outer): the table of the add, where every cell has a code.
TEST(GroupScopeTest, TheAddsRefusedGroupHasACodeForEveryPair) {
    const int32_t expected[4][4] = {
        // inner: domain local, global, universal, none
        {3005, 3005, 3015, 3015},  // outer domain local
        {3051, 3005, 3050, 3015},  // outer global
        {3052, 3015, 3015, 3015},  // outer universal
        {3015, 3015, 3015, 3015},  // outer none
    };
    for (int o = 0; o < 4; ++o)
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(JoinRefusalCode(kScopes[o], kScopes[i]), expected[o][i]) << o << " " << i;
}

// The modify checks before it writes: which scope may hold which, and the code of each refusal
// from both sides, the row-naming form for a scope that an earlier imitated row set.
TEST(GroupScopeTest, ScopeRulesOfTheModify) {
    const bool accepts[4][4] = {
        // outer: domain local, global, universal, none
        {true, false, false, false},  // inner domain local
        {true, true, true, false},    // inner global
        {true, false, true, false},   // inner universal
        {false, false, false, false},
    };
    for (int i = 0; i < 4; ++i)
        for (int o = 0; o < 4; ++o)
            EXPECT_EQ(ScopeAccepts(kScopes[i], kScopes[o]), accepts[i][o]) << i << " " << o;
    // A code for exactly the pairs that ScopeAccepts refuses among real scopes.
    for (int i = 0; i < 3; ++i) {
        for (int o = 0; o < 3; ++o) {
            EXPECT_EQ(MemberScopeCode(kScopes[o], kScopes[i]) != 0, !accepts[i][o]);
            EXPECT_EQ(JoinScopeCode(kScopes[o], kScopes[i]) != 0, !accepts[i][o]);
        }
    }
    EXPECT_EQ(JoinScopeCode(kScopeGlobal, kScopeDomainLocal), 3053);
    EXPECT_EQ(JoinScopeCode(kScopeGlobal, kScopeUniversal), 3054);
    EXPECT_EQ(JoinScopeCode(kScopeUniversal, kScopeDomainLocal), 3055);
    EXPECT_EQ(RowNamingScopeCode(3050), 3090);
    EXPECT_EQ(RowNamingScopeCode(3055), 3095);
    EXPECT_EQ(RowNamingScopeCode(3005), 3005);
}

TEST(GroupScopeTest, TypeCellsOfTheAddAndTheSignedGroupType) {
    const AddTypeCells empty = ReadAddTypeCells("", "");
    EXPECT_TRUE(empty.scopeDefaulted && empty.classDefaulted);
    EXPECT_EQ(GroupTypeValue(empty.scopeBits, empty.classBits), -2147483646);
    EXPECT_EQ(GroupTypeValue(ReadAddTypeCells("0", "1").scopeBits, 0), 4);
    EXPECT_EQ(ReadAddTypeCells("2", "0").failure, 0);
    EXPECT_EQ(GroupTypeValue(kGroupTypeUniversal, kGroupTypeSecurity), -2147483640);
    // The scope is read first: its failure wins over the kind's.
    EXPECT_EQ(ReadAddTypeCells("9", "9").failure, 1030);
    EXPECT_EQ(ReadAddTypeCells("", "9").failure, 1040);
    EXPECT_TRUE(ReadAddTypeCells("", "9").scopeDefaulted);
}

}  // namespace
}  // namespace orin
