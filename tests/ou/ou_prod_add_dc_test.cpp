// The OU add engine through the row loop against the test DC, each test with the fast path and
// with the exact way alone.
//
// Server behaviour these tests expect, seen on Samba 4.17: an OU may be created beside a
// container of the same name (Windows refuses it, which the engine reports as 2009).

#include "ou_prod_support.h"

namespace orin::test {
namespace {

using OUAddTest = BothWays;

TEST_P(OUAddTest, AddsAThreeLevelTreeParentFirstWithItsProperties) {
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), "# a comment between the rows", kAdd.Row(At({"a"})),
                    kAdd.Row(At({"a", "b"})),
                    kAdd.Row(At({"a", "b", "c"}) + Values{{"c", "JP"},
                                                          {"postalCode", "100-0001"},
                                                          {"st", "東京都"},
                                                          {"l", "千代田区"},
                                                          {"street", "丸の内1-1<rtn>ﾋﾞﾙ2F"},
                                                          {"description", "説明"}})});
    EXPECT_EQ(log, Summary(3, 3, 0, 0));
    const std::string c = OuDn({"a", "b", "c"});
    EXPECT_EQ(Attr(c, "c"), "JP");
    EXPECT_EQ(Attr(c, "postalCode"), "100-0001");
    EXPECT_EQ(Attr(c, "st"), "東京都");
    EXPECT_EQ(Attr(c, "l"), "千代田区");
    EXPECT_EQ(Attr(c, "street"), "丸の内1-1\r\nﾋﾞﾙ2F");
    EXPECT_EQ(Attr(c, "description"), "説明");
    EXPECT_EQ(gRun.lngLastCreatedLine, 5);
}

