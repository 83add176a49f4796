#include "concurrency/cancelled.h"
#include "duplicates/duplicate_search.h"
#include "duplicates/file_reading.h"
#include "duplicates/searches.h"
#include "support/temporary_tree.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <span>
#include <thread>

#include <gmock/gmock.h>
#include <sys/resource.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(DuplicateFinder, GroupsThatFreeMostComeFirstAndTiesByTheirFirstFile)
{
    const test::TemporaryFolder folder;
    const std::string thousand(1000, 'a');
    const auto a1 = folder.writeFile("1", thousand);
    const auto b1 = folder.writeFile("2", std::string(5000, 'b'));
    const auto a2 = folder.writeFile("3", thousand);
    const auto c1 = folder.writeFile("4", std::string(2000, 'c'));
    const auto b2 = folder.writeFile("5", std::string(5000, 'b'));
    const auto a3 = folder.writeFile("6", thousand);
    const auto c2 = folder.writeFile("7", std::string(2000, 'c'));
    const auto list = test::search(folder.path(), test::recordsOf({c1, a1, b1, a2, b2, a3, c2}));
    ASSERT_EQ(list->size(), 3U);
    EXPECT_THAT(test::groupsIn(*list)[0].paths, ElementsAre(b1, b2));
    EXPECT_THAT(test::groupsIn(*list)[1].paths, ElementsAre(c1, c2));
    EXPECT_THAT(test::groupsIn(*list)[2].paths, ElementsAre(a1, a2, a3));
    EXPECT_EQ(list->reclaimableBytes(0), 5000);
    EXPECT_EQ(list->reclaimableBytes(2), 2000);
    EXPECT_EQ(list->reclaimableBytes(), 9000);
    EXPECT_NE(list->id(0), list->id(1));
}

TEST(DuplicateFinder, FoldersAndEmptyFilesFormNoGroup)
{
    const test::TemporaryFolder folder;
    auto records = test::recordsOf({folder.writeFile("empty"), folder.writeFile("empty too"),
        folder.makeFolder("folder"), folder.writeFile("five", "12345")});
    records[2].size = 5; // as a program that counts folders may have recorded
    EXPECT_THAT(test::groupsIn(*test::search(folder.path(), records)), IsEmpty());
    EXPECT_THAT(*test::search("/nowhere", {}), IsEmpty());
}

TEST(DuplicateFinder, AFileThatShrankCountsByWhatItHoldsNow)
{
    const test::TemporaryFolder folder;
    const auto a = folder.writeFile("a", "same");
    const auto b = folder.writeFile("b", "same, and more");
    const auto records = test::recordsOf(
        {a, b, folder.writeFile("like a", "ABCD"), folder.writeFile("like b", "same, not more")});
    std::filesystem::resize_file(b, 4);
    const auto groups = test::groupsIn(*test::search(folder.path(), records));
    ASSERT_THAT(groups, SizeIs(1));
    EXPECT_THAT(groups[0].paths, ElementsAre(a, b));
}

TEST(DuplicateFinder, LeavesOutWhatLiesInTheFoldersItIsTold)
{
    const test::TemporaryFolder folder;
    const auto a = folder.writeFile("a/x", "same");
    const auto b = folder.writeFile("b/x", "same");
    const auto trashed = folder.writeFile("a/.Trash/deep/x", "same");
    const auto beside = folder.writeFile("a/.Trash-not/x", "same");
    const auto records = test::recordsOf({a, b, trashed, beside});
    const auto found = [&](std::vector<std::string> leaveOut) {
        return test::groupsIn(
            *test::search(folder.path(), records, {.leaveOut = std::move(leaveOut)}));
    };
    EXPECT_THAT(found({folder / "a/.Trash", "/elsewhere"}).at(0).paths, ElementsAre(a, b, beside));
    EXPECT_THAT(found({folder.path()}), IsEmpty());
}

