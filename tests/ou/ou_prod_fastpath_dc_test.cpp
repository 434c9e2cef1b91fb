// The fast path of the OU add and modify engines: what a row costs in LDAP requests, and rows
// that the directory refuses, which must end as the exact way ends them: the same log and the
// same directory.
//
// Server behaviour these tests expect (Samba 4.17 and Windows alike): an account allowed to
// create OUs below an OU and to write some of their attributes is refused a modify of any other
// attribute. Whether the add of such an attribute is refused as well doesn't matter: the fast
// path reads the new OU's allowedAttributesEffective either way.

#include "directory/Connect.h"
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

Csv AddColumns() {
    std::vector<std::string> columns = SpanColumns("OU", 2);
    for (const char* name : {"c", "postalCode", "st", "l", "street", "description"})
        columns.push_back(name);
    for (const std::string& name : SpanColumns("MgrOU", 2)) columns.push_back(name);
    for (const char* name : {"MgrRDN", "Mirror", "AceSamAccountName", "AceOpeMode", "AccessRight",
                             "PermitOrDeny", "InheritOption"})
        columns.push_back(name);
    return Csv(columns);
}

Csv ModifyColumns() {
    std::vector<std::string> columns = SpanColumns("OU", 2);
    for (const char* name : {"c", "postalCode", "st", "l", "street", "description", "MgrOU-Start",
                             "MgrOU-End", "MgrRDN", "Mirror"})
        columns.push_back(name);
    return Csv(columns);
}

const Values kSix = {{"c", "JP"},       {"postalCode", "100-0001"}, {"st", "東京都"},
                     {"l", "千代田区"}, {"street", "1-1<Rtn>2F"},   {"description", "説明"}};

class OUFastPathTest : public test::OUProdTest {
  protected:
    Values At(const std::string& name) { return SpanCells("OU", 2, {Top(), name}); }

    static Guid SchemaGuid(const std::string& filter) {
        auto records = ExecuteSearch("<LDAP://CN=Schema,CN=Configuration," + gSession.DomainDN +
                                     ">;" + filter + ";schemaIDGUID;OneLevel");
        Guid guid;
        EXPECT_TRUE(records.ok() && records->size() == 1) << filter;
        if (!records.ok() || records->size() != 1) return guid;
        std::string bytes = records->front().Field("schemaIDGUID");
        EXPECT_EQ(bytes.size(), 16u);
        std::copy_n(bytes.begin(), std::min<size_t>(bytes.size(), 16), guid.Bytes.begin());
        return guid;
    }

    // A user of the test's OU who may create and delete OUs below it and write their
    // properties, all but `denied`. Gives its account name.
    std::string MakeDelegate(const std::string& denied) {
        const std::string sam = Sam("dlg");
        Make("user", "CN=delegate", sam);
        DirObject user;
        EXPECT_TRUE(BindObject("LDAP://CN=delegate," + ou().Dn(), user));
        EXPECT_TRUE(user.SetPassword(kDelegatePassword).ok());
        user.Put("userAccountControl", "512");
        EXPECT_TRUE(user.SetInfo().ok());
        auto sid = SidForTrustee(TrusteeName(sam));
        EXPECT_TRUE(sid);
        if (!sid) return sam;

        auto dacl = ReadObjectDacl(ou().Object());
        EXPECT_TRUE(dacl);
        if (!dacl) return sam;
        Ace createDelete;
        createDelete.AceType = kAccessAllowedObjectAceType;
        createDelete.AccessMask = 0x3;  // create and delete children
        createDelete.Flags = kAceObjectTypePresent;
        createDelete.ObjectType =
            SchemaGuid("(&(objectClass=classSchema)(lDAPDisplayName=organizationalUnit))");
        createDelete.TrusteeSid = *sid;
        InsertAce(dacl->Dacl(), createDelete);
        for (const char* attribute :
             {"c", "postalCode", "st", "l", "street", "description", "managedBy"}) {
            if (attribute == denied) continue;
            Ace write = createDelete;
            write.AceFlags = kContainerInheritAce | kInheritOnlyAce;
            write.AccessMask = 0x20;  // write property
            write.ObjectType = SchemaGuid(std::string("(lDAPDisplayName=") + attribute + ")");
            InsertAce(dacl->Dacl(), write);
        }
        EXPECT_TRUE(dacl->Write());
        return sam;
    }

    // Connects as `sam` until the end of the scope, then as the administrator again.
    struct ConnectedAs {
        ConnectedAs(const std::string& sam) {
            gSession.UserName = sam;
            gSession.Password = kDelegatePassword;
            test::ScriptedOperator quiet;
            ConnectRemote();
            EXPECT_TRUE(gSession.Connected) << "connecting as " << sam;
        }
        ~ConnectedAs() { EXPECT_TRUE(test::ConnectTestDc(test::ConnectMethod::Remote)); }
    };

