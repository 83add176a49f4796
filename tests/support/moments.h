#pragma once

#include "core/domain/timestamp.h"

#include <thread>

namespace kestavon::test {

/// The moment at which the clocks in UTC show this.
inline Timestamp utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0,
    int second = 0, int nanosecond = 0)
{
    using namespace std::chrono;
    return sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day))
        + hours(hour) + minutes(minute) + seconds(second) + nanoseconds(nanosecond);
}

/// What happens to a file from now on gets other times than what happened before: many kernels give
/// it that of their last tick.
inline void waitForATick()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

} // namespace kestavon::test
