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
    EXPECT_EQ(Run(kCompareAdd, {"!OU-Start,,OU-End,Mirror,c,postalCode,st,l,street,description,"
                                "MgrOU-Start,,MgrOU-End,MgrRDN",
                                // 2: case is no difference, and "<Rtn>" is the stored line break
                                "{T},same,,,jp,100-0001,東京都,千代田区,1-1<rtn>2F,本社,{T},,,BOSS",
                                "{T},other,,,JP,,,,y<Rtn>z,new,{T},,,boss",  // 3
                                "{T},ghost",                                 // 4: no such OU
                                "{T},other,,,,,,,,,{T},no,,boss",            // 5: no such container
                                "{T},same,,,,,,,,,{T},,,nobody"}),           // 6: no such manager
              Log({{3, kDiff, Differs("国/地域", "JP", "US")},
                   {3, kDiff, Differs("番地", "y<改行>z", "x")},
                   {3, kDiff, Differs("説明", "new", "old")},
                   {3, kDiff, Differs("管理者", "orin.test/" + Top() + "/boss", "")},
                   {4, kFail, "ｵﾌﾞｼﾞｪｸﾄが存在しません。"},
                   {5, kFail, kNoManagerContainer},
                   {6, kFail, kNoManager}}));
    EXPECT_EQ(Tally(), "1/1/3");
}

TEST_F(OUCompare, AddAccessControlAgainstTheStoredDescriptor) {
    DirObject acl = MakeOU("acl");
    const std::string a = MakeAccount("user", "aceuser"), b = MakeAccount("user", "bystand");
    ASSERT_TRUE(AddAceToObject(acl, a, 0x10000000, 0, CodedValue(2)));
    // The two halves the rows below are compared with.
    ASSERT_TRUE(AceExists(acl, a, 0, CodedValue(0)));
    ASSERT_TRUE(AceExists(acl, a, 0, CodedValue(10)));
    EXPECT_EQ(
        Run(kCompareAdd,
            {"!OU-Start,,OU-End,Mirror,InheritParentACL,RemDefaultACL,DoNotRemTheseACE,"
             "AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption",
             "{T},acl,,,0,,," + a + ",0,0",                    // 2: full control, both halves
             "{T},acl,,yes,,,," + a + ",0,0,p,2",              // 3: the inherit-only half
             "{T},acl,,,1,,," + a + ",0,0,D",                  // 4
             "{T},acl,,,,yes," + a + " ; nosuch," + a + ",1",  // 5
             "{T},acl,,,,,," + a + ",0,0,,4",                  // 6: no half of flags 14
             "{T},acl,,,,,," + b + ",1",                       // 7: nothing of b to remove
             "{T},acl,,,,,," + a + ",0,0;1;15",                // 8
             "{T},acl,,,,,," + a + ",7",                       // 9
             "{T},acl,,,x"}),                                  // 10
        Log({{4, kDiff, kInheritDiffers},
             {4, kDiff, "ﾍｯﾀﾞ[PermitOrDeny]の処理結果に相違がありました。"},
             {5, kDiff,
              "ﾍｯﾀﾞ[DoNotRemTheseACE]の処理結果に相違がありました。削除されないはずの下記ACEが"
              "ｵﾌﾞｼﾞｪｸﾄのACLから見つかりません：\r\n\tnosuch"},
             {5, kDiff,
              "ﾍｯﾀﾞ[AceOpeMode]の処理結果に相違がありました。削除されるはずの右記ACEが"
              "ｵﾌﾞｼﾞｪｸﾄのACLに存在します：" +
                  a},
             {6, kDiff, "ﾍｯﾀﾞ[InheritOption]の処理結果に相違がありました。"},
             {6, kDiff,
              "ﾍｯﾀﾞ[AccessRight]の処理結果に相違がありました。右記のｺｰﾄﾞに該当するｱｸｾｽ許可が"
              "ACEに設定されていません：0"},
             {6, kDiff, "ﾍｯﾀﾞ[PermitOrDeny]の処理結果に相違がありました。"},
             {8, kFail, Invalid("AccessRight")},
             {9, kFail, Invalid("AceOpeMode")},
             {10, kFail, Invalid("InheritParentACL")}}));
    EXPECT_EQ(Tally(), "2/3/3");
}

