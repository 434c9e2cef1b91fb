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
    EXPECT_TRUE(Runs(
        kImitateAdd, "3/0/9",  // lines 2, 4 and 10-11 pass
        "!OU-Start,,OU-End,Mirror,InheritParentACL,AceSamAccountName,AceOpeMode,AccessRight",
        {{"{T},a"},  // enters the ledger
         {"{T},a",
          kFail,
          {"追加しようとしたｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに存在しています。重複先のｵﾌﾞｼﾞｪｸﾄは"
           "行番号2のﾃﾞｰﾀにより追加されています。"}},
         {"{T},a,b"},                                          // a child of an OU that line 2 adds
         {"{T},c,,,9", kFail, {Invalid("InheritParentACL")}},  // fails after entering the ledger
         {"{T},c,d", kFail, {kNoParent}},                      // so its child has no parent
         {"{T},old", kFail, {kOUExists}},
         {"{T},box",
          kFail,
          {"追加対象OUと同じ名前のOUでないｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに存在します。"}},
         {"{T},e,,,," + missing + ",0,0", kFail, {kNoAccount}},
         {"{T},f,,,,Administrator,0,0"},
         {"{T},f,,yes,,SYSTEM,0,0"},  // a Mirror row of line 10's OU
         {"{T},g,,,,Administrator,5,0", kFail, {Invalid("AceOpeMode")}},
         {"{T},h,,,,Administrator,0,99", kFail, {Invalid("AccessRight")}},
         {"{T},i,,,," + missing + ",0,0", kFail, {kNoAccount}},
         {"{T},i,,yes,,Administrator,0,0"}}));  // checked, then counted as failed
    // Nothing was written: the test OU holds what the test made, and no more.
    auto children = ou().Object().Children();
    ASSERT_TRUE(children.ok());
    EXPECT_EQ(children->size(), 2u);
}

// The manager is looked up as the production add looks it up (whose tests go through the
// lookup's cases); nothing is written.
TEST_F(OUImitate, AddFindsTheManagerAsTheAddWould) {
    MakeAccount("user", "boss");
    EXPECT_TRUE(Runs(kImitateAdd, "1/0/1", "!OU-Start,,OU-End,Mirror,MgrOU-Start,,MgrOU-End,MgrRDN",
                     {{"{T},m1,,,{T},,,boss"}, {"{T},m3,,,{T},,,ghost", kFail, {kNoManager}}}));
    EXPECT_TRUE(Runs(kImitateAdd, "0/0/1", "!OU-Start,,OU-End,Mirror,MgrRDN",
                     {{"{T},m6,,,boss", kFail, {NoSpan("MgrOU")}}}));
}

TEST_F(OUImitate, AddChecksTheHeaderAndTheMirrorCellFirst) {
    EXPECT_TRUE(Runs(kImitateAdd, "0/0/3", "!OU-Start,,OU-End,Mirror,RemDefaultACL",
                     {{",,,maybe,", kFail, {Invalid("Mirror")}},  // before all else
                      {",,,,"},                                   // a row of commas is skipped
                      {" ,  ,,no,", kFail, {kNoPath}},
                      {"{T},r,,,sure", kFail, {Invalid("RemDefaultACL")}}}));
    EXPECT_TRUE(Runs(kImitateAdd, "0/0/1", "!OU-End,Mirror,OU-Start",
                     {{"{T},,a", kFail, {Reversed("OU")}}}));
}

TEST_F(OUImitate, DeleteChecksAndWarnsOfChildren) {
    for (const char* names : {"full", "full,child", "empty"}) MakeOU(names);
    EXPECT_TRUE(Runs(kImitateDel, "4/1/2", "!OU-Start,,OU-End,Mirror,IfDelSubObj",
                     {{"{T},full", kWarn, {kHasChildren}},  // not empty, and no flag
                      {"{T},full,,,yes"},
                      {"{T},empty"},
                      {"{T},none,,,yes", kFail, {kNoObject}},
                      {"{T},empty,,,maybe", kFail, {Invalid("Mirror")}},
                      {"{T},empty,,,no"},  // nothing remembers line 4
                      {"{T},empty,,,YES"},
                      {"{T},whatever,,yes"}}));  // a Mirror row only ends
    EXPECT_EQ(Existing({"full,child", "empty"}), "full,child empty");
    EXPECT_TRUE(Runs(kImitateDel, "0/0/1", "!OU-Start,,OU-End,Mirror",
                     {{"{T},empty", kFail, {kNoIfDelSubObj}}}));
}

