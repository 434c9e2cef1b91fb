// The OU modify engine through the row loop against the test DC: sets and clears, the manager,
// the ACL steps and the rename at a chain's end. Each test runs with the fast path and the
// exact way alone.
//
// Server behaviour these tests expect, seen on Samba 4.17: a rename of an OU to its present
// name succeeds (Windows refuses it, which the engine reports as 2060).

#include "ou_prod_support.h"

namespace orin {
namespace {

using test::Csv;
using test::operator+;
using test::SpanCells;
using test::SpanColumns;
using test::Summary;
using Lines = std::vector<std::string>;
using Values = std::map<std::string, std::string>;

const Csv kMdf = [] {
    std::vector<std::string> columns = SpanColumns("OU", 3);
    for (const char* name :
         {"NewRDN", "c", "postalCode", "st", "l", "postOfficeBox", "street", "description"})
        columns.push_back(name);
    for (const std::string& name : SpanColumns("MgrOU", 2)) columns.push_back(name);
    for (const char* name :
         {"MgrRDN", "RemDefaultACL", "DoNotRemTheseACE", "AceSamAccountName", "AceOpeMode",
          "AccessRight", "PermitOrDeny", "InheritOption", "Mirror", "InheritParentACL"})
        columns.push_back(name);
    return Csv(columns);
}();

class OUModifyTest : public test::OUProdTest, public ::testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        OUProdTest::SetUp();
        SetOUFastPath(GetParam());
    }

    Values At(std::vector<std::string> below) {
        below.insert(below.begin(), Top());
        return SpanCells("OU", 3, below);
    }

    void MakeOU(const std::string& rdn, const Values& values = {}) {
        auto made = gSession.RootObject.Create("organizationalUnit", ou().Relative(rdn));
        ASSERT_TRUE(made.ok());
        for (const auto& [attribute, value] : values) made->Put(attribute, value);
        ASSERT_TRUE(made->SetInfo().ok()) << rdn;
    }
};

TEST_P(OUModifyTest, EmptyCellsKeepAndClearMarkersClear) {
    MakeOU("OU=o", {{"c", "US"},
                    {"postalCode", "1"},
                    {"st", "old"},
                    {"l", "kept"},
                    {"street", "old"},
                    {"description", "old"}});
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

TEST_P(OUModifyTest, TheOUMustExistAndItsPathBeGiven) {
    auto log = Run(OperationKind::Mdf, {kMdf.Header(), kMdf.Row(At({"missing"})),
                                        kMdf.Row(Values{{"description", "no path"}}),
                                        kMdf.Row(At({"missing"}) + Values{{"Mirror", "NO!"}})});
    EXPECT_EQ(log, Lines({
                       "2行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しないか、ﾊﾟｽが間違っています。",
                       "3行, 失敗, OUのﾊﾟｽが指定されていません。",
                       "4行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。",
                   }) + Summary(3, 0, 0, 3));
}

TEST_P(OUModifyTest, TheManagerIsSetClearedOrRefusedAfterThePropertiesAreWritten) {
    Make("user", "CN=boss", Sam("boss"));
    MakeOU("OU=set");
    MakeOU("OU=cleared", {{"managedBy", "CN=boss," + ou().Dn()}});
    MakeOU("OU=refused");
    const Values manager = SpanCells("MgrOU", 2, {Top()});
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"set"}) + manager + Values{{"MgrRDN", "boss"}}),
                    kMdf.Row(At({"cleared"}) + Values{{"MgrRDN", "!C"}}),
                    kMdf.Row(At({"refused"}) + manager +
                             Values{{"MgrRDN", "ghost"}, {"description", "written"}})});
    EXPECT_EQ(log, Lines({"4行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。"}) + Summary(3, 2, 0, 1));
    EXPECT_EQ(Attr(OuDn({"set"}), "managedBy"), "CN=boss," + ou().Dn());
    EXPECT_EQ(Attr(OuDn({"cleared"}), "managedBy"), "");
    // No roll-back in a modify: the property before the failing manager stays written.
    EXPECT_EQ(Attr(OuDn({"refused"}), "description"), "written");
}

