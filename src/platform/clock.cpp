#include "platform/clock.h"

namespace kestavon {

Timestamp SystemClock::now() const
{
    return std::chrono::time_point_cast<Timestamp::duration>(std::chrono::system_clock::now());
}

} // namespace kestavon
