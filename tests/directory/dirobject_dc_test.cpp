// The directory object model against the test DC: the property cache, Get's errors, identity,
// and the container operations.

#include <gtest/gtest.h>
#include <unistd.h>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

// An account name unique to this process (sAMAccountName holds at most 20 characters).
std::string Account(std::string_view base) {
    return std::string(base) + "-" + std::to_string(getpid());
}

// Creates an object under the root at the relative name, with the given values.
DirObject Make(std::string_view cls, const std::string& relativeName,
               std::vector<std::pair<std::string, std::string>> values = {}) {
    auto created = gSession.RootObject.Create(cls, relativeName);
    EXPECT_TRUE(created.ok()) << created.status().message;
    if (!created.ok()) return {};
    for (const auto& [attr, value] : values) created->Put(attr, value);
    DirStatus status = created->SetInfo();
    EXPECT_TRUE(status.ok()) << relativeName << ": " << status.message;
    return *created;
}

DirObject Bind(const std::string& dn) {
    DirObject o;
    EXPECT_TRUE(BindObject("LDAP://" + dn, o)) << dn;
    return o;
}

class DirObjectTest : public DcTest {};

TEST_F(DirObjectTest, StagedWritesReachTheServerAtSetInfo) {
    DirObject unit = Bind(ou().Dn());
    unit.Put("description", "first");
    unit.PutEx(PutExControl::Replace, "street", {"a street"});
    // The object's own cache shows what is staged; the directory doesn't have it yet.
    EXPECT_EQ(unit.Get("description").value_or(""), "first");
    EXPECT_EQ(Bind(ou().Dn()).Get("description").status().code, kDirNoValue);

    ASSERT_TRUE(unit.SetInfo().ok());
    DirObject fresh = Bind(ou().Dn());
    EXPECT_EQ(fresh.Get("description").value_or(""), "first");
    EXPECT_EQ(fresh.Get("street").value_or(""), "a street");

    // A refused write is reported at SetInfo and leaves the entry as it was; the stage is gone.
    unit.Put("description", "second");
    unit.Put("ou", "renaming the naming attribute is refused");
    EXPECT_FALSE(unit.SetInfo().ok());
    EXPECT_EQ(Bind(ou().Dn()).Get("description").value_or(""), "first");
    EXPECT_TRUE(unit.SetInfo().ok());
}

TEST_F(DirObjectTest, PutExClearsAppendsAndDeletesValues) {
    DirObject unit = Bind(ou().Dn());
    // Clearing an attribute that has no value is no error.
    unit.PutEx(PutExControl::Clear, "description");
    ASSERT_TRUE(unit.SetInfo().ok());

    unit.PutEx(PutExControl::Append, "businessCategory", {"a", "b"});
    unit.PutEx(PutExControl::Append, "businessCategory", {"c"});
    ASSERT_TRUE(unit.SetInfo().ok());
    EXPECT_EQ(unit.GetEx("businessCategory").value_or({}).size(), 3u);

    unit.PutEx(PutExControl::Delete, "businessCategory", {"b"});
    ASSERT_TRUE(unit.SetInfo().ok());
    auto left = Bind(ou().Dn()).GetEx("businessCategory").value_or({});
    EXPECT_EQ(left, (std::vector<std::string>{"a", "c"}));

    unit.PutEx(PutExControl::Clear, "businessCategory");
    ASSERT_TRUE(unit.SetInfo().ok());
    EXPECT_EQ(Bind(ou().Dn()).GetEx("businessCategory").status().code, kDirNoValue);
}

