// The CSV codes of access control, trustee names, the well-known SID table and where a new ACE
// goes in a list: everything that needs no directory.

#include <gtest/gtest.h>

#include "directory/DirectorySession.h"
#include "directory/Trustee.h"
#include "engines/access/AccessCodes.h"
#include "engines/access/ObjectDacl.h"

namespace orin {
namespace {

std::string Rights(std::string_view text) {
    return ParseAccessRights(text).ToString();
}
std::string Stored(std::string_view text) {
    return ParseAccessRightsStored(text).ToString();
}

TEST(AccessRightsTest, CodesAreOredIntoOneMask) {
    EXPECT_EQ(ParseAccessRights("1;5"), CodedValue(0x80000004));
    EXPECT_EQ(ParseAccessRights("0"), CodedValue(0x10000000));
    EXPECT_EQ(ParseAccessRights("2"), CodedValue(0x40000000));
    EXPECT_EQ(ParseAccessRights("3;4;5;6;7;8;9;10;11;12;13;14"), CodedValue(0x000F017F));
    EXPECT_EQ(ParseAccessRights(" 8 ; 10 "), CodedValue(0x00030000));
    EXPECT_EQ(ParseAccessRights("5;5"), CodedValue(4));
    // Numbers are read with sign and fraction; a fraction rounds half to even.
    EXPECT_EQ(ParseAccessRights("+3"), CodedValue(1));
    EXPECT_EQ(ParseAccessRights("2.5"), CodedValue(0x40000000));  // 2
    EXPECT_EQ(ParseAccessRights("3.5"), CodedValue(2));           // 4
    EXPECT_EQ(ParseAccessRights("3.51"), CodedValue(2));          // 4
    EXPECT_EQ(ParseAccessRights("-0"), CodedValue(0x10000000));
}

TEST(AccessRightsTest, AnythingUnusableIsError) {
    for (const char* text : {"", "   ", "1;", ";1", "1;;2", "15", "15;1", "1;15", "-1", "a", "1a",
                             "1 2", "0x1", "14.6", "99999999999999999999999999", "１"}) {
        EXPECT_EQ(Rights(text), "ERROR") << '"' << text << '"';
        EXPECT_EQ(Stored(text), "ERROR") << '"' << text << '"';
    }
}

TEST(AccessRightsTest, StoredMasksAreTheExpandedGenericRights) {
    EXPECT_EQ(ParseAccessRightsStored("0"), CodedValue(0x000F01FF));
    EXPECT_EQ(ParseAccessRightsStored("1"), CodedValue(0x00020094));
    EXPECT_EQ(ParseAccessRightsStored("2"), CodedValue(0x00000028));
    EXPECT_EQ(ParseAccessRightsStored("1;2;14"), CodedValue(0x000201BC));
    for (int code = 3; code <= 14; ++code) {
        std::string text = std::to_string(code);
        EXPECT_EQ(ParseAccessRightsStored(text), ParseAccessRights(text)) << code;
    }
}

TEST(InheritOptionTest, CodesGiveAceFlagsOrTheSentinels) {
    EXPECT_EQ(ParseInheritOption("").ToString(), "2");
    EXPECT_EQ(ParseInheritOption("0").ToString(), "2");
    EXPECT_EQ(ParseInheritOption("1").ToString(), "SP");
    EXPECT_TRUE(ParseInheritOption("1").IsSP());
    EXPECT_EQ(ParseInheritOption("2").ToString(), "10");
    EXPECT_EQ(ParseInheritOption("3").ToString(), "6");
    EXPECT_EQ(ParseInheritOption("4").ToString(), "14");
    for (const char* text : {"5", "00", "01", "-1", "a", "SP", "1;2"}) {
        EXPECT_TRUE(ParseInheritOption(text).IsError()) << text;
        EXPECT_EQ(ParseInheritOption(text).ToString(), "ERROR") << text;
    }
}

TEST(PermitOrDenyTest, AllowDenyOrError) {
    EXPECT_EQ(ParsePermitOrDeny(""), CodedValue(0));
    EXPECT_EQ(ParsePermitOrDeny("p"), CodedValue(0));
    EXPECT_EQ(ParsePermitOrDeny("P"), CodedValue(0));
    EXPECT_EQ(ParsePermitOrDeny("d"), CodedValue(1));
    EXPECT_TRUE(ParsePermitOrDeny("X").IsError());
    EXPECT_TRUE(ParsePermitOrDeny("PD").IsError());
}

class TrusteeNameTest : public ::testing::Test {
  protected:
    void SetUp() override {
        saved_ = gSession.DomainNetBIOSName;
        gSession.DomainNetBIOSName = "orin";
    }
    void TearDown() override { gSession.DomainNetBIOSName = saved_; }

