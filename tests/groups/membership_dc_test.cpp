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
    // Letters and digits of the name only, as account names refuse punctuation.
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

    DirObject Make(std::string_view cls, std::string_view cn, int64_t groupType = 0) {
        auto created = gSession.RootObject.Create(cls, ou().Relative("CN=" + std::string(cn)));
        EXPECT_TRUE(created.ok()) << created.status().message;
        if (!created.ok()) return {};
        created->Put("sAMAccountName", Sam(cn));
        if (cls == "group") created->Put("groupType", std::to_string(groupType));
        DirStatus status = created->SetInfo();
        EXPECT_TRUE(status.ok()) << cn << ": " << status.message;
        DirObject bound;
        EXPECT_TRUE(BindObject(PathOf(cn), bound)) << cn;
        return bound;
    }

    DirObject Fresh(std::string_view cn) {
        DirObject object;
        EXPECT_TRUE(BindObject(PathOf(cn), object)) << cn;
        return object;
    }

    void AddTo(DirObject& group, std::string_view memberCn) {
        DirStatus status = group.Add(PathOf(memberCn));
        ASSERT_TRUE(status.ok()) << memberCn << ": " << status.message;
    }
};

TEST_F(MembershipTest, ScopeAndKindOfEveryGroupType) {
    struct Case {
        const char* cn;
        int64_t groupType;
        int16_t scope;
        bool security;
    };
    const Case cases[] = {
        {"SecLocal", -2147483644, kScopeDomainLocal, true},
        {"SecGlobal", -2147483646, kScopeGlobal, true},
        {"SecUniv", -2147483640, kScopeUniversal, true},
        {"DistLocal", 4, kScopeDomainLocal, false},
        {"DistGlobal", 2, kScopeGlobal, false},
        {"DistUniv", 8, kScopeUniversal, false},
    };
    for (const Case& c : cases) {
        DirObject group = Make("group", c.cn, c.groupType);
        EXPECT_EQ(GroupScope(group).value_or(-1), c.scope) << c.cn;
        EXPECT_EQ(IsSecurityGroup(group).value_or(!c.security), c.security) << c.cn;
    }
    // A user has no groupType: both fail, and the engine's handler takes over.
    DirObject user = Make("user", "NotAGroup");
    EXPECT_FALSE(GroupScope(user).ok());
    EXPECT_FALSE(IsSecurityGroup(user).ok());
}

TEST_F(MembershipTest, MemberOfWithNoneOneAndSeveralValues) {
    DirObject first = Make("group", "First", 2);
    DirObject second = Make("group", "Second", 2);
    Make("user", "Joiner");
    std::string firstPath = PathOf("First");

    DirObject none = Fresh("Joiner");
    EXPECT_FALSE(IsInMemberOf(none, firstPath));
    EXPECT_EQ(CountMemberOf(none), 0);

    AddTo(first, "Joiner");
    DirObject one = Fresh("Joiner");
    ASSERT_TRUE(one.Get("memberof").ok()) << "one value reads as a string";
    EXPECT_TRUE(IsInMemberOf(one, ToLowerAscii(firstPath)));
    EXPECT_FALSE(IsInMemberOf(one, PathOf("Second")));
    EXPECT_EQ(CountMemberOf(one), 1);

    AddTo(second, "Joiner");
    DirObject two = Fresh("Joiner");
    ASSERT_EQ(two.Get("memberof").status().code, kDirTypeMismatch) << "two values read as a list";
    EXPECT_TRUE(IsInMemberOf(two, ToUpperAscii(firstPath)));
    EXPECT_TRUE(IsInMemberOf(two, PathOf("Second")));
    EXPECT_FALSE(IsInMemberOf(two, PathOf("Joiner")));
    EXPECT_EQ(CountMemberOf(two), 2);
}

