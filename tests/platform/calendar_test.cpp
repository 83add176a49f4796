#include "platform/calendar.h"
#include "support/moments.h"
#include "support/time_zone.h"

#include <limits>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;
using test::ScopedTimeZone;
using test::utc;

const SystemCalendar calendar;

TEST(WholeDays, CountsDaysAtTheSameWallClockTime)
{
    const ScopedTimeZone zone("UTC");
    const auto now = utc(2026, 5, 15, 12, 0, 0);
    EXPECT_EQ(calendar.wholeDays(now, now), 0);
    EXPECT_EQ(calendar.wholeDays(now - 24h, now), 1);
    EXPECT_EQ(calendar.wholeDays(now - 24h + 1ns, now), 0);
    EXPECT_EQ(calendar.wholeDays(now - 90 * 24h, now), 90);
    EXPECT_EQ(calendar.wholeDays(now - 91 * 24h + 1ns, now), 90);
    EXPECT_EQ(calendar.wholeDays(now - 91 * 24h, now), 91);
    EXPECT_EQ(calendar.wholeDays(utc(2024, 2, 28), utc(2024, 3, 1)), 2);
}

TEST(WholeDays, TruncatesTowardZeroWhenTheOrderIsReversed)
{
    const ScopedTimeZone zone("UTC");
    const auto now = utc(2026, 5, 15, 12);
    EXPECT_EQ(calendar.wholeDays(now, now - 1ns), 0);
    EXPECT_EQ(calendar.wholeDays(now, now - 24h + 1ns), 0);
    EXPECT_EQ(calendar.wholeDays(now, now - 24h), -1);
    EXPECT_EQ(calendar.wholeDays(now, now - 47h), -1);
}

TEST(WholeDays, ADayWithAClockChangeIsOneDay)
{
    const ScopedTimeZone zone("Europe/Berlin");
    // 13 February 12:00 to 15 May 12:00, an hour of which the spring took away.
    EXPECT_EQ(calendar.wholeDays(utc(2026, 2, 13, 11), utc(2026, 5, 15, 10)), 91);
    EXPECT_EQ(calendar.wholeDays(utc(2026, 2, 13, 11), utc(2026, 5, 15, 10) - 1ns), 90);
    // 8 August 12:00 to 7 November 12:00, with an hour more in the autumn.
    EXPECT_EQ(calendar.wholeDays(utc(2026, 8, 8, 10), utc(2026, 11, 7, 11)), 91);
    EXPECT_EQ(calendar.wholeDays(utc(2026, 8, 8, 10), utc(2026, 11, 7, 10)), 90);
    // From noon to noon over the change itself: 23 and 25 hours.
    EXPECT_EQ(calendar.wholeDays(utc(2026, 3, 28, 11), utc(2026, 3, 29, 10)), 1);
    EXPECT_EQ(calendar.wholeDays(utc(2026, 10, 24, 10), utc(2026, 10, 25, 10)), 0);
    EXPECT_EQ(calendar.wholeDays(utc(2026, 10, 24, 10), utc(2026, 10, 25, 11)), 1);
    EXPECT_EQ(calendar.wholeDays(utc(2026, 3, 29, 10), utc(2026, 3, 28, 11)), -1);
}

TEST(WholeDays, EndsInSkippedAndRepeatedHours)
{
    const ScopedTimeZone zone("Europe/Berlin");
    // 28 March 02:30; the next day has no 02:30, which counts as 03:30 (01:30 UTC).
    const auto beforeGap = utc(2026, 3, 28, 1, 30);
    EXPECT_EQ(calendar.wholeDays(beforeGap, utc(2026, 3, 29, 1, 10)), 0);
    EXPECT_EQ(calendar.wholeDays(beforeGap, utc(2026, 3, 29, 1, 30)), 1);
    // 24 October 02:30; the next day has two, the first at 00:30 UTC. At 01:10 UTC the wall clock
    // reads 02:10 again.
    const auto beforeRepeat = utc(2026, 10, 24, 0, 30);
    EXPECT_EQ(calendar.wholeDays(beforeRepeat, utc(2026, 10, 25, 0, 29)), 0);
    EXPECT_EQ(calendar.wholeDays(beforeRepeat, utc(2026, 10, 25, 0, 30)), 1);
    EXPECT_EQ(calendar.wholeDays(beforeRepeat, utc(2026, 10, 25, 1, 10)), 1);
    // Within one repeated hour no day passes, though the wall clock goes back.
    EXPECT_EQ(calendar.wholeDays(utc(2026, 10, 25, 0, 50), utc(2026, 10, 25, 1, 10)), 0);
}