TEST(DuplicateFinder, LeavesThemOutHoweverTheyAreReached)
{
    const test::TemporaryTree tree;
    tree.writeFile("var/home/a", "same");
    tree.writeFile("var/home/b", "same");
    tree.writeFile("var/home/share/Trash/files/c", "same");
    tree.writeFile("var/home/elsewhere/d", "same");
    tree.writeFile("var/home/other/Trash/e", "same");
    tree.writeFile("var/home/.Trash/f", "same");
    tree.link("home", "var/home"); // as whole systems have it
    tree.link("var/home/Safe", "elsewhere");
    for (const auto& root : {tree / "home", tree / "var/home"}) {
        const auto at = [&root](const std::string& name) { return root + "/" + name; };
        const auto records = test::recordsOf({at("a"), at("b"), at("share/Trash/files/c"),
            at("elsewhere/d"), at("other/Trash/e"), at(".Trash/f")});
        for (const auto& home : {tree / "home", tree / "var/home"}) {
            const auto groups = test::groupsIn(*test::search(root, records,
                {.leaveOut = {home + "/share/Trash", home + "/Safe", home + "/.Trash"}}));
            ASSERT_THAT(groups, SizeIs(1));
            EXPECT_THAT(groups[0].paths, ElementsAre(at("a"), at("b"), at("other/Trash/e")));
            EXPECT_THAT(
                test::groupsIn(*test::search(root, records, {.leaveOut = {home}})), IsEmpty());
        }
    }
}

TEST(DuplicateFinder, LeavesOutTheTrashOfAHomeOnAMacsDisk)
{
    const test::TemporaryTree tree;
    const auto kept = tree.writeFile("Users/ann/Documents/a", "same");
    const auto setting = tree.writeFile("Users/ann/Library/b", "same");
    const auto trashed = tree.writeFile("Users/ann/.Trash/c", "same");
    const auto named = tree.writeFile("work/.Trash/d", "same"); // nobody's home
    std::vector<FileRecord> records;
    for (const auto& path : {kept, setting, trashed, named})
        records.push_back(test::file(path, 4));
    const auto groups = test::groupsIn(*test::search(tree.path(), records));
    ASSERT_THAT(groups, SizeIs(1));
    EXPECT_THAT(groups[0].paths, ElementsAre(kept, setting, named));
}

TEST(DuplicateFinder, ReadsFilesDeeperThanAnyPathCanName)
{
    const test::TemporaryTree tree;
    const std::string name(200, 'n');
    tree.chain(name, 30); // six thousand bytes, with a file at the bottom
    std::string bottom = tree.path();
    for (int i = 0; i < 30; ++i)
        bottom += '/' + name;
    // Written by way of the working folder: no path leads there.
    const auto workingFolder = std::filesystem::current_path();
    std::filesystem::current_path(tree.path());
    for (int i = 0; i < 30; ++i)
        std::filesystem::current_path(name);
    std::ofstream("bottom") << "same";
    std::filesystem::current_path(workingFolder);
    const auto top = tree.writeFile("top", "same");
    const auto groups = test::groupsIn(
        *test::search(tree.path(), {test::file(top, 4), test::file(bottom + "/bottom", 4)}));
    ASSERT_THAT(groups, SizeIs(1));
    EXPECT_THAT(groups[0].paths, ElementsAre(top, bottom + "/bottom"));
}

std::ptrdiff_t threadCount()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(DuplicateFinder, StopsAtOnceInTheMidstOfEndlessFiles)
{
    std::thread([] {}).join(); // the first one brings ThreadSanitizer's own along
    const auto threadsBefore = threadCount();
    const test::TemporaryTree tree;
    constexpr std::int64_t terabyte = std::int64_t{1} << 40; // a hole: hours of reading
    std::vector<FileRecord> records;
    for (const auto* name : {"a", "b", "c"}) {
        tree.file(name, terabyte);
        records.push_back(test::file(tree / name, terabyte));
    }
    std::stop_source stop;
    std::atomic<int> reports = 0;
    std::chrono::steady_clock::time_point stopped;
    std::jthread stopper([&] {
        while (reports < 2)
            std::this_thread::sleep_for(1ms);
        stopped = std::chrono::steady_clock::now();
        stop.request_stop();
    });
    EXPECT_THROW(
        findDuplicates(RecordList::fromRecords(tree.path(), records),
            {.progress = [&reports](const DuplicateProgress&) { ++reports; }}, stop.get_token()),
        Cancelled);
    stopper.join();
    EXPECT_LT(std::chrono::steady_clock::now() - stopped, 1s);
    // Readers that a disk does not answer are left behind; these are answered, and end.
    for (int i = 0; i < 5000 && threadCount() > threadsBefore; ++i)
        std::this_thread::sleep_for(1ms);
    EXPECT_EQ(threadCount(), threadsBefore);
}

