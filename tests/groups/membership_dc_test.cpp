// Group scopes, membership tests and clearing, and searches by account name, against the test
// domain controller.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/GroupHelpers.h"
#include "directory/Paths.h"
#include "engines/user/AccountFlags.h"
#include "platform/Strings.h"
#include "support/TestDc.h"

namespace orin {
namespace {

class MembershipTest : public test::DcTest {
  protected:
    // Account names are unique in the whole domain: the process id keeps parallel runs apart.
    static std::string Sam(std::string_view cn) {
        std::string sam;
        for (char c : cn) {
            if (std::isalnum(static_cast<unsigned char>(c)) && sam.size() < 10) sam += c;
        }
        return sam + std::to_string(getpid());
    }

    std::string PathOf(std::string_view cn) {
        return "LDAP://CN=" + std::string(cn) + "," + ou().Dn();
    }

    DirObject Fresh(std::string_view cn) {
        DirObject object;
        EXPECT_TRUE(BindObject(PathOf(cn), object)) << cn;
        return object;
    }

    DirObject Make(std::string_view cls, std::string_view cn, int64_t groupType = 2) {
        auto created = gSession.RootObject.Create(cls, ou().Relative("CN=" + std::string(cn)));
        EXPECT_TRUE(created.ok()) << created.status().message;
        if (!created.ok()) return {};
        created->Put("sAMAccountName", Sam(cn));
        if (cls == "group") created->Put("groupType", std::to_string(groupType));
        EXPECT_TRUE(created->SetInfo().ok()) << cn;
        return Fresh(cn);
    }

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
        DirObject group = Make("group", c.cn, c.groupType);
        EXPECT_EQ(GroupScope(group).value_or(-1), c.scope) << c.cn;
        EXPECT_EQ(IsSecurityGroup(group).value_or(c.groupType > 0), c.groupType < 0) << c.cn;
    }
    // A user has no groupType: both fail, and the engine's handler takes over.
    DirObject user = Make("user", "NotAGroup");
    EXPECT_FALSE(GroupScope(user).ok());
    EXPECT_FALSE(IsSecurityGroup(user).ok());
}

TEST_F(MembershipTest, MemberOfWithNoneOneAndSeveralValues) {
    DirObject first = Make("group", "First");
    DirObject second = Make("group", "Second");
    DirObject user = Make("user", "Joiner");
    EXPECT_FALSE(IsInMemberOf(user, PathOf("First")));
    EXPECT_EQ(CountMemberOf(user), 0);

    AddTo(first, "Joiner");
    user = Fresh("Joiner");
    ASSERT_TRUE(user.Get("memberof").ok()) << "one value reads as a string";
    EXPECT_TRUE(IsInMemberOf(user, ToLowerAscii(PathOf("First"))));
    EXPECT_FALSE(IsInMemberOf(user, PathOf("Second")));
    EXPECT_EQ(CountMemberOf(user), 1);

    AddTo(second, "Joiner");
    user = Fresh("Joiner");
    ASSERT_EQ(user.Get("memberof").status().code, kDirTypeMismatch) << "two read as a list";
    EXPECT_TRUE(IsInMemberOf(user, ToUpperAscii(PathOf("First"))));
    EXPECT_TRUE(IsInMemberOf(user, PathOf("Second")));
    EXPECT_EQ(CountMemberOf(user), 2);
}

TEST_F(MembershipTest, RemoveFromAllGroupsReportsDoneFailedAndNothingToDo) {
    DirObject first = Make("group", "First");
    DirObject second = Make("group", "Second", 8);
    DirObject leaver = Make("user", "Leaver");
    Make("user", "Other");
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
    leaver = Fresh("Leaver");
    EXPECT_EQ(CountMemberOf(leaver), 0);
}

TEST_F(MembershipTest, IsMemberComparesRebuiltPathsIgnoringCase) {
    DirObject team = Make("group", "Team");
    Make("user", "Mixed Case");
    Make("user", "Outsider");
    AddTo(team, "Mixed Case");
    EXPECT_TRUE(IsMember(team, ToUpperAscii(PathOf("Mixed Case"))));
    EXPECT_TRUE(IsMember(team, ToLowerAscii(PathOf("Mixed Case"))));
    EXPECT_FALSE(IsMember(team, PathOf("Outsider")));
    // The system's paths carry no server part; one with a server part is another path.
    EXPECT_FALSE(
        IsMember(team, "LDAP://" + gSession.DcComputerName + "/CN=Mixed Case," + ou().Dn()));
}

TEST_F(MembershipTest, RemoveAllMembersEmptiesEmptyAndFullGroups) {
    DirObject empty = Make("group", "Empty");
    EXPECT_TRUE(RemoveAllMembers(empty));

    DirObject full = Make("group", "Full", 4);
    // A nested group, users, and a name that needs escaping in a distinguished name.
    for (const char* cn : {"Nested", "Member1", "Smith\\, John"}) {
        Make(cn == std::string("Nested") ? "group" : "user", cn, 4);
        AddTo(full, cn);
    }
    full = Fresh("Full");
    ASSERT_EQ(full.Members()->size(), 3u);
    EXPECT_TRUE(RemoveAllMembers(full));
    full = Fresh("Full");
    EXPECT_TRUE(full.Members().ok() && full.Members()->empty());
}

TEST_F(MembershipTest, FindByAccountNameKeepsClassesAndWildcards) {
    Make("user", "Finder");
    Make("computer", "Machine");
    Make("group", "Crew");
    auto upper = [](const std::string& path) { return ToUpperAscii(StripServer(path)); };

    auto user = FindByAccountName(Sam("Finder"), "user");
    ASSERT_TRUE(user.ok());
    EXPECT_EQ(user->size(), 1u);
    EXPECT_EQ(upper(user->at(0)), ToUpperAscii("CN=Finder," + ou().Dn()));
    // A computer is a user too, as the directory's class chain says; a user is no group.
    EXPECT_EQ(FindByAccountName(Sam("Machine"), "user")->size(), 1u);
    EXPECT_TRUE(FindByAccountName(Sam("Finder"), "group")->empty());

    // The name goes in unescaped, so a wildcard finds every match, each once.
    auto all = FindByAccountName("*" + std::to_string(getpid()), "*");
    ASSERT_TRUE(all.ok());
    std::vector<std::string> dns;
    for (const std::string& path : *all) dns.push_back(upper(path));
    std::sort(dns.begin(), dns.end());
    EXPECT_TRUE(std::adjacent_find(dns.begin(), dns.end()) == dns.end());
    for (const char* cn : {"Finder", "Machine", "Crew"}) {
        EXPECT_TRUE(std::binary_search(dns.begin(), dns.end(),
                                       ToUpperAscii("CN=" + std::string(cn) + "," + ou().Dn())))
            << cn;
    }
}

}  // namespace
}  // namespace orin
