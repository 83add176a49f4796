// The scanner beside a plain walk of the standard library, over trees of every shape.
#include "storage/scans.h"
#include "support/temporary_tree.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <iterator>
#include <random>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {
namespace {

namespace fs = std::filesystem;
using test::plainScanner;
using test::scanOf;
using test::TemporaryTree;

struct Found {
    std::string path;
    std::int64_t size = 0;
    std::int64_t modifiedAt = 0;
    bool isDirectory = false;

    friend bool operator==(const Found&, const Found&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Found& found)
    {
        return out << found.path << ' ' << found.size << ' ' << found.modifiedAt;
    }
};

/// What an unhurried walk finds.
void walkPlainly(const std::string& folder, std::vector<Found>& found)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    for (const auto& name : names) {
        const auto path = folder + '/' + name;
        struct stat facts { };
        ASSERT_EQ(::lstat(path.c_str(), &facts), 0);
        const bool isDirectory = S_ISDIR(facts.st_mode);
        found.push_back({.path = path,
            .size = isDirectory ? 0 : facts.st_size,
            .modifiedAt = facts.st_mtim.tv_sec * 1'000'000'000 + facts.st_mtim.tv_nsec,
            .isDirectory = isDirectory});
        if (isDirectory)
            walkPlainly(path, found);
    }
}

std::vector<Found> plainWalk(const std::string& root)
{
    std::vector<Found> found;
    walkPlainly(root, found);
    return found;
}

std::vector<Found> foundIn(const RecordList& records)
{
    std::vector<Found> found;
    for (std::size_t i = 0; i < records.size(); ++i) {
        found.push_back({.path = records.path(i),
            .size = records.fileSize(i),
            .modifiedAt = records.modifiedAt(i)->time_since_epoch().count(),
            .isDirectory = records.isDirectory(i)});
    }
    return found;
}

/// What a record list promises of its folders.
void expectSoundFolders(const RecordList& records)
{
    ASSERT_GE(records.folderCount(), 1U);
    EXPECT_EQ(records.folderParent(0), 0U);
    for (std::uint32_t folder = 1; folder < records.folderCount(); ++folder)
        ASSERT_LT(records.folderParent(folder), folder);
    for (std::size_t i = 0; i < records.size(); ++i)
        ASSERT_LT(records.folderOf(i), records.folderCount());
}

void expectFoundByEveryCrew(const TemporaryTree& tree)
{
    const auto expected = plainWalk(tree.path());
    for (const unsigned threads : {1U, 2U, 5U, 16U}) {
        const auto outcome = scanOf(tree.path(), plainScanner(threads));
        EXPECT_TRUE(foundIn(*outcome.records) == expected)
            << "with " << threads << " threads, " << outcome.records->size() << " records for "
            << expected.size() << " entries";
        EXPECT_FALSE(outcome.hitMemoryLimit);
        EXPECT_EQ(outcome.unreadableFolders, 0U);
        expectSoundFolders(*outcome.records);
    }
}

/// Fills a folder with `count` empty files, some with subfolders among them.
void fill(const TemporaryTree& tree, const std::string& folder, int count, int foldersEvery)
{
    const int fd = ::open(tree.makeFolder(folder).c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < count; ++i) {
        const auto name = "entry-" + std::to_string(i * 7919 % count);
        if (foldersEvery != 0 && i % foldersEvery == 0) {
            ::mkdirat(fd, name.c_str(), 0700);
            ::close(::openat(fd, (name + "/inside").c_str(), O_WRONLY | O_CREAT, 0600));
        } else {
            ::close(::openat(fd, name.c_str(), O_WRONLY | O_CREAT, 0600));
        }
    }
    ::close(fd);
}

