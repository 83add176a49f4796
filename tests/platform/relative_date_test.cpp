#include "platform/calendar.h"
#include "support/moments.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;

TEST(RelativeDateText, NamesTheLargestUnitThatFits)
{
    constexpr auto day = 24h;
    const struct {
        std::chrono::nanoseconds elapsed;
        const char* text;
    } rows[] = {
        {0ns, "now"},
        {999'999'999ns, "now"},
        {1s, "1 second ago"},
        {1999ms, "1 second ago"},
        {2s, "2 seconds ago"},
        {59s, "59 seconds ago"},
        {60s, "1 minute ago"},
        {119s, "1 minute ago"},
        {5min, "5 minutes ago"},
        {1h - 1ns, "59 minutes ago"},
        {1h, "1 hour ago"},
        {day - 1ns, "23 hours ago"},
        {day, "1 day ago"},
        {7 * day - 1ns, "6 days ago"},
        {7 * day, "1 week ago"},
        {30 * day, "4 weeks ago"},
        {31 * day, "1 month ago"},
        {61 * day, "2 months ago"},
        {365 * day, "11 months ago"},
        {366 * day, "1 year ago"},
        {731 * day, "2 years ago"},
    };
    const auto now = test::utc(2026, 11, 16, 14, 5);
    for (const auto& row : rows)
        EXPECT_EQ(relativeDateText(now - row.elapsed, now), row.text) << row.elapsed.count();
}

TEST(RelativeDateText, CallsTheFutureNow)
{
    const auto now = test::utc(2026, 11, 16);
    EXPECT_EQ(relativeDateText(now + 1ns, now), "now");
    EXPECT_EQ(relativeDateText(Timestamp::max(), Timestamp::min()), "now");
}

TEST(RelativeDateText, ReachesAcrossTheWholeRangeOfMoments)
{
    EXPECT_EQ(relativeDateText(Timestamp::min(), Timestamp::max()), "584 years ago");
}

} // namespace
} // namespace kestavon
