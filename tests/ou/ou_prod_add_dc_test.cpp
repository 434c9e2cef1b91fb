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
    EXPECT_EQ(Run(kAdd, {"!OU-Start,,,OU-End,Mirror,c,postalCode,st,l,street,description",
                         "# a comment between the rows", "{T},a", "{T},a,b",
                         "{T},a,b,c,,JP,100-0001,東京都,千代田区,丸の内1-1<rtn>ﾋﾞﾙ2F,説明"}),
              "");
    EXPECT_EQ(Tally(), "3/0/0");
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
    EXPECT_EQ(Run(kAdd, {"!OU-Start,,OU-End,Mirror,description", "{T},taken,,,new",
                         "{T},missing,child", ",,,,no path", "{T},bad,,Y", "{T},beside"}),
              Log({{2, kFail, kOUExists},
                   {3, kFail, kNoParent},
                   {4, kFail, kNoPath},
                   {5, kFail, Invalid("Mirror")}}));
    EXPECT_EQ(Tally(), "1/0/4");
    EXPECT_EQ(Attr("taken", "description"), "");
    EXPECT_FALSE(Exists("missing"));
    EXPECT_FALSE(Exists("bad"));
    EXPECT_TRUE(Exists("beside"));  // Samba; Windows gives 2009

    // Header errors: after the Mirror cell, before the path.
    EXPECT_EQ(Run(kAdd, {"!OU-Start,Mirror", "{T}", ",maybe"}),
              Log({{2, kFail,
                    "ﾍｯﾀﾞ列[OU-Start]と[OU-End]の片方または両方が存在しません。両方のﾍｯﾀﾞ列を"
                    "定義してください。"},
                   {3, kFail, Invalid("Mirror")}}));
    EXPECT_EQ(Run(kAdd, {"!OU-End,OU-Start,Mirror", ",{T}"}), Log({{2, kFail, kReversed}}));
}

TEST_P(OUAddTest, MirrorRowsAddOneAcePerRowAndCountTheOUOnce) {
    const std::string g1 = MakeAccount("group", "g1"), g2 = MakeAccount("group", "g2");
    EXPECT_EQ(Run(kAdd, {kAceHeader, "{T},m,,," + g1 + ",0,6", "{T},m,, yes ," + g2 + ",0,1;5",
                         "{T},m,, yes ," + g1 + ",0,10"}),
              "");
    EXPECT_EQ(Tally(), "1/0/0");
    // Mode "0" replaces the account's ACEs: g1 keeps only the third row's right.
    auto first = AcesOf("m", g1);
    ASSERT_FALSE(first.empty());
    for (const Ace& a : first) EXPECT_EQ(a.AccessMask, 0x00020000u);
    EXPECT_FALSE(AcesOf("m", g2).empty());
}

TEST_P(OUAddTest, AFailingRowEndsItsChainAndRollsBackWhatTheChainMade) {
    MakeOU("dup");
    EXPECT_EQ(
        Run(kAdd, {kAceHeader, "{T},gone", "{T},gone,,YES,Domain Admins,0,99", "{T},gone,,YES",
                   "{T},dup",  // fails first: its Mirror row is skipped
                   "{T},dup,,YES,Domain Admins,bad", "{T},stays"}),
        Log({{3, kFail, Invalid("AccessRight")}, {5, kFail, kOUExists}}));
    EXPECT_EQ(Tally(), "1/0/2");
    EXPECT_FALSE(Exists("gone"));
    EXPECT_TRUE(Exists("dup"));  // not made by this chain, so not taken away
    EXPECT_TRUE(Exists("stays"));
}

TEST_P(OUAddTest, ManagerIsAUserInItsContainer) {
    MakeAccount("user", "boss");
    MakeAccount("group", "team");
    EXPECT_EQ(Run(kAdd, {"!OU-Start,,OU-End,Mirror,c,MgrOU-Start,,MgrOU-End,MgrRDN",
                         "{T},managed,,,,{T},,,boss", "{T},nobody,,,,{T},,,ghost",
                         "{T},grouped,,,,{T},,,team", "{T},nowhere,,,,{T},none,,boss",
                         // At domain level: Administrator lives in CN=Users, not there.
                         "{T},root,,,,,,,Administrator",
                         // One level that names a default container.
                         "{T},users,,,,Users,,,Administrator",
                         // The OU the row adds: it exists once the row made it, without boss.
                         "{T},new,,,JP,{T},new,,boss"}),
              Log({{3, kFail, kNoManager},
                   {4, kFail, kManagerNotUser},
                   {5, kFail, kNoManagerContainer},
                   {6, kFail, kNoManager},
                   {8, kFail, kNoManager}}));
    EXPECT_EQ(Tally(), "2/0/5");
    EXPECT_EQ(Attr("managed", "managedBy"), "CN=boss," + DnOf(""));
    EXPECT_EQ(Attr("users", "managedBy"), "CN=Administrator,CN=Users," + gSession.DomainDN);
    for (const char* gone : {"nobody", "grouped", "nowhere", "root", "new"})
        EXPECT_FALSE(Exists(gone)) << gone;

    // Without the manager span the failure has no roll-back: the OU stays as far as it got.
    EXPECT_EQ(Run(kAdd, {"!OU-Start,OU-End,description,MgrRDN,Mirror", "{T},kept,written,boss"}),
              Log({{2, kFail, kNoManagerSpan}}));
    EXPECT_EQ(Attr("kept", "description"), "written");
}