TEST_F(OUCompare, DeletedOUsAreGoneAndMovedOnesAtTheirTarget) {
    for (const char* names : {"kept", "kept,child", "dest", "dest,moved", "stay", "dest,renamed"})
        MakeOU(names);
    EXPECT_EQ(
        Run(kCompareDel, {"!OU-Start,,OU-End,Mirror,IfDelSubObj",
                          "{T},kept,,,yes",   // 2: should have gone with its child
                          "{T},gone,,,yes",   // 3
                          "{T},kept,,,no",    // 4: may rightly have stayed
                          "{T},kept,,,bad",   // 5
                          "{T},kept,,yes"}),  // 6: the chain of a failed row
        Log({{2, kDiff,
              "ﾍｯﾀﾞ[IfDelSubObj]の処理結果に相違がありました。ｵﾌﾞｼﾞｪｸﾄが削除されていません。"},
             {5, kFail, Invalid("Mirror")}}));
    EXPECT_EQ(Tally(), "2/1/1");

    EXPECT_EQ(Run(kCompareMov, {"!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN",
                                "{T},moved,,,{T},dest",         // 2
                                "{T},stay,,,{T},dest",          // 3: still at its source
                                "{T},lost,,,{T},dest",          // 4: nowhere
                                "{T},old,,,{T},dest,,renamed",  // 5: moved and renamed
                                "{T},stay,,,{T},nowhere"}),     // 6
              Log({{3, kDiff, "移動されるはずのｵﾌﾞｼﾞｪｸﾄが移動元に存在します。"},
                   {4, kDiff, "移動されるはずのｵﾌﾞｼﾞｪｸﾄが移動先に存在しません。"},
                   {6, kFail, kNoTarget}}));
    EXPECT_EQ(Tally(), "2/2/1");
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
    EXPECT_EQ(
        Run(kCompareMdf, {"!OU-Start,,OU-End,Mirror,NewRDN,st,l,description,MgrOU-Start,,MgrOU-End,"
                          "MgrRDN,InheritParentACL",
                          "{T},old,,,new,tokyo,!C,d",      // 2: found under its new name
                          "{T},old,,yes",                  // 3: the chain's next row, by the ledger
                          "{T},old,child,,,,,!c",          // 4: an OU inside the renamed one
                          "{T},plain,,,,!C,,!C,,,,!c",     // 5
                          "{T},new,,,,,,,{T},old,,boss2",  // 6: the manager's OU, renamed above
                          "{T},plain,,,,,,,{T},nowhere,,boss",  // 7
                          "{T},plain,,,,,,,{T},,,ghost",        // 8
                          "{T},plain,,,,,,,,,,,1",              // 9
                          "{T},gone,,,again",                   // 10
                          "{T},gone",                           // 11
                          "{T},plain,,,!c"}),                   // 12
        Log({{4, kDiff, NotCleared("説明")},
             {5, kDiff, NotCleared("説明")},
             {5, kDiff, NotCleared("管理者")},
             {7, kDiff,
              "ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]に相違がありました。管理者の所在ｺﾝﾃﾅが存在しません。"},
             {8, kDiff,
              "ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]に相違がありました。管理者が所在ｺﾝﾃﾅに存在しません。"},
             {9, kDiff, kInheritDiffers},
             {10, kFail, "名前が変更されたはずのｵﾌﾞｼﾞｪｸﾄが存在しません。"},
             {11, kFail, "ｵﾌﾞｼﾞｪｸﾄが存在しません。"},
             {12, kFail, kNameNotCleared}}));
    EXPECT_EQ(Tally(), "2/5/3");  // lines 2-3 and 6 match
}

// Imitation, production and compare of one file: the imitation passes and leaves the directory
// alone, the production run makes the changes, and the compare finds them as the file says.
// Covers what production writes and compare reads back: "<Rtn>", managers, inheritance blocks,
// default ACL removal, ACE halves, "!C" and a rename at the end of a chain.
TEST_F(OUCompare, FindsWhatTheProductionRunOfTheSameFileMade) {
    MakeAccount("user", "boss");
    MakeAccount("user", "boss2");
    const std::string a = MakeAccount("user", "aceA"), b = MakeAccount("user", "aceB");
    auto threeModes = [this](RowOperation op, const std::vector<std::string>& lines) {
        for (int mode : {op + kImitateAdd, op + kAdd, op + kCompareAdd}) {
            EXPECT_EQ(Run(mode, lines), "") << "RowOperation " << mode;
            EXPECT_EQ(Tally(), "2/0/0") << "RowOperation " << mode;
        }
    };
    threeModes(kAdd, {"!OU-Start,,OU-End,c,postalCode,st,l,street,description,MgrOU-Start,,"
                      "MgrOU-End,MgrRDN,Mirror,RemDefaultACL,DoNotRemTheseACE,InheritParentACL,"
                      "AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption",
                      "{T},p,,JP,100-0001,東京都,港区,1<Rtn>2,desc,{T},,,boss,,,,1," + a + ",0,0",
                      "{T},p,,,,,,,,,,,,yes,,,," + b + ",0,1;5,D,1",
                      "{T},p,q,,,,,,child,,,,,,yes,Domain Admins,2"});
    EXPECT_TRUE(Exists("p,q"));
    threeModes(kMdf, {"!OU-Start,,OU-End,Mirror,NewRDN,c,st,description,MgrOU-Start,,MgrOU-End,"
                      "MgrRDN,InheritParentACL,AceSamAccountName,AceOpeMode,AccessRight,"
                      "PermitOrDeny,InheritOption",
                      "{T},p,,,p2,!C,大阪府,,,,,!C,0," + b + ",1",
                      "{T},p,,yes,,,,,,,,,," + a + ",2,14,,0", "{T},p2,q,,,,,!c,{T},,,boss2"});
    EXPECT_TRUE(Exists("p2,q"));
    EXPECT_FALSE(Exists("p"));
}

}  // namespace
}  // namespace orin::test