    static constexpr const char* kDelegatePassword = "Orin-Delegate-Pass1";

    // An OU below the test's OU with these values.
    void MakeOU(const std::string& name, const Values& values) {
        auto made = gSession.RootObject.Create("organizationalUnit", ou().Relative("OU=" + name));
        ASSERT_TRUE(made.ok());
        for (const auto& [attribute, value] : values) made->Put(attribute, value);
        ASSERT_TRUE(made->SetInfo().ok()) << name;
    }

    std::map<std::string, std::string> Values6(const std::string& dn) {
        std::map<std::string, std::string> values;
        for (const char* a : {"c", "postalCode", "st", "l", "street", "description", "managedBy"})
            values[a] = Attr(dn, a);
        return values;
    }
};

TEST_F(OUFastPathTest, AnAddRowCostsOneWriteInsteadOfOneAProperty) {
    const Csv add = AddColumns();
    auto log = Run(OperationKind::Add, {add.Header(), add.Row(At("fast") + kSix)});
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    const long fast = requests;

    SetOUFastPath(false);
    log = Run(OperationKind::Add, {add.Header(), add.Row(At("exact") + kSix)});
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    const long exact = requests;

    // The add, and the read of the attribute rights that makes it safe.
    EXPECT_LE(fast, 2);
    // The create and one write per property.
    EXPECT_GE(exact, 7);
    EXPECT_EQ(Values6(OuDn({"fast"})), Values6(OuDn({"exact"})));
    EXPECT_EQ(Attr(OuDn({"fast"}), "street"), "1-1\r\n2F");
}

TEST_F(OUFastPathTest, AModifyRowCostsOneWriteInsteadOfOneAProperty) {
    Make("user", "CN=boss", Sam("boss"));
    MakeOU("fast", {{"description", "old"}, {"managedBy", "CN=boss," + ou().Dn()}});
    MakeOU("exact", {{"description", "old"}, {"managedBy", "CN=boss," + ou().Dn()}});
    const Csv mdf = ModifyColumns();
    const Values change = kSix + Values{{"description", "!C"}, {"MgrRDN", "!c"}};

    auto log = Run(OperationKind::Mdf, {mdf.Header(), mdf.Row(At("fast") + change)});
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    const long fast = requests;
    SetOUFastPath(false);
    log = Run(OperationKind::Mdf, {mdf.Header(), mdf.Row(At("exact") + change)});
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    const long exact = requests;

    // The bind that finds the OU, then one modify.
    EXPECT_LE(fast, 2);
    EXPECT_GE(exact, 8);
    EXPECT_EQ(Values6(OuDn({"fast"})), Values6(OuDn({"exact"})));
    EXPECT_EQ(Attr(OuDn({"fast"}), "description"), "");
    EXPECT_EQ(Attr(OuDn({"fast"}), "managedBy"), "");
    EXPECT_EQ(Attr(OuDn({"fast"}), "st"), "東京都");
}

TEST_F(OUFastPathTest, AnAttributeTheAccountMayNotWriteEndsTheAddAsTheExactWayDoes) {
    const std::string delegate = MakeDelegate("st");
    const Csv add = AddColumns();
    const Lines rows = {add.Header(), add.Row(At("refused") + kSix), add.Row(At("allowed"))};
    const Lines expected = Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]の設定が失敗しました。"}) +
                           Summary(2, 1, 0, 1);
    std::string fastBytes, exactBytes;
    {
        ConnectedAs as(delegate);
        EXPECT_EQ(Run(OperationKind::Add, rows), expected);
        fastBytes = LogBytes();
        EXPECT_FALSE(Exists(OuDn({"refused"})));
        EXPECT_TRUE(Exists(OuDn({"allowed"})));
        ASSERT_TRUE(
            gSession.RootObject.Delete("organizationalUnit", ou().Relative("OU=allowed")).ok());

        SetOUFastPath(false);
        EXPECT_EQ(Run(OperationKind::Add, rows), expected);
        exactBytes = LogBytes();
        EXPECT_FALSE(Exists(OuDn({"refused"})));
    }
    EXPECT_EQ(fastBytes, exactBytes);
}