TEST_F(DirObjectTest, GetFailsOnNoValueAndOnSeveralValues) {
    std::string user = "CN=u1," + ou().Rdn();
    DirObject u = Make("user", user, {{"sAMAccountName", Account("u1")}});
    DirObject g1 = Make("group", "CN=g1," + ou().Rdn(), {{"sAMAccountName", Account("g1")}});
    DirObject g2 = Make("group", "CN=g2," + ou().Rdn(), {{"sAMAccountName", Account("g2")}});
    std::string userPath = "LDAP://" + user + "," + gSession.DomainDN;

    DirObject fresh = Bind(u.DN());
    EXPECT_EQ(fresh.Get("memberof").status().code, kDirNoValue);
    EXPECT_EQ(fresh.GetEx("memberof").status().code, kDirNoValue);
    EXPECT_EQ(fresh.Get("description").status().code, kDirNoValue);

    ASSERT_TRUE(g1.Add(userPath).ok());
    fresh = Bind(u.DN());
    auto one = fresh.Get("memberof");
    ASSERT_TRUE(one.ok());
    EXPECT_EQ(*one, g1.DN());
    EXPECT_EQ(fresh.GetEx("memberOf").value_or({}).size(), 1u);

    ASSERT_TRUE(g2.Add(userPath).ok());
    fresh = Bind(u.DN());
    EXPECT_EQ(fresh.Get("memberof").status().code, kDirTypeMismatch);
    EXPECT_EQ(fresh.GetEx("memberof").value_or({}).size(), 2u);
    EXPECT_EQ(fresh.Get("objectClass").status().code, kDirTypeMismatch);
}

TEST_F(DirObjectTest, NumbersBinariesAndConstructedAttributes) {
    DirObject g = Make("group", "CN=g," + ou().Rdn(), {{"sAMAccountName", Account("g")}});
    DirObject fresh = Bind(g.DN());
    EXPECT_EQ(fresh.GetNumber("groupType").value_or(0), -2147483646);  // global, security
    EXPECT_EQ(fresh.GetNumber("cn").status().code, kDirTypeMismatch);
    EXPECT_EQ(fresh.GetBinary("objectGUID").value_or({}).size(), 16u);
    auto sid = fresh.GetBinary("objectSid").value_or({});
    ASSERT_GE(sid.size(), 8u);
    EXPECT_EQ(sid[0], 1);  // SID revision
    // Constructed attributes are not in a plain read: asked for by name.
    EXPECT_EQ(fresh.Get("canonicalName").value_or(""), "orin.test/" + ou().Rdn().substr(3) + "/g");
    EXPECT_TRUE(fresh.GetNumber("msDS-User-Account-Control-Computed").ok());
    // An ordinary attribute without a value costs no request: the read had it all.
    long before = gSession.Connection->RequestCount();
    EXPECT_EQ(fresh.Get("description").status().code, kDirNoValue);
    EXPECT_EQ(fresh.Get("mail").status().code, kDirNoValue);
    EXPECT_EQ(gSession.Connection->RequestCount(), before);
}

// Identity in both connection methods.
class Identity : public DcTest, public ::testing::WithParamInterface<ConnectMethod> {
  protected:
    Identity() : DcTest(GetParam()) {}
    std::string Server() const {
        return GetParam() == ConnectMethod::Remote ? "orindc.orin.test/" : "";
    }
};

TEST_P(Identity, ClassNameParentAndPath) {
    Make("organizationalUnit", "OU=sub," + ou().Rdn());
    Make("container", "CN=box," + ou().Rdn());
    Make("user", "CN=u,OU=sub," + ou().Rdn(), {{"sAMAccountName", Account("u")}});
    Make("computer", "CN=pc,OU=sub," + ou().Rdn(), {{"sAMAccountName", Account("pc") + "$"}});
    Make("group", "CN=g,OU=sub," + ou().Rdn(), {{"sAMAccountName", Account("g")}});
    Make("volume", "CN=share,OU=sub," + ou().Rdn(), {{"uNCName", "\\\\orindc\\orinhome"}});

    std::string sub = "OU=sub," + ou().Dn();
    struct Case {
        std::string dn, cls, name;
    } cases[] = {
        {sub, "organizationalUnit", "OU=sub"}, {"CN=box," + ou().Dn(), "container", "CN=box"},
        {"CN=u," + sub, "user", "CN=u"},       {"CN=pc," + sub, "computer", "CN=pc"},
        {"CN=g," + sub, "group", "CN=g"},      {"CN=share," + sub, "volume", "CN=share"},
    };
    for (const auto& c : cases) {
        DirObject o;
        ASSERT_TRUE(BindObject("LDAP://" + c.dn, o)) << c.dn;
        EXPECT_EQ(o.Class(), c.cls);
        EXPECT_EQ(o.Name(), c.name);
        EXPECT_EQ(o.DN(), c.dn);
        EXPECT_EQ(o.ADsPath(), "LDAP://" + Server() + c.dn);
        EXPECT_EQ(o.Parent(), "LDAP://" + Server() + ParentDn(c.dn));
    }
    // Paths are not case-sensitive; the object reports the name as the directory holds it.
    DirObject lower;
    ASSERT_TRUE(BindObject("LDAP://cn=u,ou=sub," + ToLowerAscii(ou().Dn()), lower));
    EXPECT_EQ(lower.DN(), "CN=u," + sub);
}

