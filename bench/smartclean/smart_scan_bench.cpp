// Scans a home for junk as the program does, category by category, and tells how long each took and
// how soon a stop was heard: smart_scan_bench HOME [SYSTEM_ROOT]
#include "platform/host_layout.h"
#include "smartclean/smart_scanner.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// Scans every category and prints a line for each; returns how long that took.
Milliseconds scanAll(const SmartScanner& scanner)
{
    const auto start = Clock::now();
    for (const auto& [category, title] : allCases<JunkCategory>()) {
        const auto begun = Clock::now();
        const auto items = scanner.scanCategory(category);
        const Milliseconds took = Clock::now() - begun;
        long long bytes = 0;
        for (const auto& item : items)
            bytes += item.estimatedBytes;
        std::printf("%-16.*s %6zu items %16lld bytes %8.1f ms\n", static_cast<int>(title.size()),
            title.data(), items.size(), bytes, took.count());
    }
    return Clock::now() - start;
}

/// How long a scan of all went on after a stop that came when `delay` had passed.
Milliseconds timeToStop(const SmartScanner& scanner, Milliseconds delay)
{
    std::stop_source stop;
    Clock::time_point stoppedAt;
    std::thread stopper([&] {
        std::this_thread::sleep_for(delay);
        stoppedAt = Clock::now();
        stop.request_stop();
    });
    for (const auto& entry : allCases<JunkCategory>())
        scanner.scanCategory(entry.value, stop.get_token());
    const auto end = Clock::now();
    stopper.join();
    return std::max(Milliseconds(end - stoppedAt), Milliseconds(0));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: smart_scan_bench HOME [SYSTEM_ROOT]\n");
        return 2;
    }
    const auto* const systemRoot = argumentCount > 2 ? arguments[2] : "/";
    const SmartScanner scanner(makeHostLayout({.home = arguments[1], .systemRoot = systemRoot}),
        {.clock = std::make_shared<SystemClock>(),
            .calendar = std::make_shared<SystemCalendar>(),
            .runningApplications = std::make_shared<SystemRunningApplications>()});
    const auto whole = scanAll(scanner);
    std::printf("all: %.1f ms\n", whole.count());
    Milliseconds longest{};
    constexpr int stops = 20;
    for (int i = 0; i < stops; ++i)
        longest = std::max(longest, timeToStop(scanner, whole * i / stops));
    std::printf("longest time to stop, of %d: %.1f ms\n", stops, longest.count());
}
