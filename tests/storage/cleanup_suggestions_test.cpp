#include "concurrency/cancelled.h"
#include "storage/cleanup_suggestions.h"
#include "support/fake_platform.h"

#include <random>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;

class CleanupSuggestionsTest : public testing::Test {
protected:
    FileRecord fileOf(const std::string& path, std::optional<int> ageInDays, std::int64_t size = 1)
    {
        FileRecord record{.id = Uuid::random(), .path = path, .size = size};
        if (ageInDays)
            record.modifiedAt = machine.clock->now() - *ageInDays * 24h;
        return record;
    }

    std::string reasonFor(const FileRecord& record)
    {
        const auto candidate = suggestions.cleanupCandidate(record);
        return candidate ? candidate->reason : "none";
    }

    test::FakeMachine machine;
    Platform platform = machine.platform();
    CleanupSuggestions suggestions{platform.layout, *platform.calendar, machine.clock->now()};
};

TEST_F(CleanupSuggestionsTest, DecidesByFolderThenAge)
{
    const struct {
        std::string path;
        std::optional<int> ageInDays;
        std::string reason;
    } rows[] = {
        {"/home/alice/Library/Caches/app/data", 0, "Application cache"},
        {"/Library/Caches/data", 0, "Application cache"},
        {"/mnt/old/Library/Caches/deep/down/data", std::nullopt, "Application cache"},
        {"/home/alice/Library/Cachesx/data", 400, "none"},
        {"/home/alice/Downloads/a.iso", 91, "Old download"},
        {"/home/alice/Downloads/a.iso", 90, "none"},
        {"/home/alice/Downloads/a.iso", -5, "none"},
        {"/home/alice/Downloads/a.iso", std::nullopt, "none"},
        {"/home/alice/Downloads/sub/folder/a.iso", 91, "Old download"},
        {"/home/alice/Downloads2/a.iso", 400, "none"},
        {"/home/alice/Documents/Downloads/a.iso", 400, "none"},
        {"/home/alice/Downloads", 400, "none"},
        {"/home/alice/Downloads/Library/Caches/a", 400, "Application cache"},
        {"/home/alice/Library/Caches/app/x.appex", 400, "none"},
        {"/home/alice/Downloads/x.xpc", 400, "none"},
        {"/usr/Library/Caches/data", 400, "none"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(reasonFor(fileOf(row.path, row.ageInDays)), row.reason)
            << row.path << " at " << row.ageInDays.value_or(-999) << " days";
}

TEST(CleanupSuggestionsOfALinuxHome, KnowItsCachesAndWhatStaysInThem)
{
    const auto layout = makeHostLayout({.home = "/home/alice", .xdgCacheHome = "/scratch/caches"});
    const SystemCalendar calendar;
    const CleanupSuggestions suggestions(layout, calendar, Timestamp());
    const struct {
        std::string path;
        bool isSuggested;
    } rows[] = {
        {"/scratch/caches/app/x", true}, {"/scratch/caches/x", true}, {"/scratch/caches", false},
        {"/scratch/caches2/x", false}, {"/home/alice/.cache/app/x", false},
        {"/scratch/caches/icon-cache.kcache", false},
        {"/scratch/caches/rclone/vfs/remote/x", false},
        {"/scratch/caches/JetBrains/Idea/LocalHistory/x", false},
        {"/scratch/caches/JetBrains/Idea/caches/x", true}, {"/scratch/caches/ksycoca5_en", false},
        {"/home/alice/.var/app/org.example.App/cache/x", true},
        {"/home/alice/.var/app/org.example.App/data/cache/x", false},
        {"/home/alice/.var/app/cache/x", false}, {"/home/alice/snap/app/common/.cache/x", true},
        {"/home/alice/snap/app/current/.cache/x", false},
        {"/home/bob/.var/app/org.example.App/cache/x", false},
        {"/home/alice/backup/Library/Caches/rclone/x", true}, // a Mac's
    };
    std::vector<FileRecord> records;
    for (const auto& [path, isSuggested] : rows) {
        const FileRecord record{.id = Uuid::random(), .path = path, .size = 1};
        EXPECT_EQ(suggestions.cleanupCandidate(record).has_value(), isSuggested) << path;
        records.push_back(record);
    }
    // And a list gives what each record gives, wherever the scan began.
    for (const std::string root : {"/", "/home", "/home/alice", "/scratch/caches",
             "/home/alice/.var/app/org.example.App/cache", "/scratch/caches/rclone"}) {
        std::vector<std::string> expected;
        std::vector<FileRecord> below;
        for (const auto& [path, isSuggested] : rows) {
            if (!path.starts_with(root == "/" ? root : root + '/'))
                continue;
            below.push_back({.id = Uuid::random(), .path = path, .size = 1});
            if (isSuggested)
                expected.push_back(path);
        }
        const auto list = suggestions.suggestFrom(RecordList::fromRecords(root, below));
        std::vector<std::string> found;
        for (std::size_t i = 0; i < list->size(); ++i)
            found.push_back((*list)[i].record.path);
        EXPECT_EQ(found, expected) << root;
    }
}

TEST_F(CleanupSuggestionsTest, SuggestsEmptyFilesButNeverFolders)
{
    EXPECT_EQ(reasonFor(fileOf("/home/alice/Library/Caches/empty", 0, 0)), "Application cache");
    auto folder = fileOf("/home/alice/Library/Caches/app", 400);
    folder.isDirectory = true;
    EXPECT_EQ(reasonFor(folder), "none");
}

TEST_F(CleanupSuggestionsTest, CarriesTheRecordUnchanged)
{
    const auto record = fileOf("/home/alice/Library/Caches/a", 3, 4096);
    const auto candidate = suggestions.cleanupCandidate(record);
    ASSERT_TRUE(candidate);
    EXPECT_EQ(candidate->record, record);
    EXPECT_EQ(candidate->estimatedBytes, 4096);
    EXPECT_NE(candidate->id, record.id);
}

TEST_F(CleanupSuggestionsTest, AWholeListGivesWhatEachRecordGives)
{
    const std::vector<std::string> folders{"/", "/usr", "/home/alice", "/home/alice/Downloads",
        "/home/alice/Downloads/sub", "/home/alice/Library/Caches", "/Library/Caches/x",
        "/home/alice/Downloads/Library/Caches", "/Applications/Library/Caches"};
    const std::vector<std::string> names{"a", "Downloads", "x.appex", "Caches", "y.thumbnail"};
    std::mt19937 random(7);
    std::vector<FileRecord> records;
    for (int i = 0; i < 500; ++i) {
        const auto& folder = folders[random() % folders.size()];
        auto record = fileOf((folder == "/" ? "" : folder) + "/" + names[random() % names.size()],
            static_cast<int>(random() % 200) - 10, 10);
        record.isDirectory = random() % 5 == 0;
        records.push_back(record);
    }
    const auto list = RecordList::fromRecords("/", records);
    const auto suggested = suggestions.suggestFrom(list);

    std::size_t next = 0;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const auto expected = suggestions.cleanupCandidate((*list)[i]);
        if (!expected)
            continue;
        ASSERT_LT(next, suggested->size());
        EXPECT_EQ((*suggested)[next].record, expected->record);
        EXPECT_EQ((*suggested)[next].reason, expected->reason);
        ++next;
    }
    EXPECT_EQ(next, suggested->size());
    EXPECT_GT(next, 50U);
}

TEST_F(CleanupSuggestionsTest, ADeepTreeIsReadAsQuicklyAsAFlatOne)
{
    // One folder inside the other, below the home and then below a cache at half the depth:
    // building every folder's path would copy gigabytes.
    std::string path = "/home/alice";
    std::vector<FileRecord> records;
    const auto enter = [&](const std::string& name) {
        path += '/' + name;
        auto folder = fileOf(path, 0);
        folder.isDirectory = true;
        records.push_back(folder);
    };
    for (int i = 0; i < 2000; ++i)
        enter(i == 1000 ? "Library" : i == 1001 ? "Caches" : "a-folder-with-a-name");
    records.push_back(fileOf(path + "/file", 0));
    const auto suggested = suggestions.suggestFrom(RecordList::fromRecords("/home/alice", records));
    ASSERT_EQ(suggested->size(), 1U);
    EXPECT_EQ((*suggested)[0].record.path, records.back().path);
}

TEST_F(CleanupSuggestionsTest, EndsWhenItIsStopped)
{
    const auto list = RecordList::fromRecords("/", std::vector{fileOf("/Library/Caches/a", 0)});
    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_THROW(suggestions.suggestFrom(list, stopped.get_token()), Cancelled);
}

} // namespace
} // namespace kestavon
