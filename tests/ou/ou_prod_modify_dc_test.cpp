// The OU modify engine through the row loop against the test DC, each test with the fast path
// and with the exact way alone.
//
// Server behaviour these tests expect, seen on Samba 4.17: a rename of an OU to its present
// name succeeds (Windows refuses it, which the engine reports as 2060).

#include "ou_test_support.h"

namespace orin::test {
namespace {

using OUModifyTest = BothWays;

TEST_P(OUModifyTest, EmptyCellsKeepAndClearMarkersClear) {
    MakeOU("o", {{"c", "US"}, {"postalCode", "1"}, {"st", "old"}, {"l", "kept"}});
    EXPECT_TRUE(Runs(kMdf, "1/0/0",
                     "!OU-Start,,OU-End,Mirror,c,postalCode,st,l,postOfficeBox,street,description",
                     {{"{T},o,,,!c,!C,大阪府,,never read,a<RTN>b,新しい説明"}}));
    EXPECT_EQ(
        PropsOf("o"),
        (Props{
            {"st", "大阪府"}, {"l", "kept"}, {"street", "a\r\nb"}, {"description", "新しい説明"}}));
    EXPECT_EQ(Attr("o", "postOfficeBox"), "");
}

TEST_P(OUModifyTest, TheManagerIsSetClearedOrRefusedAfterThePropertiesAreWritten) {
    MakeAccount("user", "boss");
    const std::string boss = "CN=boss," + DnOf("");
    MakeOU("set");
    MakeOU("cleared", {{"managedBy", boss}});
    MakeOU("refused");
    EXPECT_TRUE(Runs(kMdf, "2/0/3",
                     "!OU-Start,,OU-End,Mirror,description,MgrOU-Start,MgrOU-End,MgrRDN",
                     {{"{T},set,,,,{T},,boss"},
                      {"{T},cleared,,,,,,!C"},
                      {"{T},refused,,,written,{T},,ghost", kFail, {kNoManager}},
                      {"{T},missing", kFail, {kNoObject}},
                      {",,,,no path", kFail, {kNoPath}}}));
    EXPECT_EQ(Attr("set", "managedBy"), boss);
    EXPECT_EQ(Attr("cleared", "managedBy"), "");
    // No roll-back in a modify: the property before the failing manager stays written.
    EXPECT_EQ(Attr("refused", "description"), "written");
}

TEST_P(OUModifyTest, TheRenameComesAtTheChainsEndAfterEveryAce) {
    const std::string g1 = MakeAccount("group", "g1"), g2 = MakeAccount("group", "g2");
    MakeOU("p");
    MakeOU("p,old");
    EXPECT_TRUE(Runs(kMdf, "2/0/0",
                     "!OU-Start,,OU-End,Mirror,NewRDN,description,AceSamAccountName,AceOpeMode,"
                     "AccessRight",
                     {{"{T},p,old,,new,," + g1 + ",0,6"},
                      {"# the chain goes on after a comment"},
                      {"{T},p,old,YES,,," + g2 + ",0,6"},
                      {"{T},p,,,,next object"}}));
    EXPECT_FALSE(Exists("p,old"));
    EXPECT_FALSE(AcesOf("p,new", g1).empty());
    EXPECT_FALSE(AcesOf("p,new", g2).empty());
    EXPECT_EQ(Attr("p", "description"), "next object");
}

TEST_P(OUModifyTest, NamesThatCantBeTaken) {
    for (const char* names : {"a", "b", "c", "d", "taken", "same"}) MakeOU(names);
    Make("container", "CN=box," + PathOf(""));
    EXPECT_TRUE(Runs(kMdf, "1/0/4", "!OU-Start,,OU-End,Mirror,NewRDN,InheritParentACL",
                     {{"{T},a,,,!c", kFail, {kNameNotCleared}},
                      {"{T},b,,,taken", kFail, {kNameTaken}},
                      {"{T},c,,,box", kFail, {kNameTaken}},
                      // The chain fails before its end: no rename.
                      {"{T},d,,,renamed,9", kFail, {Invalid("InheritParentACL")}},
                      {"{T},d,,YES"},
                      {"{T},same,,,same"}}));
    EXPECT_EQ(Existing({"a", "b", "c", "d", "taken", "same"}), "a b c d taken same");

    // A run whose first row is a Mirror row has no chain above it, and takes no name that the
    // run before left pending (the last row's "same", which is taken by then).
    EXPECT_TRUE(Runs(kMdf, "1/0/0", "!OU-Start,,OU-End,Mirror", {{"{T},a,,YES"}}));
    EXPECT_TRUE(Exists("a"));
}

TEST_P(OUModifyTest, InheritanceIsLiftedOrBlocked) {
    for (const char* names : {"never", "copies"}) MakeOU(names);
    DirObject blocked = MakeOU("blocked");
    ASSERT_TRUE(SetInheritance(blocked, true));
    EXPECT_TRUE(Runs(kMdf, "3/0/1", "!OU-Start,,OU-End,Mirror,InheritParentACL",
                     {{"{T},blocked,,,0"},
                      {"{T},never,,,0"},
                      {"{T},copies,,,1"},
                      {"{T},never,,,x", kFail, {Invalid("InheritParentACL")}}}));
    EXPECT_FALSE(Dacl("blocked").first & kSeDaclProtected);
    EXPECT_FALSE(Dacl("never").first & kSeDaclProtected);
    EXPECT_TRUE(Dacl("copies").first & kSeDaclProtected);
}

TEST_P(OUModifyTest, RemDefaultAclActsOnlyOnYesAndNeverWarns) {
    MakeOU("stripped");
    MakeOU("other");
    const size_t before = Dacl("other").second.size();
    // No 10201 for the exception that matched nothing, and no 1082 for an odd value.
    EXPECT_TRUE(Runs(kMdf, "2/0/0", "!OU-Start,,OU-End,Mirror,RemDefaultACL,DoNotRemTheseACE",
                     {{"{T},stripped,,,Yes,Domain Admins;Nobody"}, {"{T},other,,,perhaps"}}));
    auto aces = Dacl("stripped").second;
    ASSERT_FALSE(aces.empty());
    for (const Ace& a : aces) EXPECT_TRUE(IsAceOf(a, TrusteeName("Domain Admins"))) << TrusteeOf(a);
    EXPECT_EQ(Dacl("other").second.size(), before);
}

TEST_P(OUModifyTest, AceModesOnAnExistingOU) {
    const std::string g = MakeAccount("group", "g");
    MakeOU("o");
    MakeOU("merged");
    EXPECT_TRUE(Runs(kMdf, "3/1/1",
                     "!OU-Start,,OU-End,Mirror,AceSamAccountName,AceOpeMode,AccessRight,"
                     "InheritOption",
                     {{"{T},o,,," + g + ",0,6,1"},
                      {"{T},o,,YES," + g + ",2,7,1"},
                      {"{T},o,,," + g + ",2,8", kFail, {kOverwriteFailed}},  // no InheritOption
                      {"{T},o,,," + g + ",1"},
                      {"{T},o,,," + g + ",1", kWarn, {AceNotFound(g)}},  // nothing left
                      {"{T},merged,,," + g + ",0,6,1"},
                      {"{T},merged,,YES," + g + ",2,7;8,1"}}));
    EXPECT_TRUE(AcesOf("o", g).empty());
    auto merged = AcesOf("merged", g);
    ASSERT_EQ(merged.size(), 1u);
    EXPECT_EQ(merged[0].AccessMask, 0x10u | 0x20u | 0x10000u);
}

INSTANTIATE_TEST_SUITE_P(FastAndExact, OUModifyTest, ::testing::Values(true, false), WayName);

}  // namespace
}  // namespace orin::test