TEST(FileScannerTrees, RandomTreesAreFoundAsTheyAre)
{
    for (const unsigned seed : {1U, 2U, 3U, 4U}) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto below = [&random](unsigned n) { return random() % n; };
        const TemporaryTree tree;
        std::vector<std::string> folders{""};
        for (int i = 0; i < 1500; ++i) {
            // A few names, so that many begin alike and differ late.
            static constexpr const char* stems[]
                = {"a", "a-", "a.", "A", "same beginning ", "\xc3\xa9", "."};
            const auto name = stems[below(7)] + std::to_string(below(500));
            const auto& parent = below(3) == 0
                ? folders.back()
                : folders[below(static_cast<unsigned>(folders.size()))];
            const auto path = parent + name;
            if (fs::exists(fs::symlink_status(tree / path)))
                continue;
            switch (below(8)) {
            case 0:
            case 1:
                tree.folder(path);
                folders.push_back(path + '/');
                break;
            case 2: tree.link(path, "../" + name); break;
            default: tree.file(path, below(1 << 20));
            }
        }
        expectFoundByEveryCrew(tree);
    }
}

TEST(FileScannerTrees, AFlatFolderOfFiftyThousandIsFoundWhole)
{
    const TemporaryTree tree;
    fill(tree, "flat", 50'000, 0);
    tree.file("flat-after");
    expectFoundByEveryCrew(tree);
}

TEST(FileScannerTrees, FoldersAmongThousandsOfFilesKeepTheirPlaces)
{
    const TemporaryTree tree;
    fill(tree, "mixed", 6000, 10);
    fill(tree, "mixed/entry-0", 5000, 40);
    expectFoundByEveryCrew(tree);
}

TEST(FileScannerTrees, AnEmptyTreeGivesAnEmptyList)
{
    const TemporaryTree tree;
    const auto outcome = scanOf(tree.path());
    EXPECT_TRUE(outcome.records->empty());
    EXPECT_EQ(outcome.records->root(), tree.path());
    EXPECT_FALSE(outcome.rootProblem);
}

TEST(FileScannerTrees, FiveThousandLevelsAreWalkedToTheBottom)
{
    const TemporaryTree tree;
    const std::string name(40, 'd');
    constexpr int levels = 5000;
    tree.chain(name, levels);

    const auto records = scanOf(tree.path()).records;
    ASSERT_EQ(records->size(), levels + 1U);
    EXPECT_EQ(records->name(0), name);
    EXPECT_EQ(records->name(levels), "bottom");
    EXPECT_EQ(
        records->path(levels).size(), tree.path().size() + levels * 41 + sizeof "/bottom" - 1);
}

TEST(FileScannerTrees, EntriesThatVanishMeanwhileAreLeftOutAndNoneIsInvented)
{
    const TemporaryTree tree;
    for (int folder = 0; folder < 40; ++folder)
        fill(tree, "folder" + std::to_string(folder), 200, 20);
    fill(tree, "large", 6000, 50);
    const auto before = plainWalk(tree.path());

    std::atomic<bool> scanned = false;
    std::jthread remover([&] {
        std::mt19937 random(7);
        for (int folder = 0; folder < 40 && !scanned; ++folder) {
            if (folder % 2 == 0)
                fs::rename(tree / ("folder" + std::to_string(folder)), tree / "gone");
            fs::remove_all(tree / (folder % 2 ? "folder" + std::to_string(folder) : "gone"));
            fs::remove(tree / ("large/entry-" + std::to_string(folder * 50 + 1)));
        }
    });
    std::vector<Found> found;
    for (int round = 0; round < 5; ++round)
        found = foundIn(*scanOf(tree.path()).records);
    scanned = true;
    remover.join();

    const auto byPath = [](const Found& a, const Found& b) { return a.path < b.path; };
    auto known = before;
    std::ranges::sort(known, byPath);
    for (const auto& entry : found) {
        if (entry.path.find("/gone") != std::string::npos)
            continue;
        EXPECT_TRUE(std::ranges::binary_search(known, entry, byPath)) << entry.path;
    }
    // What stands when nobody changes anything any more is found as it is.
    expectFoundByEveryCrew(tree);
}

} // namespace
} // namespace kestavon
