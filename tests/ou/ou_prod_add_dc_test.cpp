// The OU add engine through the row loop against the test DC: trees, refused rows, Mirror
// chains, property, manager and ACL steps, and the roll-back of a half-made OU.
//
// Server behaviour these tests expect, seen on Samba 4.17:
// - an OU may be created beside a container of the same name (Windows refuses it, which the
//   engine reports as 2009);
// - string attributes take values beyond their schema's upper range, so a refused property is
//   made by a deny ACE on that attribute, which both Samba and Windows honour.

#include "ou_prod_support.h"

namespace orin {
namespace {

using test::Csv;
using test::SpanCells;
using test::SpanColumns;
using test::Summary;
using test::operator+;
using Lines = std::vector<std::string>;
using Values = std::map<std::string, std::string>;

// The add columns: an OU span of four cells (the test's OU and three levels below), a manager
// span of two.
const Csv kAdd = [] {
    std::vector<std::string> columns = SpanColumns("OU", 4);
    for (const char* name : {"c", "postalCode", "st", "l", "street", "description"})
        columns.push_back(name);
    for (const std::string& name : SpanColumns("MgrOU", 2)) columns.push_back(name);
    for (const char* name :
         {"MgrRDN", "Mirror", "RemDefaultACL", "DoNotRemTheseACE", "AceSamAccountName",
          "AceOpeMode", "AccessRight", "PermitOrDeny", "InheritOption", "InheritParentACL"})
        columns.push_back(name);
    return Csv(columns);
}();

// Every test runs twice: with the fast path and the exact way alone. Both must leave the same
// log and the same directory.
class OUAddTest : public test::OUProdTest, public ::testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        OUProdTest::SetUp();
        SetOUFastPath(GetParam());
    }

    // The OU cells of a row: the test's OU, then `below`.
    Values At(std::vector<std::string> below) {
        below.insert(below.begin(), Top());
        return SpanCells("OU", 4, below);
    }
    Values Manager(const std::string& rdn) {
        return SpanCells("MgrOU", 2, {Top()}) + Values{{"MgrRDN", rdn}};
    }
};

TEST_P(OUAddTest, AddsAThreeLevelTreeParentFirstWithItsProperties) {
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), "# a comment between the rows", kAdd.Row(At({"a"})),
                    kAdd.Row(At({"a", "b"})),
                    kAdd.Row(At({"a", "b", "c"}) + Values{{"c", "JP"},
                                                          {"postalCode", "100-0001"},
                                                          {"st", "東京都"},
                                                          {"l", "千代田区"},
                                                          {"street", "丸の内1-1<rtn>ﾋﾞﾙ2F"},
                                                          {"description", "ｶﾝﾏのない説明"}})});

    EXPECT_EQ(log, Summary(3, 3, 0, 0));
    std::string c = OuDn({"a", "b", "c"});
    ASSERT_TRUE(Exists(OuDn({"a"})));
    ASSERT_TRUE(Exists(OuDn({"a", "b"})));
    EXPECT_EQ(Attr(c, "c"), "JP");
    EXPECT_EQ(Attr(c, "postalCode"), "100-0001");
    EXPECT_EQ(Attr(c, "st"), "東京都");
    EXPECT_EQ(Attr(c, "l"), "千代田区");
    EXPECT_EQ(Attr(c, "street"), "丸の内1-1\r\nﾋﾞﾙ2F");
    EXPECT_EQ(Attr(c, "description"), "ｶﾝﾏのない説明");
    EXPECT_EQ(gRun.lngLastCreatedLine, 5);
}

TEST_P(OUAddTest, RefusedRowsNameTheirReasonAndChangeNothing) {
    Make("organizationalUnit", "OU=taken");
    Make("container", "CN=beside");
    auto log =
        Run(OperationKind::Add,
            {kAdd.Header(), kAdd.Row(At({"taken"}) + Values{{"description", "new"}}),
             kAdd.Row(At({"missing", "child"})), kAdd.Row(Values{{"description", "no path"}}),
             kAdd.Row(At({"bad-mirror"}) + Values{{"Mirror", "Y"}}), kAdd.Row(At({"beside"}))});

    EXPECT_EQ(log, Lines({
                       "2行, 失敗, 追加対象OUがすでに追加先のｺﾝﾃﾅに存在します。",
                       "3行, 失敗, OUの親OUが存在しないか、ﾊﾟｽが間違っています。",
                       "4行, 失敗, OUのﾊﾟｽが指定されていません。",
                       "5行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。",
                   }) + Summary(5, 1, 0, 4));
    // The existing OU isn't updated; the refused ones aren't made.
    EXPECT_EQ(Attr(OuDn({"taken"}), "description"), "");
    EXPECT_FALSE(Exists(OuDn({"missing"})));
    EXPECT_FALSE(Exists(OuDn({"bad-mirror"})));
    // Samba: an OU stands beside a container of the same name (Windows: 2009).
    EXPECT_TRUE(Exists(OuDn({"beside"})));
}

