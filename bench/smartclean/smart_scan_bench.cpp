// Scans a home for junk as the program does, category by category, and tells how long each took and
// how soon a stop was heard: smart_scan_bench HOME [SYSTEM_ROOT]
// Makes a Mac's home with that many files in its places of junk: smart_scan_bench --make HOME FILES
#include "platform/host_layout.h"
#include "smartclean/smart_scanner.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

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

/// Fills the home's places with folders of a hundred sparse files, five folders an item.
bool makeHome(const std::string& home, int files)
{
    namespace fs = std::filesystem;
    fs::create_directories(home + "/Library");
    const auto layout = makeHostLayout({.home = home, .systemRoot = home});
    std::vector<std::string> places;
    for (const auto& location : layout.junkLocations) {
        if (location.rule == JunkRule::everyEntry && location.folder.starts_with(home + '/'))
            places.push_back(location.folder);
    }
    constexpr int filesOfFolder = 100;
    constexpr int foldersOfItem = 5;
    const int folders = files / filesOfFolder;
    for (int folder = 0; folder < folders; ++folder) {
        const auto item = static_cast<std::size_t>(folder / foldersOfItem);
        const auto path = places[item % places.size()] + "/item-" + std::to_string(item) + "/part-"
            + std::to_string(folder % foldersOfItem);
        fs::create_directories(path);
        for (int file = 0; file < filesOfFolder; ++file) {
            const auto name = path + "/file-" + std::to_string(file) + ".dat";
            const int made = ::open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
            if (made < 0 || ::ftruncate(made, 1000 + file) != 0 || ::close(made) != 0)
                return false;
        }
    }
    return true;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount == 4 && std::string_view(arguments[1]) == "--make")
        return makeHome(arguments[2], std::atoi(arguments[3])) ? 0 : 1;
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: smart_scan_bench HOME [SYSTEM_ROOT] | --make HOME FILES\n");
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