TEST_P(OUModifyTest, TheRenameComesAtTheChainsEndAfterEveryAce) {
    Make("group", "CN=g1", Sam("g1"));
    Make("group", "CN=g2", Sam("g2"));
    MakeOU("OU=p");
    MakeOU("OU=old,OU=p");
    auto ace = [](const std::string& account) {
        return Values{{"AceSamAccountName", account}, {"AceOpeMode", "0"}, {"AccessRight", "6"}};
    };
    auto log =
        Run(OperationKind::Mdf,
            {kMdf.Header(), kMdf.Row(At({"p", "old"}) + ace(Sam("g1")) + Values{{"NewRDN", "new"}}),
             "# the chain goes on after a comment",
             kMdf.Row(At({"p", "old"}) + ace(Sam("g2")) + Values{{"Mirror", "YES"}}),
             kMdf.Row(At({"p"}) + Values{{"description", "next object"}})});
    EXPECT_EQ(log, Summary(2, 2, 0, 0));
    EXPECT_FALSE(Exists(OuDn({"p", "old"})));
    ASSERT_TRUE(Exists(OuDn({"p", "new"})));
    EXPECT_FALSE(AcesOf(OuDn({"p", "new"}), Sam("g1")).empty());
    EXPECT_FALSE(AcesOf(OuDn({"p", "new"}), Sam("g2")).empty());
    EXPECT_EQ(Attr(OuDn({"p"}), "description"), "next object");
}

TEST_P(OUModifyTest, NamesThatCantBeTaken) {
    MakeOU("OU=a");
    MakeOU("OU=b");
    MakeOU("OU=c");
    MakeOU("OU=taken");
    MakeOU("OU=same");
    Make("container", "CN=box");
    auto log =
        Run(OperationKind::Mdf, {kMdf.Header(), kMdf.Row(At({"a"}) + Values{{"NewRDN", "!c"}}),
                                 kMdf.Row(At({"b"}) + Values{{"NewRDN", "taken"}}),
                                 kMdf.Row(At({"c"}) + Values{{"NewRDN", "box"}}),
                                 kMdf.Row(At({"same"}) + Values{{"NewRDN", "same"}})});
    EXPECT_EQ(
        log,
        Lines({
            "2行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[名前]をｸﾘｱすることができません。これはOSの仕様です。",
            "3行, 失敗, [名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。",
            "4行, 失敗, [名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。",
        }) + Summary(4, 1, 0, 3));
    for (const char* stays : {"a", "b", "c", "taken", "same"}) EXPECT_TRUE(Exists(OuDn({stays})));
}

TEST_P(OUModifyTest, InheritanceIsLiftedOrBlocked) {
    MakeOU("OU=blocked");
    MakeOU("OU=never");
    MakeOU("OU=copies");
    {
        DirObject blocked;
        ASSERT_TRUE(BindObject("LDAP://" + OuDn({"blocked"}), blocked));
        ASSERT_TRUE(SetInheritance(blocked, true));
    }
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"blocked"}) + Values{{"InheritParentACL", "0"}}),
                    kMdf.Row(At({"never"}) + Values{{"InheritParentACL", "0"}}),
                    kMdf.Row(At({"copies"}) + Values{{"InheritParentACL", "1"}}),
                    kMdf.Row(At({"never"}) + Values{{"InheritParentACL", "x"}})});
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
                                                {"DoNotRemTheseACE", "Domain Admins;NoSuchOne"}}),
             kMdf.Row(At({"other"}) + Values{{"RemDefaultACL", "perhaps"}})});
    // No 10201 for the exception that matched nothing, and no 1082 for an odd value.
    EXPECT_EQ(log, Summary(2, 2, 0, 0));
    auto aces = ExplicitDacl(OuDn({"stripped"})).second;
    ASSERT_FALSE(aces.empty());
    for (const Ace& a : aces) EXPECT_TRUE(IsAceOf(a, TrusteeName("Domain Admins"))) << TrusteeOf(a);
    EXPECT_EQ(ExplicitDacl(OuDn({"other"})).second.size(), before);
}

