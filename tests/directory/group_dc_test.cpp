// Group membership against the test DC: Add and Remove take effect at once, Members and Groups
// are complete, also for a group far larger than one answer's worth of values.

#include <gtest/gtest.h>

#include <chrono>
#include <set>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

class Groups : public DcTest {
  protected:
    static std::set<std::string> Dns(const DirResult<std::vector<DirObject>>& objects) {
        std::set<std::string> dns;
        for (const auto& o : objects.value_or({})) dns.insert(o.DN());
        return dns;
    }
};

TEST_F(Groups, AddAndRemoveNeedNoSetInfo) {
    DirObject g = ou().Make("group", "CN=g");
    ou().Make("user", "CN=u1");
    ou().Make("user", "CN=u2");
    const std::string u1 = ou().Path("CN=u1"), u2 = ou().Path("CN=u2");
    ASSERT_TRUE(g.Add(u1).ok());
    ASSERT_TRUE(g.Add(u2).ok());
    // The group's own cache follows its own changes.
    EXPECT_EQ(g.GetEx("member").value_or({}).size(), 2u);

    auto members = ou().Bind("CN=g").Members();
    EXPECT_EQ(Dns(members), (std::set<std::string>{DnFromPath(u1), DnFromPath(u2)}));
    // What callers read to rebuild a member's path: cn and Parent.
    for (auto& m : members.value_or({})) {
        EXPECT_EQ("CN=" + m.Get("cn").value_or("?") + "," + ParentDn(m.DN()), m.DN());
        EXPECT_EQ(m.Parent(), "LDAP://orindc.orin.test/" + ou().Dn());
    }

    // Adding a member twice, or removing one that isn't there, is refused.
    EXPECT_FALSE(g.Add(u1).ok());
    ASSERT_TRUE(g.Remove(u1).ok());
    EXPECT_FALSE(g.Remove(u1).ok());
    EXPECT_FALSE(g.Add(ou().Path("CN=absent")).ok());
    EXPECT_EQ(Dns(ou().Bind("CN=g").Members()), std::set<std::string>{DnFromPath(u2)});
    auto none = ou().Make("group", "CN=empty").Members();
    EXPECT_TRUE(none.ok() && none->empty());
}

TEST_F(Groups, GroupsOfAUserAreTheDirectOnes) {
    DirObject outer = ou().Make("group", "CN=outer");
    DirObject inner = ou().Make("group", "CN=inner");
    ou().Make("user", "CN=member");
    ASSERT_TRUE(outer.Add(ou().Path("CN=member")).ok());
    ASSERT_TRUE(inner.Add(ou().Path("CN=member")).ok());
    ASSERT_TRUE(outer.Add(ou().Path("CN=inner")).ok());

    auto groups = ou().Bind("CN=member").Groups();
    EXPECT_EQ(Dns(groups), (std::set<std::string>{outer.DN(), inner.DN()}));
    for (auto& g : groups.value_or({})) EXPECT_EQ(g.Class(), "group");
    auto none = ou().Make("user", "CN=lonely").Groups();
    ASSERT_TRUE(none.ok());
    EXPECT_TRUE(none->empty());
}

// More members than one range of a Windows DC holds (1,500 values), so that a reader that
// stopped at the first range would miss some. Samba 4.17 gives every value of a plain read and
// answers a range option ("member;range=0-*") with no attribute at all; Members works with both.
// Building the group costs one add per contact: the benchmarks, not the tests, go to the sizes
// of real domains.
TEST_F(Groups, MoreMembersThanOneRangeAllComeBack) {
    constexpr int kMembers = 1600;
    auto& conn = *gSession.Connection;
    std::vector<std::string> dns;
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kMembers; ++i) {
        std::string dn = "CN=m" + std::to_string(i) + "," + ou().Dn();
        auto status = conn.Add(dn, {{platform::LdapMod::Op::Add, "objectClass", {"contact"}}});
        ASSERT_TRUE(status.ok()) << status.message;
        dns.push_back(dn);
    }
    DirObject g = ou().Make("group", "CN=big");
    for (size_t i = 0; i < dns.size(); i += 1000) {
        std::vector<std::string> batch(dns.begin() + i,
                                       dns.begin() + std::min(dns.size(), i + 1000));
        auto status =
            conn.Modify(g.DN(), {{platform::LdapMod::Op::Add, "member", std::move(batch)}});
        ASSERT_TRUE(status.ok()) << status.message;
    }
    RecordProperty(
        "build_seconds",
        std::to_string(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count()));

    DirObject big = ou().Bind("CN=big");
    EXPECT_EQ(Dns(big.Members()), std::set<std::string>(dns.begin(), dns.end()));
    EXPECT_EQ(big.GetEx("member").value_or({}).size(), size_t(kMembers));

    // A member is found and removed like in a small group.
    ASSERT_TRUE(big.Remove("LDAP://" + dns[1234]).ok());
    EXPECT_EQ(ou().Bind("CN=big").Members().value_or({}).size(), size_t(kMembers - 1));
}

}  // namespace
}  // namespace orin::test