  private:
    std::string saved_;
};

TEST_F(TrusteeNameTest, PrefixesByKindOfAccount) {
    EXPECT_EQ(TrusteeName(" jdoe "), "ORIN\\JDOE");
    EXPECT_EQ(TrusteeName("Domain Admins"), "ORIN\\DOMAIN ADMINS");
    EXPECT_EQ(TrusteeName("administrators"), "BUILTIN\\ADMINISTRATORS");
    EXPECT_EQ(TrusteeName("Pre-Windows 2000 Compatible Access"),
              "BUILTIN\\PRE-WINDOWS 2000 COMPATIBLE ACCESS");
    EXPECT_EQ(TrusteeName("System"), "NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(TrusteeName("authenticated users"), "NT AUTHORITY\\AUTHENTICATED USERS");
    EXPECT_EQ(TrusteeName(""), "");
    EXPECT_EQ(TrusteeName("   "), "");
    // Names outside the two lists are domain accounts, even well-known ones.
    EXPECT_EQ(TrusteeName("Everyone"), "ORIN\\EVERYONE");
    EXPECT_EQ(TrusteeName("Self"), "ORIN\\SELF");
    // The built-in Replicator group is reached as "Peplicator" only.
    EXPECT_EQ(TrusteeName("Peplicator"), "BUILTIN\\PEPLICATOR");
    EXPECT_EQ(TrusteeName("Replicator"), "ORIN\\REPLICATOR");
}

TEST(WellKnownTrusteeTest, NamesBackToSidsIgnoringCase) {
    EXPECT_EQ(WellKnownTrusteeSid("nt authority\\self"), SelfSid());
    EXPECT_EQ(WellKnownTrusteeSid("EVERYONE"), EveryoneSid());
    EXPECT_EQ(WellKnownTrusteeSid("BUILTIN\\ADMINISTRATORS"), ParseSidString("S-1-5-32-544"));
    EXPECT_FALSE(WellKnownTrusteeSid("BUILTIN\\PEPLICATOR"));
    EXPECT_FALSE(WellKnownTrusteeSid("Administrators"));  // the authority is part of the name
    // Domain accounts aren't in the table: they are looked up.
    EXPECT_FALSE(WellKnownTrusteeName(*ParseSidString("S-1-5-21-1-2-3-512")));
    EXPECT_EQ(DomainRidDefaultName(512), "Domain Admins");
}

TEST(WellKnownTrusteeTest, AWellKnownSidNeedsNoDirectory) {
    // No connection: the table answers, and an unknown domain name is simply unknown.
    auto saved = gSession.Connection;
    gSession.Connection.reset();
    EXPECT_EQ(TrusteeForSid(SelfSid()), "NT AUTHORITY\\SELF");
    EXPECT_EQ(SidForTrustee("NT AUTHORITY\\SYSTEM"), ParseSidString("S-1-5-18"));
    EXPECT_EQ(SidForTrustee("S-1-5-21-1-2-3-1105"), ParseSidString("S-1-5-21-1-2-3-1105"));
    EXPECT_FALSE(SidForTrustee("NOWHERE\\jdoe"));
    EXPECT_EQ(TrusteeForSid(*ParseSidString("S-1-5-21-9-9-9-1105")), "S-1-5-21-9-9-9-1105");
    gSession.Connection = saved;
}

Ace Entry(uint8_t type, uint8_t flags, uint32_t mask) {
    Ace ace;
    ace.AceType = type;
    ace.AceFlags = flags;
    ace.AccessMask = mask;
    ace.TrusteeSid = *ParseSidString("S-1-5-11");
    return ace;
}

// The masks tell the entries apart in these lists.
std::vector<uint32_t> Masks(const Acl& acl) {
    std::vector<uint32_t> masks;
    for (const Ace& ace : acl.Aces) masks.push_back(ace.AccessMask);
    return masks;
}

TEST(InsertAceTest, DeniesFirstThenAllowsThenInherited) {
    Acl acl;
    acl.AclRevision = kAclRevision;
    acl.Aces = {Entry(kAccessDeniedAceType, 0, 1), Entry(kAccessAllowedAceType, 0, 2),
                Entry(kAccessAllowedObjectAceType, 2, 3), Entry(kAccessAllowedAceType, 0x12, 4),
                Entry(kAccessDeniedAceType, 0x10, 5)};
    InsertAce(acl, Entry(kAccessDeniedAceType, 0, 10));
    InsertAce(acl, Entry(kAccessAllowedAceType, 2, 20));
    InsertAce(acl, Entry(kAccessDeniedObjectAceType, 0, 30));
    EXPECT_EQ(Masks(acl), (std::vector<uint32_t>{1, 10, 30, 2, 3, 20, 4, 5}));
    EXPECT_EQ(acl.AclRevision, kAclRevisionDs);  // an object ACE needs the DS revision

    Acl onlyInherited;
    onlyInherited.Aces = {Entry(kAccessAllowedAceType, 0x10, 4)};
    InsertAce(onlyInherited, Entry(kAccessAllowedAceType, 0, 20));
    InsertAce(onlyInherited, Entry(kAccessDeniedAceType, 0, 10));
    EXPECT_EQ(Masks(onlyInherited), (std::vector<uint32_t>{10, 20, 4}));

    Acl empty;
    InsertAce(empty, Entry(kAccessAllowedAceType, 0, 20));
    EXPECT_EQ(Masks(empty), (std::vector<uint32_t>{20}));
}

}  // namespace
}  // namespace orin
