// Scans a folder and tells what it cost: walk_bench FOLDER [ROUNDS] [THREADS]
#include "storage/file_scanner.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <sys/resource.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

std::int64_t residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    std::int64_t pages = 0;
    statm >> pages >> pages;
    return pages * ::sysconf(_SC_PAGESIZE);
}

double processorSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void scanOnce(const char* folder, unsigned threads)
{
    const auto residentBefore = residentBytes();
    const auto processorBefore = processorSeconds();
    const auto start = Clock::now();
    kestavon::FileScanner scanner(
        {"/System", "/private/var/db", "/private/var/vm"}, std::uint64_t{1} << 40,
        [] {
            const auto resident = residentBytes();
            return std::optional(static_cast<std::uint64_t>(resident));
        },
        threads);
    kestavon::ScanProgressCounter counter;
    const auto outcome = scanner.scan(folder, counter, [](std::int64_t) {}, {});
    const std::chrono::duration<double> wall = Clock::now() - start;

    const auto records = static_cast<double>(outcome.records->size());
    const auto perRecord = records > 0 ? 1 / records : 0;
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf(
        "entries %zu bytes %lld wall %.1f ms, %.0f ns an entry, processor %.0f ns an entry, "
        "resident %.1f bytes a record, peak of the process %.1f MB, unreadable %llu\n",
        outcome.records->size(), static_cast<long long>(outcome.records->summary().bytes),
        wall.count() * 1e3, wall.count() * 1e9 * perRecord,
        (processorSeconds() - processorBefore) * 1e9 * perRecord,
        static_cast<double>(residentBytes() - residentBefore) * perRecord,
        static_cast<double>(usage.ru_maxrss) / 1024,
        static_cast<unsigned long long>(outcome.unreadableFolders));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: walk_bench FOLDER [ROUNDS] [THREADS]\n");
        return 2;
    }
    const int rounds = argumentCount > 2 ? std::atoi(arguments[2]) : 1;
    const auto threads = argumentCount > 3 ? static_cast<unsigned>(std::atoi(arguments[3])) : 0;
    for (int round = 0; round < rounds; ++round)
        scanOnce(arguments[1], threads);
}
