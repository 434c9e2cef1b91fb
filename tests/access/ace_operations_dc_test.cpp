// The ACE and ACL operations and the trustee names against the test domain controller, each
// test in an OU of its own.
//
// Server behaviour these tests expect (seen on Samba 4.17, and what Windows does too):
// - an allow ACE written with a generic right and container-inherit comes back as two halves,
//   an inherit-only one (flags 10, or 14 with no-propagate) keeping the generic mask and an
//   effective one (flags 0) with the mask mapped (full control 0x000F01FF, read 0x00020094);
// - a DACL written without its inherited ACEs gets them back from the parent;
// - a DACL written with SE_DACL_PROTECTED keeps the inherited ACEs it was written with as
//   explicit ones;
// - the ACEs are kept in the order written.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <set>

#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Trustee.h"
#include "engines/access/AccessControl.h"
#include "engines/access/ObjectDacl.h"
#include "support/TestDc.h"

namespace orin {
namespace {

class AceOperationsTest : public test::DcTest {
  protected:
    explicit AceOperationsTest(test::ConnectMethod method = test::ConnectMethod::Remote)
        : DcTest(method) {}

    // A global security group in the test's OU; gives its account name.
    std::string MakeGroup(std::string_view cn) {
        ou().Make("group", "CN=" + std::string(cn));
        return test::UniqueSam(cn);
    }
    DirObject MakeOU(std::string_view name) {
        return ou().Make("organizationalUnit", "OU=" + std::string(name));
    }

    static std::vector<Ace> AllAces(DirObject& object) {
        auto dacl = ReadObjectDacl(object);
        EXPECT_TRUE(dacl);
        return dacl ? dacl->Aces() : std::vector<Ace>{};
    }

    static std::vector<Ace> AcesOf(DirObject& object, std::string_view account) {
        std::vector<Ace> aces;
        std::string name = TrusteeName(account);
        for (const Ace& ace : AllAces(object)) {
            if (IsAceOf(ace, name)) aces.push_back(ace);
        }
        return aces;
    }

    static Bytes Raw(DirObject& object) {
        auto bytes = object.GetBinary(kSecurityDescriptorAttribute);
        EXPECT_TRUE(bytes.ok());
        return bytes.ok() ? *bytes : Bytes{};
    }

