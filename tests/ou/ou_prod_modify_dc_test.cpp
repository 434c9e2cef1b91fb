// The OU modify engine through the row loop against the test DC, each test with the fast path
// and with the exact way alone.
//
// Server behaviour these tests expect, seen on Samba 4.17: a rename of an OU to its present
// name succeeds (Windows refuses it, which the engine reports as 2060).

#include "ou_prod_support.h"

namespace orin::test {
namespace {

using OUModifyTest = BothWays;

TEST_P(OUModifyTest, EmptyCellsKeepAndClearMarkersClear) {
    MakeOU("OU=o", {{"c", "US"}, {"postalCode", "1"}, {"st", "old"}, {"l", "kept"}});
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"o"}) + Values{
                                                            {"c", "!c"},
                                                            {"postalCode", "!C"},
                                                            {"st", "大阪府"},
                                                            {"postOfficeBox", "never read"},
                                                            {"street", "a<RTN>b"},
                                                            {"description", "新しい説明"},
                                                        })});
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    const std::string dn = OuDn({"o"});
    EXPECT_EQ(Attr(dn, "c"), "");
    EXPECT_EQ(Attr(dn, "postalCode"), "");
    EXPECT_EQ(Attr(dn, "st"), "大阪府");
    EXPECT_EQ(Attr(dn, "l"), "kept");
    EXPECT_EQ(Attr(dn, "street"), "a\r\nb");
    EXPECT_EQ(Attr(dn, "description"), "新しい説明");
    EXPECT_EQ(Attr(dn, "postOfficeBox"), "");
}

TEST_P(OUModifyTest, TheManagerIsSetClearedOrRefusedAfterThePropertiesAreWritten) {
    MakeAccount("user", "boss");
    const std::string boss = "CN=boss," + ou().Dn();
    MakeOU("OU=set");
    MakeOU("OU=cleared", {{"managedBy", boss}});
    MakeOU("OU=refused");
    auto log =
        Run(OperationKind::Mdf,
            {kMdf.Header(), kMdf.Row(At({"set"}) + Manager("boss")),
             kMdf.Row(At({"cleared"}) + Values{{"MgrRDN", "!C"}}),
             kMdf.Row(At({"refused"}) + Manager("ghost") + Values{{"description", "written"}}),
             kMdf.Row(At({"missing"})), kMdf.Row({{"description", "no path"}})});
    EXPECT_EQ(log, Lines({"4行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。",
                          "5行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しないか、ﾊﾟｽが間違っています。",
                          "6行, 失敗, OUのﾊﾟｽが指定されていません。"}) +
                       Summary(5, 2, 0, 3));
    EXPECT_EQ(Attr(OuDn({"set"}), "managedBy"), boss);
    EXPECT_EQ(Attr(OuDn({"cleared"}), "managedBy"), "");
    // No roll-back in a modify: the property before the failing manager stays written.
    EXPECT_EQ(Attr(OuDn({"refused"}), "description"), "written");
}

TEST_P(OUModifyTest, TheRenameComesAtTheChainsEndAfterEveryAce) {
    const std::string g1 = MakeAccount("group", "g1"), g2 = MakeAccount("group", "g2");
    MakeOU("OU=p");
    MakeOU("OU=old,OU=p");
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(),
                    kMdf.Row(At({"p", "old"}) + AceCells(g1, "0", "6") + Values{{"NewRDN", "new"}}),
                    "# the chain goes on after a comment",
                    kMdf.Row(At({"p", "old"}) + AceCells(g2, "0", "6") + Values{{"Mirror", "YES"}}),
                    kMdf.Row(At({"p"}) + Values{{"description", "next object"}})});
    EXPECT_EQ(log, Summary(2, 2, 0, 0));
    EXPECT_FALSE(Exists(OuDn({"p", "old"})));
    EXPECT_FALSE(AcesOf(OuDn({"p", "new"}), g1).empty());
    EXPECT_FALSE(AcesOf(OuDn({"p", "new"}), g2).empty());
    EXPECT_EQ(Attr(OuDn({"p"}), "description"), "next object");
}

TEST_P(OUModifyTest, NamesThatCantBeTaken) {
    for (const char* rdn : {"OU=a", "OU=b", "OU=c", "OU=d", "OU=taken", "OU=same"}) MakeOU(rdn);
    Make("container", "CN=box");
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"a"}) + Values{{"NewRDN", "!c"}}),
                    kMdf.Row(At({"b"}) + Values{{"NewRDN", "taken"}}),
                    kMdf.Row(At({"c"}) + Values{{"NewRDN", "box"}}),
                    kMdf.Row(At({"d"}) + Values{{"NewRDN", "renamed"}, {"InheritParentACL", "9"}}),
                    kMdf.Row(At({"d"}) + Values{{"Mirror", "YES"}}),
                    kMdf.Row(At({"same"}) + Values{{"NewRDN", "same"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[名前]をｸﾘｱすることができません。これは"
                          "OSの仕様です。",
                          "3行, 失敗, [名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。",
                          "4行, 失敗, [名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。",
                          // The chain failed before its end: no rename.
                          "5行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力されました。"}) +
                       Summary(5, 1, 0, 4));
    for (const char* stays : {"a", "b", "c", "d", "taken", "same"})
        EXPECT_TRUE(Exists(OuDn({stays}))) << stays;

    // A run whose first row is a Mirror row has no chain above it, and takes no name that the
    // run before left pending (the last row's "same", which is taken by then).
    log = Run(OperationKind::Mdf, {kMdf.Header(), kMdf.Row(At({"a"}) + Values{{"Mirror", "YES"}})});
    EXPECT_EQ(log, Summary(0, 1, 0, 0));
    EXPECT_TRUE(Exists(OuDn({"a"})));
}

