// FILETIME values and local dates: the conversions behind AccountExpirationDate, LastLogin and
// PasswordLastChanged, and the rule that reads two dates as "never".

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "directory/WinNTUser.h"

namespace orin {
namespace {

void UseZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
}

constexpr int64_t kTicks = 10'000'000;
constexpr int64_t k1970 = 11'644'473'600LL;  // seconds from 1601 to 1970

TEST(AccountDatesTest, FileTimesBecomeLocalDatesAndBack) {
    UseZone("Asia/Tokyo");
    EXPECT_EQ(DateText(FileTimeToLocal(0)), "1601/01/01 9:00:00");
    EXPECT_EQ(LocalToFileTime(FileTimeToLocal(0)), 0);
    int64_t march = (k1970 + 983'491'507LL) * kTicks;  // 2001-03-02 00:05:07 UTC
    EXPECT_EQ(DateText(FileTimeToLocal(march)), "2001/03/02 9:05:07");
    EXPECT_EQ(LocalToFileTime(FileTimeToLocal(march)), march);

    // Daylight time: 2001-07-01 12:00 UTC is 8:00 in New York.
    UseZone("America/New_York");
    int64_t july = (k1970 + 993'945'600LL + 12 * 3600) * kTicks;
    EXPECT_EQ(DateText(FileTimeToLocal(july)), "2001/07/01 8:00:00");
    EXPECT_EQ(LocalToFileTime(FileTimeToLocal(july)), july);

    UseZone("UTC");
    EXPECT_EQ(DateText(LocalDateTime{2024, 12, 31, 0, 0, 1}), "2024/12/31 0:00:01");
}

TEST(AccountDatesTest, NeverDatesFollowTheReadersRuleInAnyZone) {
    UseZone("Asia/Tokyo");
    EXPECT_TRUE(IsNeverDate(LocalDateTime{1970, 1, 1, 0, 0, 0}));
    EXPECT_TRUE(IsNeverDate(LocalDateTime{1601, 1, 1, 9, 0, 0}));
    EXPECT_FALSE(IsNeverDate(LocalDateTime{1970, 1, 1, 0, 0, 1}));
    EXPECT_FALSE(IsNeverDate(LocalDateTime{2030, 4, 1, 0, 0, 0}));
    // In UTC FILETIME 0 shows as midnight, and still means never.
    UseZone("UTC");
    EXPECT_EQ(DateText(FileTimeToLocal(0)), "1601/01/01");
    EXPECT_TRUE(IsNeverDate(FileTimeToLocal(0)));
}

TEST(AccountDatesTest, DatesThatDoNotExistHaveNoFileTime) {
    UseZone("UTC");
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{2023, 2, 29, 0, 0, 0}));
    EXPECT_TRUE(LocalToFileTime(LocalDateTime{2024, 2, 29, 0, 0, 0}));
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{2024, 13, 1, 0, 0, 0}));
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{2024, 1, 1, 24, 0, 0}));
    // Before FILETIME 0, here and east of Greenwich.
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{1600, 12, 31, 23, 59, 59}));
    UseZone("Asia/Tokyo");
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{1601, 1, 1, 8, 59, 59}));
}

}  // namespace
}  // namespace orin
