// Scans a folder, finds its duplicates and tells what that took:
// duplicates_bench FOLDER [ROUNDS] [THREADS]
#include "duplicates/duplicate_finder.h"
#include "storage/file_scanner.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <sys/resource.h>

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double processorMilliseconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

void searchOnce(const char* folder, unsigned threads)
{
    const auto processorBefore = processorMilliseconds();
    const auto start = Clock::now();
    kestavon::FileScanner scanner({}, std::uint64_t{1} << 40, [] { return std::nullopt; });
    kestavon::ScanProgressCounter counter;
    const auto scan = scanner.scan(folder, counter, [](std::int64_t) {}, {});
    const auto scanTime = millisecondsSince(start);
    const auto duplicates = kestavon::findDuplicates(scan.records, {.threads = threads}, {});
    const auto time = millisecondsSince(start);

    std::size_t files = 0;
    for (std::size_t i = 0; i < duplicates->size(); ++i)
        files += duplicates->members(i).size();
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf(
        "%zu entries: %zu groups, %zu files, %lld bytes reclaimable; wall %.0f ms, of it the "
        "scan %.0f, processor %.0f ms, peak of the process %.1f MB\n",
        scan.records->size(), duplicates->size(), files,
        static_cast<long long>(duplicates->reclaimableBytes()), time, scanTime,
        processorMilliseconds() - processorBefore, static_cast<double>(usage.ru_maxrss) / 1024);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: duplicates_bench FOLDER [ROUNDS] [THREADS]\n");
        return 2;
    }
    const int rounds = argumentCount > 2 ? std::atoi(arguments[2]) : 1;
    const auto threads = argumentCount > 3 ? static_cast<unsigned>(std::atoi(arguments[3])) : 0;
    for (int round = 0; round < rounds; ++round)
        searchOnce(arguments[1], threads);
}