TEST(DuplicateFinder, TellsHowManyBytesAreDone)
{
    const test::TemporaryTree tree;
    std::vector<FileRecord> records;
    for (const auto* name : {"a", "b", "c"}) {
        tree.file(name, 300'000'000);
        records.push_back(test::file(tree / name, 300'000'000));
    }
    tree.writeFile("d", "alone in its size");
    records.push_back(test::recordOf(tree / "d"));
    std::mutex mutex;
    std::vector<DuplicateProgress> reports;
    test::search(tree.path(), records, {.progress = [&](const DuplicateProgress& progress) {
        const std::lock_guard lock(mutex);
        reports.push_back(progress);
    }});
    ASSERT_FALSE(reports.empty());
    EXPECT_LT(reports.front().bytesDone, 1'000'000); // already while it looks into every file
    for (const auto& progress : reports) {
        EXPECT_EQ(progress.bytesToDo, 900'000'000);
        EXPECT_GT(progress.bytesDone, 0);
        EXPECT_LE(progress.bytesDone, 900'000'000);
    }
}

TEST(DuplicateFinder, FilesThatChangeAllTheTimeDisturbNobodyElse)
{
    const test::TemporaryFolder folder;
    const std::string large(500'000, 'x');
    const auto a = folder.writeFile("a", large);
    const auto b = folder.writeFile("b", large);
    const auto small = folder.writeFile("small", "12345");
    const auto small2 = folder.writeFile("small2", "12345");
    const auto restless = folder.writeFile("restless", large);
    const auto records = test::recordsOf({a, b, restless, small, small2});
    std::jthread writer([&restless](const std::stop_token& stop) {
        for (int i = 0; !stop.stop_requested(); ++i) {
            if (i % 3 == 2)
                std::filesystem::remove(restless);
            std::ofstream(restless).seekp(i % 2 == 0 ? 499'999 : 2'000) << 'x';
        }
    });
    for (int round = 0; round < 100; ++round) {
        const auto groups = test::groupsIn(*test::search(folder.path(), records));
        ASSERT_THAT(groups, SizeIs(2));
        // The restless one begins with zeros: it equals nobody, whenever it is looked at.
        EXPECT_THAT(groups[0].paths, ElementsAre(a, b));
        EXPECT_THAT(groups[1].paths, ElementsAre(small, small2));
    }
}

TEST(DuplicateFinder, ProgressOfFilesLargerThanAllNumbersNeitherWrapsNorGoesBack)
{
    constexpr auto fiveExbibytes = std::int64_t{5} << 60;
    const std::vector<FileRecord> records{test::file("/r/a", 5), test::file("/r/b", 5)};
    CandidateFiles candidates{.names = {0, 1}, .files = {}};
    for (std::uint32_t i = 0; i < 2; ++i)
        candidates.files.push_back(
            {.identity = {.size = fiveExbibytes}, .firstName = i, .nameCount = 1});
    std::vector<std::int64_t> reports;
    DuplicateSearch search(RecordList::fromRecords("/r", records), std::move(candidates),
        [&reports](const DuplicateProgress& progress) { reports.push_back(progress.bytesDone); },
        {});
    search.expect({{.begin = 0, .end = 2}});
    for (int i = 0; i < 3; ++i) {
        search.countDone(fiveExbibytes);
        std::this_thread::sleep_for(110ms); // it reports ten times a second
    }
    search.countDone(fiveExbibytes, 2);
    EXPECT_THAT(reports, testing::Each(testing::Ge(fiveExbibytes)));
    EXPECT_TRUE(std::ranges::is_sorted(reports));
}

TEST(DuplicateFinder, AFileThatWasSavedAgainMeanwhileKeepsItsGroup)
{
    const test::TemporaryFolder folder;
    const std::string content(300'000, 'x');
    std::vector<std::string> paths{folder.writeFile("first", "12"),
        folder.writeFile("second", "12"), folder.writeFile("c", content),
        folder.writeFile("d", content)};
    std::once_flag saved;
    const auto saveAgain = [&](const DuplicateProgress&) {
        std::call_once(saved, [&] { // once the small ones are done
            std::filesystem::copy_file(paths[3], folder / "new");
            std::filesystem::rename(folder / "new", paths[3]);
        });
    };
    const auto groups = test::groupsIn(*test::search(
        folder.path(), test::recordsOf(paths), {.progress = saveAgain, .threads = 1}));
    ASSERT_THAT(groups, SizeIs(2));
    EXPECT_THAT(groups[0].paths, ElementsAre(paths[2], paths[3]));
}

TEST(DuplicateFinder, FindsAllWithHardlyADescriptorLeft)
{
    const test::TemporaryFolder folder;
    std::vector<std::string> paths;
    for (int i = 0; i < 40; ++i)
        paths.push_back(folder.writeFile(std::to_string(i % 8) + "/" + std::to_string(i),
            std::string(i % 2 == 0 ? 1000 : 100'000, static_cast<char>('a' + i % 8))));
    const auto expected = test::groupsAmong(folder.path(), paths);
    ASSERT_THAT(expected, SizeIs(8));
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const auto open = static_cast<rlim_t>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
    for (const rlim_t left : {2, 3, 5}) {
        auto few = before;
        few.rlim_cur = open - 1 + left; // less the one that counted
        ::setrlimit(RLIMIT_NOFILE, &few);
        const auto found = test::groupsAmong(folder.path(), paths);
        ::setrlimit(RLIMIT_NOFILE, &before);
        EXPECT_EQ(found, expected) << left;
    }
}

/// The bytes that this process has read so far.
std::int64_t bytesRead()
{
    std::ifstream counters("/proc/self/io");
    std::string name;
    std::int64_t value = 0;
    counters >> name >> value; // rchar
    return value;
}

TEST(DuplicateFinder, ACrowdThatIsAlikeAtBothEndsIsNotReadAgainAndAgain)
{
    struct {
        int files;
        std::size_t size;
        std::size_t different; // where each holds something of its own
        double mostReadings; // of all of it
    } const crowds[] = {
        {60, 300'000, 170'000, 2.0}, // side by side
        {200, 100'000, 50'000, 0.5}, // too many for that
    };
    for (const auto& crowd : crowds) {
        const test::TemporaryFolder folder;
        std::vector<std::string> paths;
        for (int i = 0; i < crowd.files; ++i) {
            std::string content(crowd.size, 'x');
            content.replace(crowd.different, 8, std::to_string(10'000'000 + i));
            paths.push_back(folder.writeFile(std::to_string(i), content));
        }
        const auto before = bytesRead();
        EXPECT_THAT(test::groupsAmong(folder.path(), paths), IsEmpty());
        EXPECT_LT(static_cast<double>(bytesRead() - before),
            crowd.mostReadings * crowd.files * static_cast<double>(crowd.size));
    }
}

TEST(FileReading, ALastPieceMustEndTheFile)
{
    const test::TemporaryFolder folder;
    const auto opened = openRegularFile(folder.writeFile("file", "0123456789"));
    std::string room(11, '\0');
    const auto read = [&](std::int64_t offset, std::size_t bytes) {
        return readLastPiece(opened->file.get(), offset, std::span(room).first(bytes + 1));
    };
    EXPECT_EQ(read(0, 10), ReadResult::complete);
    EXPECT_EQ(read(4, 6), ReadResult::complete);
    EXPECT_EQ(read(0, 9), ReadResult::longer);
    EXPECT_EQ(read(5, 6), ReadResult::shorter);
    EXPECT_TRUE(endsAt(opened->file.get(), 10));
    EXPECT_FALSE(endsAt(opened->file.get(), 9));
    FileReadOnwards onwards{.file = std::move(openRegularFile(folder / "file")->file)};
    ProcessorTurns turns({});
    ProcessorTurns::Turn turn(turns);
    EXPECT_EQ(readOnwards(onwards, 0, std::span(room).first(10), true, turn), ReadResult::longer);
    EXPECT_EQ(readOnwards(onwards, 0, room, true, turn), ReadResult::complete);
    EXPECT_EQ(readOnwards(onwards, 0, room, false, turn), ReadResult::shorter);
}

} // namespace
} // namespace kestavon
