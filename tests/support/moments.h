#pragma once

#include "core/domain/timestamp.h"

namespace kestavon::test {

/// The moment at which the clocks in UTC show this.
inline Timestamp utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0,
    int second = 0, int nanosecond = 0)
{
    using namespace std::chrono;
    return sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day))
        + hours(hour) + minutes(minute) + seconds(second) + nanoseconds(nanosecond);
}

} // namespace kestavon::test