TEST_P(OUAddTest, InheritParentAclBlocksWithOrWithoutCopies) {
    EXPECT_EQ(Run(kAdd, {"!OU-Start,,OU-End,Mirror,InheritParentACL", "{T},inherit,,,0",
                         "{T},copies,,,1", "{T},bare,,,2", "{T},bad,,,3"}),
              Log({{5, kFail, Invalid("InheritParentACL")}}));
    EXPECT_EQ(Tally(), "3/0/1");
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
    EXPECT_EQ(
        Run(kAdd, {"!OU-Start,,OU-End,Mirror,RemDefaultACL,DoNotRemTheseACE",
                   "{T},stripped,,,yes, Domain Admins ;NoSuchGroup;System", "{T},plain,,,NO,x",
                   "{T},refused,,,maybe"}),
        Log({{2, kWarn, "削除対象外のACE「NoSuchGroup」が既定のACLから見つかりませんでした｡ "},
             {4, kFail, Invalid("RemDefaultACL")}}));
    EXPECT_EQ(Tally(), "1/1/1");
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
    EXPECT_EQ(Run(kAdd, {kAceHeader,
                         "{T},new,,," + g + ",0,6",   // "" means "0": object and children
                         "{T},over,,," + g + ",2,6",  // an overwrite must say how
                         "{T},over2,,," + g + ",2,6,1,d",
                         "{T},del,,," + g + ",1,bad,x",  // "1" reads no other column
                         "{T},mode,,," + g + ",7,6",
                         "{T},none,,,,7",  // no account: no mode either
                         "{T},pod,,," + g + ",0,6,,X", "{T},opt,,," + g + ",0,6,5",
                         "{T},ghost,,,NoSuchOne,0,0"}),
              Log({{3, kFail, kOverwriteFailed},
                   {5, kWarn, AceNotFound(g)},
                   {6, kFail, Invalid("AceOpeMode")},
                   {8, kFail, Invalid("PermitOrDeny")},
                   {9, kFail, Invalid("PermitOrDeny")},  // 6005 speaks of PermitOrDeny too
                   {10, kFail, "ACEの追加ﾓｰﾄﾞ設定が失敗しました。"}}));
    EXPECT_EQ(Tally(), "3/1/5");
    EXPECT_FALSE(AcesOf("new", g).empty());
    auto denied = AcesOf("over2", g);
    ASSERT_EQ(denied.size(), 1u);
    EXPECT_EQ(denied[0].AceType, kAccessDeniedAceType);
    EXPECT_EQ(denied[0].AceFlags, 0);
    for (const char* gone : {"over", "mode", "pod", "opt", "ghost"})
        EXPECT_FALSE(Exists(gone)) << gone;
    EXPECT_TRUE(Exists("del"));
    EXPECT_TRUE(Exists("none"));
}

TEST_P(OUAddTest, CancelBetweenMirrorRowsTakesTheOUAwayButNotAWholeOne) {
    const std::string mirror = ",YES,Domain Admins,0,6";
    op.onYield = [](int yields) {
        if (yields == 3) gRun.intCancel = 1;  // after the first Mirror row of the second OU
    };
    Run(kAdd, {kAceHeader, "{T},done", "{T},half", "{T},half," + mirror, "{T},half," + mirror});
    EXPECT_EQ(Tally(), "1/0/0");
    EXPECT_EQ(gRun.lngCancelLine, 4);
    EXPECT_EQ(gRun.lngLastCreatedLine, 3);
    EXPECT_TRUE(Exists("done"));
    EXPECT_FALSE(Exists("half"));

    op.onYield = [](int) { gRun.intCancel = 1; };
    Run(kAdd, {kAceHeader, "{T},whole", "{T},never"});
    EXPECT_EQ(Tally(), "1/0/0");
    EXPECT_EQ(gRun.lngCancelLine, 2);
    EXPECT_TRUE(Exists("whole"));
    EXPECT_FALSE(Exists("never"));
}

INSTANTIATE_TEST_SUITE_P(FastAndExact, OUAddTest, ::testing::Values(true, false), WayName);

// Under the local method (Kerberos) the paths carry no server part.
class OUAddLocalTest : public OUTest {
  protected:
    OUAddLocalTest() : OUTest(ConnectMethod::Local) {}
};

TEST_F(OUAddLocalTest, AddsWithManagerAndAceUnderTheLocalMethod) {
    const std::string boss = MakeAccount("user", "boss");
    EXPECT_EQ(
        Run(kAdd, {"!OU-Start,,OU-End,Mirror,c,MgrOU-Start,MgrOU-End,MgrRDN,"
                   "AceSamAccountName,AceOpeMode,AccessRight",
                   "{T},a,,,JP,{T},,boss," + boss + ",0,6", "{T},a,,YES,,,,,Domain Admins,1"}),
        "");
    EXPECT_EQ(Tally(), "1/0/0");
    EXPECT_EQ(PropsOf("a"), (Props{{"c", "JP"}, {"managedBy", "CN=boss," + DnOf("")}}));
    EXPECT_FALSE(AcesOf("a", boss).empty());
}

}  // namespace
}  // namespace orin::test
