// The deny pair behind "user cannot change password", on descriptors built here.

#include <gtest/gtest.h>

#include "directory/WinNTUser.h"

namespace orin {
namespace {

Ace Entry(uint8_t type, const Sid& trustee, uint8_t flags = 0) {
    Ace ace;
    ace.AceType = type;
    ace.AceFlags = flags;
    ace.AccessMask = 0x100;
    ace.TrusteeSid = trustee;
    if (type == kAccessDeniedObjectAceType) {
        ace.Flags = kAceObjectTypePresent;
        ace.ObjectType = *ParseGuidString(kChangePasswordRightGuid);
    }
    return ace;
}

// An explicit deny for someone else, an explicit allow, an inherited allow.
SecurityDescriptor Typical() {
    Sid admins = *ParseSidString("S-1-5-32-544");
    SecurityDescriptor sd;
    sd.Dacl = Acl{kAclRevision,
                  {Entry(kAccessDeniedObjectAceType, *ParseSidString("S-1-5-21-1-2-3-1105")),
                   Entry(kAccessAllowedAceType, admins),
                   Entry(kAccessAllowedAceType, admins, kInheritedAce)}};
    return sd;
}

TEST(CantChangePasswordTest, BothHalvesOnTheRightMakeThePair) {
    SecurityDescriptor sd = Typical();
    sd.Dacl->Aces.push_back(Entry(kAccessDeniedObjectAceType, EveryoneSid()));
    EXPECT_FALSE(HasCantChangePasswordPair(sd));
    // An inherited half denies as well as an own one.
    sd.Dacl->Aces.push_back(Entry(kAccessDeniedObjectAceType, SelfSid(), kInheritedAce));
    EXPECT_TRUE(HasCantChangePasswordPair(sd));
    sd.Dacl->Aces.back().ObjectType = *ParseGuidString("{00299570-246D-11D0-A768-00AA006E0529}");
    EXPECT_FALSE(HasCantChangePasswordPair(sd));
}

TEST(CantChangePasswordTest, OnGoesAmongTheExplicitDeniesAndOffTakesOnlyThePair) {
    SecurityDescriptor sd = Typical();
    SetCantChangePasswordPair(sd, true);
    SetCantChangePasswordPair(sd, true);  // a second time adds nothing
    ASSERT_TRUE(HasCantChangePasswordPair(sd));
    const std::vector<Ace>& aces = sd.Dacl->Aces;
    ASSERT_EQ(aces.size(), 5u);
    // Denies first, then the explicit allow, then the inherited one: the pair takes effect.
    EXPECT_TRUE(aces[0].IsDeny() && aces[1].IsDeny() && aces[2].IsDeny());
    EXPECT_FALSE(aces[3].IsDeny() || aces[3].IsInherited());
    EXPECT_TRUE(aces[4].IsInherited());
    EXPECT_EQ(sd.Dacl->AclRevision, kAclRevisionDs);

    std::optional<std::vector<uint8_t>> bytes = BuildSecurityDescriptor(sd);
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(HasCantChangePasswordPair(*ParseSecurityDescriptor(*bytes)));

    SetCantChangePasswordPair(sd, false);
    EXPECT_EQ(sd.Dacl->Aces, Typical().Dacl->Aces);

    // Inherited halves belong to the parent: on adds the own pair beside them, off leaves them.
    sd.Dacl->Aces.push_back(Entry(kAccessDeniedObjectAceType, EveryoneSid(), kInheritedAce));
    SetCantChangePasswordPair(sd, true);
    EXPECT_EQ(sd.Dacl->Aces.size(), 6u);
    SetCantChangePasswordPair(sd, false);
    EXPECT_EQ(sd.Dacl->Aces.size(), 4u);
}

}  // namespace
}  // namespace orin
