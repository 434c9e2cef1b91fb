// The OU add engine through the row loop against the test DC, each test with the fast path and
// with the exact way alone.
//
// Server behaviour these tests expect, seen on Samba 4.17: an OU may be created beside a
// container of the same name (Windows refuses it, which the engine reports as 2009).

#include "ou_test_support.h"

namespace orin::test {
namespace {

using OUAddTest = BothWays;

const std::string kAceHeader =
    "!OU-Start,,OU-End,Mirror,AceSamAccountName,AceOpeMode,AccessRight,InheritOption,PermitOrDeny";

TEST_P(OUAddTest, AddsAThreeLevelTreeParentFirstWithItsProperties) {
    EXPECT_TRUE(Runs(kAdd, "3/0/0",
                     "!OU-Start,,,OU-End,Mirror,c,postalCode,st,l,street,description",
                     {{"# a comment between the rows"},
                      {"{T},a"},
                      {"{T},a,b"},
                      {"{T},a,b,c,,JP,100-0001,東京都,千代田区,丸の内1-1<rtn>ﾋﾞﾙ2F,説明"}}));
    EXPECT_EQ(PropsOf("a,b,c"), (Props{{"c", "JP"},
                                       {"postalCode", "100-0001"},
                                       {"st", "東京都"},
                                       {"l", "千代田区"},
                                       {"street", "丸の内1-1\r\nﾋﾞﾙ2F"},
                                       {"description", "説明"}}));
    EXPECT_EQ(gRun.lngLastCreatedLine, 5);
}

TEST_P(OUAddTest, RefusedRowsNameTheirReasonAndChangeNothing) {
    MakeOU("taken");
    Make("container", "CN=beside," + PathOf(""));
    EXPECT_TRUE(Runs(kAdd, "1/0/4", "!OU-Start,,OU-End,Mirror,description",
                     {{"{T},taken,,,new", kFail, {kOUExists}},
                      {"{T},missing,child", kFail, {kNoParent}},
                      {",,,,no path", kFail, {kNoPath}},
                      {"{T},bad,,Y", kFail, {Invalid("Mirror")}},
                      {"{T},beside"}}));  // Samba; Windows gives 2009
    EXPECT_EQ(Attr("taken", "description"), "");
    EXPECT_EQ(Existing({"missing", "bad", "beside"}), "beside");

    // Header errors: after the Mirror cell, before the path.
    EXPECT_TRUE(Runs(kAdd, "0/0/2", "!OU-Start,Mirror",
                     {{"{T}", kFail, {NoSpan("OU")}}, {",maybe", kFail, {Invalid("Mirror")}}}));
    EXPECT_TRUE(
        Runs(kAdd, "0/0/1", "!OU-End,OU-Start,Mirror", {{",{T}", kFail, {Reversed("OU")}}}));
}

TEST_P(OUAddTest, MirrorRowsAddOneAcePerRowAndCountTheOUOnce) {
    const std::string g1 = MakeAccount("group", "g1"), g2 = MakeAccount("group", "g2");
    EXPECT_TRUE(Runs(kAdd, "1/0/0", kAceHeader,
                     {{"{T},m,,," + g1 + ",0,6"},
                      {"{T},m,, yes ," + g2 + ",0,1;5"},
                      {"{T},m,, yes ," + g1 + ",0,10"}}));
    // Mode "0" replaces the account's ACEs: g1 keeps only the third row's right.
    auto first = AcesOf("m", g1);
    ASSERT_FALSE(first.empty());
    for (const Ace& a : first) EXPECT_EQ(a.AccessMask, 0x00020000u);
    EXPECT_FALSE(AcesOf("m", g2).empty());
}

TEST_P(OUAddTest, AFailingRowEndsItsChainAndRollsBackWhatTheChainMade) {
    MakeOU("dup");
    EXPECT_TRUE(Runs(kAdd, "1/0/2", kAceHeader,
                     {{"{T},gone"},
                      {"{T},gone,,YES,Domain Admins,0,99", kFail, {Invalid("AccessRight")}},
                      {"{T},gone,,YES"},
                      {"{T},dup", kFail, {kOUExists}},  // its Mirror row is skipped
                      {"{T},dup,,YES,Domain Admins,bad"},
                      {"{T},stays"}}));
    // "dup" was not made by its chain, so it is not taken away.
    EXPECT_EQ(Existing({"gone", "dup", "stays"}), "dup stays");
}

TEST_P(OUAddTest, ManagerIsAUserInItsContainer) {
    MakeAccount("user", "boss");
    MakeAccount("group", "team");
    EXPECT_TRUE(Runs(kAdd, "2/0/5", "!OU-Start,,OU-End,Mirror,c,MgrOU-Start,,MgrOU-End,MgrRDN",
                     {{"{T},managed,,,,{T},,,boss"},
                      {"{T},nobody,,,,{T},,,ghost", kFail, {kNoManager}},
                      {"{T},grouped,,,,{T},,,team", kFail, {kManagerNotUser}},
                      {"{T},nowhere,,,,{T},none,,boss", kFail, {kNoManagerContainer}},
                      // At domain level: Administrator lives in CN=Users, not there.
                      {"{T},root,,,,,,,Administrator", kFail, {kNoManager}},
                      // One level that names a default container.
                      {"{T},users,,,,Users,,,Administrator"},
                      // The OU the row adds: it exists once the row made it, without boss.
                      {"{T},new,,,JP,{T},new,,boss", kFail, {kNoManager}}}));
    EXPECT_EQ(Attr("managed", "managedBy"), "CN=boss," + DnOf(""));
    EXPECT_EQ(Attr("users", "managedBy"), "CN=Administrator,CN=Users," + gSession.DomainDN);
    EXPECT_EQ(Existing({"nobody", "grouped", "nowhere", "root", "new"}), "");

    // Without the manager span the failure has no roll-back: the OU stays as far as it got.
    EXPECT_TRUE(Runs(kAdd, "0/0/1", "!OU-Start,OU-End,description,MgrRDN,Mirror",
                     {{"{T},kept,written,boss", kFail, {NoSpan("MgrOU")}}}));
    EXPECT_EQ(Attr("kept", "description"), "written");
}

TEST_P(OUAddTest, InheritParentAclBlocksWithOrWithoutCopies) {
    EXPECT_TRUE(Runs(kAdd, "3/0/1", "!OU-Start,,OU-End,Mirror,InheritParentACL",
                     {{"{T},inherit,,,0"},
                      {"{T},copies,,,1"},
                      {"{T},bare,,,2"},
                      {"{T},bad,,,3", kFail, {Invalid("InheritParentACL")}}}));
    auto [inheritControl, inheritAces] = Dacl("inherit");
    auto [copiesControl, copiesAces] = Dacl("copies");
    auto [bareControl, bareAces] = Dacl("bare");
    EXPECT_FALSE(inheritControl & kSeDaclProtected);
    EXPECT_TRUE(copiesControl & kSeDaclProtected);
    EXPECT_TRUE(bareControl & kSeDaclProtected);
    // The copies of the inherited ACEs stay as explicit ones with "1" and go with "2".
    EXPECT_GT(copiesAces.size(), inheritAces.size());
    EXPECT_EQ(bareAces.size(), inheritAces.size());
    EXPECT_FALSE(Exists("bad"));
}

TEST_P(OUAddTest, RemDefaultAclKeepsTheExceptionsAndWarnsOfTheMissingOnes) {
    EXPECT_TRUE(Runs(kAdd, "1/1/1", "!OU-Start,,OU-End,Mirror,RemDefaultACL,DoNotRemTheseACE",
                     {{"{T},stripped,,,yes, Domain Admins ;NoSuchGroup;System",
                       kWarn,
                       {"削除対象外のACE「NoSuchGroup」が既定のACLから見つかりませんでした｡ "}},
                      {"{T},plain,,,NO,x"},
                      {"{T},refused,,,maybe", kFail, {Invalid("RemDefaultACL")}}}));
    auto aces = Dacl("stripped").second;
    ASSERT_FALSE(aces.empty());
    for (const Ace& a : aces)
        EXPECT_TRUE(IsAceOf(a, TrusteeName("Domain Admins")) || IsAceOf(a, TrusteeName("System")))
            << TrusteeOf(a);
    EXPECT_GT(Dacl("plain").second.size(), aces.size());
    EXPECT_FALSE(Exists("refused"));
}

TEST_P(OUAddTest, AceModesAndTheOverwriteThatNeedsAnInheritOption) {
    const std::string g = MakeAccount("group", "readers");
    EXPECT_TRUE(
        Runs(kAdd, "3/1/5", kAceHeader,
             {{"{T},new,,," + g + ",0,6"},  // "" means "0": object and children
              {"{T},over,,," + g + ",2,6", kFail, {kOverwriteFailed}},  // must say how
              {"{T},over2,,," + g + ",2,6,1,d"},
              {"{T},del,,," + g + ",1,bad,x", kWarn, {AceNotFound(g)}},  // reads no more
              {"{T},mode,,," + g + ",7,6", kFail, {Invalid("AceOpeMode")}},
              {"{T},none,,,,7"},  // no account: no mode either
              {"{T},pod,,," + g + ",0,6,,X", kFail, {Invalid("PermitOrDeny")}},
              // 6005 speaks of PermitOrDeny too.
              {"{T},opt,,," + g + ",0,6,5", kFail, {Invalid("PermitOrDeny")}},
              {"{T},ghost,,,NoSuchOne,0,0", kFail, {"ACEの追加ﾓｰﾄﾞ設定が失敗しました。"}}}));
    EXPECT_FALSE(AcesOf("new", g).empty());
    auto denied = AcesOf("over2", g);
    ASSERT_EQ(denied.size(), 1u);
    EXPECT_EQ(denied[0].AceType, kAccessDeniedAceType);
    EXPECT_EQ(denied[0].AceFlags, 0);
    EXPECT_EQ(Existing({"over", "mode", "pod", "opt", "ghost", "del", "none"}), "del none");
}

TEST_P(OUAddTest, CancelBetweenMirrorRowsTakesTheOUAwayButNotAWholeOne) {
    const std::string mirror = "{T},half,,YES,Domain Admins,0,6";
    op.onYield = [](int yields) {
        if (yields == 3) gRun.intCancel = 1;  // after the first Mirror row of the second OU
    };
    EXPECT_TRUE(Runs(kAdd, "1/0/0", kAceHeader, {{"{T},done"}, {"{T},half"}, {mirror}, {mirror}}));
    EXPECT_EQ(gRun.lngCancelLine, 4);
    EXPECT_EQ(gRun.lngLastCreatedLine, 3);
    EXPECT_EQ(Existing({"done", "half"}), "done");

    op.onYield = [](int) { gRun.intCancel = 1; };
    EXPECT_TRUE(Runs(kAdd, "1/0/0", kAceHeader, {{"{T},whole"}, {"{T},never"}}));
    EXPECT_EQ(gRun.lngCancelLine, 2);
    EXPECT_EQ(Existing({"whole", "never"}), "whole");
}

INSTANTIATE_TEST_SUITE_P(FastAndExact, OUAddTest, ::testing::Values(true, false), WayName);

}  // namespace
}  // namespace orin::test
