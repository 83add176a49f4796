#pragma once

#include <time.h>

namespace kestavon::bench {

/// Processor time that `job` takes on this thread, in milliseconds: for jobs that neither wait nor
/// hand work to other threads. Unlike the time on the clock it says the same on a busy machine.
template <class Job> double threadMilliseconds(Job&& job)
{
    const auto now = [] {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    };
    const auto start = now();
    job();
    return now() - start;
}

} // namespace kestavon::bench
