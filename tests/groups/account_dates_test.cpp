// FILETIME values and local dates: the conversions behind AccountExpirationDate, LastLogin and
// PasswordLastChanged, and the rule that reads two dates as "never".

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "directory/WinNTUser.h"

namespace orin {
namespace {

// Runs a test in a given time zone and restores the previous one.
class ZoneTest : public ::testing::Test {
  protected:
    void UseZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    void SetUp() override {
        const char* old = std::getenv("TZ");
        hadZone_ = old != nullptr;
        if (hadZone_) oldZone_ = old;
    }
    void TearDown() override {
        if (hadZone_) {
            setenv("TZ", oldZone_.c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

  private:
    bool hadZone_ = false;
    std::string oldZone_;
};

constexpr int64_t kTicksPerSecond = 10'000'000;
// 2001-03-02 00:05:07 UTC.
constexpr int64_t kSample = (11'644'473'600LL + 983'491'507LL) * kTicksPerSecond;

TEST_F(ZoneTest, FileTimeZeroIsNineInTheMorningInJapan) {
    UseZone("Asia/Tokyo");
    LocalDateTime zero = FileTimeToLocal(0);
    EXPECT_EQ(DateText(zero), "1601/01/01 9:00:00");
    EXPECT_TRUE(IsNeverDate(zero));
    EXPECT_EQ(LocalToFileTime(zero), 0);
}

TEST_F(ZoneTest, ConversionsRoundTripAcrossZonesAndDaylightSaving) {
    UseZone("Asia/Tokyo");
    EXPECT_EQ(DateText(FileTimeToLocal(kSample)), "2001/03/02 9:05:07");
    EXPECT_EQ(LocalToFileTime(FileTimeToLocal(kSample)), kSample);

    UseZone("UTC");
    EXPECT_EQ(DateText(FileTimeToLocal(kSample)), "2001/03/02 0:05:07");

    // New York in July is on daylight time (UTC-4): 2001-07-01 12:00 UTC is 8:00 there.
    UseZone("America/New_York");
    int64_t july = (11'644'473'600LL + 993'945'600LL + 12 * 3600) * kTicksPerSecond;
    LocalDateTime summer = FileTimeToLocal(july);
    EXPECT_EQ(DateText(summer), "2001/07/01 8:00:00");
    EXPECT_EQ(LocalToFileTime(summer), july);
}

TEST_F(ZoneTest, MidnightShowsTheDateAlone) {
    UseZone("UTC");
    EXPECT_EQ(DateText(LocalDateTime{1970, 1, 1, 0, 0, 0}), "1970/01/01");
    EXPECT_EQ(DateText(LocalDateTime{2024, 12, 31, 0, 0, 1}), "2024/12/31 0:00:01");
}

TEST_F(ZoneTest, NeverDatesFollowTheReadersRule) {
    UseZone("Asia/Tokyo");
    EXPECT_TRUE(IsNeverDate(LocalDateTime{1970, 1, 1, 0, 0, 0}));
    EXPECT_TRUE(IsNeverDate(LocalDateTime{1601, 1, 1, 9, 0, 0}));
    EXPECT_FALSE(IsNeverDate(LocalDateTime{1970, 1, 1, 0, 0, 1}));
    EXPECT_FALSE(IsNeverDate(LocalDateTime{2030, 4, 1, 0, 0, 0}));

    // Outside Japan FILETIME 0 reads as another hour, and it still means never.
    UseZone("UTC");
    EXPECT_EQ(DateText(FileTimeToLocal(0)), "1601/01/01");
    EXPECT_TRUE(IsNeverDate(FileTimeToLocal(0)));
}

TEST_F(ZoneTest, DatesThatDoNotExistHaveNoFileTime) {
    UseZone("UTC");
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{2023, 2, 29, 0, 0, 0}));
    EXPECT_TRUE(LocalToFileTime(LocalDateTime{2024, 2, 29, 0, 0, 0}));
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{2024, 13, 1, 0, 0, 0}));
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{2024, 1, 1, 24, 0, 0}));
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{1600, 12, 31, 23, 59, 59}));
    // Before FILETIME 0 in a zone east of Greenwich.
    UseZone("Asia/Tokyo");
    EXPECT_FALSE(LocalToFileTime(LocalDateTime{1601, 1, 1, 8, 59, 59}));
}

}  // namespace
}  // namespace orin