TEST_P(OUAddTest, RefusedRowsNameTheirReasonAndChangeNothing) {
    MakeOU("OU=taken");
    Make("container", "CN=beside");
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), kAdd.Row(At({"taken"}) + Values{{"description", "new"}}),
                    kAdd.Row(At({"missing", "child"})), kAdd.Row({{"description", "no path"}}),
                    kAdd.Row(At({"bad"}) + Values{{"Mirror", "Y"}}), kAdd.Row(At({"beside"}))});
    EXPECT_EQ(log, Lines({"2行, 失敗, 追加対象OUがすでに追加先のｺﾝﾃﾅに存在します。",
                          "3行, 失敗, OUの親OUが存在しないか、ﾊﾟｽが間違っています。",
                          "4行, 失敗, OUのﾊﾟｽが指定されていません。",
                          "5行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。"}) +
                       Summary(5, 1, 0, 4));
    EXPECT_EQ(Attr(OuDn({"taken"}), "description"), "");
    EXPECT_FALSE(Exists(OuDn({"missing"})));
    EXPECT_FALSE(Exists(OuDn({"bad"})));
    EXPECT_TRUE(Exists(OuDn({"beside"})));  // Samba; Windows gives 2009

    // Header errors: after the Mirror cell, before the path.
    const Csv noEnd("OU-Start,Mirror"), reversed("OU-End,OU-Start,Mirror");
    log = Run(OperationKind::Add,
              {noEnd.Header(), noEnd.Row({{"OU-Start", Top()}}), noEnd.Row({{"Mirror", "maybe"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[OU-Start]と[OU-End]の片方または両方が存在しません。"
                          "両方のﾍｯﾀﾞ列を定義してください。",
                          "3行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。"}) +
                       Summary(2, 0, 0, 2));
    log = Run(OperationKind::Add, {reversed.Header(), reversed.Row({{"OU-Start", Top()}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[OU-Start]と[OU-End]の並び順が逆になっています。"}) +
                       Summary(1, 0, 0, 1));
}

TEST_P(OUAddTest, MirrorRowsAddOneAcePerRowAndCountTheOUOnce) {
    const std::string g1 = MakeAccount("group", "g1"), g2 = MakeAccount("group", "g2");
    const Values mirror = {{"Mirror", " yes "}};
    auto log = Run(OperationKind::Add, {kAdd.Header(), kAdd.Row(At({"m"}) + AceCells(g1, "0", "6")),
                                        kAdd.Row(At({"m"}) + AceCells(g2, "0", "1;5") + mirror),
                                        kAdd.Row(At({"m"}) + AceCells(g1, "0", "10") + mirror)});
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    // Mode "0" replaces the account's ACEs: g1 keeps only the third row's right.
    auto first = AcesOf(OuDn({"m"}), g1);
    ASSERT_FALSE(first.empty());
    for (const Ace& a : first) EXPECT_EQ(a.AccessMask, 0x00020000u);
    EXPECT_FALSE(AcesOf(OuDn({"m"}), g2).empty());
}

TEST_P(OUAddTest, AFailingRowEndsItsChainAndRollsBackWhatTheChainMade) {
    MakeOU("OU=dup");
    const Values mirror = {{"Mirror", "YES"}};
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), kAdd.Row(At({"gone"})),
                    kAdd.Row(At({"gone"}) + AceCells("Domain Admins", "0", "99") + mirror),
                    kAdd.Row(At({"gone"}) + mirror),
                    kAdd.Row(At({"dup"})),  // fails first: its Mirror row is skipped
                    kAdd.Row(At({"dup"}) + AceCells("Domain Admins", "bad", "") + mirror),
                    kAdd.Row(At({"stays"}))});
    EXPECT_EQ(log, Lines({"3行, 失敗, ﾍｯﾀﾞ列[AccessRight]に無効なﾃﾞｰﾀが入力されました。",
                          "5行, 失敗, 追加対象OUがすでに追加先のｺﾝﾃﾅに存在します。"}) +
                       Summary(3, 1, 0, 2));
    EXPECT_FALSE(Exists(OuDn({"gone"})));
    EXPECT_TRUE(Exists(OuDn({"dup"})));  // not made by this chain, so not taken away
    EXPECT_TRUE(Exists(OuDn({"stays"})));
}

TEST_P(OUAddTest, ManagerIsAUserInItsContainer) {
    MakeAccount("user", "boss");
    MakeAccount("group", "team");
    auto log = Run(
        OperationKind::Add,
        {kAdd.Header(), kAdd.Row(At({"managed"}) + Manager("boss")),
         kAdd.Row(At({"nobody"}) + Manager("ghost")), kAdd.Row(At({"grouped"}) + Manager("team")),
         kAdd.Row(At({"nowhere"}) + Span("MgrOU", {"none"}) + Values{{"MgrRDN", "boss"}}),
         // At domain level: Administrator lives in CN=Users, not there.
         kAdd.Row(At({"root"}) + Values{{"MgrRDN", "Administrator"}}),
         // One level that names a default container.
         kAdd.Row(At({"users"}) + Span("MgrOU", {"Users"}, false) +
                  Values{{"MgrRDN", "Administrator"}})});
    EXPECT_EQ(log,
              Lines({"3行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。",
                     "4行, 失敗, 管理者として設定不可能なﾕｰｻﾞｰ以外のｵﾌﾞｼﾞｪｸﾄが指定されています。",
                     "5行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]の設定が失敗しました。管理者の所在OU（"
                     "またはﾃﾞﾌｫﾙﾄｺﾝﾃﾅ）が存在しないか、ﾊﾟｽが間違っています。",
                     "6行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。"}) +
                  Summary(6, 2, 0, 4));
    EXPECT_EQ(Attr(OuDn({"managed"}), "managedBy"), "CN=boss," + ou().Dn());
    EXPECT_EQ(Attr(OuDn({"users"}), "managedBy"), "CN=Administrator,CN=Users," + gSession.DomainDN);
    for (const char* gone : {"nobody", "grouped", "nowhere", "root"})
        EXPECT_FALSE(Exists(OuDn({gone}))) << gone;

    // Without the manager span the failure has no roll-back: the OU stays as far as it got.
    const Csv noSpan("OU-Start,OU-End,description,MgrRDN,Mirror");
    log = Run(OperationKind::Add,
              {noSpan.Header(),
               noSpan.Row(At({"kept"}) + Values{{"description", "written"}, {"MgrRDN", "boss"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[MgrOU-Start]と[MgrOU-End]の片方または両方が存在し"
                          "ません。両方のﾍｯﾀﾞ列を定義してください。"}) +
                       Summary(1, 0, 0, 1));
    EXPECT_EQ(Attr(OuDn({"kept"}), "description"), "written");
}

TEST_P(OUAddTest, InheritParentAclBlocksWithOrWithoutCopies) {
    auto inherit = [](const std::string& code) { return Values{{"InheritParentACL", code}}; };
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), kAdd.Row(At({"inherit"}) + inherit("0")),
                    kAdd.Row(At({"copies"}) + inherit("1")), kAdd.Row(At({"bare"}) + inherit("2")),
                    kAdd.Row(At({"bad"}) + inherit("3"))});
    EXPECT_EQ(log, Lines({"5行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力されました。"}) +
                       Summary(4, 3, 0, 1));
    auto [inheritControl, inheritAces] = ExplicitDacl(OuDn({"inherit"}));
    auto [copiesControl, copiesAces] = ExplicitDacl(OuDn({"copies"}));
    auto [bareControl, bareAces] = ExplicitDacl(OuDn({"bare"}));
    EXPECT_FALSE(inheritControl & kSeDaclProtected);
    EXPECT_TRUE(copiesControl & kSeDaclProtected);
    EXPECT_TRUE(bareControl & kSeDaclProtected);
    // The copies of the inherited ACEs stay as explicit ones with "1" and go with "2".
    EXPECT_GT(copiesAces.size(), inheritAces.size());
    EXPECT_EQ(bareAces.size(), inheritAces.size());
    EXPECT_FALSE(Exists(OuDn({"bad"})));
}

