// How a scan counts, and what ends it early.
#include "concurrency/cancelled.h"
#include "storage/scans.h"
#include "support/temporary_tree.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;
using test::plainScanner;
using test::TemporaryTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t limit = 1 << 30;

void fill(const TemporaryTree& tree, const std::string& folder, int count)
{
    for (int i = 0; i < count; ++i)
        tree.file(folder + std::to_string(i));
}

/// A scan with all that it told on the way.
struct Watched {
    ScanOutcome outcome;
    std::int64_t count = 0;
    std::vector<std::int64_t> posts;
};

Watched watchedScan(const std::string& root, FileScanner scanner)
{
    Watched watched;
    ScanProgressCounter counter;
    std::mutex mutex;
    const auto post = [&](std::int64_t count) {
        const std::lock_guard lock(mutex);
        watched.posts.push_back(count);
    };
    watched.outcome = scanner.scan(root, counter, post, {});
    watched.count = counter.count();
    return watched;
}

TEST(FileScannerCounts, PostsEveryThousandthRecordOnce)
{
    const TemporaryTree tree;
    fill(tree, "", 999);
    auto watched = watchedScan(tree.path(), plainScanner());
    EXPECT_EQ(watched.count, 999);
    EXPECT_THAT(watched.posts, IsEmpty());

    tree.file("last");
    watched = watchedScan(tree.path(), plainScanner());
    EXPECT_EQ(watched.count, 1000);
    EXPECT_THAT(watched.posts, ElementsAre(1000));

    for (int folder = 0; folder < 30; ++folder)
        fill(tree, "folder" + std::to_string(folder) + '/', 99);
    watched = watchedScan(tree.path(), plainScanner());
    EXPECT_EQ(watched.count, 4000);
    EXPECT_THAT(watched.posts, UnorderedElementsAre(1000, 2000, 3000, 4000));
}

TEST(FileScannerCounts, CountsRecordsAndNotWhatIsExcluded)
{
    const TemporaryTree tree;
    fill(tree, "", 999);
    fill(tree, "excluded/", 5);
    const auto watched
        = watchedScan(tree.path(), FileScanner({tree / "excluded"}, test::noLimit, {}));
    EXPECT_EQ(watched.outcome.records->size(), 999U);
    EXPECT_EQ(watched.count, 999);
    EXPECT_THAT(watched.posts, IsEmpty());
}

TEST(FileScannerMemory, StopsBeforeTheThousandthEntryWhenThereIsTooMuchAlready)
{
    const TemporaryTree tree;
    for (int folder = 0; folder < 20; ++folder)
        fill(tree, "folder" + std::to_string(folder) + '/', 150);
    for (const unsigned threads : {1U, 8U}) {
        const auto watched = watchedScan(tree.path(),
            FileScanner(
                {}, limit, [] { return std::optional(limit); }, threads));
        EXPECT_TRUE(watched.outcome.hitMemoryLimit);
        EXPECT_EQ(watched.outcome.records->size(), 999U);
        EXPECT_EQ(watched.count, 999);
        EXPECT_THAT(watched.posts, IsEmpty());
    }
}

TEST(FileScannerMemory, ExcludedEntriesAreVisitsAndTheRootIsNot)
{
    const TemporaryTree tree;
    fill(tree, "", 998);
    tree.file("excluded/inside");
    const auto scan = [&] {
        return watchedScan(tree.path(),
            FileScanner({tree / "excluded"}, limit, [] { return std::optional(limit); }));
    };
    EXPECT_FALSE(scan().outcome.hitMemoryLimit) << "999 visits";
    tree.file("zzz");
    const auto watched = scan();
    EXPECT_TRUE(watched.outcome.hitMemoryLimit);
    EXPECT_EQ(watched.outcome.records->size(), 998U) << "999 visits were granted, one is excluded";
}

TEST(FileScannerMemory, GoesOnBelowTheLimitAndWhenMemoryCannotBeTold)
{
    const TemporaryTree tree;
    fill(tree, "", 2500);
    auto watched
        = watchedScan(tree.path(), FileScanner({}, limit, [] { return std::optional(limit - 1); }));
    EXPECT_EQ(watched.count, 2500);
    watched = watchedScan(
        tree.path(), FileScanner({}, limit, [] { return std::optional<std::uint64_t>(); }));
    EXPECT_EQ(watched.count, 2500);
    EXPECT_FALSE(watched.outcome.hitMemoryLimit);
}

