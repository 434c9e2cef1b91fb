// The directory object model against the test DC: the property cache, Get's errors, identity,
// and the container operations.

#include <gtest/gtest.h>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

class DirObjectTest : public DcTest {
  protected:
    DirObject Unit() { return ou().Bind(""); }
};

TEST_F(DirObjectTest, StagedWritesReachTheServerAtSetInfo) {
    DirObject unit = Unit();
    unit.Put("description", "first");
    unit.PutEx(PutExControl::Replace, "street", {"a street"});
    // The object's own cache shows what is staged; the directory doesn't have it yet.
    EXPECT_EQ(unit.Get("description").value_or(""), "first");
    EXPECT_EQ(Unit().Get("description").status().code, kDirNoValue);

    ASSERT_TRUE(unit.SetInfo().ok());
    EXPECT_EQ(Unit().Get("description").value_or(""), "first");
    EXPECT_EQ(Unit().Get("street").value_or(""), "a street");

    // A refused write is reported at SetInfo and leaves the entry as it was; the stage is gone.
    unit.Put("description", "second");
    unit.Put("ou", "renaming the naming attribute is refused");
    EXPECT_FALSE(unit.SetInfo().ok());
    EXPECT_EQ(Unit().Get("description").value_or(""), "first");
    EXPECT_TRUE(unit.SetInfo().ok());
}

TEST_F(DirObjectTest, GetInfoReloadsAndDropsTheStage) {
    DirObject a = Unit();
    DirObject b = Unit();
    ASSERT_EQ(a.Get("description").status().code, kDirNoValue);
    b.Put("description", "from b");
    ASSERT_TRUE(b.SetInfo().ok());
    EXPECT_EQ(a.Get("description").status().code, kDirNoValue);  // a's cache is as read
    a.Put("street", "staged");
    ASSERT_TRUE(a.GetInfo().ok());
    EXPECT_EQ(a.Get("description").value_or(""), "from b");
    EXPECT_EQ(a.Get("street").status().code, kDirNoValue);
    ASSERT_TRUE(a.SetInfo().ok());  // nothing left to write
    EXPECT_EQ(Unit().Get("street").status().code, kDirNoValue);
}

TEST_F(DirObjectTest, PutExClearsAppendsAndDeletesValues) {
    DirObject unit = Unit();
    // Clearing an attribute that has no value is no error.
    unit.PutEx(PutExControl::Clear, "description");
    ASSERT_TRUE(unit.SetInfo().ok());

    unit.PutEx(PutExControl::Append, "businessCategory", {"a", "b"});
    unit.PutEx(PutExControl::Append, "businessCategory", {"c"});
    ASSERT_TRUE(unit.SetInfo().ok());
    EXPECT_EQ(unit.GetEx("businessCategory").value_or({}).size(), 3u);

    unit.PutEx(PutExControl::Delete, "businessCategory", {"b"});
    ASSERT_TRUE(unit.SetInfo().ok());
    EXPECT_EQ(Unit().GetEx("businessCategory").value_or({}), (std::vector<std::string>{"a", "c"}));

    unit.PutEx(PutExControl::Clear, "businessCategory");
    ASSERT_TRUE(unit.SetInfo().ok());
    EXPECT_EQ(Unit().GetEx("businessCategory").status().code, kDirNoValue);
}