TEST_F(OUFastPathTest, AnAttributeTheAccountMayNotWriteEndsTheModifyAsTheExactWayDoes) {
    const Values old = {{"c", "US"}, {"postalCode", "0"}, {"st", "old"}, {"description", "old"}};
    MakeOU("fast", old);
    MakeOU("exact", old);
    const std::string delegate = MakeDelegate("st");
    const Csv mdf = ModifyColumns();
    const Lines expected = Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]の変更が失敗しました。"}) +
                           Summary(1, 0, 0, 1);
    {
        ConnectedAs as(delegate);
        EXPECT_EQ(Run(OperationKind::Mdf, {mdf.Header(), mdf.Row(At("fast") + kSix)}), expected);
        SetOUFastPath(false);
        EXPECT_EQ(Run(OperationKind::Mdf, {mdf.Header(), mdf.Row(At("exact") + kSix)}), expected);
    }
    auto fast = Values6(OuDn({"fast"}));
    EXPECT_EQ(fast, Values6(OuDn({"exact"})));
    // Written before the refused step, untouched from it on.
    EXPECT_EQ(fast["c"], "JP");
    EXPECT_EQ(fast["postalCode"], "100-0001");
    EXPECT_EQ(fast["st"], "old");
    EXPECT_EQ(fast["l"], "");
    EXPECT_EQ(fast["description"], "old");
}

TEST_F(OUFastPathTest, ARefusedClearOfTheCountryKeepsTheAddsWording) {
    MakeOU("fast", {{"c", "US"}});
    MakeOU("exact", {{"c", "US"}});
    const std::string delegate = MakeDelegate("c");
    const Csv mdf = ModifyColumns();
    const Lines expected = Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[国/地域]の設定が失敗しました。"}) +
                           Summary(1, 0, 0, 1);
    {
        ConnectedAs as(delegate);
        EXPECT_EQ(
            Run(OperationKind::Mdf, {mdf.Header(), mdf.Row(At("fast") + Values{{"c", "!C"}})}),
            expected);
        SetOUFastPath(false);
        EXPECT_EQ(
            Run(OperationKind::Mdf, {mdf.Header(), mdf.Row(At("exact") + Values{{"c", "!c"}})}),
            expected);
    }
    EXPECT_EQ(Attr(OuDn({"fast"}), "c"), "US");
    EXPECT_EQ(Attr(OuDn({"exact"}), "c"), "US");
}

TEST_F(OUFastPathTest, ANewAceLeavesTheSameAclBothWays) {
    Make("group", "CN=g1", Sam("g1"));
    Make("group", "CN=g2", Sam("g2"));
    const Csv add = AddColumns();
    auto rows = [&](const std::string& name) {
        auto ace = [&](const std::string& account, const std::string& rights,
                       const std::string& inherit, const std::string& pod) {
            return Values{{"AceSamAccountName", account},
                          {"AceOpeMode", "0"},
                          {"AccessRight", rights},
                          {"InheritOption", inherit},
                          {"PermitOrDeny", pod}};
        };
        return Lines{
            add.Header(), add.Row(At(name) + ace(Sam("g1"), "0", "", "")),
            add.Row(At(name) + ace(Sam("g2"), "7;8", "3", "D") + Values{{"Mirror", "YES"}}),
            add.Row(At(name) + ace(Sam("g1"), "1;2", "0", "P") + Values{{"Mirror", "YES"}})};
    };
    EXPECT_EQ(Run(OperationKind::Add, rows("fast")), Summary(1, 1, 0, 0));
    SetOUFastPath(false);
    EXPECT_EQ(Run(OperationKind::Add, rows("exact")), Summary(1, 1, 0, 0));

    auto fast = ExplicitDacl(OuDn({"fast"}));
    auto exact = ExplicitDacl(OuDn({"exact"}));
    EXPECT_EQ(fast.first, exact.first);
    ASSERT_EQ(fast.second.size(), exact.second.size());
    for (size_t i = 0; i < fast.second.size(); ++i)
        EXPECT_EQ(fast.second[i], exact.second[i]) << i << ": " << TrusteeOf(fast.second[i]);
    EXPECT_FALSE(AcesOf(OuDn({"fast"}), Sam("g2")).empty());
}

TEST_F(OUFastPathTest, AManagerInTheNewOUIsLookedUpAfterTheCreate) {
    const Csv add = AddColumns();
    // The manager's container is the OU the row adds: it exists only once the row made it,
    // and then the manager isn't in it.
    const Lines rows = {add.Header(), add.Row(At("new") + SpanCells("MgrOU", 2, {Top(), "new"}) +
                                              Values{{"MgrRDN", "boss"}, {"c", "JP"}})};
    const Lines expected =
        Lines({"2行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。"}) + Summary(1, 0, 0, 1);
    EXPECT_EQ(Run(OperationKind::Add, rows), expected);
    SetOUFastPath(false);
    EXPECT_EQ(Run(OperationKind::Add, rows), expected);
    EXPECT_FALSE(Exists(OuDn({"new"})));
}

}  // namespace
}  // namespace orin