TEST(FileScannerMemory, KeepsOfEveryFolderItsFirstEntries)
{
    const TemporaryTree tree;
    for (int folder = 0; folder < 60; ++folder)
        fill(tree, "folder" + std::to_string(folder) + "/inner/", 120);
    const auto whole = test::scannedNames(tree.path());
    std::map<std::string, std::vector<std::string>> wholeByFolder;
    const auto folderOf
        = [](const std::string& name) { return name.substr(0, name.find_last_of('/') + 1); };
    for (const auto& name : whole)
        wholeByFolder[folderOf(name)].push_back(name);

    std::atomic<int> asked = 0;
    FileScanner scanner({}, limit, [&] { return std::optional(++asked < 4 ? 0 : limit); });
    const auto watched = watchedScan(tree.path(), std::move(scanner));
    EXPECT_TRUE(watched.outcome.hitMemoryLimit);
    const auto partial = test::namesIn(*watched.outcome.records);
    EXPECT_EQ(partial.size(), 3999U);
    std::map<std::string, std::vector<std::string>> partialByFolder;
    for (const auto& name : partial)
        partialByFolder[folderOf(name)].push_back(name);
    for (const auto& [folder, names] : partialByFolder) {
        auto prefix = wholeByFolder[folder];
        prefix.resize(std::min(prefix.size(), names.size()));
        EXPECT_EQ(names, prefix) << folder;
    }
}

TEST(FileScannerCancellation, ThrowsWhenThereIsAnythingToDeliver)
{
    const TemporaryTree tree;
    std::stop_source stop;
    stop.request_stop();
    ScanProgressCounter counter;
    auto scanner = plainScanner();
    EXPECT_TRUE(scanner.scan(tree.path(), counter, {}, stop.get_token()).records->empty())
        << "an empty folder is walked to its end all the same";
    EXPECT_EQ(scanner.scan(tree / "nowhere", counter, {}, stop.get_token()).rootProblem,
        RootProblem::missing);

    tree.file("file");
    EXPECT_THROW(scanner.scan(tree.path(), counter, {}, stop.get_token()), Cancelled);
    EXPECT_EQ(counter.count(), 0);
}

TEST(FileScannerCancellation, EndsAScanUnderWay)
{
    const TemporaryTree tree;
    fill(tree, "", 20'000);
    std::stop_source stop;
    ScanProgressCounter counter;
    auto scanner = plainScanner(2);
    const auto stopAtFirstPost = [&stop](std::int64_t) { stop.request_stop(); };
    EXPECT_THROW(scanner.scan(tree.path(), counter, stopAtFirstPost, stop.get_token()), Cancelled);
    EXPECT_LT(counter.count(), 20'000);
    EXPECT_EQ(test::scanOf(tree.path(), scanner).records->size(), 20'000U)
        << "the scanner is as good as new";
}

TEST(FileScannerCancellation, DoesNotWaitForAThreadThatIsStuck)
{
    const TemporaryTree tree;
    fill(tree, "", 1500);
    struct Gate {
        std::mutex mutex;
        std::condition_variable changed;
        bool reached = false;
        bool open = false;
        bool passed = false;
    };
    const auto gate = std::make_shared<Gate>();
    FileScanner scanner({}, limit, [gate] {
        std::unique_lock lock(gate->mutex);
        gate->reached = true;
        gate->changed.notify_all();
        gate->changed.wait(lock, [&] { return gate->open; });
        gate->passed = true;
        gate->changed.notify_all();
        return std::optional<std::uint64_t>();
    });
    std::stop_source stop;
    Clock::time_point stoppedAt;
    std::jthread stopper([&] {
        std::unique_lock lock(gate->mutex);
        gate->changed.wait(lock, [&] { return gate->reached; });
        stoppedAt = Clock::now();
        stop.request_stop();
    });
    {
        ScanProgressCounter counter; // gone before the thread is free again
        EXPECT_THROW(scanner.scan(tree.path(), counter, {}, stop.get_token()), Cancelled);
    }
    stopper.join();
    EXPECT_LT(Clock::now() - stoppedAt, 2s);

    std::unique_lock lock(gate->mutex);
    EXPECT_FALSE(gate->passed);
    gate->open = true;
    gate->changed.notify_all();
    EXPECT_TRUE(gate->changed.wait_for(lock, 10s, [&] { return gate->passed; }));
}

} // namespace
} // namespace kestavon