TEST_P(Identity, AbsentOrMalformedPathsDoNotBind) {
    DirObject o = Bind(ou().Dn());
    ASSERT_TRUE(o.IsBound());
    EXPECT_FALSE(BindObject("LDAP://CN=missing," + ou().Dn(), o));
    EXPECT_FALSE(o.IsBound());  // left empty
    EXPECT_FALSE(BindObject("LDAP://CN=a,b," + ou().Dn(), o));
    EXPECT_FALSE(BindObject("LDAP://", o));
    EXPECT_FALSE(BindObject("LDAP:/", o));
    EXPECT_FALSE(BindObject("LDAP://DC=elsewhere,DC=test", o));
    EXPECT_FALSE(BindObject("LDAP://not a dn", o));
}

INSTANTIATE_TEST_SUITE_P(Methods, Identity,
                         ::testing::Values(ConnectMethod::Local, ConnectMethod::Remote),
                         [](const auto& info) {
                             return info.param == ConnectMethod::Local ? "Local" : "Remote";
                         });

TEST_F(DirObjectTest, MethodWordDecidesTheServerPart) {
    for (const char* method : {"local", "LOCAL", "Local"}) {
        gSession.Method = method;
        EXPECT_EQ(Bind(ou().Dn()).ADsPath(), ou().Path()) << method;
    }
    for (const char* method : {"remote", "", "other"}) {
        gSession.Method = method;
        EXPECT_EQ(Bind(ou().Dn()).ADsPath(), "LDAP://orindc.orin.test/" + ou().Dn()) << method;
    }
}

TEST_F(DirObjectTest, CreateWithAMultiLevelNameExistsOnlyAfterSetInfo) {
    Make("organizationalUnit", "OU=a," + ou().Rdn());
    auto created = gSession.RootObject.Create("organizationalUnit", "OU=b,OU=a," + ou().Rdn());
    ASSERT_TRUE(created.ok());
    EXPECT_EQ(created->Class(), "organizationalUnit");
    EXPECT_EQ(created->DN(), "OU=b,OU=a," + ou().Dn());
    created->Put("description", "new");
    EXPECT_EQ(created->Get("description").value_or(""), "new");
    DirObject probe;
    EXPECT_FALSE(BindObject("LDAP://OU=b,OU=a," + ou().Dn(), probe));

    ASSERT_TRUE(created->SetInfo().ok());
    DirObject b = Bind("OU=b,OU=a," + ou().Dn());
    EXPECT_EQ(b.Get("description").value_or(""), "new");
    // Later writes on the same object are modifies.
    created->Put("description", "changed");
    ASSERT_TRUE(created->SetInfo().ok());
    EXPECT_EQ(Bind(b.DN()).Get("description").value_or(""), "changed");

    // Creating it again is refused at SetInfo; a missing level is refused too.
    auto again = gSession.RootObject.Create("organizationalUnit", "OU=b,OU=a," + ou().Rdn());
    ASSERT_TRUE(again.ok());
    EXPECT_FALSE(again->SetInfo().ok());
    auto orphan = gSession.RootObject.Create("organizationalUnit", "OU=c,OU=none," + ou().Rdn());
    ASSERT_TRUE(orphan.ok());
    EXPECT_EQ(orphan->SetInfo().code, platform::kLdapNoSuchObject);
    EXPECT_EQ(gSession.RootObject.Create("organizationalUnit", "no-equals").status().code,
              kDirBadArgument);
}

