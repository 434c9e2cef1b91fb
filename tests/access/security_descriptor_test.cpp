// The self-relative descriptor codec, SIDs and GUIDs: descriptors made by hand and by the test
// DC (the seeds of the sd_fuzz corpus were read from it), and every kind of malformed input.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "directory/SecurityDescriptor.h"

namespace orin {
namespace {

using Bytes = std::vector<uint8_t>;

Sid S(std::string_view text) {
    return *ParseSidString(text);
}

Ace Plain(uint8_t type, uint8_t flags, uint32_t mask, std::string_view sid) {
    Ace ace;
    ace.AceType = type;
    ace.AceFlags = flags;
    ace.AccessMask = mask;
    ace.TrusteeSid = S(sid);
    return ace;
}

// Every part the codec knows: owner, group, a raw SACL, and a DACL with plain and object ACEs,
// an ACE with bytes after its SID and an ACE of a type kept raw.
SecurityDescriptor Everything() {
    SecurityDescriptor sd;
    sd.Control = kSeSelfRelative | kSeDaclPresent | kSeSaclPresent | kSeDaclProtected;
    sd.Owner = S("S-1-5-21-1305137085-861608876-3599487638-512");
    sd.Group = S("S-1-5-32-544");
    sd.Sacl = Bytes{4, 0, 8, 0, 0, 0, 0, 0};  // an empty ACL
    Acl acl;
    acl.Aces.push_back(Plain(kAccessDeniedAceType, 0, 0x00020094, "S-1-5-32-546"));
    acl.Aces.push_back(Plain(kAccessAllowedAceType, 0x0A, 0x10000000, "S-1-5-11"));
    Ace object = Plain(kAccessDeniedObjectAceType, 0, 0x100, "S-1-1-0");
    object.Flags = kAceObjectTypePresent;
    object.ObjectType = *ParseGuidString(kChangePasswordRightGuid);
    acl.Aces.push_back(object);
    Ace both = Plain(kAccessAllowedObjectAceType, 0x1A, 0x10, "S-1-5-32-554");
    both.Flags = kAceObjectTypePresent | kAceInheritedObjectTypePresent;
    both.ObjectType = *ParseGuidString("{4C164200-20C0-11D0-A768-00AA006E0529}");
    both.InheritedObjectType = *ParseGuidString("{BF967ABA-0DE6-11D0-A285-00AA003049E2}");
    acl.Aces.push_back(both);
    Ace extra = Plain(kAccessAllowedAceType, 0, 4, "S-1-5-18");
    extra.Extra = {1, 2, 3, 4};
    acl.Aces.push_back(extra);
    Ace callback;  // type 9, ACCESS_ALLOWED_CALLBACK: kept as bytes
    callback.AceType = 9;
    callback.AceFlags = 0x02;
    callback.Raw = {9, 0x02, 12, 0, 0xFF, 0x01, 0x0F, 0, 0xAA, 0xBB, 0xCC, 0xDD};
    acl.Aces.push_back(callback);
    sd.Dacl = acl;
    return sd;
}

uint32_t At32(const Bytes& b, size_t at) {
    return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | uint32_t{b[at + 3]} << 24;
}

void Set16(Bytes& b, size_t at, uint16_t v) {
    b[at] = static_cast<uint8_t>(v);
    b[at + 1] = static_cast<uint8_t>(v >> 8);
}

void Set32(Bytes& b, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + i] = static_cast<uint8_t>(v >> (8 * i));
}

TEST(SidTest, TextFormsReadAndWritten) {
    for (const char* text :
         {"S-1-1-0", "S-1-5-32-544", "S-1-5-21-1305137085-861608876-3599487638-512",
          "S-1-0x123456789ABC-7", "S-1-5", "S-1-5-4294967295"}) {
        auto sid = ParseSidString(text);
        ASSERT_TRUE(sid) << text;
        EXPECT_EQ(sid->ToString(), text);
    }
    EXPECT_EQ(ParseSidString("s-1-5-18"), S("S-1-5-18"));
    for (const char* bad : {"", "S", "S-1", "S-1-", "S-1-5-", "S--1-5", "X-1-5-18", "S-1-5-18x",
                            "S-256-5", "S-1-5-4294967296", "S-1-281474976710656",
                            "S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15-16"}) {
        EXPECT_FALSE(ParseSidString(bad)) << bad;
    }
}

TEST(SidTest, BinaryFormAndItsLimits) {
    Sid sid = S("S-1-5-21-1-2-3-500");
    Bytes bytes;
    sid.AppendTo(bytes);
    EXPECT_EQ(bytes, (Bytes{1, 5, 0, 0, 0, 0, 0, 5, 21, 0, 0,    0, 1, 0,
                            0, 0, 2, 0, 0, 0, 3, 0, 0,  0, 0xF4, 1, 0, 0}));
    EXPECT_EQ(ParseSidBytes(bytes), sid);
    EXPECT_FALSE(ParseSidBytes(Bytes(bytes.begin(), bytes.end() - 1)));  // short
    Bytes longer = bytes;
    longer.push_back(0);
    EXPECT_FALSE(ParseSidBytes(longer));  // trailing byte
    Bytes overflow(8 + 4 * 16, 0);
    overflow[0] = 1;
    overflow[1] = 16;  // one more sub-authority than a SID may have
    EXPECT_FALSE(ReadSid(overflow));
    EXPECT_TRUE(S("S-1-5-21-1-2-3-500").IsAccountOf(S("S-1-5-21-1-2-3")));
    EXPECT_FALSE(S("S-1-5-21-1-2-3-500-1").IsAccountOf(S("S-1-5-21-1-2-3")));
    EXPECT_FALSE(S("S-1-5-32-544").IsAccountOf(S("S-1-5-21-1-2-3")));
}

TEST(GuidTest, MixedEndianTextForm) {
    // Data1, Data2, Data3 little-endian, Data4 in order.
    Guid guid;
    guid.Bytes = {0x53, 0x1A, 0x72, 0xAB, 0x2F, 0x1E, 0xD0, 0x11,
                  0x98, 0x19, 0x00, 0xAA, 0x00, 0x40, 0x52, 0x9B};
    EXPECT_EQ(guid.ToString(), kChangePasswordRightGuid);
    EXPECT_EQ(ParseGuidString("ab721a53-1e2f-11d0-9819-00aa0040529b"), guid);
    EXPECT_EQ(ParseGuidString(kChangePasswordRightGuid), guid);
    for (const char* bad :
         {"", "{AB721A53-1E2F-11D0-9819-00AA0040529B", "AB721A53-1E2F-11D0-9819",
          "{AB721A53-1E2F-11D0-9819+00AA0040529B}", "{AB721A53-1E2F-11D0-9819-00AA0040529G}"}) {
        EXPECT_FALSE(ParseGuidString(bad)) << bad;
    }
}

TEST(SecurityDescriptorTest, HandMadeDescriptorRoundTrips) {
    SecurityDescriptor sd = Everything();
    std::string error;
    auto bytes = BuildSecurityDescriptor(sd, &error);
    ASSERT_TRUE(bytes) << error;
    // Canonical order: header, owner, group, SACL, DACL.
    EXPECT_EQ(At32(*bytes, 4), 20u);
    EXPECT_EQ(At32(*bytes, 8), 20u + sd.Owner->BinarySize());
    EXPECT_EQ(At32(*bytes, 12), At32(*bytes, 8) + sd.Group->BinarySize());
    EXPECT_EQ(At32(*bytes, 16), At32(*bytes, 12) + 8);
    auto parsed = ParseSecurityDescriptor(*bytes, &error);
    ASSERT_TRUE(parsed) << error;
    EXPECT_EQ(*parsed, sd);
    EXPECT_EQ(BuildSecurityDescriptor(*parsed), bytes);
}

TEST(SecurityDescriptorTest, AbsentPartsHaveOffsetZero) {
    SecurityDescriptor sd;
    sd.Control = kSeSelfRelative;
    auto bytes = BuildSecurityDescriptor(sd);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(*bytes, (Bytes{1, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    auto parsed = ParseSecurityDescriptor(*bytes);
    ASSERT_TRUE(parsed);
    EXPECT_FALSE(parsed->Owner || parsed->Group || parsed->Sacl || parsed->Dacl);
}

// Every descriptor read from the test DC gives its own bytes back.
TEST(SecurityDescriptorTest, DescriptorsFromTheDirectoryRoundTripByteForByte) {
    std::filesystem::path folder = std::filesystem::path(ORIN_SOURCE_DIR) / "fuzz/corpus/sd_fuzz";
    int count = 0;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        std::ifstream in(file.path(), std::ios::binary);
        Bytes bytes{std::istreambuf_iterator<char>(in), {}};
        std::string error;
        auto sd = ParseSecurityDescriptor(bytes, &error);
        ASSERT_TRUE(sd) << file.path() << ": " << error;
        EXPECT_EQ(BuildSecurityDescriptor(*sd), bytes) << file.path();
        ++count;
    }
    EXPECT_GE(count, 5);
}

TEST(SecurityDescriptorTest, ServerMadeContentIsReadIntoFields) {
    std::ifstream in(
        std::string(ORIN_SOURCE_DIR) + "/fuzz/corpus/sd_fuzz/ou_protected_split_halves_dacl.bin",
        std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(in), {}};
    auto sd = ParseSecurityDescriptor(bytes);
    ASSERT_TRUE(sd && sd->Dacl);
    EXPECT_TRUE(sd->Control & kSeDaclProtected);
    EXPECT_FALSE(sd->Owner || sd->Group || sd->Sacl);  // asked for the DACL only
    // An object ACE with both GUIDs.
    const Ace& object = sd->Dacl->Aces[9];
    EXPECT_EQ(object.AceType, kAccessAllowedObjectAceType);
    EXPECT_EQ(object.Flags, kAceObjectTypePresent | kAceInheritedObjectTypePresent);
    EXPECT_EQ(object.ObjectType.ToString(), "{4C164200-20C0-11D0-A768-00AA006E0529}");
    EXPECT_EQ(object.InheritedObjectType.ToString(), "{4828CC14-1437-45BC-9B07-AD6F015E5F28}");
}

// A descriptor with one owner SID and a DACL of one ACE, and where its fields lie.
struct Small {
    Bytes bytes;
    static constexpr size_t kOwner = 20, kDacl = 32, kAce = 40, kAceSid = 48;
};

Small MakeSmall() {
    SecurityDescriptor sd;
    sd.Control = kSeSelfRelative | kSeDaclPresent;
    sd.Owner = S("S-1-5-18");
    sd.Dacl = Acl{kAclRevision, {Plain(kAccessAllowedAceType, 0, 4, "S-1-5-11")}};
    return {*BuildSecurityDescriptor(sd)};
}

TEST(SecurityDescriptorTest, MalformedInputIsRefusedWithAReason) {
    struct Case {
        const char* what;
        std::function<void(Bytes&)> spoil;
    };
    const Case cases[] = {
        {"shorter than the header", [](Bytes& b) { b.resize(19); }},
        {"revision 2", [](Bytes& b) { b[0] = 2; }},
        {"not self-relative", [](Bytes& b) { b[3] &= 0x7F; }},
        {"owner offset inside the header", [](Bytes& b) { Set32(b, 4, 8); }},
        {"owner offset past the end", [](Bytes& b) { Set32(b, 4, 0xFFFFFFF0); }},
        {"owner sub-authority count overflowing", [](Bytes& b) { b[Small::kOwner + 1] = 16; }},
        {"owner SID past the end",
         [](Bytes& b) { Set32(b, 4, static_cast<uint32_t>(b.size() - 4)); }},
        {"DACL offset past the end",
         [](Bytes& b) { Set32(b, 16, static_cast<uint32_t>(b.size())); }},
        {"DACL size below its header", [](Bytes& b) { Set16(b, Small::kDacl + 2, 4); }},
        {"DACL size past the end", [](Bytes& b) { Set16(b, Small::kDacl + 2, 200); }},
        {"unknown ACL revision", [](Bytes& b) { b[Small::kDacl] = 3; }},
        {"more ACEs counted than present", [](Bytes& b) { Set16(b, Small::kDacl + 4, 2); }},
        {"ACE size below its header", [](Bytes& b) { Set16(b, Small::kAce + 2, 2); }},
        {"ACE size not a multiple of 4", [](Bytes& b) { Set16(b, Small::kAce + 2, 18); }},
        {"ACE past its ACL", [](Bytes& b) { Set16(b, Small::kAce + 2, 24); }},
        {"ACE without room for its SID", [](Bytes& b) { Set16(b, Small::kAce + 2, 8); }},
        {"ACE SID claiming more sub-authorities than fit",
         [](Bytes& b) { b[Small::kAceSid + 1] = 3; }},
        {"object ACE without room for its GUID",
         [](Bytes& b) {
             b[Small::kAce] = kAccessAllowedObjectAceType;
             b[Small::kAce + 8] = 1;  // Flags: ObjectType present, in place of the SID
         }},
    };
    ASSERT_TRUE(ParseSecurityDescriptor(MakeSmall().bytes));
    for (const Case& c : cases) {
        Bytes bytes = MakeSmall().bytes;
        c.spoil(bytes);
        std::string error;
        EXPECT_FALSE(ParseSecurityDescriptor(bytes, &error)) << c.what;
        EXPECT_FALSE(error.empty()) << c.what;
    }
}

TEST(SecurityDescriptorTest, EveryTruncationOfARealDescriptorIsHandled) {
    std::ifstream in(
        std::string(ORIN_SOURCE_DIR) + "/fuzz/corpus/sd_fuzz/user_administrator_full.bin",
        std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(in), {}};
    ASSERT_GT(bytes.size(), 100u);
    for (size_t n = 0; n < bytes.size(); ++n) {
        // The DACL comes last, so any cut leaves it short: never a descriptor.
        EXPECT_FALSE(ParseSecurityDescriptor(std::span(bytes.data(), n))) << n;
    }
}

TEST(SecurityDescriptorTest, WhatCantBeWrittenIsRefused) {
    std::string error;
    SecurityDescriptor badSacl = Everything();
    badSacl.Sacl = Bytes{4, 0, 16, 0, 0, 0, 0, 0};  // says 16 bytes, holds 8
    EXPECT_FALSE(BuildSecurityDescriptor(badSacl, &error));
    EXPECT_FALSE(error.empty());

    SecurityDescriptor bigSid = Everything();
    bigSid.Dacl->Aces[0].TrusteeSid.SubAuthorities.resize(16);
    EXPECT_FALSE(BuildSecurityDescriptor(bigSid));

    SecurityDescriptor rawWithoutBytes = Everything();
    rawWithoutBytes.Dacl->Aces.back().Raw.clear();
    EXPECT_FALSE(BuildSecurityDescriptor(rawWithoutBytes));

    SecurityDescriptor oddExtra = Everything();
    oddExtra.Dacl->Aces[4].Extra = {1, 2};
    EXPECT_FALSE(BuildSecurityDescriptor(oddExtra));

    SecurityDescriptor huge;
    huge.Dacl.emplace();
    huge.Dacl->Aces.assign(3000, Plain(kAccessAllowedAceType, 0, 1, "S-1-5-21-1-2-3-4"));  // 108 KB
    EXPECT_FALSE(BuildSecurityDescriptor(huge, &error));
    EXPECT_NE(error.find("64 KB"), std::string::npos) << error;
}

}  // namespace
}  // namespace orin