TEST_F(DirObjectTest, ReadsByTypeAndTheirErrors) {
    DirObject g = ou().Make("group", "CN=g");
    EXPECT_EQ(g.GetNumber("groupType").value_or(0), -2147483646);  // global, security
    EXPECT_EQ(g.GetNumber("cn").status().code, kDirTypeMismatch);
    EXPECT_EQ(g.GetBinary("objectGUID").value_or({}).size(), 16u);
    auto sid = g.GetBinary("objectSid").value_or({});
    ASSERT_GE(sid.size(), 8u);
    EXPECT_EQ(sid[0], 1);  // SID revision
    // Several values: Get refuses, GetEx gives them all.
    EXPECT_EQ(g.Get("objectClass").status().code, kDirTypeMismatch);
    EXPECT_GE(g.GetEx("objectClass").value_or({}).size(), 2u);
    // Constructed attributes are not in a plain read: asked for by name.
    EXPECT_EQ(g.Get("canonicalName").value_or(""), "orin.test/" + ou().Rdn().substr(3) + "/g");
    EXPECT_TRUE(g.GetNumber("msDS-User-Account-Control-Computed").ok());
    // An ordinary attribute without a value costs no request: the read had it all.
    long before = gSession.Connection->RequestCount();
    EXPECT_EQ(g.Get("description").status().code, kDirNoValue);
    EXPECT_EQ(g.GetEx("mail").status().code, kDirNoValue);
    EXPECT_EQ(gSession.Connection->RequestCount(), before);
}

// Identity in both connection methods.
using Identity = DcMethodTest;

