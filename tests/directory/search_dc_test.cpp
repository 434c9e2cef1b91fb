// Enumeration and searches against the test DC, with pages smaller than the results so that
// paging is really exercised.

#include <gtest/gtest.h>

#include <algorithm>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

constexpr int kPageSize = 7;
constexpr int kContacts = 25;  // more than three pages
constexpr int kUnits = 9;

class Search : public DcMethodTest {
  protected:
    void SetUp() override {
        DcTest::SetUp();
        if (HasFatalFailure()) return;
        gSession.Connection->SetPageSize(kPageSize);
        auto& conn = *gSession.Connection;
        for (int i = 0; i < kContacts; ++i) {
            auto s = conn.Add("CN=c" + std::to_string(i) + "," + ou().Dn(),
                              {{platform::LdapMod::Op::Add, "objectClass", {"contact"}}});
            ASSERT_TRUE(s.ok()) << s.message;
        }
        for (int i = 0; i < kUnits; ++i) {
            auto s =
                conn.Add("OU=u" + std::to_string(i) + "," + ou().Dn(),
                         {{platform::LdapMod::Op::Add, "objectClass", {"organizationalUnit"}}});
            ASSERT_TRUE(s.ok()) << s.message;
        }
    }
};

TEST_P(Search, ChildrenComeBackWhateverThePageSize) {
    long before = gSession.Connection->RequestCount();
    auto all = ou().Object().Children();
    ASSERT_TRUE(all.ok()) << all.status().message;
    EXPECT_EQ(all->size(), size_t(kContacts + kUnits));
    EXPECT_GE(gSession.Connection->RequestCount() - before, (kContacts + kUnits) / kPageSize);

    auto contacts = ou().Object().Children({"contact"});
    ASSERT_TRUE(contacts.ok());
    ASSERT_EQ(contacts->size(), size_t(kContacts));
    std::vector<std::string> names;
    for (const auto& c : *contacts) {
        EXPECT_EQ(c.Class(), "contact");
        EXPECT_EQ(c.Parent(), "LDAP://" + Server() + ou().Dn());
        names.push_back(c.Name());
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::unique(names.begin(), names.end()), names.end());  // no page read twice

    auto both = ou().Object().Children({"contact", "organizationalUnit"});
    ASSERT_TRUE(both.ok());
    EXPECT_EQ(both->size(), size_t(kContacts + kUnits));
    // A child is a full object: its attributes load on first use.
    DirObject first = (*contacts)[0];
    EXPECT_EQ(first.Get("cn").value_or(""), first.Name().substr(3));
}

TEST_P(Search, ExecuteSearchReadsEveryPage) {
    std::string base = "<" + gSession.RootLdapPath + ">";
    auto found = ExecuteSearch(base + ";(&(objectClass=contact)(cn=c*));cn,AdsPath;Subtree");
    ASSERT_TRUE(found.ok()) << found.status().message;
    // Other tests may run their own contacts in this domain: count ours.
    int ours = 0;
    for (const auto& r : *found) {
        std::string path = r.Field("AdsPath");
        if (path.find(ou().Dn()) == std::string::npos) continue;
        ++ours;
        EXPECT_EQ(path, "LDAP://" + Server() + "CN=" + r.Field("cn") + "," + ou().Dn());
        EXPECT_EQ(r.Field("ADSPATH"), path);  // field names ignore case
    }
    EXPECT_EQ(ours, kContacts);

    // The base may be any container, in either path form; the scope word is honoured.
    std::string ouBase = "<LDAP://" + Server() + ou().Dn() + ">";
    auto level = ExecuteSearch(ouBase + ";(objectClass=*);cn;OneLevel");
    ASSERT_TRUE(level.ok());
    EXPECT_EQ(level->size(), size_t(kContacts + kUnits));
    auto self = ExecuteSearch(ouBase + ";(objectClass=*);ou,description,AdsPath;Base");
    ASSERT_TRUE(self.ok());
    ASSERT_EQ(self->size(), 1u);
    EXPECT_EQ((*self)[0].Field("ou"), ou().Rdn().substr(3));
    EXPECT_EQ((*self)[0].Field("description"), "");  // absent: empty, not an error
    EXPECT_TRUE((*self)[0].Values("description").empty());
    // A base that doesn't exist is an error, not an empty result.
    auto missing =
        ExecuteSearch("<LDAP://" + Server() + "OU=absent," + ou().Dn() + ">;(cn=*);cn;Subtree");
    EXPECT_EQ(missing.status().code, platform::kLdapNoSuchObject);
}

INSTANTIATE_TEST_SUITE_P(Methods, Search, BothMethods(), MethodName);

}  // namespace
}  // namespace orin::test
