// The fast path of the OU add and modify engines: what a row costs in LDAP requests, and rows
// that the directory refuses, which must end as the exact way ends them.
//
// Server behaviour these tests expect, seen on Samba 4.17: an account allowed to create OUs
// below an OU and to write some of their attributes is refused a modify of any other attribute,
// but not an add that carries one. That is why the fast add reads the new OU's
// allowedAttributesEffective.

#include "directory/Connect.h"
#include "ou_test_support.h"

namespace orin::test {
namespace {

const std::string kProps =
    "!OU-Start,,OU-End,Mirror,c,postalCode,st,l,street,description,MgrOU-Start,MgrOU-End,MgrRDN";
const std::string kNoCountry = "100-0001,東京都,千代田区,1-1<Rtn>2F,説明";  // postalCode on
constexpr const char* kDelegatePassword = "Orin-Delegate-Pass1";

class OUFastPathTest : public OUTest {
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
    std::string MakeDelegate(const std::vector<std::string>& denied) {
        const std::string sam = MakeAccount("user", "delegate");
        DirObject user;
        EXPECT_TRUE(BindObject("LDAP://CN=delegate," + DnOf(""), user));
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
};

TEST_F(OUFastPathTest, ARowCostsOneWriteInsteadOfOneAProperty) {
    MakeAccount("user", "boss");
    const Attributes managed = {{"managedBy", "CN=boss," + DnOf("")}};
    MakeOU("fast", managed);
    MakeOU("exact", managed);
    long add[2], mdf[2];
    for (int exact = 0; exact < 2; ++exact) {
        SetOUFastPath(exact == 0);
        const std::string own = exact ? "exact" : "fast";
        EXPECT_TRUE(Runs(kAdd, "1/0/0", kProps, {{"{T}," + own + ",new,,JP," + kNoCountry}}));
        add[exact] = requests;
        EXPECT_TRUE(Runs(kMdf, "1/0/0", kProps,
                         {{"{T}," + own + ",,,JP,100-0001,東京都,千代田区,1-1<Rtn>2F,!C,,,!c"}}));
        mdf[exact] = requests;
    }
    // Add: the add and the read of the attribute rights, against the create and six writes.
    EXPECT_LE(add[0], 2);
    EXPECT_GE(add[1], 7);
    // Modify: the bind that finds the OU and one modify, against the bind and seven writes.
    EXPECT_LE(mdf[0], 2);
    EXPECT_GE(mdf[1], 8);
    // What the rows leave is checked both ways by the add and modify tests.
}

TEST_F(OUFastPathTest, AnAttributeTheAccountMayNotWriteEndsTheRowAsTheExactWayDoes) {
    const Attributes old = {
        {"c", "US"}, {"postalCode", "0"}, {"st", "old"}, {"description", "old"}};
    MakeOU("fast", old);
    MakeOU("exact", old);
    const std::string delegate = MakeDelegate({"c", "st"});
    {
        ConnectedAs as(delegate);
        for (const std::string own : {"fast", "exact"}) {
            SetOUFastPath(own == "fast");
            EXPECT_TRUE(Runs(kAdd, "1/0/1", kProps,
                             {{"{T}," + own + ",refused,,," + kNoCountry,
                               kFail,
                               {"ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]の設定が失敗しました。"}},
                              {"{T}," + own + ",allowed,,,,,ok"}}));
            EXPECT_TRUE(Runs(kMdf, "0/0/2", kProps,
                             {{"{T}," + own + ",,,," + kNoCountry,
                               kFail,
                               {"ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]の変更が失敗しました。"}},
                              // Clearing the country keeps the add's words.
                              {"{T}," + own + ",,,!C",
                               kFail,
                               {"ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[国/地域]の設定が失敗しました。"}}}));
        }
    }
    EXPECT_EQ(Existing({"fast,refused", "exact,refused"}), "");
    EXPECT_EQ(Attr("fast,allowed", "l"), "ok");
    EXPECT_EQ(Attr("exact,allowed", "l"), "ok");
    // Written before the refused step, untouched from it on.
    EXPECT_EQ(
        PropsOf("fast"),
        (Props{{"c", "US"}, {"postalCode", "100-0001"}, {"st", "old"}, {"description", "old"}}));
    EXPECT_EQ(PropsOf("exact"), PropsOf("fast"));
}

TEST_F(OUFastPathTest, ANewAceLeavesTheSameAclBothWays) {
    const std::string g1 = MakeAccount("group", "g1"), g2 = MakeAccount("group", "g2");
    for (const std::string own : {"fast", "exact"}) {
        SetOUFastPath(own == "fast");
        EXPECT_TRUE(Runs(kAdd, "1/0/0",
                         "!OU-Start,,OU-End,Mirror,AceSamAccountName,AceOpeMode,AccessRight,"
                         "InheritOption,PermitOrDeny",
                         {{"{T}," + own + ",,," + g1 + ",0,0"},
                          {"{T}," + own + ",,YES," + g2 + ",0,7;8,3,D"},
                          {"{T}," + own + ",,YES," + g1 + ",0,1;2,0"}}));
    }
    EXPECT_EQ(Dacl("fast"), Dacl("exact"));
    EXPECT_FALSE(AcesOf("fast", g2).empty());
}

}  // namespace
}  // namespace orin::test
