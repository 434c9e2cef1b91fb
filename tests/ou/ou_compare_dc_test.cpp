// The OU compares against the test DC, on directories set up as a production run would have left
// them, and one CSV file through the three modes in the order an operator uses them.
//
// Server behaviour these tests expect (seen on Samba 4.17, and what Windows does too): an allow
// ACE written with GENERIC_ALL and container-inherit (AceFlags 2) is stored as two halves, an
// inherit-only one (AceFlags 10) keeping the generic mask and an effective one (AceFlags 0) with
// the mask mapped to 0x000F01FF. The compare must take the pair for the ACE the row asked for.

#include "ou_test_support.h"

namespace orin::test {
namespace {

using OUCompare = OUTest;

TEST_F(OUCompare, AddPropertiesAndManager) {
    const std::string boss = "CN=boss," + DnOf("");
    MakeAccount("user", "boss");
    MakeOU("same", {{"c", "JP"},
                    {"postalCode", "100-0001"},
                    {"st", "東京都"},
                    {"l", "千代田区"},
                    {"street", "1-1\r\n2F"},
                    {"description", "本社"},
                    {"managedBy", boss}});
    MakeOU("other", {{"c", "US"}, {"street", "x"}, {"description", "old"}});
    EXPECT_TRUE(Runs(
        kCompareAdd, "1/1/3",
        "!OU-Start,,OU-End,Mirror,c,postalCode,st,l,street,description,"
        "MgrOU-Start,,MgrOU-End,MgrRDN",
        // Case is no difference, and "<Rtn>" is the stored line break.
        {{"{T},same,,,jp,100-0001,東京都,千代田区,1-1<rtn>2F,本社,{T},,,BOSS"},
         {"{T},other,,,JP,,,,y<Rtn>z,new,{T},,,boss",
          kDiff,
          {Differs("国/地域", "JP", "US"), Differs("番地", "y<改行>z", "x"),
           Differs("説明", "new", "old"), Differs("管理者", "orin.test/" + Top() + "/boss", "")}},
         {"{T},ghost", kFail, {"ｵﾌﾞｼﾞｪｸﾄが存在しません。"}},
         {"{T},other,,,,,,,,,{T},no,,boss", kFail, {kNoManagerContainer}},
         {"{T},same,,,,,,,,,{T},,,nobody", kFail, {kNoManager}}}));
}

TEST_F(OUCompare, AddAccessControlAgainstTheStoredDescriptor) {
    DirObject acl = MakeOU("acl");
    const std::string a = MakeAccount("user", "aceuser"), b = MakeAccount("user", "bystand");
    ASSERT_TRUE(AddAceToObject(acl, a, 0x10000000, 0, CodedValue(2)));
    // The two halves the rows below are compared with.
    ASSERT_TRUE(AceExists(acl, a, 0, CodedValue(0)));
    ASSERT_TRUE(AceExists(acl, a, 0, CodedValue(10)));
    const std::string permitOrDeny = "ﾍｯﾀﾞ[PermitOrDeny]の処理結果に相違がありました。";
    EXPECT_TRUE(
        Runs(kCompareAdd, "2/3/3",
             "!OU-Start,,OU-End,Mirror,InheritParentACL,RemDefaultACL,DoNotRemTheseACE,"
             "AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption",
             {{"{T},acl,,,0,,," + a + ",0,0"},        // full control, both halves
              {"{T},acl,,yes,,,," + a + ",0,0,p,2"},  // the inherit-only half
              {"{T},acl,,,1,,," + a + ",0,0,D", kDiff, {kInheritDiffers, permitOrDeny}},
              {"{T},acl,,,,yes," + a + " ; nosuch," + a + ",1",
               kDiff,
               {"ﾍｯﾀﾞ[DoNotRemTheseACE]の処理結果に相違がありました。削除されないはずの下記ACEが"
                "ｵﾌﾞｼﾞｪｸﾄのACLから見つかりません：\r\n\tnosuch",
                "ﾍｯﾀﾞ[AceOpeMode]の処理結果に相違がありました。削除されるはずの右記ACEがｵﾌﾞｼﾞｪｸﾄの"
                "ACLに存在します：" +
                    a}},
              {"{T},acl,,,,,," + a + ",0,0,,4",
               kDiff,  // no half of flags 14
               {"ﾍｯﾀﾞ[InheritOption]の処理結果に相違がありました。",
                "ﾍｯﾀﾞ[AccessRight]の処理結果に相違がありました。右記のｺｰﾄﾞに該当するｱｸｾｽ許可がACEに"
                "設定されていません：0",
                permitOrDeny}},
              {"{T},acl,,,,,," + b + ",1"},  // nothing of b to remove
              {"{T},acl,,,,,," + a + ",0,0;1;15", kFail, {Invalid("AccessRight")}},
              {"{T},acl,,,,,," + a + ",7", kFail, {Invalid("AceOpeMode")}},
              {"{T},acl,,,x", kFail, {Invalid("InheritParentACL")}}}));
}

TEST_F(OUCompare, DeletedOUsAreGoneAndMovedOnesAtTheirTarget) {
    for (const char* names : {"kept", "kept,child", "dest", "dest,moved", "stay", "dest,renamed"})
        MakeOU(names);
    EXPECT_TRUE(Runs(kCompareDel, "2/1/1", "!OU-Start,,OU-End,Mirror,IfDelSubObj",
                     {{"{T},kept,,,yes",
                       kDiff,  // should have gone with its child
                       {"ﾍｯﾀﾞ[IfDelSubObj]の処理結果に相違がありました。ｵﾌﾞｼﾞｪｸﾄが削除されて"
                        "いません。"}},
                      {"{T},gone,,,yes"},
                      {"{T},kept,,,no"},  // may rightly have stayed
                      {"{T},kept,,,bad", kFail, {Invalid("Mirror")}},
                      {"{T},kept,,yes"}}));  // the chain of a failed row
    EXPECT_TRUE(
        Runs(kCompareMov, "2/2/1", "!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN",
             {{"{T},moved,,,{T},dest"},
              {"{T},stay,,,{T},dest", kDiff, {"移動されるはずのｵﾌﾞｼﾞｪｸﾄが移動元に存在します。"}},
              {"{T},lost,,,{T},dest", kDiff, {"移動されるはずのｵﾌﾞｼﾞｪｸﾄが移動先に存在しません。"}},
              {"{T},old,,,{T},dest,,renamed"},  // moved and renamed
              {"{T},stay,,,{T},nowhere", kFail, {kNoTarget}}}));
}

TEST_F(OUCompare, ModifyClearedValuesManagersAndRenames) {
    const std::string boss = "CN=boss," + DnOf("");
    MakeAccount("user", "boss");
    // "old" was renamed to "new" by the production run, and its manager is boss2 inside it.
    DirObject renamed = MakeOU("new", {{"description", "d"}, {"st", "Tokyo"}});
    MakeAccount("user", "boss2", "new");
    renamed.Put("managedBy", "CN=boss2," + DnOf("new"));
    ASSERT_TRUE(renamed.SetInfo().ok());
    MakeOU("new,child", {{"description", "x"}});
    MakeOU("plain", {{"description", "keep"}, {"managedBy", boss}});
    const std::string manager = "ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]に相違がありました。";
    EXPECT_TRUE(Runs(
        kCompareMdf, "2/5/3",  // lines 2-3 and 6 match
        "!OU-Start,,OU-End,Mirror,NewRDN,st,l,description,MgrOU-Start,,MgrOU-End,MgrRDN,"
        "InheritParentACL",
        {{"{T},old,,,new,tokyo,!C,d"},  // found under its new name
         {"{T},old,,yes"},              // the chain's next row, by the ledger
         {"{T},old,child,,,,,!c", kDiff, {NotCleared("説明")}},  // inside the renamed one
         {"{T},plain,,,,!C,,!C,,,,!c", kDiff, {NotCleared("説明"), NotCleared("管理者")}},
         {"{T},new,,,,,,,{T},old,,boss2"},  // the manager's OU, renamed above
         {"{T},plain,,,,,,,{T},nowhere,,boss",
          kDiff,
          {manager + "管理者の所在ｺﾝﾃﾅが存在しません。"}},
         {"{T},plain,,,,,,,{T},,,ghost", kDiff, {manager + "管理者が所在ｺﾝﾃﾅに存在しません。"}},
         {"{T},plain,,,,,,,,,,,1", kDiff, {kInheritDiffers}},
         {"{T},gone,,,again", kFail, {"名前が変更されたはずのｵﾌﾞｼﾞｪｸﾄが存在しません。"}},
         {"{T},gone", kFail, {"ｵﾌﾞｼﾞｪｸﾄが存在しません。"}},
         {"{T},plain,,,!c", kFail, {kNameNotCleared}}}));
}

// Imitation, production and compare of one file: the imitation passes and leaves the directory
// alone, the production run makes the changes, and the compare finds them as the file says.
// Covers what production writes and compare reads back: "<Rtn>", managers, inheritance blocks,
// default ACL removal, ACE halves, "!C" and a rename at the end of a chain.
TEST_F(OUCompare, FindsWhatTheProductionRunOfTheSameFileMade) {
    MakeAccount("user", "boss");
    MakeAccount("user", "boss2");
    const std::string a = MakeAccount("user", "aceA"), b = MakeAccount("user", "aceB");
    auto threeModes = [this](RowOperation op, const std::string& header,
                             const std::vector<Row>& rows) {
        for (int mode : {op + kImitateAdd, op + kAdd, op + kCompareAdd})
            EXPECT_TRUE(Runs(mode, "2/0/0", header, rows)) << "RowOperation " << mode;
    };
    threeModes(kAdd,
               "!OU-Start,,OU-End,c,postalCode,st,l,street,description,MgrOU-Start,,MgrOU-End,"
               "MgrRDN,Mirror,RemDefaultACL,DoNotRemTheseACE,InheritParentACL,AceSamAccountName,"
               "AceOpeMode,AccessRight,PermitOrDeny,InheritOption",
               {{"{T},p,,JP,100-0001,東京都,港区,1<Rtn>2,desc,{T},,,boss,,,,1," + a + ",0,0"},
                {"{T},p,,,,,,,,,,,,yes,,,," + b + ",0,1;5,D,1"},
                {"{T},p,q,,,,,,child,,,,,,yes,Domain Admins,2"}});
    EXPECT_TRUE(Exists("p,q"));
    threeModes(kMdf,
               "!OU-Start,,OU-End,Mirror,NewRDN,c,st,description,MgrOU-Start,,MgrOU-End,MgrRDN,"
               "InheritParentACL,AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,"
               "InheritOption",
               {{"{T},p,,,p2,!C,大阪府,,,,,!C,0," + b + ",1"},
                {"{T},p,,yes,,,,,,,,,," + a + ",2,14,,0"},
                {"{T},p2,q,,,,,!c,{T},,,boss2"}});
    EXPECT_EQ(Existing({"p2,q", "p"}), "p2,q");
}

}  // namespace
}  // namespace orin::test