TEST_F(DirObjectTest, DeleteTakesLeavesAndEmptyContainersOnly) {
    Make("organizationalUnit", "OU=full," + ou().Rdn());
    Make("organizationalUnit", "OU=inner,OU=full," + ou().Rdn());
    DirStatus status = gSession.RootObject.Delete("organizationalUnit", "OU=full," + ou().Rdn());
    EXPECT_EQ(status.code, 66);  // notAllowedOnNonLeaf
    DirObject container = Bind("OU=full," + ou().Dn());
    ASSERT_TRUE(container.Delete("organizationalUnit", "OU=inner").ok());
    ASSERT_TRUE(gSession.RootObject.Delete("organizationalUnit", "OU=full," + ou().Rdn()).ok());
    DirObject gone;
    EXPECT_FALSE(BindObject("LDAP://OU=full," + ou().Dn(), gone));
    EXPECT_EQ(gSession.RootObject.Delete("organizationalUnit", "OU=full," + ou().Rdn()).code,
              platform::kLdapNoSuchObject);
}

TEST_F(DirObjectTest, MoveHereMovesAndRenames) {
    Make("organizationalUnit", "OU=from," + ou().Rdn());
    Make("organizationalUnit", "OU=to," + ou().Rdn());
    Make("user", "CN=mover,OU=from," + ou().Rdn(), {{"sAMAccountName", Account("mv")}});
    DirObject to = Bind("OU=to," + ou().Dn());

    auto moved = to.MoveHere("LDAP://CN=mover,OU=from," + ou().Dn());
    ASSERT_TRUE(moved.ok()) << moved.status().message;
    EXPECT_EQ(moved->DN(), "CN=mover,OU=to," + ou().Dn());
    EXPECT_EQ(moved->Class(), "user");
    DirObject probe;
    EXPECT_FALSE(BindObject("LDAP://CN=mover,OU=from," + ou().Dn(), probe));

    auto renamed = to.MoveHere("LDAP://CN=mover,OU=to," + ou().Dn(), "CN=renamed");
    ASSERT_TRUE(renamed.ok());
    DirObject r = Bind("CN=renamed,OU=to," + ou().Dn());
    EXPECT_EQ(r.Get("cn").value_or(""), "renamed");
    EXPECT_EQ(r.Get("sAMAccountName").value_or(""), Account("mv"));  // the same account

    // A whole OU moves with what it holds, here to the root with a new name.
    auto ouMoved = gSession.RootObject.MoveHere("LDAP://OU=to," + ou().Dn(), "OU=to2");
    ASSERT_TRUE(ouMoved.ok());
    DirObject top = Bind("CN=renamed,OU=to2," + gSession.DomainDN);
    EXPECT_TRUE(ou().Object().MoveHere(ouMoved->ADsPath()).ok());  // back, with server part
    EXPECT_FALSE(to.MoveHere("LDAP://CN=absent," + ou().Dn()).ok());
}

TEST_F(DirObjectTest, GetInfoReloadsAndDropsTheStage) {
    DirObject a = Bind(ou().Dn());
    DirObject b = Bind(ou().Dn());
    ASSERT_EQ(a.Get("description").status().code, kDirNoValue);
    b.Put("description", "from b");
    ASSERT_TRUE(b.SetInfo().ok());
    EXPECT_EQ(a.Get("description").status().code, kDirNoValue);  // a's cache is as read
    a.Put("street", "staged");
    ASSERT_TRUE(a.GetInfo().ok());
    EXPECT_EQ(a.Get("description").value_or(""), "from b");
    EXPECT_EQ(a.Get("street").status().code, kDirNoValue);
    ASSERT_TRUE(a.SetInfo().ok());  // nothing left to write
    EXPECT_EQ(Bind(ou().Dn()).Get("street").status().code, kDirNoValue);
}

}  // namespace
}  // namespace orin::test
