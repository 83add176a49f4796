// Scans a folder and reviews what was found: security_review_bench FOLDER [ROUNDS]
#include "platform/host_layout.h"
#include "security/security_scanner.h"
#include "storage/file_scanner.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

template <class Job> double millisecondsFor(Job job)
{
    const auto start = std::chrono::steady_clock::now();
    job();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: security_review_bench FOLDER [ROUNDS]\n");
        return 2;
    }
    const int rounds = argumentCount > 2 ? std::max(1, std::atoi(arguments[2])) : 5;
    const SecurityScanner reviewer(makeHostLayout({.home = arguments[1]}).persistenceMarkers);
    std::size_t records = 0;
    std::size_t findings = 0;
    std::vector<double> scans;
    std::vector<double> reviews;
    for (int round = 0; round < rounds; ++round) {
        FileScanner scanner({}, FileScanner::standardMemoryLimit * 8, [] { return 0; });
        ScanProgressCounter counter;
        ScanOutcome outcome;
        scans.push_back(millisecondsFor(
            [&] { outcome = scanner.scan(arguments[1], counter, [](auto) {}, {}); }));
        records = outcome.records->size();
        reviews.push_back(
            millisecondsFor([&] { findings = reviewer.scan(*outcome.records).size(); }));
    }
    std::printf("%zu records, %zu findings: scan %.1f ms, review %.1f ms, 1/%.0f of it\n", records,
        findings, median(scans), median(reviews), median(scans) / median(reviews));
}