TEST_F(OUImitate, MoveChecksTargetAndSource) {
    MakeOU("src");
    MakeOU("dest");
    EXPECT_TRUE(Runs(kImitateMov, "3/1/3", "!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN",
                     {{"{T},src,,,{T},dest"},
                      {"{T},none,,,{T},dest", kFail, {kNoSource}},
                      {"{T},src,,,{T},nowhere", kFail, {kNoTarget}},
                      {"{T},src,,,{T}", kFail, {kSamePlace}},  // where it is already
                      {"{T},src,,,{T},dest,,src", kWarn, {kSameNewName}},
                      {"{T},src"},  // to the domain root
                      {"{T},src,,,{T},dest,,src2"}}));
    EXPECT_EQ(Existing({"src", "dest,src"}), "src");
    EXPECT_TRUE(Runs(kImitateMov, "0/0/1", "!OU-Start,,OU-End,Mirror,NewRDN",
                     {{"{T},src,,,x", kFail, {NoSpan("NewOU")}}}));
}

TEST_F(OUImitate, ModifyRowsSeeTheRenamesOfEarlierOnes) {
    for (const char* names : {"m1", "m1,k", "m2", "m3", "m4", "m4,k", "mgrs"}) MakeOU(names);
    MakeAccount("user", "boss", "mgrs");
    const std::string lonely = MakeAccount("user", "lonely");
    auto parentRenamed = [](const std::string& line) {
        return "このｵﾌﾞｼﾞｪｸﾄの親ｺﾝﾃﾅのOUﾊﾟｽに、" + line +
               "行目で名前を変更されたOUが含まれているため親ｺﾝﾃﾅは実在しません。";
    };
    EXPECT_TRUE(
        Runs(kImitateMdf, "7/1/9",
             "!OU-Start,,OU-End,Mirror,NewRDN,description,MgrOU-Start,,MgrOU-End,MgrRDN,"
             "AceSamAccountName,AceOpeMode",
             {{"{T},m1,,,r1"},                                // 2: m1 would become r1
              {"{T},m1,k,,,d", kFail, {parentRenamed("2")}},  // its child under the old name
              {"{T},r1,,,,d"},                                // the OU under its new name
              {"{T},r1,k,,,d"},                               // and its child
              {"{T},m2,,,r1",
               kFail,  // r1 is taken by line 2
               {"[名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。重複先のｵﾌﾞｼﾞｪｸﾄは行番号2のﾃﾞｰﾀにより"
                "変更されています。"}},
              {"{T},m2,,,m1"},  // m1 was freed by line 2
              {"{T},m3,,,!c", kFail, {kNameNotCleared}},
              {"{T},mgrs,,,staff"},  // 9
              {"{T},m3,,,,,{T},mgrs,,boss",
               kFail,  // the manager's OU renamed away
               {"管理者所在ｺﾝﾃﾅのOUﾊﾟｽに、9行目で名前を変更されたOUが含まれているため管理者所在"
                "ｺﾝﾃﾅは実在しません。"}},
              {"{T},m3,,,,,{T},staff,,boss"},  // found where it will be
              {"{T},m3,,,,,{T},staff,,nobody", kFail, {kNoManager}},
              {"{T},m3,,,,,{T},staff,sub,boss",
               kFail,  // nor under the old name
               {"管理者所在ｺﾝﾃﾅのOUﾊﾟｽに、これまでの処理で名前を変更されたOUが含まれているため、"
                "管理者所在ｺﾝﾃﾅは実在しません。"}},
              {"{T},m3,,,,,,,,," + lonely + ",1", kWarn, {AceNotFound(lonely)}},
              {"{T},m9", kFail, {kNoObject}},
              {"{T},m3,,,m3", kFail, {kNameTaken}},  // the name it has already
              {"{T},m4,,,r4"},                       // a chain renamed at its end...
              {"{T},m4,,yes"},                       // 18: ...on this row
              {"{T},m4,k", kFail, {parentRenamed("18")}}}));
    EXPECT_EQ(Existing({"m1", "mgrs", "r1", "staff"}), "m1 mgrs");

    // A failed row enters no rename and skips the rest of its chain.
    MakeOU("a");
    EXPECT_TRUE(Runs(kImitateMdf, "0/0/2", "!OU-Start,,OU-End,Mirror,NewRDN,InheritParentACL",
                     {{"{T},a,,,b,7", kFail, {Invalid("InheritParentACL")}},
                      {"{T},a,,yes"},
                      {"{T},b", kFail, {kNoObject}}}));
}

}  // namespace
}  // namespace orin::test
