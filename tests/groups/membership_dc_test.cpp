// Group scopes, membership tests and clearing, and searches by account name, against the test
// domain controller.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/GroupHelpers.h"
#include "directory/Paths.h"
#include "engines/user/AccountFlags.h"
#include "platform/LdapConnection.h"
#include "platform/Strings.h"
#include "support/TestDc.h"

namespace orin {
namespace {

using test::UniqueSam;

class MembershipTest : public test::DcTest {
  protected:
    DirObject Group(std::string_view cn, int64_t groupType = 2) {
        return ou().Make("group", "CN=" + std::string(cn),
                         {{"groupType", std::to_string(groupType)}});
    }
    DirObject User(std::string_view cn) { return ou().Make("user", "CN=" + std::string(cn)); }
    DirObject Fresh(std::string_view cn) { return ou().Bind("CN=" + std::string(cn)); }
    std::string PathOf(std::string_view cn) { return ou().Path("CN=" + std::string(cn)); }
    void AddTo(DirObject& group, std::string_view memberCn) {
        ASSERT_TRUE(group.Add(PathOf(memberCn)).ok()) << memberCn;
    }
};

TEST_F(MembershipTest, ScopeAndKindOfEveryGroupType) {
    struct Case {
        const char* cn;
        int64_t groupType;
        int16_t scope;
    };
    const Case cases[] = {{"SecLocal", -2147483644, kScopeDomainLocal},
                          {"SecGlobal", -2147483646, kScopeGlobal},
                          {"SecUniv", -2147483640, kScopeUniversal},
                          {"DistLocal", 4, kScopeDomainLocal},
                          {"DistGlobal", 2, kScopeGlobal},
                          {"DistUniv", 8, kScopeUniversal}};
    for (const Case& c : cases) {
        DirObject group = Group(c.cn, c.groupType);
        EXPECT_EQ(GroupScope(group).value_or(-1), c.scope) << c.cn;
        EXPECT_EQ(IsSecurityGroup(group).value_or(c.groupType > 0), c.groupType < 0) << c.cn;
    }
    // A user has no groupType: both fail, and the engine's handler takes over.
    DirObject user = User("NotAGroup");
    EXPECT_FALSE(GroupScope(user).ok());
    EXPECT_FALSE(IsSecurityGroup(user).ok());
}

// One memberof value reads as a string, several as a list: the helpers take both.
TEST_F(MembershipTest, MemberOfWithNoneOneAndSeveralValues) {
    DirObject first = Group("First");
    DirObject second = Group("Second");
    DirObject user = User("Joiner");
    EXPECT_FALSE(IsInMemberOf(user, PathOf("First")));
    EXPECT_EQ(CountMemberOf(user), 0);

    AddTo(first, "Joiner");
    user = Fresh("Joiner");
    ASSERT_TRUE(user.Get("memberof").ok());
    EXPECT_TRUE(IsInMemberOf(user, ToLowerAscii(PathOf("First"))));
    EXPECT_FALSE(IsInMemberOf(user, PathOf("Second")));
    EXPECT_EQ(CountMemberOf(user), 1);

    AddTo(second, "Joiner");
    user = Fresh("Joiner");
    ASSERT_EQ(user.Get("memberof").status().code, kDirTypeMismatch);
    EXPECT_TRUE(IsInMemberOf(user, ToUpperAscii(PathOf("First"))));
    EXPECT_TRUE(IsInMemberOf(user, PathOf("Second")));
    EXPECT_EQ(CountMemberOf(user), 2);
}

TEST_F(MembershipTest, RemoveFromAllGroupsReportsDoneFailedAndNothingToDo) {
    DirObject first = Group("First");
    DirObject second = Group("Second", 8);
    DirObject leaver = User("Leaver");
    User("Other");
    EXPECT_EQ(RemoveFromAllGroups(leaver, PathOf("Leaver")), kNoGroupsToLeave);

    AddTo(first, "Leaver");
    AddTo(second, "Leaver");
    AddTo(second, "Other");
    // Asked to remove "Other", which is in Second only: First refuses, and the walk still
    // reaches Second and takes "Other" out of it.
    leaver = Fresh("Leaver");
    EXPECT_EQ(RemoveFromAllGroups(leaver, PathOf("Other")), kRemoveFromSomeFailed);
    second = Fresh("Second");
    EXPECT_FALSE(IsMember(second, PathOf("Other")));
    EXPECT_TRUE(IsMember(second, PathOf("Leaver")));

    EXPECT_EQ(RemoveFromAllGroups(leaver, PathOf("Leaver")), kRemovedFromAll);
    EXPECT_EQ(CountMemberOf(leaver = Fresh("Leaver")), 0);
}

TEST_F(MembershipTest, IsMemberComparesRebuiltPathsIgnoringCase) {
    DirObject team = Group("Team");
    User("Mixed Case");
    User("Outsider");
    AddTo(team, "Mixed Case");
    EXPECT_TRUE(IsMember(team, ToUpperAscii(PathOf("Mixed Case"))));
    EXPECT_TRUE(IsMember(team, ToLowerAscii(PathOf("Mixed Case"))));
    EXPECT_FALSE(IsMember(team, PathOf("Outsider")));
    // The system's paths carry no server part; one with a server part is another path.
    EXPECT_FALSE(
        IsMember(team, "LDAP://" + gSession.DcComputerName + "/CN=Mixed Case," + ou().Dn()));
}

TEST_F(MembershipTest, RemoveAllMembersEmptiesEmptyAndFullGroups) {
    DirObject empty = Group("Empty");
    EXPECT_TRUE(RemoveAllMembers(empty));

    DirObject full = Group("Full", 4);
    // A nested group, a user, and a name that needs escaping in a distinguished name.
    Group("Nested", 4);
    User("Member1");
    User("Smith\\, John");
    for (const char* cn : {"Nested", "Member1", "Smith\\, John"}) AddTo(full, cn);
    ASSERT_EQ(Fresh("Full").Members().value_or({}).size(), 3u);
    EXPECT_TRUE(RemoveAllMembers(full = Fresh("Full")));
    auto left = Fresh("Full").Members();
    EXPECT_TRUE(left.ok() && left->empty());
}

// A group of some hundred members (FiveThousandMembersAllComeBack in tests/directory reads
// thousands): its member groups and their scopes come from one search, membership is found at
// the end of the list, and clearing takes every member.
TEST_F(MembershipTest, LargeGroupsMemberGroupsMembershipAndClearing) {
    constexpr int kContacts = 300;
    auto& connection = *gSession.Connection;
    std::vector<std::string> dns;
    for (int i = 0; i < kContacts; ++i) {
        dns.push_back("CN=c" + std::to_string(i) + "," + ou().Dn());
        auto added =
            connection.Add(dns.back(), {{platform::LdapMod::Op::Add, "objectClass", {"contact"}}});
        ASSERT_TRUE(added.ok()) << added.message;
    }
    Group("Local", -2147483644);
    Group("Univ", 8);
    dns.push_back("CN=Local," + ou().Dn());
    dns.push_back("CN=Univ," + ou().Dn());
    DirObject big = Group("Big", 4);
    ASSERT_TRUE(connection.Modify(big.DN(), {{platform::LdapMod::Op::Add, "member", dns}}).ok());

    auto groups = MemberGroups(big);
    ASSERT_TRUE(groups.ok());
    std::vector<std::pair<std::string, int16_t>> found;
    for (const ScopedGroup& g : *groups) found.emplace_back(ToUpperAscii(g.path), g.scope);
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (std::vector<std::pair<std::string, int16_t>>{
                         {ToUpperAscii(PathOf("Local")), kScopeDomainLocal},
                         {ToUpperAscii(PathOf("Univ")), kScopeUniversal}}));
    DirObject univ = Fresh("Univ");
    auto holders = GroupsHolding(univ);
    ASSERT_TRUE(holders.ok());
    ASSERT_EQ(holders->size(), 1u);
    EXPECT_EQ(holders->front().scope, kScopeDomainLocal);

