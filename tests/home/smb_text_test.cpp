// The pure parts of the SMB layer: UNC paths as URLs and the descriptor's text form.

#include <gtest/gtest.h>

#include "platform/SmbClient.h"
#include "platform/SmbSecurityText.h"

namespace orin::platform {
namespace {

TEST(SmbUrlTest, UncPathsBecomeUrlsWithReservedCharactersEscaped) {
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv\\home"), "smb://srv/home");
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv.orin.test\\home\\user1"), "smb://srv.orin.test/home/user1");
    // Blanks, "%", "#", "?" and "@" would otherwise be read as URL syntax.
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv\\home\\a b%#?@"), "smb://srv/home/a%20b%25%23%3F%40");
    // UTF-8 bytes are escaped one by one.
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv\\home\\\xE5\xA4\xAA"), "smb://srv/home/%E5%A4%AA");
}

TEST(SmbUrlTest, TextWithoutServerAndShareIsNoUrl) {
    EXPECT_EQ(SmbUrlFromUnc(""), "");
    EXPECT_EQ(SmbUrlFromUnc("C:\\home"), "");
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv"), "");
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv\\"), "");
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv\\home\\"), "");
    EXPECT_EQ(SmbUrlFromUnc("\\\\srv\\\\home"), "");
}

TEST(SmbSecurityTextTest, ReadsWhatTheLibraryPrints) {
    // As read from a Samba share.
    SmbSecurity sd;
    ASSERT_TRUE(
        ParseSecurityText("REVISION:1,OWNER:S-1-5-21-1-2-3-500,GROUP:S-1-22-2-0,"
                          "ACL:S-1-5-21-1-2-3-500:0/0/0x001f01ff,ACL:S-1-1-0:0/11/0x001200a9,"
                          "ACL:S-1-5-32-545:1/19/0x00000001",
                          sd));
    EXPECT_EQ(sd.revision, 1);
    EXPECT_EQ(sd.owner, "S-1-5-21-1-2-3-500");
    EXPECT_EQ(sd.group, "S-1-22-2-0");
    ASSERT_EQ(sd.dacl.size(), 3u);
    EXPECT_EQ(sd.dacl[0], (SmbAce{"S-1-5-21-1-2-3-500", false, 0, 0, 0x001F01FF}));
    EXPECT_EQ(sd.dacl[1], (SmbAce{"S-1-1-0", false, 0, 11, 0x001200A9}));
    EXPECT_EQ(sd.dacl[2], (SmbAce{"S-1-5-32-545", false, 1, 19, 1}));
}

TEST(SmbSecurityTextTest, RefusesTextOfAnotherForm) {
    SmbSecurity sd;
    EXPECT_FALSE(ParseSecurityText("REVISION:1,MODE:0x10", sd));
    EXPECT_FALSE(ParseSecurityText("ACL:S-1-1-0:0/0", sd));
    EXPECT_FALSE(ParseSecurityText("ACL:S-1-1-0:0/0/0x1ffffffff", sd));
    EXPECT_FALSE(ParseSecurityText("ACL:S-1-1-0:300/0/1", sd));
    EXPECT_FALSE(ParseSecurityText("ACL::0/0/1", sd));
    EXPECT_TRUE(ParseSecurityText("", sd));
    EXPECT_TRUE(sd.dacl.empty());
}

TEST(SmbSecurityTextTest, WritesMasksInDecimalAndNamesForTheServerToResolve) {
    // The library parses the mask of a written entry as a decimal number.
    std::string text = FormatDaclText(
        {{"S-1-5-32-544", false, 0, 3, kSmbFullControl}, {"ORIN\\user1", true, 1, 0, 0x100}});
    EXPECT_EQ(text, "REVISION:1,ACL:S-1-5-32-544:0/3/2032127,ACL+:ORIN\\user1:1/0/256");

    SmbSecurity back;
    ASSERT_TRUE(ParseSecurityText(FormatDaclText({{"S-1-1-0", false, 1, 2, 7}}), back));
    EXPECT_EQ(back.dacl, (std::vector<SmbAce>{{"S-1-1-0", false, 1, 2, 7}}));
}

}  // namespace
}  // namespace orin::platform
