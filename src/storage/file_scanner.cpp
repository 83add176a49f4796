#include "storage/file_scanner.h"

#include "storage/depth_first_stitch.h"
#include "storage/tree_walk.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace kestavon {

namespace {

unsigned cores()
{
    return std::max(1U, std::thread::hardware_concurrency());
}

std::string withoutTrailingSlash(std::string path)
{
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

} // namespace

FileScanner::FileScanner(std::vector<std::string> excludedPrefixes, std::uint64_t memoryLimitBytes,
    MemoryProbe probe, unsigned threads)
    : m_excludedPrefixes(std::move(excludedPrefixes))
    , m_memoryLimitBytes(memoryLimitBytes)
    , m_probe(std::move(probe))
    , m_threads(threads != 0 ? threads : threadsForWalks())
{
}

ScanOutcome FileScanner::scan(const std::string& root, ScanProgressCounter& counter,
    const LiveCountSink& postLiveCount, std::stop_token stop)
{
    const auto walkedRoot = withoutTrailingSlash(root);
    const auto walk = std::make_shared<TreeWalk>(TreeWalkOrder{
        .root = walkedRoot,
        .excludedPrefixes = m_excludedPrefixes,
        .memoryLimitBytes = m_memoryLimitBytes,
        .memoryProbe = m_probe,
        .threads = m_threads,
        .counter = &counter,
        .postLiveCount = postLiveCount,
        .stop = stop,
    });
    walk->start();
    walk->waitForRecords();
    ScanOutcome outcome;
    outcome.hitMemoryLimit = walk->hitMemoryLimit();
    outcome.memoryLimit = m_memoryLimitBytes;
    outcome.rootProblem = walk->rootProblem();
    outcome.unreadableFolders = walk->unreadableFolders();
    outcome.records = std::make_shared<const RecordList>(stitchDepthFirst(
        walkedRoot, walk->stores(), walk->folderCount(), std::min(m_threads, cores()), stop));
    return outcome;
}

} // namespace kestavon