    EXPECT_TRUE(IsMember(big, PathOf("c" + std::to_string(kContacts - 1))));
    EXPECT_FALSE(IsMember(big, PathOf("Big")));
    EXPECT_TRUE(RemoveAllMembers(big));
    EXPECT_TRUE(Fresh("Big").Members().value_or({DirObject()}).empty());
}

TEST_F(MembershipTest, FindByAccountNameKeepsClassesAndWildcards) {
    User("Finder");
    ou().Make("computer", "CN=Machine");
    Group("Crew");
    auto upper = [](const std::string& path) { return ToUpperAscii(StripServer(path)); };

    auto user = FindByAccountName(UniqueSam("Finder"), "user");
    ASSERT_TRUE(user.ok());
    ASSERT_EQ(user->size(), 1u);
    EXPECT_EQ(upper(user->at(0)), upper(PathOf("Finder")));
    // A computer is a user too, as the directory's class chain says; a user is no group.
    EXPECT_EQ(FindByAccountName(UniqueSam("Machine") + "$", "user").value_or({}).size(), 1u);
    auto noGroup = FindByAccountName(UniqueSam("Finder"), "group");
    EXPECT_TRUE(noGroup.ok() && noGroup->empty());
    // The name goes in unescaped: a parenthesis breaks the filter, and that is an error.
    EXPECT_FALSE(FindByAccountName("a(b", "user").ok());

    // A wildcard finds every match, each once.
    auto all = FindByAccountName("*" + std::to_string(getpid()) + "*", "*");
    ASSERT_TRUE(all.ok());
    std::vector<std::string> found;
    for (const std::string& path : *all) found.push_back(upper(path));
    std::sort(found.begin(), found.end());
    EXPECT_TRUE(std::adjacent_find(found.begin(), found.end()) == found.end());
    for (const char* cn : {"Finder", "Machine", "Crew"})
        EXPECT_TRUE(std::binary_search(found.begin(), found.end(), upper(PathOf(cn)))) << cn;
}

}  // namespace
}  // namespace orin
