#include "platform/calendar.h"

#include <array>
#include <string_view>

namespace kestavon {

namespace {

struct Unit {
    std::int64_t seconds;
    std::string_view name;
};

// Months and years of average length: this is prose, not a deadline.
constexpr std::array<Unit, 7> unitsFromLargest{{
    {std::chrono::seconds(std::chrono::years(1)).count(), "year"},
    {std::chrono::seconds(std::chrono::months(1)).count(), "month"},
    {7 * 86400, "week"},
    {86400, "day"},
    {3600, "hour"},
    {60, "minute"},
    {1, "second"},
}};

} // namespace

std::string relativeDateText(Timestamp moment, Timestamp now)
{
    if (moment >= now)
        return "now";
    // Unsigned, because the two may lie further apart than 63 bits of nanoseconds.
    const auto nanoseconds = static_cast<std::uint64_t>(now.time_since_epoch().count())
        - static_cast<std::uint64_t>(moment.time_since_epoch().count());
    const auto seconds = static_cast<std::int64_t>(nanoseconds / 1'000'000'000);
    for (const auto& unit : unitsFromLargest) {
        if (seconds < unit.seconds)
            continue;
        const auto count = seconds / unit.seconds;
        return std::to_string(count) + ' ' + std::string(unit.name)
            + (count == 1 ? " ago" : "s ago");
    }
    return "now";
}

} // namespace kestavon