TEST_P(OUModifyTest, InheritanceIsLiftedOrBlocked) {
    for (const char* rdn : {"OU=blocked", "OU=never", "OU=copies"}) MakeOU(rdn);
    DirObject blocked;
    ASSERT_TRUE(BindObject("LDAP://" + OuDn({"blocked"}), blocked));
    ASSERT_TRUE(SetInheritance(blocked, true));
    auto inherit = [](const std::string& code) { return Values{{"InheritParentACL", code}}; };
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"blocked"}) + inherit("0")),
                    kMdf.Row(At({"never"}) + inherit("0")), kMdf.Row(At({"copies"}) + inherit("1")),
                    kMdf.Row(At({"never"}) + inherit("x"))});
    EXPECT_EQ(log, Lines({"5行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力されました。"}) +
                       Summary(4, 3, 0, 1));
    EXPECT_FALSE(ExplicitDacl(OuDn({"blocked"})).first & kSeDaclProtected);
    EXPECT_FALSE(ExplicitDacl(OuDn({"never"})).first & kSeDaclProtected);
    EXPECT_TRUE(ExplicitDacl(OuDn({"copies"})).first & kSeDaclProtected);
}

TEST_P(OUModifyTest, RemDefaultAclActsOnlyOnYesAndNeverWarns) {
    MakeOU("OU=stripped");
    MakeOU("OU=other");
    const size_t before = ExplicitDacl(OuDn({"other"})).second.size();
    auto log =
        Run(OperationKind::Mdf,
            {kMdf.Header(),
             kMdf.Row(At({"stripped"}) + Values{{"RemDefaultACL", "Yes"},
                                                {"DoNotRemTheseACE", "Domain Admins;Nobody"}}),
             kMdf.Row(At({"other"}) + Values{{"RemDefaultACL", "perhaps"}})});
    // No 10201 for the exception that matched nothing, and no 1082 for an odd value.
    EXPECT_EQ(log, Summary(2, 2, 0, 0));
    auto aces = ExplicitDacl(OuDn({"stripped"})).second;
    ASSERT_FALSE(aces.empty());
    for (const Ace& a : aces) EXPECT_TRUE(IsAceOf(a, TrusteeName("Domain Admins"))) << TrusteeOf(a);
    EXPECT_EQ(ExplicitDacl(OuDn({"other"})).second.size(), before);
}

TEST_P(OUModifyTest, AceModesOnAnExistingOU) {
    const std::string g = MakeAccount("group", "g");
    MakeOU("OU=o");
    MakeOU("OU=merged");
    const Values mirror = {{"Mirror", "YES"}};
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"o"}) + AceCells(g, "0", "6", "1")),
                    kMdf.Row(At({"o"}) + AceCells(g, "2", "7", "1") + mirror),
                    kMdf.Row(At({"o"}) + AceCells(g, "2", "8")),  // no InheritOption: 6008
                    kMdf.Row(At({"o"}) + AceCells(g, "1", "")),
                    kMdf.Row(At({"o"}) + AceCells(g, "1", "")),  // nothing left: 10200
                    kMdf.Row(At({"merged"}) + AceCells(g, "0", "6", "1")),
                    kMdf.Row(At({"merged"}) + AceCells(g, "2", "7;8", "1") + mirror)});
    EXPECT_EQ(log, Lines({"4行, 失敗, ACEの上書ﾓｰﾄﾞ設定が失敗しました。",
                          "6行, 警告, 指定のACE「" + g +
                              "」がｵﾌﾞｼﾞｪｸﾄのACLから見つからないため削除処理をｽｷｯﾌﾟしました｡ "}) +
                       Summary(5, 3, 1, 1));
    EXPECT_TRUE(AcesOf(OuDn({"o"}), g).empty());
    auto merged = AcesOf(OuDn({"merged"}), g);
    ASSERT_EQ(merged.size(), 1u);
    EXPECT_EQ(merged[0].AccessMask, 0x10u | 0x20u | 0x10000u);
}

INSTANTIATE_TEST_SUITE_P(FastAndExact, OUModifyTest, ::testing::Values(true, false), WayName);

}  // namespace
}  // namespace orin::test