TEST_P(OUAddTest, RemDefaultAclKeepsTheExceptionsAndWarnsOfTheMissingOnes) {
    auto log =
        Run(OperationKind::Add,
            {kAdd.Header(),
             kAdd.Row(At({"stripped"}) +
                      Values{{"RemDefaultACL", "yes"},
                             {"DoNotRemTheseACE", " Domain Admins ;NoSuchGroup;System"}}),
             kAdd.Row(At({"plain"}) + Values{{"RemDefaultACL", "NO"}, {"DoNotRemTheseACE", "x"}}),
             kAdd.Row(At({"refused"}) + Values{{"RemDefaultACL", "maybe"}})});
    EXPECT_EQ(
        log,
        Lines({"2行, 警告, 削除対象外のACE「NoSuchGroup」が既定のACLから見つかりませんでした｡ ",
               "4行, 失敗, ﾍｯﾀﾞ列[RemDefaultACL]に無効なﾃﾞｰﾀが入力されました。"}) +
            Summary(3, 1, 1, 1));
    auto aces = ExplicitDacl(OuDn({"stripped"})).second;
    ASSERT_FALSE(aces.empty());
    for (const Ace& a : aces)
        EXPECT_TRUE(IsAceOf(a, TrusteeName("Domain Admins")) || IsAceOf(a, TrusteeName("System")))
            << TrusteeOf(a);
    EXPECT_GT(ExplicitDacl(OuDn({"plain"})).second.size(), aces.size());
    EXPECT_FALSE(Exists(OuDn({"refused"})));
}