TEST_P(OUAddTest, HeaderErrorsComeAfterMirrorAndBeforeThePath) {
    const Csv noEnd({"OU-Start", "Mirror", "description"});
    const Csv reversed({"OU-End", "OU-Start", "Mirror"});
    auto log = Run(OperationKind::Add, {noEnd.Header(), noEnd.Row({{"OU-Start", Top()}}),
                                        noEnd.Row({{"OU-Start", Top()}, {"Mirror", "maybe"}})});
    EXPECT_EQ(log, Lines({
                       "2行, 失敗, ﾍｯﾀﾞ列[OU-Start]と[OU-End]の片方または両方が存在しません。"
                       "両方のﾍｯﾀﾞ列を定義してください。",
                       "3行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。",
                   }) + Summary(2, 0, 0, 2));

    log = Run(OperationKind::Add, {reversed.Header(), reversed.Row({{"OU-Start", Top()}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[OU-Start]と[OU-End]の並び順が逆に"
                          "なっています。"}) +
                       Summary(1, 0, 0, 1));
}

TEST_P(OUAddTest, MirrorRowsAddOneAcePerRowAndCountTheOUOnce) {
    Make("group", "CN=g1", Sam("g1"));
    Make("group", "CN=g2", Sam("g2"));
    auto ace = [](const std::string& account, const std::string& rights) {
        return Values{{"AceSamAccountName", account}, {"AceOpeMode", "0"}, {"AccessRight", rights}};
    };
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), kAdd.Row(At({"m"}) + ace(Sam("g1"), "6")),
                    kAdd.Row(At({"m"}) + ace(Sam("g2"), "1;5") + Values{{"Mirror", "yes"}}),
                    kAdd.Row(At({"m"}) + ace(Sam("g1"), "10") + Values{{"Mirror", " YES "}})});

    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    // Mode "0" replaces the account's ACEs: g1 keeps only the third row's right.
    auto g1 = AcesOf(OuDn({"m"}), Sam("g1"));
    auto g2 = AcesOf(OuDn({"m"}), Sam("g2"));
    ASSERT_FALSE(g1.empty());
    ASSERT_FALSE(g2.empty());
    for (const Ace& a : g1) EXPECT_EQ(a.AccessMask, 0x00020000u);
    uint32_t g2Mask = 0;
    for (const Ace& a : g2) g2Mask |= a.AccessMask;
    EXPECT_EQ(g2Mask & 0x4, 0x4u) << std::hex << g2Mask;
}

TEST_P(OUAddTest, AFailingMirrorRowTakesTheChainsOUAway) {
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), kAdd.Row(At({"gone"}) + Values{{"description", "first"}}),
                    kAdd.Row(At({"gone"}) + Values{{"Mirror", "YES"},
                                                   {"AceSamAccountName", "Domain Admins"},
                                                   {"AceOpeMode", "0"},
                                                   {"AccessRight", "99"}}),
                    kAdd.Row(At({"gone"}) + Values{{"Mirror", "YES"}}), kAdd.Row(At({"stays"}))});

    // One line, one failure counted at the chain's last row, the next object unharmed.
    EXPECT_EQ(log, Lines({"3行, 失敗, ﾍｯﾀﾞ列[AccessRight]に無効なﾃﾞｰﾀが入力さ"
                          "れました。"}) +
                       Summary(2, 1, 0, 1));
    EXPECT_FALSE(Exists(OuDn({"gone"})));
    EXPECT_TRUE(Exists(OuDn({"stays"})));
}