    static uint32_t Mask(std::string_view rights) { return ParseAccessRights(rights).Number(); }
};

TEST_F(AceOperationsTest, TrusteesResolveBothWays) {
    std::string sam = MakeGroup("Readers");
    auto sid = SidForTrustee("ORIN\\" + sam);
    ASSERT_TRUE(sid);
    EXPECT_EQ(TrusteeForSid(*sid), "ORIN\\" + sam);
    EXPECT_EQ(SidForTrustee(TrusteeName(sam)), sid);  // upper-cased, as the engines ask

    auto admins = SidForTrustee("orin\\domain admins");
    ASSERT_TRUE(admins);
    EXPECT_EQ(admins->SubAuthorities.back(), 512u);
    EXPECT_EQ(TrusteeForSid(*admins), "ORIN\\Domain Admins");
    EXPECT_EQ(SidForTrustee("BUILTIN\\ADMINISTRATORS"), ParseSidString("S-1-5-32-544"));

    EXPECT_FALSE(SidForTrustee("ORIN\\nosuch" + std::to_string(getpid())));
    EXPECT_FALSE(SidForTrustee("OTHER\\" + sam));
    EXPECT_FALSE(SidForTrustee("BUILTIN\\PEPLICATOR"));
    // Replicator is built in: the directory holds it, but not as an account of the domain.
    EXPECT_FALSE(SidForTrustee("ORIN\\REPLICATOR"));
    EXPECT_EQ(TrusteeForSid(*ParseSidString("S-1-5-32-552")), "BUILTIN\\Replicator");
}

TEST_F(AceOperationsTest, CacheIsDroppedOnRequestAndOnReconnection) {
    std::string sam = MakeGroup("Cached");
    auto first = SidForTrustee("ORIN\\" + sam);
    ASSERT_TRUE(first);
    ASSERT_TRUE(gSession.RootObject.Delete("group", ou().Relative("CN=Cached")).ok());
    MakeGroup("Cached");  // the same name, a new SID

    EXPECT_EQ(SidForTrustee("ORIN\\" + sam), first);  // still the session's answer
    ClearTrusteeCache();
    auto second = SidForTrustee("ORIN\\" + sam);
    ASSERT_TRUE(second);
    EXPECT_NE(second, first);
    // A SID that no longer has an account reads as its text.
    EXPECT_EQ(TrusteeForSid(*first), first->ToString());

    ASSERT_TRUE(gSession.RootObject.Delete("group", ou().Relative("CN=Cached")).ok());
    MakeGroup("Cached");
    ASSERT_TRUE(test::ConnectTestDc(test::ConnectMethod::Remote));
    auto third = SidForTrustee("ORIN\\" + sam);
    ASSERT_TRUE(third);
    EXPECT_NE(third, second);
}

TEST_F(AceOperationsTest, FullControlToObjectAndChildrenIsStoredAsTwoHalves) {
    std::string sam = MakeGroup("Admins");
    DirObject target = MakeOU("Target");
    ASSERT_TRUE(AddAceToObject(target, sam, Mask("0"), 0, ParseInheritOption("0")));

    std::vector<Ace> aces = AcesOf(target, sam);
    ASSERT_EQ(aces.size(), 2u);
    EXPECT_TRUE(AceExists(target, sam, 0, 10));
    EXPECT_TRUE(AceExists(target, sam, 0, 0));
    EXPECT_FALSE(AceExists(target, sam, 0, 2));
    EXPECT_FALSE(AceExists(target, sam, 1, 0));
    EXPECT_TRUE(HasAceFor(target, sam));
    EXPECT_FALSE(HasInheritedAce(target, sam));

    // The compare checks read the two halves as the one entry that was written.
    for (CodedValue flags : {CodedValue(2), CodedValue(10), CodedValue::SP()})
        EXPECT_TRUE(AceFlagsMatch(target, sam, flags)) << flags.ToString();
    for (int flags : {6, 14}) EXPECT_FALSE(AceFlagsMatch(target, sam, flags)) << flags;
    EXPECT_TRUE(AceTypeMatches(target, sam, 0, 2));
    EXPECT_FALSE(AceTypeMatches(target, sam, 1, 2));
    std::string missing;
    EXPECT_TRUE(AceRightsMatch(target, sam, "0", 2, missing));
    EXPECT_TRUE(AceRightsMatch(target, sam, "1;12", 2, missing));   // within 0x000F01FF
    EXPECT_TRUE(AceRightsMatch(target, sam, "0", 10, missing));     // the generic half
    EXPECT_FALSE(AceRightsMatch(target, sam, "0;1", 10, missing));  // not GENERIC_READ itself
    EXPECT_EQ(missing, "1");
}

TEST_F(AceOperationsTest, ReadToObjectAndDirectChildrenIsStoredAsZeroAndFourteen) {
    std::string sam = MakeGroup("Readers");
    DirObject target = MakeOU("Target");
    ASSERT_TRUE(AddAceToObject(target, sam, Mask("1"), 0, ParseInheritOption("3")));
    for (int flags : {6, 14}) EXPECT_TRUE(AceFlagsMatch(target, sam, flags)) << flags;
    for (int flags : {2, 10}) EXPECT_FALSE(AceFlagsMatch(target, sam, flags)) << flags;
    std::string missing;
    EXPECT_TRUE(AceRightsMatch(target, sam, "1;5;6;10", 6, missing));
    EXPECT_FALSE(AceRightsMatch(target, sam, "1;7", 6, missing));
    EXPECT_EQ(missing, "7");
}

TEST_F(AceOperationsTest, AnUnknownAccountLeavesTheListAlone) {
    DirObject target = MakeOU("Target");
    Bytes before = Raw(target);
    EXPECT_FALSE(AddAceToObject(target, "nosuch" + std::to_string(getpid()), Mask("5"), 0, 2));
    EXPECT_FALSE(AddAceToObject(target, "Peplicator", Mask("5"), 0, 2));  // no such built-in
    EXPECT_FALSE(AddAceToObject(target, "Replicator", Mask("5"), 0, 2));  // not a domain account
    EXPECT_FALSE(AddAceToObject(target, "", Mask("5"), 0, 2));
    EXPECT_EQ(Raw(target), before);
}

TEST_F(AceOperationsTest, ANewDenyTakesEffectBeforeAllowsAndInheritedEntries) {
    std::string allowed = MakeGroup("Allowed");
    std::string denied = MakeGroup("Denied");
    DirObject target = MakeOU("Target");
    ASSERT_TRUE(AddAceToObject(target, allowed, Mask("6"), 0, CodedValue::SP()));
    ASSERT_TRUE(AddAceToObject(target, denied, Mask("7"), 1, CodedValue::SP()));

    std::vector<Ace> aces = AllAces(target);
    auto at = [&](std::string_view account) {
        std::string name = TrusteeName(account);
        return std::find_if(aces.begin(), aces.end(),
                            [&](const Ace& ace) { return IsAceOf(ace, name); }) -
               aces.begin();
    };
    ASSERT_LT(at(denied), static_cast<long>(aces.size()));
    for (long i = 0; i < at(denied); ++i) EXPECT_TRUE(aces[i].IsDeny()) << i;
    EXPECT_LT(at(denied), at(allowed));
    // Explicit entries all come before the inherited ones.
    auto firstInherited =
        std::find_if(aces.begin(), aces.end(), [](const Ace& ace) { return ace.IsInherited(); });
    EXPECT_TRUE(std::none_of(firstInherited, aces.end(),
                             [](const Ace& ace) { return !ace.IsInherited(); }));
    EXPECT_LT(at(allowed), firstInherited - aces.begin());
}

TEST_F(AceOperationsTest, OverwriteMergesIntoEachHalfAndNeedsAnInheritOption) {
    std::string sam = MakeGroup("Writers");
    DirObject target = MakeOU("Target");
    ASSERT_TRUE(AddAceToObject(target, sam, Mask("5;6"), 0, CodedValue::SP()));
    std::string missing;

    ASSERT_TRUE(OverwriteAce(target, "1", sam, Mask("7"), 0));
    std::vector<Ace> aces = AcesOf(target, sam);
    ASSERT_EQ(aces.size(), 1u);
    EXPECT_EQ(aces[0].AccessMask, 0x34u);
    EXPECT_TRUE(AceRightsMatch(target, sam, "5;6;7", CodedValue::SP(), missing));

    // An overwrite must say how the rights are inherited: "" and unknown codes fail untouched.
    Bytes before = Raw(target);
    EXPECT_FALSE(OverwriteAce(target, "", sam, Mask("8"), 0));
    EXPECT_FALSE(OverwriteAce(target, "5", sam, Mask("8"), 0));
    EXPECT_EQ(Raw(target), before);

    // "0" adds the missing inherit-only half and merges into the existing effective one.
    ASSERT_TRUE(OverwriteAce(target, "0", sam, Mask("8"), 0));
    aces = AcesOf(target, sam);
    ASSERT_EQ(aces.size(), 2u);
    EXPECT_TRUE(AceExists(target, sam, 0, 10));
    EXPECT_TRUE(AceFlagsMatch(target, sam, 2));
    EXPECT_TRUE(AceRightsMatch(target, sam, "5;6;7;8", CodedValue::SP(), missing));
    EXPECT_FALSE(AceRightsMatch(target, sam, "5", 10, missing));  // only 8 went to the new half
}

TEST_F(AceOperationsTest, RemoveAceTakesExplicitEntriesAndTheDirectoryKeepsInheritedOnes) {
    std::string sam = MakeGroup("Members");
    DirObject parent = ou().Object();
    ASSERT_TRUE(AddAceToObject(parent, sam, Mask("6"), 0, 2));  // inherited by children
    DirObject child = MakeOU("Child");
    ASSERT_TRUE(HasInheritedAce(child, sam));
    ASSERT_TRUE(AddAceToObject(child, sam, Mask("7"), 0, CodedValue::SP()));

    bool found = false;
    ASSERT_TRUE(RemoveAce(child, sam, found));
    EXPECT_TRUE(found);
    std::vector<Ace> aces = AcesOf(child, sam);
    EXPECT_FALSE(aces.empty());
    EXPECT_TRUE(
        std::all_of(aces.begin(), aces.end(), [](const Ace& a) { return a.IsInherited(); }));

    std::string other = MakeGroup("Others");
    ASSERT_TRUE(RemoveAce(child, other, found));
    EXPECT_FALSE(found);
}

TEST_F(AceOperationsTest, RemoveDefaultAclKeepsTheExceptionsAndReportsTheMissingOnes) {
    DirObject target = MakeOU("Target");
    auto inherited = [&] {
        std::vector<Ace> aces = AllAces(target);
        return std::count_if(aces.begin(), aces.end(),
                             [](const Ace& a) { return a.IsInherited(); });
    };
    long inheritedBefore = inherited();
    ASSERT_GT(inheritedBefore, 0);

    std::string notFound;
    ASSERT_TRUE(RemoveDefaultAcl(target, " Domain Admins ;System; NoSuch ;;", notFound));
    EXPECT_EQ(notFound, "NoSuch");
    std::set<std::string> kept;
    for (const Ace& ace : AllAces(target))
        if (!ace.IsInherited()) kept.insert(TrusteeOf(ace));
    EXPECT_EQ(kept, (std::set<std::string>{"NT AUTHORITY\\SYSTEM", "ORIN\\Domain Admins"}));
    EXPECT_EQ(inherited(), inheritedBefore);  // removed from the list, put back by the directory

    // Again: nothing left to remove, and the list written back is the same.
    Bytes before = Raw(target);
    ASSERT_TRUE(RemoveDefaultAcl(target, "Domain Admins;System", notFound));
    EXPECT_EQ(notFound, "");
    EXPECT_EQ(Raw(target), before);

    // Without exceptions only the inherited entries stay.
    ASSERT_TRUE(RemoveDefaultAcl(target, "", notFound));
    EXPECT_EQ(notFound, "");
    std::vector<Ace> aces = AllAces(target);
    EXPECT_EQ(static_cast<long>(aces.size()), inheritedBefore);
}

TEST_F(AceOperationsTest, BlockingInheritanceKeepsOrDropsTheCopies) {
    DirObject keep = MakeOU("Keep");
    DirObject drop = MakeOU("Drop");
    std::vector<Ace> before = AllAces(keep);
    EXPECT_FALSE(GetDaclControl(keep) & kSeDaclProtected);

    ASSERT_TRUE(SetInheritance(keep, true));
    EXPECT_TRUE(GetDaclControl(keep) & kSeDaclProtected);
    std::vector<Ace> after = AllAces(keep);
    EXPECT_EQ(after.size(), before.size());
    for (Ace ace : before) {
        ace.AceFlags &= ~kInheritedAce;
        EXPECT_NE(std::find(after.begin(), after.end(), ace), after.end()) << TrusteeOf(ace);
    }

    std::vector<Ace> explicitBefore = AllAces(drop);
    std::erase_if(explicitBefore, [](const Ace& a) { return a.IsInherited(); });
    ASSERT_TRUE(SetInheritance(drop, false));
    EXPECT_TRUE(GetDaclControl(drop) & kSeDaclProtected);
    EXPECT_EQ(AllAces(drop), explicitBefore);

    ASSERT_TRUE(ClearInheritanceBlock(drop));
    EXPECT_FALSE(GetDaclControl(drop) & kSeDaclProtected);
    EXPECT_TRUE(HasInheritedAce(drop, "Enterprise Admins"));
    // Lifting a block that was never set rewrites the descriptor and succeeds.
    DirObject never = MakeOU("Never");
    EXPECT_TRUE(ClearInheritanceBlock(never));
}

TEST_F(AceOperationsTest, UserCannotChangePasswordNeedsBothDenies) {
    DirObject user = ou().Make("user", "CN=Pat");
    EXPECT_FALSE(UserCannotChangePassword(user));
    auto addObjectAce = [&](const Sid& trustee, uint8_t type) {
        auto dacl = ReadObjectDacl(user);
        ASSERT_TRUE(dacl);
        Ace ace;
        ace.AceType = type;
        ace.AccessMask = 0x100;
        ace.Flags = kAceObjectTypePresent;
        ace.ObjectType = *ParseGuidString(kChangePasswordRightGuid);
        ace.TrusteeSid = trustee;
        InsertAce(dacl->Dacl(), ace);
        ASSERT_TRUE(dacl->Write());
    };
    addObjectAce(SelfSid(), kAccessAllowedObjectAceType);  // an allow is no lock
    addObjectAce(EveryoneSid(), kAccessDeniedObjectAceType);
    EXPECT_FALSE(UserCannotChangePassword(user));
    addObjectAce(SelfSid(), kAccessDeniedObjectAceType);
    EXPECT_TRUE(UserCannotChangePassword(user));
}

TEST_F(AceOperationsTest, AnObjectThatIsGoneFailsEveryOperation) {
    DirObject target = MakeOU("Gone");
    std::string sam = MakeGroup("Someone");
    ASSERT_TRUE(gSession.RootObject.Delete("organizationalUnit", ou().Relative("OU=Gone")).ok());
    bool found = true;
    std::string notFound, missing;
    EXPECT_FALSE(RemoveAce(target, sam, found));
    EXPECT_FALSE(found);
    EXPECT_FALSE(RemoveDefaultAcl(target, "System", notFound));
    EXPECT_FALSE(AddAceToObject(target, sam, Mask("5"), 0, 2));
    EXPECT_FALSE(MergeAceMask(target, sam, Mask("5"), 0, 2));
    EXPECT_FALSE(OverwriteAce(target, "0", sam, Mask("5"), 0));
    EXPECT_FALSE(SetInheritance(target, true));
    EXPECT_FALSE(ClearInheritanceBlock(target));
    EXPECT_EQ(GetDaclControl(target), 0);
    EXPECT_FALSE(HasAceFor(target, "System"));
    EXPECT_FALSE(AceRightsMatch(target, "System", "5;6", 2, missing));
    EXPECT_EQ(missing, "5");
}

// The same cycle under the logged-on user's Kerberos identity, where the paths carry no server.
class AceOperationsLocalTest : public AceOperationsTest {
  protected:
    AceOperationsLocalTest() : AceOperationsTest(test::ConnectMethod::Local) {}
};

TEST_F(AceOperationsLocalTest, AddAndCompareWithKerberos) {
    std::string sam = MakeGroup("Readers");
    DirObject target = MakeOU("Target");
    ASSERT_TRUE(AddAceToObject(target, sam, Mask("1"), 1, ParseInheritOption("2")));
    EXPECT_TRUE(AceFlagsMatch(target, sam, 10));
    EXPECT_TRUE(AceTypeMatches(target, sam, 1, 10));
    std::string missing;
    EXPECT_TRUE(AceRightsMatch(target, sam, "1", 10, missing));
    bool found = false;
    ASSERT_TRUE(RemoveAce(target, sam, found));
    EXPECT_TRUE(found);
    EXPECT_FALSE(HasAceFor(target, sam));
}

}  // namespace
}  // namespace orin
