// The fast path of the OU add and modify engines: what a row costs in LDAP requests, and rows
// that the directory refuses, which must end as the exact way ends them.
//
// Server behaviour these tests expect, seen on Samba 4.17: an account allowed to create OUs
// below an OU and to write some of their attributes is refused a modify of any other attribute,
// but not an add that carries one. That is why the fast add reads the new OU's
// allowedAttributesEffective.

#include "directory/Connect.h"
#include "ou_prod_support.h"

namespace orin::test {
namespace {

const Values kSix = {{"c", "JP"},       {"postalCode", "100-0001"}, {"st", "東京都"},
                     {"l", "千代田区"}, {"street", "1-1<Rtn>2F"},   {"description", "説明"}};
constexpr const char* kDelegatePassword = "Orin-Delegate-Pass1";

class OUFastPathTest : public OUProdTest {
  protected:
    static Guid SchemaGuid(const std::string& name) {
        auto records = ExecuteSearch("<LDAP://CN=Schema,CN=Configuration," + gSession.DomainDN +
                                     ">;(lDAPDisplayName=" + name + ");schemaIDGUID;OneLevel");
        Guid guid;
        EXPECT_TRUE(records.ok() && records->size() == 1) << name;
        if (!records.ok() || records->size() != 1) return guid;
        std::string bytes = records->front().Field("schemaIDGUID");
        EXPECT_EQ(bytes.size(), guid.Bytes.size());
        std::copy_n(bytes.begin(), std::min(bytes.size(), guid.Bytes.size()), guid.Bytes.begin());
        return guid;
    }

    // A user of the test's OU who may create and delete OUs below it and write all their
    // properties but `denied`. Gives its account name.
    std::string MakeDelegate(const Lines& denied) {
        const std::string sam = MakeAccount("user", "delegate");
        DirObject user;
        EXPECT_TRUE(BindObject("LDAP://CN=delegate," + ou().Dn(), user));
        EXPECT_TRUE(user.SetPassword(kDelegatePassword).ok());
        user.Put("userAccountControl", "512");
        EXPECT_TRUE(user.SetInfo().ok());
        auto sid = SidForTrustee(TrusteeName(sam));
        auto dacl = ReadObjectDacl(ou().Object());
        EXPECT_TRUE(sid && dacl);
        if (!sid || !dacl) return sam;
        Ace createDelete;
        createDelete.AceType = kAccessAllowedObjectAceType;
        createDelete.AceFlags = kContainerInheritAce;  // the test's OU and the OUs below
        createDelete.AccessMask = 0x3;                 // create and delete children
        createDelete.Flags = kAceObjectTypePresent;
        createDelete.ObjectType = SchemaGuid("organizationalUnit");
        createDelete.TrusteeSid = *sid;
        InsertAce(dacl->Dacl(), createDelete);
        for (const char* attribute : {"c", "postalCode", "st", "l", "street", "description"}) {
            if (std::find(denied.begin(), denied.end(), attribute) != denied.end()) continue;
            Ace write = createDelete;
            write.AceFlags = kContainerInheritAce | kInheritOnlyAce;
            write.AccessMask = 0x20;  // write property
            write.ObjectType = SchemaGuid(attribute);
            InsertAce(dacl->Dacl(), write);
        }
        EXPECT_TRUE(dacl->Write());
        return sam;
    }

    // Connected as `sam` for the scope, as the administrator again after it.
    struct ConnectedAs {
        explicit ConnectedAs(const std::string& sam) {
            gSession.UserName = sam;
            gSession.Password = kDelegatePassword;
            ScriptedOperator quiet;
            ConnectRemote();
            EXPECT_TRUE(gSession.Connected) << "connecting as " << sam;
        }
        ~ConnectedAs() { EXPECT_TRUE(ConnectTestDc(ConnectMethod::Remote)); }
    };

