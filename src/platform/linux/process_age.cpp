#include "platform/process_age.h"

#include <cstdio>

#include <time.h>
#include <unistd.h>

namespace kestavon {

long processAgeMilliseconds()
{
    FILE* stat = std::fopen("/proc/self/stat", "re");
    unsigned long long ticks = 0; // field 22 of proc(5), since boot
    const bool known = stat
        && std::fscanf(stat,
               "%*d (%*[^)]) %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %*u %*u %*d %*d %*d %*d "
               "%*d %*d %llu",
               &ticks)
            == 1;
    if (stat)
        std::fclose(stat);
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    const auto ticksPerSecond = static_cast<unsigned long long>(::sysconf(_SC_CLK_TCK));
    return known ? now.tv_sec * 1000 + now.tv_nsec / 1'000'000
            - static_cast<long>(ticks * 1000 / ticksPerSecond)
                 : -1;
}

} // namespace kestavon
