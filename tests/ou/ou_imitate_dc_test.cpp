// The OU imitations against the test DC: the checks of the production runs, the ledgers that
// stand in for what earlier rows would have done, and a directory left as it was.

#include "ou_test_support.h"

namespace orin::test {
namespace {

using OUImitate = OUTest;

TEST_F(OUImitate, AddRowsStandInForTheOUsTheyWouldAdd) {
    MakeOU("old");
    Make("container", "CN=box," + PathOf(""));
    const std::string missing = Sam("nosuch");
    EXPECT_EQ(
        Run(kImitateAdd, {"!OU-Start,,OU-End,Mirror,InheritParentACL,AceSamAccountName,AceOpeMode,"
                          "AccessRight",
                          "{T},a",                         // 2: passes, enters the ledger
                          "{T},a",                         // 3: the same OU again
                          "{T},a,b",                       // 4: a child of an OU that line 2 adds
                          "{T},c,,,9",                     // 5: fails after entering the ledger
                          "{T},c,d",                       // 6: so its child has no parent
                          "{T},old",                       // 7: in the directory already
                          "{T},box",                       // 8: the name is held by a container
                          "{T},e,,,," + missing + ",0,0",  // 9: no such account
                          "{T},f,,,,Administrator,0,0",    // 10
                          "{T},f,,yes,,SYSTEM,0,0",        // 11: a Mirror row of line 10's OU
                          "{T},g,,,,Administrator,5,0",    // 12: no such AceOpeMode
                          "{T},h,,,,Administrator,0,99",   // 13: no such AccessRight
                          "{T},i,,,," + missing + ",0,0",  // 14
                          "{T},i,,yes,,Administrator,0,0"}),  // 15: checked, then counted as failed
        Log({{3, kFail,
              "追加しようとしたｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに存在しています。重複先の"
              "ｵﾌﾞｼﾞｪｸﾄは行番号2のﾃﾞｰﾀにより追加されています。"},
             {5, kFail, Invalid("InheritParentACL")},
             {6, kFail, kNoParent},
             {7, kFail, kOUExists},
             {8, kFail, "追加対象OUと同じ名前のOUでないｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに存在します。"},
             {9, kFail, kNoAccount},
             {12, kFail, Invalid("AceOpeMode")},
             {13, kFail, Invalid("AccessRight")},
             {14, kFail, kNoAccount}}));
    EXPECT_EQ(Tally(), "3/0/9");  // lines 2, 4 and 10-11 pass

    // Nothing was written: the test OU holds what the test made, and no more.
    auto children = ou().Object().Children();
    ASSERT_TRUE(children.ok());
    EXPECT_EQ(children->size(), 2u);
}

TEST_F(OUImitate, AddFindsTheManagerAsTheAddWould) {
    MakeAccount("user", "boss");
    Make("contact", "CN=card," + PathOf(""));
    EXPECT_EQ(Run(kImitateAdd,
                  {"!OU-Start,,OU-End,Mirror,MgrOU-Start,,MgrOU-End,MgrRDN", "{T},m1,,,{T},,,boss",
                   "{T},m2,,,{T},nowhere,,boss", "{T},m3,,,{T},,,ghost", "{T},m4,,,{T},,,card",
                   "{T},m5,,,Users,,,Administrator"}),  // a default container
              Log({{3, kFail, kNoManagerContainer},
                   {4, kFail, kNoManager},
                   {5, kFail, kManagerNotUser}}));
    EXPECT_EQ(Tally(), "2/0/3");
    EXPECT_EQ(Run(kImitateAdd, {"!OU-Start,,OU-End,Mirror,MgrRDN", "{T},m6,,,boss"}),
              Log({{2, kFail, kNoManagerSpan}}));
}

TEST_F(OUImitate, AddChecksTheHeaderAndTheMirrorCellFirst) {
    EXPECT_EQ(Run(kImitateAdd, {"!OU-Start,,OU-End,Mirror,RemDefaultACL",
                                ",,,maybe,",       // 2: the Mirror cell before all else
                                ",,,,",            // 3: a row of commas is skipped
                                " ,  ,,no,",       // 4: an empty path
                                "{T},r,,,sure"}),  // 5
              Log({{2, kFail, Invalid("Mirror")},
                   {4, kFail, kNoPath},
                   {5, kFail, Invalid("RemDefaultACL")}}));
    EXPECT_EQ(Run(kImitateAdd, {"!OU-End,Mirror,OU-Start", "{T},,a"}),
              Log({{2, kFail, kReversed}}));
}

TEST_F(OUImitate, DeleteChecksAndWarnsOfChildren) {
    for (const char* names : {"full", "full,child", "empty"}) MakeOU(names);
    EXPECT_EQ(
        Run(kImitateDel, {"!OU-Start,,OU-End,Mirror,IfDelSubObj",
                          "{T},full",             // 2: not empty, and no flag
                          "{T},full,,,yes",       // 3
                          "{T},empty",            // 4
                          "{T},none,,,yes",       // 5
                          "{T},empty,,,maybe",    // 6: said with the Mirror words
                          "{T},empty,,,no",       // 7: nothing remembers line 4
                          "{T},empty,,,YES",      // 8
                          "{T},whatever,,yes"}),  // 9: a Mirror row only ends
        Log({{2, kWarn, kHasChildren}, {5, kFail, kNoObject}, {6, kFail, Invalid("Mirror")}}));
    EXPECT_EQ(Tally(), "4/1/2");
    EXPECT_TRUE(Exists("full,child"));
    EXPECT_TRUE(Exists("empty"));
    EXPECT_EQ(Run(kImitateDel, {"!OU-Start,,OU-End,Mirror", "{T},empty"}),
              Log({{2, kFail, kNoIfDelSubObj}}));
}

TEST_F(OUImitate, MoveChecksTargetAndSource) {
    MakeOU("src");
    MakeOU("dest");
    EXPECT_EQ(Run(kImitateMov, {"!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN",
                                "{T},src,,,{T},dest",          // 2
                                "{T},none,,,{T},dest",         // 3
                                "{T},src,,,{T},nowhere",       // 4
                                "{T},src,,,{T}",               // 5: where it is already
                                "{T},src,,,{T},dest,,src",     // 6: the name it has
                                "{T},src",                     // 7: to the domain root
                                "{T},src,,,{T},dest,,src2"}),  // 8
              Log({{3, kFail, kNoSource},
                   {4, kFail, kNoTarget},
                   {5, kFail, kSamePlace},
                   {6, kWarn, kSameNewName}}));
    EXPECT_EQ(Tally(), "3/1/3");
    EXPECT_TRUE(Exists("src"));
    EXPECT_FALSE(Exists("dest,src"));
    EXPECT_EQ(Run(kImitateMov, {"!OU-Start,,OU-End,Mirror,NewRDN", "{T},src,,,x"}),
              Log({{2, kFail, kNoTargetSpan}}));
}

TEST_F(OUImitate, ModifyRowsSeeTheRenamesOfEarlierOnes) {
    for (const char* names : {"m1", "m1,k", "m2", "m3", "m4", "m4,k", "mgrs"}) MakeOU(names);
    MakeAccount("user", "boss", "mgrs");
    const std::string lonely = MakeAccount("user", "lonely");
    const std::string parentRenamed =
        "このｵﾌﾞｼﾞｪｸﾄの親ｺﾝﾃﾅのOUﾊﾟｽに、%1行目で名前を変更されたOUが含まれているため親ｺﾝﾃﾅは"
        "実在しません。";
    EXPECT_EQ(Run(kImitateMdf,
                  {"!OU-Start,,OU-End,Mirror,NewRDN,description,MgrOU-Start,,MgrOU-End,MgrRDN,"
                   "AceSamAccountName,AceOpeMode",
                   "{T},m1,,,r1",                      // 2: m1 would become r1
                   "{T},m1,k,,,d",                     // 3: its child under the old name
                   "{T},r1,,,,d",                      // 4: the OU under its new name
                   "{T},r1,k,,,d",                     // 5: and its child
                   "{T},m2,,,r1",                      // 6: r1 is taken by line 2
                   "{T},m2,,,m1",                      // 7: m1 was freed by line 2
                   "{T},m3,,,!c",                      // 8: a name can't be cleared
                   "{T},mgrs,,,staff",                 // 9
                   "{T},m3,,,,,{T},mgrs,,boss",        // 10: the manager's OU is renamed away
                   "{T},m3,,,,,{T},staff,,boss",       // 11: found where it will be
                   "{T},m3,,,,,{T},staff,,nobody",     // 12: no such manager there
                   "{T},m3,,,,,{T},staff,sub,boss",    // 13: no such OU under the old name either
                   "{T},m3,,,,,,,,," + lonely + ",1",  // 14: no ACE of this account to remove
                   "{T},m9",                           // 15: no such OU
                   "{T},m3,,,m3",                      // 16: the name it has already
                   "{T},m4,,,r4",                      // 17: a chain whose rename is at its end...
                   "{T},m4,,yes",                      // 18: ...on this row
                   "{T},m4,k"}),                       // 19
              Log({{3, kFail, ReplaceAll(parentRenamed, "%1", "2")},
                   {6, kFail,
                    "[名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。重複先のｵﾌﾞｼﾞｪｸﾄは行番号2の"
                    "ﾃﾞｰﾀにより変更されています。"},
                   {8, kFail, kNameNotCleared},
                   {10, kFail,
                    "管理者所在ｺﾝﾃﾅのOUﾊﾟｽに、9行目で名前を変更されたOUが含まれているため"
                    "管理者所在ｺﾝﾃﾅは実在しません。"},
                   {12, kFail, kNoManager},
                   {13, kFail,
                    "管理者所在ｺﾝﾃﾅのOUﾊﾟｽに、これまでの処理で名前を変更されたOUが含まれている"
                    "ため、管理者所在ｺﾝﾃﾅは実在しません。"},
                   {14, kWarn, AceNotFound(lonely)},
                   {15, kFail, kNoObject},
                   {16, kFail, kNameTaken},
                   {19, kFail, ReplaceAll(parentRenamed, "%1", "18")}}));
    EXPECT_EQ(Tally(), "7/1/9");
    EXPECT_TRUE(Exists("m1"));
    EXPECT_TRUE(Exists("mgrs"));
    EXPECT_FALSE(Exists("r1"));
    EXPECT_FALSE(Exists("staff"));

    // A failed row enters no rename and skips the rest of its chain.
    MakeOU("a");
    EXPECT_EQ(Run(kImitateMdf, {"!OU-Start,,OU-End,Mirror,NewRDN,InheritParentACL", "{T},a,,,b,7",
                                "{T},a,,yes", "{T},b"}),
              Log({{2, kFail, Invalid("InheritParentACL")}, {4, kFail, kNoObject}}));
    EXPECT_EQ(Tally(), "0/0/2");
}

}  // namespace
}  // namespace orin::test
