// Pure parts of the directory layer: distinguished-name text, range options, the SD-flags
// control value, and what the object model does without a server.

#include <gtest/gtest.h>

#include "directory/Bind.h"
#include "directory/DirObject.h"
#include "directory/DirectorySession.h"
#include "platform/LdapConnection.h"

namespace orin {
namespace {

TEST(DnText, SplitsAtTheFirstUnescapedComma) {
    EXPECT_EQ(FirstRdn("OU=a,OU=b,DC=x"), "OU=a");
    EXPECT_EQ(ParentDn("OU=a,OU=b,DC=x"), "OU=b,DC=x");
    EXPECT_EQ(FirstRdn("CN=Doe\\, John,OU=b"), "CN=Doe\\, John");
    EXPECT_EQ(ParentDn("CN=Doe\\, John,OU=b"), "OU=b");
    EXPECT_EQ(FirstRdn("CN=\"a,b\",DC=x"), "CN=\"a,b\"");
    EXPECT_EQ(ParentDn("CN=\"a,b\",DC=x"), "DC=x");
    EXPECT_EQ(ParentDn("DC=x"), "");
    EXPECT_EQ(FirstRdn(""), "");
    // An escaped backslash does not escape the comma after it.
    EXPECT_EQ(FirstRdn("CN=a\\\\,DC=x"), "CN=a\\\\");
}

TEST(DnText, RdnValueUnescapes) {
    EXPECT_EQ(RdnValue("CN=Doe\\, John"), "Doe, John");
    EXPECT_EQ(RdnValue("CN=a\\2Cb"), "a,b");
    EXPECT_EQ(RdnValue("CN=\\e6\\97\\a5"), "\xe6\x97\xa5");
    EXPECT_EQ(RdnValue("OU=plain"), "plain");
    EXPECT_EQ(RdnValue("novalue"), "");
    EXPECT_EQ(RdnValue("CN=trailing\\"), "trailing\\");
}

TEST(DnText, DnFromPathDropsSchemeAndServer) {
    EXPECT_EQ(DnFromPath("LDAP://CN=x,DC=a"), "CN=x,DC=a");
    EXPECT_EQ(DnFromPath("ldap://dc1.a.b/CN=x,DC=a"), "CN=x,DC=a");
    EXPECT_EQ(DnFromPath("LDAP://dc1:636/CN=x,DC=a"), "CN=x,DC=a");
    EXPECT_EQ(DnFromPath("CN=x,DC=a"), "CN=x,DC=a");
    // A slash inside a name is part of the name, not a server part.
    EXPECT_EQ(DnFromPath("LDAP://CN=a/b,DC=a"), "CN=a/b,DC=a");
    EXPECT_EQ(DnFromPath("LDAP://"), "");
}

TEST(LdapText, ParseRange) {
    long first = -2, last = -2;
    EXPECT_TRUE(platform::ParseRange("member;range=0-1499", first, last));
    EXPECT_EQ(first, 0);
    EXPECT_EQ(last, 1499);
    EXPECT_TRUE(platform::ParseRange("member;Range=1500-*", first, last));
    EXPECT_EQ(first, 1500);
    EXPECT_EQ(last, -1);
    EXPECT_FALSE(platform::ParseRange("member", first, last));
    EXPECT_FALSE(platform::ParseRange("member;range=a-1", first, last));
    EXPECT_FALSE(platform::ParseRange("member;range=5-2", first, last));
    EXPECT_FALSE(platform::ParseRange("member;range=1", first, last));
}

TEST(LdapText, SdFlagsControlValueIsBerSequenceOfInteger) {
    EXPECT_EQ(platform::SdFlagsControlValue(4), std::string("\x30\x03\x02\x01\x04", 5));
    EXPECT_EQ(platform::SdFlagsControlValue(0), std::string("\x30\x03\x02\x01\x00", 5));
    // 0x80 needs a leading zero byte to stay positive.
    EXPECT_EQ(platform::SdFlagsControlValue(0x80), std::string("\x30\x04\x02\x02\x00\x80", 6));
    EXPECT_EQ(platform::SdFlagsControlValue(0x10F), std::string("\x30\x04\x02\x02\x01\x0F", 6));
}

TEST(LdapText, UriBracketsIpv6) {
    EXPECT_EQ(platform::LdapUri("ldaps", "dc1.a.b", 636), "ldaps://dc1.a.b:636");
    EXPECT_EQ(platform::LdapUri("ldap", "::1", 389), "ldap://[::1]:389");
}

TEST(WithoutServer, BindAndSearchFailCleanly) {
    gSession = DirectorySession();
    DirObject out;
    EXPECT_FALSE(BindObject("LDAP://CN=x,DC=a", out));
    EXPECT_FALSE(out.IsBound());
    EXPECT_FALSE(BindObject("", out));

    EXPECT_EQ(ExecuteSearch("<LDAP://DC=a>;(cn=x);cn;Subtree").status().code, kDirNotConnected);
    // Malformed commands are refused before any server is asked.
    for (const char* bad : {"", "LDAP://DC=a;(cn=x);cn;Subtree", "<LDAP://DC=a>;(cn=x)",
                            "<LDAP://DC=a>;(cn=x);cn;Deep", "<LDAP://DC=a>;a;b;Subtree;x"}) {
        EXPECT_EQ(ExecuteSearch(bad).status().code, kDirBadArgument) << bad;
    }
}

TEST(WithoutServer, UnboundObjectReportsNotBound) {
    DirObject o;
    EXPECT_EQ(o.Get("cn").status().code, kDirNotBound);
    EXPECT_EQ(o.GetEx("cn").status().code, kDirNotBound);
    EXPECT_EQ(o.GetBinary("objectSid").status().code, kDirNotBound);
    o.Put("cn", "x");  // ignored, no crash
    EXPECT_EQ(o.SetInfo().code, kDirNotBound);
    EXPECT_EQ(o.Create("user", "CN=x").status().code, kDirNotBound);
    EXPECT_EQ(o.Members().status().code, kDirNotBound);
    EXPECT_EQ(o.SetPassword("x").code, kDirNotBound);
    EXPECT_EQ(o.ADsPath(), "");
    EXPECT_EQ(o.Class(), "");
}

}  // namespace
}  // namespace orin
