#pragma once

#include "core/domain/timestamp.h"

#include <cstdint>
#include <string>

namespace kestavon {

/// Days and dates in the machine's time zone (TZ, else the system's), Gregorian. Any thread.
class Calendar {
public:
    virtual ~Calendar() = default;

    /// Whole days from `from` to `to`: the largest n for which the same wall-clock time n calendar
    /// days after `from` is not later than `to`. Negative when `to` is earlier (truncated toward
    /// zero). A day with a clock change is one day, whatever its length.
    virtual std::int64_t wholeDays(Timestamp from, Timestamp to) const = 0;

    /// The same wall-clock time `days` calendar days before `moment`; a time that a clock change
    /// skipped moves forward by the gap.
    virtual Timestamp daysBefore(Timestamp moment, std::int64_t days) const = 0;

    /// Date and time as the screens show them: "16 Nov 2026 at 14:05".
    virtual std::string dateText(Timestamp moment) const = 0;
};

/// The calendar of the C library's time zone.
class SystemCalendar final : public Calendar {
public:
    std::int64_t wholeDays(Timestamp from, Timestamp to) const override;
    Timestamp daysBefore(Timestamp moment, std::int64_t days) const override;
    std::string dateText(Timestamp moment) const override;
};

/// How long ago `moment` was, in the largest unit that fits, rounded down: "now" below a second
/// (and for any later moment), "1 second ago", "5 minutes ago", "1 hour ago" … "2 years ago".
std::string relativeDateText(Timestamp moment, Timestamp now);

} // namespace kestavon
