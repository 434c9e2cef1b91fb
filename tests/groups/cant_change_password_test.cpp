// The deny pair behind "user cannot change password", on descriptors built here.

#include <gtest/gtest.h>

#include "directory/WinNTUser.h"

namespace orin {
namespace {

Ace AllowAll(const Sid& trustee, uint8_t flags = 0) {
    Ace ace;
    ace.AceType = kAccessAllowedAceType;
    ace.AceFlags = flags;
    ace.AccessMask = 0x000F01FF;
    ace.TrusteeSid = trustee;
    return ace;
}

Ace DenyChangePassword(const Sid& trustee) {
    Ace ace;
    ace.AceType = kAccessDeniedObjectAceType;
    ace.AccessMask = 0x100;
    ace.Flags = kAceObjectTypePresent;
    ace.ObjectType = *ParseGuidString(kChangePasswordRightGuid);
    ace.TrusteeSid = trustee;
    return ace;
}

SecurityDescriptor Typical() {
    SecurityDescriptor sd;
    sd.Control = kSeSelfRelative | kSeDaclPresent;
    Sid admins = *ParseSidString("S-1-5-32-544");
    Acl acl;
    acl.AclRevision = kAclRevision;
    acl.Aces = {DenyChangePassword(*ParseSidString("S-1-5-21-1-2-3-1105")), AllowAll(admins),
                AllowAll(admins, kInheritedAce)};
    sd.Dacl = acl;
    return sd;
}

TEST(CantChangePasswordTest, BothHalvesAreNeeded) {
    SecurityDescriptor sd = Typical();
    EXPECT_FALSE(HasCantChangePasswordPair(sd));
    sd.Dacl->Aces.push_back(DenyChangePassword(EveryoneSid()));
    EXPECT_FALSE(HasCantChangePasswordPair(sd));
    sd.Dacl->Aces.push_back(DenyChangePassword(SelfSid()));
    EXPECT_TRUE(HasCantChangePasswordPair(sd));

    // An inherited deny, or one on another right, is not the pair.
    SecurityDescriptor other = Typical();
    Ace inherited = DenyChangePassword(EveryoneSid());
    inherited.AceFlags = kInheritedAce;
    Ace wrongRight = DenyChangePassword(SelfSid());
    wrongRight.ObjectType = *ParseGuidString("{00299570-246D-11D0-A768-00AA006E0529}");
    other.Dacl->Aces.push_back(inherited);
    other.Dacl->Aces.push_back(wrongRight);
    EXPECT_FALSE(HasCantChangePasswordPair(other));
}

TEST(CantChangePasswordTest, OnPutsThePairAmongTheExplicitDenies) {
    SecurityDescriptor sd = Typical();
    SetCantChangePasswordPair(sd, true);
    ASSERT_TRUE(HasCantChangePasswordPair(sd));
    const std::vector<Ace>& aces = sd.Dacl->Aces;
    ASSERT_EQ(aces.size(), 5u);
    // Canonical order: the old deny, the two new denies, the explicit allow, the inherited one.
    EXPECT_TRUE(aces[0].IsDeny() && aces[1].IsDeny() && aces[2].IsDeny());
    EXPECT_EQ(aces[3], AllowAll(*ParseSidString("S-1-5-32-544")));
    EXPECT_TRUE(aces[4].IsInherited());
    EXPECT_EQ(sd.Dacl->AclRevision, kAclRevisionDs);

    // Setting it twice adds nothing.
    SetCantChangePasswordPair(sd, true);
    EXPECT_EQ(sd.Dacl->Aces.size(), 5u);

    // The result survives the binary form.
    std::optional<std::vector<uint8_t>> bytes = BuildSecurityDescriptor(sd);
    ASSERT_TRUE(bytes);
    std::optional<SecurityDescriptor> back = ParseSecurityDescriptor(*bytes);
    ASSERT_TRUE(back);
    EXPECT_TRUE(HasCantChangePasswordPair(*back));
}

TEST(CantChangePasswordTest, OffRemovesOnlyThePair) {
    SecurityDescriptor sd = Typical();
    SetCantChangePasswordPair(sd, true);
    SetCantChangePasswordPair(sd, false);
    EXPECT_FALSE(HasCantChangePasswordPair(sd));
    EXPECT_EQ(sd.Dacl->Aces, Typical().Dacl->Aces);
}

TEST(CantChangePasswordTest, ADescriptorWithoutDaclGetsOne) {
    SecurityDescriptor sd;
    SetCantChangePasswordPair(sd, true);
    ASSERT_TRUE(sd.Dacl);
    EXPECT_TRUE(sd.Control & kSeDaclPresent);
    EXPECT_TRUE(HasCantChangePasswordPair(sd));
}

}  // namespace
}  // namespace orin