TEST(WholeDays, FollowsZonesWithOddChanges)
{
    {
        const ScopedTimeZone zone("Australia/Lord_Howe"); // The clock moves by half an hour.
        EXPECT_EQ(calendar.wholeDays(utc(2026, 4, 4, 1), utc(2026, 4, 5, 1)), 0);
        EXPECT_EQ(calendar.wholeDays(utc(2026, 4, 4, 1), utc(2026, 4, 5, 1, 30)), 1);
    }
    {
        const ScopedTimeZone zone("Pacific/Apia"); // There was no 30 December 2011.
        EXPECT_EQ(calendar.wholeDays(utc(2011, 12, 29, 22), utc(2011, 12, 30, 21, 59)), 0);
        EXPECT_EQ(calendar.wholeDays(utc(2011, 12, 29, 22), utc(2011, 12, 30, 22)), 2);
    }
    {
        const ScopedTimeZone zone("America/New_York");
        EXPECT_EQ(calendar.wholeDays(utc(2026, 1, 1, 5), utc(2026, 7, 1, 4)), 181);
    }
}

TEST(WholeDays, ReachesAcrossTheWholeRangeOfMoments)
{
    const ScopedTimeZone zone("UTC");
    EXPECT_EQ(calendar.wholeDays(Timestamp::min(), Timestamp::max()), 213'503);
    EXPECT_EQ(calendar.wholeDays(Timestamp::max(), Timestamp::min()), -213'503);
}

TEST(DaysBefore, KeepsTheWallClockTime)
{
    const ScopedTimeZone zone("Europe/Berlin");
    EXPECT_EQ(
        calendar.daysBefore(utc(2026, 5, 15, 10, 1, 2, 345), 91), utc(2026, 2, 13, 11, 1, 2, 345));
    EXPECT_EQ(calendar.daysBefore(utc(2026, 11, 7, 11), 90), utc(2026, 8, 9, 10));
    EXPECT_EQ(calendar.daysBefore(utc(2026, 8, 9, 10), -90), utc(2026, 11, 7, 11));
    EXPECT_EQ(
        calendar.daysBefore(utc(1969, 12, 31, 23, 59, 59, 1), 1), utc(1969, 12, 30, 23, 59, 59, 1));
}

TEST(DaysBefore, MovesASkippedTimeForwardByTheGap)
{
    const ScopedTimeZone zone("Europe/Berlin");
    // 90 days before 27 June 02:30 is 29 March 02:30, which the clocks skipped: 03:30.
    EXPECT_EQ(calendar.daysBefore(utc(2026, 6, 27, 0, 30), 90), utc(2026, 3, 29, 1, 30));
    // The second before the gap and the first after it are as they read.
    EXPECT_EQ(calendar.daysBefore(utc(2026, 6, 26, 23, 59, 59), 90), utc(2026, 3, 29, 0, 59, 59));
    EXPECT_EQ(calendar.daysBefore(utc(2026, 6, 27, 1, 0), 90), utc(2026, 3, 29, 1, 0));

    const ScopedTimeZone samoa("Pacific/Apia");
    EXPECT_EQ(calendar.daysBefore(utc(2012, 1, 1, 22), 3), utc(2011, 12, 30, 22));
}

TEST(DaysBefore, TakesTheFirstOfTwoEqualReadings)
{
    const ScopedTimeZone zone("Europe/Berlin");
    EXPECT_EQ(calendar.daysBefore(utc(2026, 10, 26, 1, 30), 1), utc(2026, 10, 25, 0, 30));
    // No days at all leave even the second reading where it is.
    EXPECT_EQ(calendar.daysBefore(utc(2026, 10, 25, 1, 30), 0), utc(2026, 10, 25, 1, 30));
}

TEST(DaysBefore, StopsAtTheEdgesOfTime)
{
    const ScopedTimeZone zone("Asia/Kolkata");
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(calendar.daysBefore(utc(2026, 1, 1), most), Timestamp::min());
    EXPECT_EQ(calendar.daysBefore(utc(2026, 1, 1), -most), Timestamp::max());
    EXPECT_EQ(calendar.daysBefore(Timestamp::min(), -1), Timestamp::min() + 24h);
    EXPECT_EQ(calendar.daysBefore(Timestamp::max(), 1), Timestamp::max() - 24h);
}

TEST(DateText, ShowsTheLocalWallClock)
{
    {
        const ScopedTimeZone zone("Europe/Berlin");
        EXPECT_EQ(calendar.dateText(utc(2026, 11, 16, 13, 5)), "16 Nov 2026 at 14:05");
        EXPECT_EQ(calendar.dateText(utc(2026, 5, 31, 22, 0)), "1 Jun 2026 at 00:00");
        EXPECT_EQ(calendar.dateText(utc(1970, 1, 1) - 1ns), "1 Jan 1970 at 00:59");
    }
    {
        const ScopedTimeZone zone("America/New_York");
        EXPECT_EQ(calendar.dateText(utc(2026, 9, 5, 13, 59, 59)), "5 Sep 2026 at 09:59");
    }
}

} // namespace
} // namespace kestavon
