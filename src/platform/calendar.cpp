#include "platform/calendar.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace kestavon {

namespace {

constexpr std::int64_t secondsADay = 86400;
constexpr std::int64_t nanosecondsASecond = 1'000'000'000;
/// More days than lie between the first and the last `Timestamp`.
constexpr std::int64_t mostDays = 250'000;

constexpr std::array<std::string_view, 12> months{
    "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// Seconds since 1970 and the rest: a moment that days can be added to without overflow, or the
/// wall clock's reading of one, counted as if the wall clock showed UTC.
struct SplitTime {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0; ///< 0 to 999,999,999

    friend auto operator<=>(const SplitTime&, const SplitTime&) = default;
};

std::int64_t floorDivided(std::int64_t number, std::int64_t divisor)
{
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

SplitTime split(Timestamp moment)
{
    const auto count = moment.time_since_epoch().count();
    const auto seconds = floorDivided(count, nanosecondsASecond);
    const auto rest = count % nanosecondsASecond;
    return {seconds, rest < 0 ? rest + nanosecondsASecond : rest};
}

Timestamp joined(const SplitTime& time)
{
    constexpr auto first = Timestamp::min();
    constexpr auto last = Timestamp::max();
    if (time <= split(first))
        return first;
    if (time >= split(last))
        return last;
    // From the nearer second, because the very first and last moments' other one is out of reach.
    const auto fromBelow = time.seconds >= 0;
    const auto count = (time.seconds + (fromBelow ? 0 : 1)) * nanosecondsASecond + time.nanoseconds
        - (fromBelow ? 0 : nanosecondsASecond);
    return Timestamp(std::chrono::nanoseconds(count));
}

std::tm localTime(std::int64_t seconds)
{
    // localtime_r need not look at TZ; once is enough, and costs a system call each time.
    static const bool zoneIsSet = (::tzset(), true);
    static_cast<void>(zoneIsSet);
    const std::time_t time = seconds;
    std::tm local{};
    ::localtime_r(&time, &local);
    return local;
}

/// What the wall clock is ahead of UTC at a moment, in seconds.
std::int64_t offsetAt(std::int64_t seconds)
{
    return localTime(seconds).tm_gmtoff;
}

SplitTime wallClockAt(const SplitTime& moment)
{
    return {moment.seconds + offsetAt(moment.seconds), moment.nanoseconds};
}

/// The moment at which the wall clock shows `wall`: the first of two, and for a skipped reading
/// the one as far behind the gap's start. mktime(3) would do, but it leaves skipped readings open
/// and may look at the zone's file each time.
SplitTime momentOf(const SplitTime& wall)
{
    // No zone is a day away from UTC, so these two lie on either side, and a change of the clock
    // that concerns this reading lies between them.
    const auto offsetBefore = offsetAt(wall.seconds - secondsADay);
    const auto offsetAfter = offsetAt(wall.seconds + secondsADay);
    const auto before = wall.seconds - offsetBefore;
    if (offsetBefore == offsetAfter || offsetAt(before) == offsetBefore)
        return {before, wall.nanoseconds};
    const auto after = wall.seconds - offsetAfter;
    const bool skipped = offsetAt(after) != offsetAfter;
    return {skipped ? before : after, wall.nanoseconds};
}

SplitTime daysAfter(const SplitTime& moment, std::int64_t days)
{
    auto wall = wallClockAt(moment);
    wall.seconds += days * secondsADay;
    return momentOf(wall);
}

/// Whether the clock, `offset` ahead of UTC at the moment, runs evenly from two days before it to
/// two days after it.
bool isFarFromClockChange(const SplitTime& moment, std::int64_t offset)
{
    return offsetAt(moment.seconds - 2 * secondsADay) == offset
        && offsetAt(moment.seconds + 2 * secondsADay) == offset;
}

} // namespace

std::int64_t SystemCalendar::wholeDays(Timestamp from, Timestamp to) const
{
    const auto start = split(from);
    const auto end = split(to);
    const std::int64_t direction = from <= to ? 1 : -1;

    const auto startWall = wallClockAt(start);
    const auto endWall = wallClockAt(end);
    const auto& earlier = direction > 0 ? startWall : endWall;
    const auto& later = direction > 0 ? endWall : startWall;
    const auto seconds
        = later.seconds - earlier.seconds - (later.nanoseconds < earlier.nanoseconds ? 1 : 0);
    auto days = std::max<std::int64_t>(floorDivided(seconds, secondsADay), 0);
    // Readings of the wall clock are in the order of the moments wherever the clock runs evenly.
    if (isFarFromClockChange(end, endWall.seconds - end.seconds))
        return direction * days;

    const auto reaches = [&](std::int64_t count) {
        const auto moved = daysAfter(start, direction * count);
        return direction > 0 ? moved <= end : moved >= end;
    };
    if (reaches(days + 1))
        ++days;
    else if (days > 0 && !reaches(days))
        --days;
    return direction * days;
}

Timestamp SystemCalendar::daysBefore(Timestamp moment, std::int64_t days) const
{
    if (days == 0)
        return moment;
    return joined(daysAfter(split(moment), -std::clamp(days, -mostDays, mostDays)));
}

std::string SystemCalendar::dateText(Timestamp moment) const
{
    const auto local = localTime(split(moment).seconds);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d %s %d at %02d:%02d", local.tm_mday,
        months.at(static_cast<std::size_t>(local.tm_mon)).data(), local.tm_year + 1900,
        local.tm_hour, local.tm_min);
    return text.data();
}

} // namespace kestavon