TEST_P(Identity, ClassNameParentAndPath) {
    const std::string sub = "OU=sub," + ou().Dn();
    struct Case {
        std::string cls, rdn;
        std::vector<std::pair<std::string, std::string>> values;
    } cases[] = {
        {"organizationalUnit", "OU=sub", {}},
        {"container", "CN=box", {}},
        {"user", "CN=u,OU=sub", {}},
        {"computer", "CN=pc,OU=sub", {}},
        {"group", "CN=g,OU=sub", {}},
        {"volume", "CN=share,OU=sub", {{"uNCName", "\\\\orindc\\orinhome"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.rdn);
        ou().Make(c.cls, c.rdn, c.values);
        const std::string dn = c.rdn + "," + ou().Dn();
        DirObject o;
        ASSERT_TRUE(BindObject("LDAP://" + dn, o));
        EXPECT_EQ(o.Class(), c.cls);
        EXPECT_EQ(o.Name(), FirstRdn(c.rdn));
        EXPECT_EQ(o.DN(), dn);
        EXPECT_EQ(o.ADsPath(), "LDAP://" + Server() + dn);
        EXPECT_EQ(o.Parent(), "LDAP://" + Server() + ParentDn(dn));
    }
    // Paths are not case-sensitive; the object reports the name as the directory holds it.
    DirObject lower;
    ASSERT_TRUE(BindObject("LDAP://cn=u,ou=sub," + ToLowerAscii(ou().Dn()), lower));
    EXPECT_EQ(lower.DN(), "CN=u," + sub);
}

TEST_P(Identity, AbsentOrMalformedPathsDoNotBind) {
    DirObject o = ou().Bind("");
    ASSERT_TRUE(o.IsBound());
    EXPECT_FALSE(BindObject("LDAP://CN=missing," + ou().Dn(), o));
    EXPECT_FALSE(o.IsBound());  // left empty
    for (std::string bad :
         {"LDAP://CN=a,b," + ou().Dn(), std::string("LDAP://"), std::string("LDAP:/"),
          std::string("LDAP://DC=elsewhere,DC=test"), std::string("LDAP://not a dn")})
        EXPECT_FALSE(BindObject(bad, o)) << bad;
}

INSTANTIATE_TEST_SUITE_P(Methods, Identity, BothMethods(), MethodName);

TEST_F(DirObjectTest, MethodWordDecidesTheServerPart) {
    for (const char* method : {"local", "LOCAL", "Local", "remote", "", "other"}) {
        gSession.Method = method;
        const bool local = EqualsIgnoreCase(method, "local");
        EXPECT_EQ(Unit().ADsPath(), local ? ou().Path() : "LDAP://orindc.orin.test/" + ou().Dn())
            << method;
    }
}

TEST_F(DirObjectTest, CreateWithAMultiLevelNameExistsOnlyAfterSetInfo) {
    ou().Make("organizationalUnit", "OU=a");
    auto created = gSession.RootObject.Create("organizationalUnit", ou().Relative("OU=b,OU=a"));
    ASSERT_TRUE(created.ok());
    EXPECT_EQ(created->Class(), "organizationalUnit");
    EXPECT_EQ(created->DN(), "OU=b,OU=a," + ou().Dn());
    created->Put("description", "new");
    EXPECT_EQ(created->Get("description").value_or(""), "new");
    DirObject probe;
    EXPECT_FALSE(BindObject("LDAP://OU=b,OU=a," + ou().Dn(), probe));

    ASSERT_TRUE(created->SetInfo().ok());
    EXPECT_EQ(ou().Bind("OU=b,OU=a").Get("description").value_or(""), "new");
    // Later writes on the same object are modifies.
    created->Put("description", "changed");
    ASSERT_TRUE(created->SetInfo().ok());
    EXPECT_EQ(ou().Bind("OU=b,OU=a").Get("description").value_or(""), "changed");

    // Creating it again is refused at SetInfo; a missing level is refused too.
    auto again = gSession.RootObject.Create("organizationalUnit", ou().Relative("OU=b,OU=a"));
    ASSERT_TRUE(again.ok());
    EXPECT_FALSE(again->SetInfo().ok());
    auto orphan = gSession.RootObject.Create("organizationalUnit", ou().Relative("OU=c,OU=none"));
    ASSERT_TRUE(orphan.ok());
    EXPECT_EQ(orphan->SetInfo().code, platform::kLdapNoSuchObject);
    EXPECT_EQ(gSession.RootObject.Create("organizationalUnit", "no-equals").status().code,
              kDirBadArgument);
}

TEST_F(DirObjectTest, DeleteTakesLeavesAndEmptyContainersOnly) {
    ou().Make("organizationalUnit", "OU=full");
    ou().Make("organizationalUnit", "OU=inner,OU=full");
    const std::string full = ou().Relative("OU=full");
    EXPECT_EQ(gSession.RootObject.Delete("organizationalUnit", full).code,
              66);  // notAllowedOnNonLeaf
    ASSERT_TRUE(ou().Bind("OU=full").Delete("organizationalUnit", "OU=inner").ok());
    ASSERT_TRUE(gSession.RootObject.Delete("organizationalUnit", full).ok());
    DirObject gone;
    EXPECT_FALSE(BindObject("LDAP://OU=full," + ou().Dn(), gone));
    EXPECT_EQ(gSession.RootObject.Delete("organizationalUnit", full).code,
              platform::kLdapNoSuchObject);
}

TEST_F(DirObjectTest, MoveHereMovesAndRenames) {
    ou().Make("organizationalUnit", "OU=from");
    DirObject to = ou().Make("organizationalUnit", "OU=to");
    ou().Make("user", "CN=mover,OU=from");

    auto moved = to.MoveHere("LDAP://CN=mover,OU=from," + ou().Dn());
    ASSERT_TRUE(moved.ok()) << moved.status().message;
    EXPECT_EQ(moved->DN(), "CN=mover,OU=to," + ou().Dn());
    EXPECT_EQ(moved->Class(), "user");
    DirObject probe;
    EXPECT_FALSE(BindObject("LDAP://CN=mover,OU=from," + ou().Dn(), probe));

    ASSERT_TRUE(to.MoveHere("LDAP://CN=mover,OU=to," + ou().Dn(), "CN=renamed").ok());
    DirObject r = ou().Bind("CN=renamed,OU=to");
    EXPECT_EQ(r.Get("cn").value_or(""), "renamed");
    EXPECT_EQ(r.Get("sAMAccountName").value_or(""), UniqueSam("mover"));  // the same account

    // A whole OU moves with what it holds, here to the root with a new name.
    auto ouMoved = gSession.RootObject.MoveHere("LDAP://OU=to," + ou().Dn(), "OU=to2");
    ASSERT_TRUE(ouMoved.ok());
    ASSERT_TRUE(BindObject("LDAP://CN=renamed,OU=to2," + gSession.DomainDN, probe));
    EXPECT_TRUE(ou().Object().MoveHere(ouMoved->ADsPath()).ok());  // back, with server part
    EXPECT_FALSE(to.MoveHere("LDAP://CN=absent," + ou().Dn()).ok());
}

}  // namespace
}  // namespace orin::test