TEST_F(MembershipTest, RemoveFromAllGroupsReportsDoneFailedAndNothingToDo) {
    DirObject first = Make("group", "First", 2);
    DirObject second = Make("group", "Second", 8);
    Make("user", "Leaver");
    Make("user", "Other");

    DirObject lonely = Fresh("Leaver");
    EXPECT_EQ(RemoveFromAllGroups(lonely, PathOf("Leaver")), kNoGroupsToLeave);

    AddTo(first, "Leaver");
    AddTo(second, "Leaver");
    AddTo(second, "Other");

    // Asked to remove "Other", which is in Second only: First refuses, and the walk still
    // reaches Second and takes "Other" out of it.
    DirObject leaver = Fresh("Leaver");
    EXPECT_EQ(RemoveFromAllGroups(leaver, PathOf("Other")), kRemoveFromSomeFailed);
    DirObject secondNow = Fresh("Second");
    EXPECT_FALSE(IsMember(secondNow, PathOf("Other")));
    EXPECT_TRUE(IsMember(secondNow, PathOf("Leaver")));

    leaver = Fresh("Leaver");
    EXPECT_EQ(RemoveFromAllGroups(leaver, PathOf("Leaver")), kRemovedFromAll);
    DirObject gone = Fresh("Leaver");
    EXPECT_EQ(CountMemberOf(gone), 0);
}

TEST_F(MembershipTest, IsMemberComparesRebuiltPathsIgnoringCase) {
    DirObject group = Make("group", "Team", -2147483646);
    Make("user", "Mixed Case");
    Make("user", "Outsider");
    AddTo(group, "Mixed Case");

    DirObject team = Fresh("Team");
    EXPECT_TRUE(IsMember(team, PathOf("Mixed Case")));
    EXPECT_TRUE(IsMember(team, ToUpperAscii(PathOf("Mixed Case"))));
    EXPECT_TRUE(IsMember(team, ToLowerAscii(PathOf("Mixed Case"))));
    EXPECT_FALSE(IsMember(team, PathOf("Outsider")));
    // The comparison is with paths without a server part.
    EXPECT_FALSE(
        IsMember(team, "LDAP://" + gSession.DcComputerName + "/CN=Mixed Case," + ou().Dn()));
}

TEST_F(MembershipTest, RemoveAllMembersEmptiesEmptyAndFullGroups) {
    DirObject empty = Make("group", "Empty", 2);
    EXPECT_TRUE(RemoveAllMembers(empty));

    DirObject full = Make("group", "Full", 4);
    Make("group", "Nested", 4);
    Make("user", "Member1");
    Make("user", "Member2");
    // A name that needs escaping in a distinguished name.
    Make("user", "Smith\\, John");
    for (const char* cn : {"Nested", "Member1", "Member2", "Smith\\, John"}) AddTo(full, cn);

    DirObject before = Fresh("Full");
    ASSERT_EQ(before.Members()->size(), 4u);
    EXPECT_TRUE(RemoveAllMembers(before));
    DirObject after = Fresh("Full");
    ASSERT_TRUE(after.Members().ok());
    EXPECT_TRUE(after.Members()->empty());
}

TEST_F(MembershipTest, FindByAccountNameKeepsTheSearchsOrderAndItsWildcards) {
    Make("user", "Finder");
    Make("computer", "Machine");
    Make("group", "Crew", 2);

    auto user = FindByAccountName(Sam("Finder"), "user");
    ASSERT_TRUE(user.ok());
    ASSERT_EQ(user->size(), 1u);
    EXPECT_TRUE(EqualsIgnoreCase(StripServer((*user)[0]), "CN=Finder," + ou().Dn()));

    // A computer is a user too, as the directory's class chain says.
    auto machine = FindByAccountName(Sam("Machine"), "user");
    ASSERT_TRUE(machine.ok());
    EXPECT_EQ(machine->size(), 1u);
    // A user is no group.
    auto none = FindByAccountName(Sam("Finder"), "group");
    ASSERT_TRUE(none.ok());
    EXPECT_TRUE(none->empty());

    // The name goes in unescaped, so a wildcard finds every match, each once.
    auto all = FindByAccountName("*" + std::to_string(getpid()), "*");
    ASSERT_TRUE(all.ok());
    std::vector<std::string> dns;
    for (const std::string& path : *all) dns.push_back(ToUpperAscii(StripServer(path)));
    std::sort(dns.begin(), dns.end());
    EXPECT_TRUE(std::adjacent_find(dns.begin(), dns.end()) == dns.end());
    for (const char* cn : {"Finder", "Machine", "Crew"}) {
        std::string dn = ToUpperAscii("CN=" + std::string(cn) + "," + ou().Dn());
        EXPECT_TRUE(std::binary_search(dns.begin(), dns.end(), dn)) << cn;
    }
}

}  // namespace
}  // namespace orin
