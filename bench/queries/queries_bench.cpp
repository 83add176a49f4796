// Times sorting and filtering of a scan's records beside the plain ways of doing the same, in
// interleaved rounds, and checks that both find the same.
//
//   queries_bench [RECORDS [ROUNDS [ACCENTED]]]   1000000, 5; one name in 50 is not ASCII

#include "core/model/record_filter.h"
#include "core/model/record_queries.h"
#include "core/model/record_view.h"
#include "made_records.h"
#include "thread_time.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include <malloc.h>
#include <unicode/unistr.h>

namespace {

using namespace kestavon;

struct Job {
    const char* name;
    std::function<void()> run;
    std::function<void()> prepare = [] {};
};

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Runs the jobs in turn and prints for each the median of its times and of its times' ratios to
/// the first job's of the same round.
void race(int rounds, const std::vector<Job>& jobs)
{
    std::vector<std::vector<double>> times(jobs.size());
    std::vector<std::vector<double>> ratios(jobs.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < jobs.size(); ++i) {
            jobs[i].prepare();
            times[i].push_back(bench::threadMilliseconds(jobs[i].run));
            ratios[i].push_back(times[i].back() / times[0].back());
        }
    }
    for (std::size_t i = 0; i < jobs.size(); ++i)
        std::printf(
            "  %-40s %9.2f ms %9.2f x\n", jobs[i].name, median(times[i]), median(ratios[i]));
}

std::size_t searchWithToLower(const std::vector<std::string>& paths, const std::string& needle)
{
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a))
            == std::tolower(static_cast<unsigned char>(b));
    };
    return static_cast<std::size_t>(std::ranges::count_if(paths, [&](const std::string& path) {
        return std::search(path.begin(), path.end(), needle.begin(), needle.end(), same)
            != path.end();
    }));
}

std::size_t searchFolded(const std::vector<std::string>& paths, const std::string& needle)
{
    const auto folded
        = [](const std::string& text) { return icu::UnicodeString::fromUTF8(text).foldCase(); };
    const auto sought = folded(needle);
    return static_cast<std::size_t>(std::ranges::count_if(
        paths, [&](const std::string& path) { return folded(path).indexOf(sought) >= 0; }));
}

void sorting(const RecordList& records, int rounds)
{
    std::vector<std::uint32_t> plain(records.size());
    const auto standsBefore = [&records](std::uint32_t a, std::uint32_t b) {
        return records.fileSize(a) > records.fileSize(b);
    };
    Column<std::uint32_t> ours;
    std::printf("sorting by size\n");
    race(rounds,
        {{"largestFirst", [&] { ours = largestFirst(records); }},
            {"std::stable_sort of positions", [&] {
                 std::iota(plain.begin(), plain.end(), 0U);
                 std::ranges::stable_sort(plain, standsBefore);
             }}});
    std::printf("  same order: %s\n", std::ranges::equal(ours.span(), plain) ? "yes" : "NO");

    const auto limit = std::min<std::size_t>(100, records.size());
    std::vector<std::uint32_t> files;
    std::printf("the largest files\n");
    race(rounds,
        {{"largestFiles", [&] { files = largestFiles(records, limit); }},
            {"std::partial_sort of positions", [&] {
                 std::iota(plain.begin(), plain.end(), 0U);
                 std::partial_sort(plain.begin(),
                     plain.begin() + static_cast<std::ptrdiff_t>(limit), plain.end(), standsBefore);
             }}});
}

void filtering(const std::shared_ptr<const RecordList>& records, int rounds)
{
    std::vector<std::string> paths;
    paths.reserve(records->size());
    for (std::size_t i = 0; i < records->size(); ++i)
        paths.push_back(records->path(i));
    std::optional<RecordFilter> filter;
    std::printf("filtering; making the filter, once a list: %.2f ms\n",
        bench::threadMilliseconds([&] { filter.emplace(records); }));
    RecordViews views(records, RecordViews::Contents::everything);
    // No needle contains this one, so that none profits from its result.
    const auto forget = [&views] { views.view("\x01"); };
    forget();
    for (const std::string needle :
        {"report-77", "report", "e", "editor-7", "zzqq", "-é1", "s/photo"}) {
        std::size_t rows = 0;
        std::size_t plainRows = 0;
        std::size_t foldedRows = 0;
        std::printf("\"%s\"\n", needle.c_str());
        race(rounds,
            {{"view: to the finished visible list", [&] { rows = views.view(needle)->rowCount(); },
                 forget},
                {"  of which finding the matches", [&] { filter->matches(needle); }},
                {"tolower search in every path",
                    [&] { plainRows = searchWithToLower(paths, needle); }}});
        race(1, {{"ICU folding and search in every path", [&] {
                      foldedRows = searchFolded(paths, needle);
                  }}});
        std::printf("  %zu rows; same count: %s, %s\n", rows, rows == plainRows ? "yes" : "NO",
            rows == foldedRows ? "yes" : "NO");
    }

    std::printf("typing a letter more each time:");
    std::string typed;
    for (const char letter : std::string("report-77")) {
        typed += letter;
        std::printf(" %.2f", bench::threadMilliseconds([&] { views.view(typed); }));
    }
    std::printf(" ms\n");
}

} // namespace

int main(int argc, char** argv)
{
    // A scan is sorted once: every round has to start with memory that was never touched, not with
    // what the round before it has freed.
    ::mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    const auto argument = [&](int i, unsigned long otherwise) {
        return argc > i ? std::strtoul(argv[i], nullptr, 10) : otherwise;
    };
    const auto records
        = bench::madeRecords(argument(1, 1'000'000), static_cast<unsigned>(argument(3, 50)));
    const auto rounds = static_cast<int>(argument(2, 5));
    std::printf("%zu records, %zu folders, %.1f MB of names\n", records->size(),
        records->folderCount(), static_cast<double>(records->nameBytes().size()) / 1e6);
    sorting(*records, rounds);
    filtering(records, rounds);
}
