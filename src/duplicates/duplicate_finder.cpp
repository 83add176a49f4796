#include "duplicates/duplicate_finder.h"

#include "concurrency/cancelled.h"
#include "concurrency/thread_crew.h"
#include "duplicates/duplicate_search.h"
#include "duplicates/large_files.h"
#include "duplicates/left_out_folders.h"
#include "duplicates/small_files.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace kestavon {

namespace {

unsigned threadsForThisMachine()
{
    constexpr unsigned fewest = 4; // A disk is faster when it is asked for several things at once.
    constexpr unsigned most = 16; // Beyond these it, or the memory, is what is waited for.
    return std::clamp(std::thread::hardware_concurrency(), fewest, most);
}

/// See `foldersLeftOut`, which may ask a disk that does not answer.
std::vector<bool> leftOut(const std::shared_ptr<const RecordList>& records,
    const DuplicateSearchOptions& options, const std::stop_token& stop)
{
    const auto folders = std::make_shared<std::vector<bool>>();
    runOnThreads(
        1, [folders, records, options] { *folders = foldersLeftOut(*records, options); }, stop);
    return std::move(*folders);
}

} // namespace

std::shared_ptr<const DuplicateList> findDuplicates(std::shared_ptr<const RecordList> records,
    const DuplicateSearchOptions& options, const std::stop_token& stop)
{
    const auto threads = options.threads > 0 ? options.threads : threadsForThisMachine();
    auto candidates = lookAtCandidates(
        records, sharingTheirSize(*records, leftOut(records, options, stop)), threads, stop);
    const auto search = std::make_shared<DuplicateSearch>(
        std::move(records), std::move(candidates), options.progress, stop);

    // By the present sizes: equal contents have equal ones, whatever the scan had recorded.
    const auto& files = search->files();
    const auto firstLarge = static_cast<std::uint32_t>(
        std::ranges::upper_bound(files, largestSmallFile, {},
            [](const CandidateFile& file) { return file.identity.size; })
        - files.begin());
    const auto sameSize = [](const CandidateFile& a, const CandidateFile& b) {
        return a.identity.size == b.identity.size;
    };
    const auto small = setsOf(files, 0, firstLarge, sameSize);
    const auto large
        = setsOf(files, firstLarge, static_cast<std::uint32_t>(files.size()), sameSize);
    search->expect(small);
    search->expect(large);
    compareSmallFiles(search, small, threads, stop);
    compareLargeFiles(search, large, threads, stop);
    do {
        runOnThreads(
            threads, [search] { search->hashLateNames(); }, stop);
    } while (search->hashPeersLater());
    return search->groups();
}

} // namespace kestavon