TEST_P(OUAddTest, AceModesAndTheOverwriteThatNeedsAnInheritOption) {
    const std::string g = MakeAccount("group", "readers");
    auto log =
        Run(OperationKind::Add,
            {kAdd.Header(),
             kAdd.Row(At({"new"}) + AceCells(g, "0", "6")),   // "" means "0": object and children
             kAdd.Row(At({"over"}) + AceCells(g, "2", "6")),  // an overwrite must say how
             kAdd.Row(At({"over2"}) + AceCells(g, "2", "6", "1") + Values{{"PermitOrDeny", "d"}}),
             kAdd.Row(At({"del"}) + AceCells(g, "1", "bad", "x")),  // "1" reads no other column
             kAdd.Row(At({"mode"}) + AceCells(g, "7", "6")),
             kAdd.Row(At({"none"}) + Values{{"AceOpeMode", "7"}}),  // no account: no mode either
             kAdd.Row(At({"pod"}) + AceCells(g, "0", "6") + Values{{"PermitOrDeny", "X"}}),
             kAdd.Row(At({"opt"}) + AceCells(g, "0", "6", "5")),
             kAdd.Row(At({"ghost"}) + AceCells("NoSuchOne", "0", "0"))});
    EXPECT_EQ(log, Lines({"3行, 失敗, ACEの上書ﾓｰﾄﾞ設定が失敗しました。",
                          "5行, 警告, 指定のACE「" + g +
                              "」がｵﾌﾞｼﾞｪｸﾄのACLから見つからないため削除処理をｽｷｯﾌﾟしました｡ ",
                          "6行, 失敗, ﾍｯﾀﾞ列[AceOpeMode]に無効なﾃﾞｰﾀが入力されました。",
                          "8行, 失敗, ﾍｯﾀﾞ列[PermitOrDeny]に無効なﾃﾞｰﾀが入力されました。",
                          // 6005 speaks of PermitOrDeny too.
                          "9行, 失敗, ﾍｯﾀﾞ列[PermitOrDeny]に無効なﾃﾞｰﾀが入力されました。",
                          "10行, 失敗, ACEの追加ﾓｰﾄﾞ設定が失敗しました。"}) +
                       Summary(9, 3, 1, 5));
    EXPECT_FALSE(AcesOf(OuDn({"new"}), g).empty());
    auto denied = AcesOf(OuDn({"over2"}), g);
    ASSERT_EQ(denied.size(), 1u);
    EXPECT_EQ(denied[0].AceType, kAccessDeniedAceType);
    EXPECT_EQ(denied[0].AceFlags, 0);
    for (const char* gone : {"over", "mode", "pod", "opt", "ghost"})
        EXPECT_FALSE(Exists(OuDn({gone}))) << gone;
    EXPECT_TRUE(Exists(OuDn({"del"})));
    EXPECT_TRUE(Exists(OuDn({"none"})));
}

TEST_P(OUAddTest, CancelBetweenMirrorRowsTakesTheOUAwayButNotAWholeOne) {
    const Values mirror = AceCells("Domain Admins", "0", "6") + Values{{"Mirror", "YES"}};
    op.onYield = [](int yields) {
        if (yields == 3) gRun.intCancel = 1;  // after the first Mirror row of the second OU
    };
    auto log =
        Run(OperationKind::Add, {kAdd.Header(), kAdd.Row(At({"done"})), kAdd.Row(At({"half"})),
                                 kAdd.Row(At({"half"}) + mirror), kAdd.Row(At({"half"}) + mirror)});
    EXPECT_EQ(log, Summary(2, 1, 0, 0, true, 4));
    EXPECT_EQ(gRun.lngLastCreatedLine, 3);
    EXPECT_TRUE(Exists(OuDn({"done"})));
    EXPECT_FALSE(Exists(OuDn({"half"})));

    op.onYield = [](int) { gRun.intCancel = 1; };
    log =
        Run(OperationKind::Add, {kAdd.Header(), kAdd.Row(At({"whole"})), kAdd.Row(At({"never"}))});
    EXPECT_EQ(log, Summary(2, 1, 0, 0, true, 2));
    EXPECT_TRUE(Exists(OuDn({"whole"})));
    EXPECT_FALSE(Exists(OuDn({"never"})));
}

INSTANTIATE_TEST_SUITE_P(FastAndExact, OUAddTest, ::testing::Values(true, false), WayName);

// Under the local method (Kerberos) the paths carry no server part.
class OUAddLocalTest : public OUProdTest {
  protected:
    OUAddLocalTest() : OUProdTest(ConnectMethod::Local) {}
};

TEST_F(OUAddLocalTest, AddsWithManagerAndAceUnderTheLocalMethod) {
    const std::string boss = MakeAccount("user", "boss");
    auto log =
        Run(OperationKind::Add,
            {kAdd.Header(),
             kAdd.Row(At({"a"}) + Manager("boss") + Values{{"c", "JP"}} + AceCells(boss, "0", "6")),
             kAdd.Row(At({"a"}) + AceCells("Domain Admins", "1", "") + Values{{"Mirror", "YES"}})});
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    EXPECT_EQ(Attr(OuDn({"a"}), "managedBy"), "CN=boss," + ou().Dn());
    EXPECT_EQ(Attr(OuDn({"a"}), "c"), "JP");
    EXPECT_FALSE(AcesOf(OuDn({"a"}), boss).empty());
}

}  // namespace
}  // namespace orin::test