TEST_P(OUModifyTest, AceModesOnAnExistingOU) {
    Make("group", "CN=g", Sam("g"));
    MakeOU("OU=o");
    const std::string g = Sam("g");
    auto ace = [&](const std::string& mode, const std::string& rights) {
        return Values{{"AceSamAccountName", g},
                      {"AceOpeMode", mode},
                      {"AccessRight", rights},
                      {"InheritOption", "1"}};
    };
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"o"}) + ace("0", "6")),
                    kMdf.Row(At({"o"}) + ace("2", "7") + Values{{"Mirror", "YES"}}),
                    kMdf.Row(At({"o"}) + ace("2", "8") + Values{{"InheritOption", ""}}),
                    kMdf.Row(At({"o"}) + ace("1", "")), kMdf.Row(At({"o"}) + ace("1", ""))});
    EXPECT_EQ(log, Lines({
                       "4行, 失敗, ACEの上書ﾓｰﾄﾞ設定が失敗しました。",
                       "6行, 警告, 指定のACE「" + g +
                           "」がｵﾌﾞｼﾞｪｸﾄのACLから見つからないため削除処理をｽｷｯﾌﾟしました｡ ",
                   }) + Summary(4, 2, 1, 1));
    EXPECT_TRUE(AcesOf(OuDn({"o"}), g).empty());
}

TEST_P(OUModifyTest, OverwriteMergesIntoTheAceThatIsThere) {
    Make("group", "CN=g", Sam("g"));
    MakeOU("OU=o");
    const std::string g = Sam("g");
    auto ace = [&](const std::string& mode, const std::string& rights) {
        return Values{{"AceSamAccountName", g},
                      {"AceOpeMode", mode},
                      {"AccessRight", rights},
                      {"InheritOption", "1"}};
    };
    auto log = Run(OperationKind::Mdf, {kMdf.Header(), kMdf.Row(At({"o"}) + ace("0", "6")),
                                        kMdf.Row(At({"o"}) + ace("2", "7;8"))});
    EXPECT_EQ(log, Summary(2, 2, 0, 0));
    auto aces = AcesOf(OuDn({"o"}), g);
    ASSERT_EQ(aces.size(), 1u);
    EXPECT_EQ(aces[0].AccessMask, 0x10u | 0x20u | 0x10000u);
}

TEST_P(OUModifyTest, AFailedFirstRowSkipsTheChainAndItsRename) {
    MakeOU("OU=o");
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(),
                    kMdf.Row(At({"o"}) + Values{{"NewRDN", "renamed"}, {"InheritParentACL", "9"}}),
                    kMdf.Row(At({"o"}) + Values{{"Mirror", "YES"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力されました。"}) +
                       Summary(1, 0, 0, 1));
    EXPECT_TRUE(Exists(OuDn({"o"})));
    EXPECT_FALSE(Exists(OuDn({"renamed"})));
}

TEST_P(OUModifyTest, ANameLeftPendingByAnEarlierRunIsNotTaken) {
    MakeOU("OU=first");
    MakeOU("OU=second");
    auto log = Run(OperationKind::Mdf,
                   {kMdf.Header(), kMdf.Row(At({"first"}) + Values{{"NewRDN", "!C"}})});
    ASSERT_EQ(PendingNewName, "!C");  // the failed row leaves it behind
    // A run whose first row is a Mirror row has no chain above it, and no name to give.
    log = Run(OperationKind::Mdf,
              {kMdf.Header(), kMdf.Row(At({"second"}) + Values{{"Mirror", "YES"}})});
    EXPECT_EQ(log, Summary(0, 1, 0, 0));
    EXPECT_TRUE(Exists(OuDn({"second"})));
}

INSTANTIATE_TEST_SUITE_P(FastAndExact, OUModifyTest, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "Fast" : "Exact"; });

}  // namespace
}  // namespace orin