TEST_P(OUAddTest, AFailingFirstRowSkipsItsMirrorRows) {
    Make("organizationalUnit", "OU=dup");
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), kAdd.Row(At({"dup"})),
                    kAdd.Row(At({"dup"}) + Values{{"Mirror", "YES"},
                                                  {"AceOpeMode", "bad"},
                                                  {"AceSamAccountName", "Domain Admins"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, 追加対象OUがすでに追加先のｺﾝﾃﾅに存在します。"}) +
                       Summary(1, 0, 0, 1));
    EXPECT_TRUE(Exists(OuDn({"dup"})));  // the chain didn't make it, so it doesn't go
}

TEST_P(OUAddTest, ManagerIsAUserInItsContainer) {
    Make("user", "CN=boss", Sam("boss"));
    Make("group", "CN=team", Sam("team"));
    auto log = Run(
        OperationKind::Add,
        {kAdd.Header(), kAdd.Row(At({"managed"}) + Manager("boss")),
         kAdd.Row(At({"nobody"}) + Manager("ghost")), kAdd.Row(At({"grouped"}) + Manager("team")),
         kAdd.Row(At({"nowhere"}) + SpanCells("MgrOU", 2, {Top(), "none"}) +
                  Values{{"MgrRDN", "boss"}}),
         // A manager at domain level: Administrator lives in CN=Users, not there.
         kAdd.Row(At({"root"}) + Values{{"MgrRDN", "Administrator"}}),
         // One level that names a default container.
         kAdd.Row(At({"users"}) + SpanCells("MgrOU", 2, {"Users"}) +
                  Values{{"MgrRDN", "Administrator"}})});

    EXPECT_EQ(
        log,
        Lines({
            "3行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。",
            "4行, 失敗, 管理者として設定不可能なﾕｰｻﾞｰ以外のｵﾌﾞｼﾞｪｸﾄが指定されています。",
            "5行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]の設定が失敗しました。管理者の所在OU（またはﾃﾞﾌｫﾙﾄ"
            "ｺﾝﾃﾅ）が存在しないか、ﾊﾟｽが間違っています。",
            "6行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。",
        }) + Summary(6, 2, 0, 4));
    EXPECT_EQ(Attr(OuDn({"managed"}), "managedBy"), "CN=boss," + ou().Dn());
    EXPECT_EQ(Attr(OuDn({"users"}), "managedBy"), "CN=Administrator,CN=Users," + gSession.DomainDN);
    for (const char* rolledBack : {"nobody", "grouped", "nowhere", "root"})
        EXPECT_FALSE(Exists(OuDn({rolledBack}))) << rolledBack;
}

TEST_P(OUAddTest, ManagerHeadersMissingFailWithoutTakingTheOUAway) {
    const Csv noManagerSpan({"OU-Start", "OU-End", "description", "MgrRDN", "Mirror"});
    auto log = Run(OperationKind::Add,
                   {noManagerSpan.Header(), noManagerSpan.Row({{"OU-Start", Top()},
                                                               {"OU-End", "kept"},
                                                               {"description", "written"},
                                                               {"MgrRDN", "boss"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[MgrOU-Start]と[MgrOU-End]の片方ま"
                          "たは両方が存在しません。両方のﾍｯﾀﾞ列を定義してくださ"
                          "い。"}) +
                       Summary(1, 0, 0, 1));
    // 1005 is a plain failure, not one with roll-back: the OU stays as far as it got.
    EXPECT_EQ(Attr(OuDn({"kept"}), "description"), "written");
}

TEST_P(OUAddTest, InheritParentAclBlocksWithOrWithoutCopies) {
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(), kAdd.Row(At({"inherit"}) + Values{{"InheritParentACL", "0"}}),
                    kAdd.Row(At({"copies"}) + Values{{"InheritParentACL", "1"}}),
                    kAdd.Row(At({"bare"}) + Values{{"InheritParentACL", "2"}}),
                    kAdd.Row(At({"bad"}) + Values{{"InheritParentACL", "3"}})});
    EXPECT_EQ(log, Lines({"5行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力"
                          "されました。"}) +
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
    auto log = Run(
        OperationKind::Add,
        {kAdd.Header(),
         kAdd.Row(At({"stripped"}) +
                  Values{{"RemDefaultACL", "yes"},
                         {"DoNotRemTheseACE", " Domain Admins ;NoSuchGroup;System"}}),
         kAdd.Row(At({"plain"}) + Values{{"RemDefaultACL", "NO"}, {"DoNotRemTheseACE", "ignored"}}),
         kAdd.Row(At({"refused"}) + Values{{"RemDefaultACL", "maybe"}})});
    EXPECT_EQ(log, Lines({
                       "2行, 警告, 削除対象外のACE「NoSuchGroup」が既定のACLから見つかりませんでし"
                       "た｡ ",
                       "4行, 失敗, ﾍｯﾀﾞ列[RemDefaultACL]に無効なﾃﾞｰﾀが入力されました。",
                   }) + Summary(3, 1, 1, 1));
    auto [control, aces] = ExplicitDacl(OuDn({"stripped"}));
    ASSERT_FALSE(aces.empty());
    std::string admins = TrusteeName("Domain Admins"), system = TrusteeName("System");
    for (const Ace& a : aces) EXPECT_TRUE(IsAceOf(a, admins) || IsAceOf(a, system)) << TrusteeOf(a);
    EXPECT_GT(ExplicitDacl(OuDn({"plain"})).second.size(), aces.size());
    EXPECT_FALSE(Exists(OuDn({"refused"})));
}

TEST_P(OUAddTest, AceModesAndTheOverwriteThatNeedsAnInheritOption) {
    Make("group", "CN=readers", Sam("readers"));
    const std::string readers = Sam("readers");
    auto ace = [&](const std::string& mode, const std::string& inherit) {
        return Values{{"AceSamAccountName", readers},
                      {"AceOpeMode", mode},
                      {"AccessRight", "6"},
                      {"InheritOption", inherit}};
    };
    auto log = Run(OperationKind::Add,
                   {kAdd.Header(),
                    // "0" with an empty InheritOption means "0": this object and all children.
                    kAdd.Row(At({"new"}) + ace("0", "")),
                    // "2" with an empty InheritOption fails: an overwrite must say how it inherits.
                    kAdd.Row(At({"over"}) + ace("2", "")),
                    kAdd.Row(At({"over2"}) + ace("2", "1") + Values{{"PermitOrDeny", "d"}}),
                    // "1" of an account without an ACE is a warning; bad rights aren't even read.
                    kAdd.Row(At({"del"}) + ace("1", "x") + Values{{"AccessRight", "bad"}}),
                    kAdd.Row(At({"mode"}) + ace("7", "")),
                    // No account: the mode isn't looked at.
                    kAdd.Row(At({"none"}) + Values{{"AceOpeMode", "7"}}),
                    kAdd.Row(At({"pod"}) + ace("0", "") + Values{{"PermitOrDeny", "X"}}),
                    kAdd.Row(At({"opt"}) + ace("0", "5"))});

    EXPECT_EQ(log, Lines({
                       "3行, 失敗, ACEの上書ﾓｰﾄﾞ設定が失敗しました。",
                       "5行, 警告, 指定のACE「" + readers +
                           "」がｵﾌﾞｼﾞｪｸﾄのACLから見つからないため削除処理をｽｷｯﾌﾟしました｡ ",
                       "6行, 失敗, ﾍｯﾀﾞ列[AceOpeMode]に無効なﾃﾞｰﾀが入力されました。",
                       "8行, 失敗, ﾍｯﾀﾞ列[PermitOrDeny]に無効なﾃﾞｰﾀが入力されました。",
                       // 6005 speaks of PermitOrDeny too.
                       "9行, 失敗, ﾍｯﾀﾞ列[PermitOrDeny]に無効なﾃﾞｰﾀが入力されました。",
                   }) + Summary(8, 3, 1, 4));
    ASSERT_FALSE(AcesOf(OuDn({"new"}), readers).empty());
    auto denied = AcesOf(OuDn({"over2"}), readers);
    ASSERT_EQ(denied.size(), 1u);
    EXPECT_EQ(denied[0].AceType, kAccessDeniedAceType);
    EXPECT_EQ(denied[0].AceFlags, 0);
    for (const char* gone : {"over", "mode", "pod", "opt"}) EXPECT_FALSE(Exists(OuDn({gone})));
    EXPECT_TRUE(Exists(OuDn({"del"})));
    EXPECT_TRUE(Exists(OuDn({"none"})));
}

TEST_P(OUAddTest, AnUnknownAccountFailsTheAddOfItsAce) {
    auto log =
        Run(OperationKind::Add,
            {kAdd.Header(), kAdd.Row(At({"ghost"}) + Values{{"AceSamAccountName", "NoSuchOne"},
                                                            {"AceOpeMode", "0"},
                                                            {"AccessRight", "0"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ACEの追加ﾓｰﾄﾞ設定が失敗しました。"}) + Summary(1, 0, 0, 1));
    EXPECT_FALSE(Exists(OuDn({"ghost"})));
}

TEST_P(OUAddTest, CancelBetweenMirrorRowsTakesTheOUAway) {
    auto mirror = Values{{"Mirror", "YES"},
                         {"AceSamAccountName", "Domain Admins"},
                         {"AceOpeMode", "0"},
                         {"AccessRight", "6"}};
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
}

TEST_P(OUAddTest, CancelAfterACompleteOUKeepsIt) {
    op.onYield = [](int) { gRun.intCancel = 1; };
    auto log =
        Run(OperationKind::Add, {kAdd.Header(), kAdd.Row(At({"whole"})), kAdd.Row(At({"never"}))});
    EXPECT_EQ(log, Summary(2, 1, 0, 0, true, 2));
    EXPECT_TRUE(Exists(OuDn({"whole"})));
    EXPECT_FALSE(Exists(OuDn({"never"})));
}

INSTANTIATE_TEST_SUITE_P(FastAndExact, OUAddTest, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "Fast" : "Exact"; });

}  // namespace
}  // namespace orin
