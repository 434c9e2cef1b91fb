#include <gtest/gtest.h>

#include <string>

#include "engines/user/UserValueRules.h"
#include "platform/Strings.h"

using namespace orin;

TEST(IsCountryCode, TakesListedCodesInAnyCase) {
    EXPECT_TRUE(IsCountryCode("JP"));
    EXPECT_TRUE(IsCountryCode("jp"));
    EXPECT_TRUE(IsCountryCode("Us"));
    // First and last of the list.
    EXPECT_TRUE(IsCountryCode("IS"));
    EXPECT_TRUE(IsCountryCode("MP"));
}

TEST(IsCountryCode, RefusesEverythingElse) {
    EXPECT_FALSE(IsCountryCode(""));
    EXPECT_FALSE(IsCountryCode("J"));
    EXPECT_FALSE(IsCountryCode("JPN"));
    EXPECT_FALSE(IsCountryCode(" JP"));
    // Two characters spanning a comma of the list ("...IS,IE...").
    EXPECT_FALSE(IsCountryCode("S,"));
    EXPECT_FALSE(IsCountryCode(",I"));
    // The letters on both sides of a comma ("IE,AZ") are no code.
    EXPECT_FALSE(IsCountryCode("EA"));
    // Codes missing from this list.
    EXPECT_FALSE(IsCountryCode("XK"));
    EXPECT_FALSE(IsCountryCode("RS"));
    EXPECT_FALSE(IsCountryCode("ＪＰ"));
}

TEST(IsCountryCode, TheListHoldsExactly238DistinctCodes) {
    int count = 0;
    for (char a = 'A'; a <= 'Z'; ++a) {
        for (char b = 'A'; b <= 'Z'; ++b) {
            if (IsCountryCode(std::string{a, b})) ++count;
        }
    }
    EXPECT_EQ(count, 238);
}

TEST(IsDriveSpec, TakesCToZWithAColonFullWidthIncluded) {
    EXPECT_TRUE(IsDriveSpec("z:"));
    EXPECT_TRUE(IsDriveSpec("Z:"));
    EXPECT_TRUE(IsDriveSpec("Ｚ:"));
    EXPECT_TRUE(IsDriveSpec("ｈ:"));
    EXPECT_TRUE(IsDriveSpec(" H: "));
    EXPECT_TRUE(IsDriveSpec("C:"));  // the message says D to Z, the check takes C
    EXPECT_FALSE(IsDriveSpec(""));
    EXPECT_FALSE(IsDriveSpec("Z"));
    EXPECT_FALSE(IsDriveSpec("Z:\\"));
    EXPECT_FALSE(IsDriveSpec("B:"));
    EXPECT_FALSE(IsDriveSpec("a:"));
    EXPECT_FALSE(IsDriveSpec("Ｂ:"));
    EXPECT_FALSE(IsDriveSpec("Z："));  // full-width colon
    EXPECT_FALSE(IsDriveSpec("1:"));
    EXPECT_FALSE(IsDriveSpec("ﾄ:"));
    EXPECT_FALSE(IsDriveSpec("\tZ:"));
}

TEST(IsUncPath, NeedsServerAndShareAndNoTrailingBackslash) {
    EXPECT_TRUE(IsUncPath("\\\\s\\a"));
    EXPECT_TRUE(IsUncPath("\\\\server\\home\\taro"));
    EXPECT_TRUE(IsUncPath("  \\\\s\\a  "));
    EXPECT_TRUE(IsUncPath("\\\\ｻｰﾊﾞ\\共有"));
    EXPECT_FALSE(IsUncPath("\\\\s\\a\\"));
    EXPECT_FALSE(IsUncPath("\\\\server"));  // no share part
    EXPECT_FALSE(IsUncPath("\\\\s\\"));
    EXPECT_FALSE(IsUncPath("\\\\\\ab"));  // a third backslash is no server
    EXPECT_FALSE(IsUncPath("\\s\\a\\b"));
    EXPECT_FALSE(IsUncPath("C:\\home"));
    EXPECT_FALSE(IsUncPath(""));
}

TEST(IsLocalPath, NeedsALetterAndColonBackslash) {
    EXPECT_TRUE(IsLocalPath("C:\\home\\taro"));
    EXPECT_TRUE(IsLocalPath("a:\\"));
    EXPECT_TRUE(IsLocalPath(" d:\\x "));
    EXPECT_TRUE(IsLocalPath("Ｄ:\\x"));
    EXPECT_FALSE(IsLocalPath("C:"));
    EXPECT_FALSE(IsLocalPath("C:/home"));
    EXPECT_FALSE(IsLocalPath("\\\\s\\a"));
    EXPECT_FALSE(IsLocalPath("1:\\x"));
    EXPECT_FALSE(IsLocalPath("CC:\\"));
    EXPECT_FALSE(IsLocalPath(""));
}

TEST(ParentOfUncPath, GivesTheFolderAboveOrNothingOnAShare) {
    std::string parent = "stale";
    EXPECT_TRUE(ParentOfUncPath("\\\\s\\a\\b", parent));
    EXPECT_EQ(parent, "\\\\s\\a");
    EXPECT_TRUE(ParentOfUncPath("\\\\srv\\home\\2024\\taro", parent));
    EXPECT_EQ(parent, "\\\\srv\\home\\2024");
    EXPECT_TRUE(ParentOfUncPath("\\\\s\\a", parent));
    EXPECT_EQ(parent, "");

    parent = "stale";
    EXPECT_FALSE(ParentOfUncPath("\\\\s\\a\\", parent));
    EXPECT_EQ(parent, "");
    EXPECT_FALSE(ParentOfUncPath("C:\\x\\y", parent));
}