    std::map<std::string, std::string> Values7(const std::string& dn) {
        std::map<std::string, std::string> values;
        for (const char* a : {"c", "postalCode", "st", "l", "street", "description", "managedBy"})
            values[a] = Attr(dn, a);
        return values;
    }
};

TEST_F(OUFastPathTest, ARowCostsOneWriteInsteadOfOneAProperty) {
    MakeAccount("user", "boss");
    const Values managed = {{"managedBy", "CN=boss," + ou().Dn()}};
    MakeOU("OU=fast", managed);
    MakeOU("OU=exact", managed);
    const Values change = kSix + Values{{"description", "!C"}, {"MgrRDN", "!c"}};
    long add[2], mdf[2];
    for (int exact = 0; exact < 2; ++exact) {
        SetOUFastPath(exact == 0);
        const std::string own = exact ? "exact" : "fast";
        EXPECT_EQ(Run(OperationKind::Add, {kAdd.Header(), kAdd.Row(At({own, "new"}) + kSix)}),
                  Summary(1, 1, 0, 0));
        add[exact] = requests;
        EXPECT_EQ(Run(OperationKind::Mdf, {kMdf.Header(), kMdf.Row(At({own}) + change)}),
                  Summary(1, 1, 0, 0));
        mdf[exact] = requests;
    }
    // Add: the add and the read of the attribute rights, against the create and six writes.
    EXPECT_LE(add[0], 2);
    EXPECT_GE(add[1], 7);
    // Modify: the bind that finds the OU and one modify, against the bind and seven writes.
    EXPECT_LE(mdf[0], 2);
    EXPECT_GE(mdf[1], 8);
    EXPECT_EQ(Values7(OuDn({"fast", "new"})), Values7(OuDn({"exact", "new"})));
    EXPECT_EQ(Values7(OuDn({"fast"})), Values7(OuDn({"exact"})));
    EXPECT_EQ(Attr(OuDn({"fast", "new"}), "street"), "1-1\r\n2F");
    EXPECT_EQ(Attr(OuDn({"fast"}), "managedBy"), "");
}

TEST_F(OUFastPathTest, AnAttributeTheAccountMayNotWriteEndsTheRowAsTheExactWayDoes) {
    const Values old = {{"c", "US"}, {"postalCode", "0"}, {"st", "old"}, {"description", "old"}};
    MakeOU("OU=fast", old);
    MakeOU("OU=exact", old);
    const std::string delegate = MakeDelegate({"c", "st"});
    Values noCountry = kSix;
    noCountry.erase("c");
    const Lines expectedAdd =
        Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]の設定が失敗しました。"}) +
        Summary(2, 1, 0, 1);
    const Lines expectedMdf =
        Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]の変更が失敗しました。",
               // Clearing the country keeps the add's words.
               "3行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[国/地域]の設定が失敗しました。"}) +
        Summary(2, 0, 0, 2);
    {
        ConnectedAs as(delegate);
        for (int exact = 0; exact < 2; ++exact) {
            SetOUFastPath(exact == 0);
            const std::string own = exact ? "exact" : "fast";
            EXPECT_EQ(
                Run(OperationKind::Add, {kAdd.Header(), kAdd.Row(At({own, "refused"}) + noCountry),
                                         kAdd.Row(At({own, "allowed"}) + Values{{"l", "ok"}})}),
                expectedAdd);
            EXPECT_EQ(Run(OperationKind::Mdf, {kMdf.Header(), kMdf.Row(At({own}) + noCountry),
                                               kMdf.Row(At({own}) + Values{{"c", "!C"}})}),
                      expectedMdf);
        }
    }
    for (const std::string own : {"fast", "exact"}) {
        EXPECT_FALSE(Exists(OuDn({own, "refused"})));
        EXPECT_EQ(Attr(OuDn({own, "allowed"}), "l"), "ok");
    }
    auto fast = Values7(OuDn({"fast"}));
    EXPECT_EQ(fast, Values7(OuDn({"exact"})));
    // Written before the refused step, untouched from it on.
    EXPECT_EQ(fast["postalCode"], "100-0001");
    EXPECT_EQ(fast["st"], "old");
    EXPECT_EQ(fast["l"], "");
    EXPECT_EQ(fast["c"], "US");
}

TEST_F(OUFastPathTest, ANewAceLeavesTheSameAclBothWays) {
    const std::string g1 = MakeAccount("group", "g1"), g2 = MakeAccount("group", "g2");
    const Values mirror = {{"Mirror", "YES"}};
    for (const std::string own : {"fast", "exact"}) {
        SetOUFastPath(own == "fast");
        EXPECT_EQ(
            Run(OperationKind::Add, {kAdd.Header(), kAdd.Row(At({own}) + AceCells(g1, "0", "0")),
                                     kAdd.Row(At({own}) + AceCells(g2, "0", "7;8", "3") +
                                              Values{{"PermitOrDeny", "D"}} + mirror),
                                     kAdd.Row(At({own}) + AceCells(g1, "0", "1;2", "0") + mirror)}),
            Summary(1, 1, 0, 0));
    }
    auto fast = ExplicitDacl(OuDn({"fast"}));
    auto exact = ExplicitDacl(OuDn({"exact"}));
    EXPECT_EQ(fast.first, exact.first);
    EXPECT_EQ(fast.second, exact.second);
    EXPECT_FALSE(AcesOf(OuDn({"fast"}), g2).empty());
}

TEST_F(OUFastPathTest, AManagerInTheNewOUIsLookedUpAfterTheCreate) {
    // The manager's container is the OU the row adds: it exists only once the row made it, and
    // then the manager isn't in it.
    const Lines rows = {kAdd.Header(), kAdd.Row(At({"new"}) + Span("MgrOU", {"new"}) +
                                                Values{{"MgrRDN", "boss"}, {"c", "JP"}})};
    const Lines expected =
        Lines({"2行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。"}) + Summary(1, 0, 0, 1);
    EXPECT_EQ(Run(OperationKind::Add, rows), expected);
    SetOUFastPath(false);
    EXPECT_EQ(Run(OperationKind::Add, rows), expected);
    EXPECT_FALSE(Exists(OuDn({"new"})));
}

}  // namespace
}  // namespace orin::test
