#include "core/domain/record_list.h"
#include "support/moments.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using ::testing::ElementsAre;

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

FileRecord file(std::string path, std::int64_t size = 0)
{
    return {.id = Uuid::random(), .path = std::move(path), .size = size};
}

FileRecord folder(std::string path)
{
    return {.id = Uuid::random(), .path = std::move(path), .isDirectory = true};
}

/// Two files with the same name in different folders, a folder within a folder, and an empty one.
std::vector<FileRecord> smallHome(const std::string& root)
{
    std::vector<FileRecord> records{
        file(root + "/.hidden", 7),
        folder(root + "/a"),
        folder(root + "/a/deep"),
        file(root + "/a/deep/x", 100),
        file(root + "/a/x", 20),
        folder(root + "/empty"),
        file(root + "/z\xFF\n", 3),
    };
    records[0].isHidden = true;
    records[0].modifiedAt = test::utc(1969, 12, 31, 23, 59, 59, 5);
    return records;
}

std::vector<std::string> pathsOf(const RecordList& list)
{
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < list.size(); ++i)
        paths.push_back(list.path(i));
    return paths;
}

TEST(RecordList, GivesBackTheRecordsItWasMadeOf)
{
    const auto records = smallHome("/home/alice");
    const auto list = RecordList::fromRecords("/home/alice", records);
    ASSERT_EQ(list->size(), records.size());
    EXPECT_EQ(list->root(), "/home/alice");
    for (std::size_t i = 0; i < records.size(); ++i) {
        auto expected = records[i];
        expected.id = list->id(i);
        EXPECT_EQ((*list)[i], expected) << records[i].path;
        EXPECT_EQ(list->positionOf(list->id(i)), i);
        EXPECT_EQ(list->positionOf(records[i].id), std::nullopt) << "the list gives its own ids";
    }
    EXPECT_EQ(list->name(3), "x");
    EXPECT_EQ(list->name(6), "z\xFF\n");
    EXPECT_TRUE(list->flags(6) & RecordFlags::nonAsciiName);
    EXPECT_FALSE(list->flags(3) & RecordFlags::nonAsciiName);
    EXPECT_EQ(list->summary(), (StorageSummary{7, 130, 7}));
    EXPECT_THAT(list->sizes(), ElementsAre(7, 0, 0, 100, 20, 0, 3));
}

TEST(RecordList, NumbersFoldersAfterTheirParents)
{
    const auto list = RecordList::fromRecords("/home/alice", smallHome("/home/alice"));
    EXPECT_EQ(list->folderPath(0), "/home/alice");
    EXPECT_EQ(list->folderName(0), "");
    EXPECT_EQ(list->folderParent(0), 0U);
    EXPECT_EQ(list->folderPath(list->folderOf(0)), "/home/alice");
    EXPECT_EQ(list->folderPath(list->folderOf(3)), "/home/alice/a/deep");
    EXPECT_EQ(list->folderName(list->folderOf(3)), "deep");
    EXPECT_EQ(list->folderParent(list->folderOf(3)), list->folderOf(4));
    for (std::uint32_t number = 1; number < list->folderCount(); ++number)
        EXPECT_LT(list->folderParent(number), number);
}

TEST(RecordList, WritesPathsBelowTheRootOfTheSystemWithOneSlash)
{
    const auto list = RecordList::fromRecords("/", smallHome(""));
    EXPECT_THAT(pathsOf(*list),
        ElementsAre("/.hidden", "/a", "/a/deep", "/a/deep/x", "/a/x", "/empty", "/z\xFF\n"));
    EXPECT_EQ(list->folderPath(0), "/");
    EXPECT_EQ(list->folderPath(list->folderOf(3)), "/a/deep");
}

TEST(RecordList, KeepsIdentifiersAndPathsWhenRecordsAreCutOut)
{
    const auto whole = RecordList::fromRecords("/home/alice", smallHome("/home/alice"));
    const auto fewer = whole->without(std::vector<std::uint32_t>{0, 2, 4});
    EXPECT_THAT(pathsOf(*fewer),
        ElementsAre(
            "/home/alice/a", "/home/alice/a/deep/x", "/home/alice/empty", "/home/alice/z\xFF\n"));
    EXPECT_EQ(fewer->summary(), (StorageSummary{4, 103, 0}));
    EXPECT_EQ(fewer->id(1), whole->id(3));
    EXPECT_EQ(fewer->positionOf(whole->id(3)), 1U);
    EXPECT_EQ(fewer->positionOf(whole->id(4)), std::nullopt);

    const auto last = fewer->without(std::vector<std::uint32_t>{0, 1, 2});
    ASSERT_EQ(last->size(), 1U);
    EXPECT_EQ((*last)[0], (*whole)[6]);
    EXPECT_EQ(last->positionOf(whole->id(6)), 0U);
    EXPECT_EQ(last->positionOf(whole->id(3)), std::nullopt);

    const auto none = last->without(std::vector<std::uint32_t>{0});
    EXPECT_TRUE(none->empty());
    EXPECT_EQ(none->root(), "/home/alice");
    EXPECT_EQ(none->positionOf(whole->id(0)), std::nullopt);
    EXPECT_EQ(whole->without({})->size(), whole->size());
}

TEST(RecordList, TakesCutRecordsBackAtTheirPlaces)
{
    const auto whole = RecordList::fromRecords("/home/alice", smallHome("/home/alice"));
    const auto fewer = whole->without(std::vector<std::uint32_t>{0, 2, 4});
    const auto fewest = fewer->without(std::vector<std::uint32_t>{0, 3});

    const auto joined = fewest->joinedWith(*whole, std::vector<std::uint32_t>{2, 4});
    EXPECT_EQ(pathsOf(*joined), pathsOf(*whole->without(std::vector<std::uint32_t>{0, 1, 6})));
    EXPECT_EQ(joined->id(0), whole->id(2));

    EXPECT_EQ(whole->joinedWith(*fewer, {}), nullptr) << "it was not cut from that";
    const auto otherScan = RecordList::fromRecords("/home/alice", smallHome("/home/alice"));
    EXPECT_EQ(fewer->joinedWith(*otherScan, {}), nullptr);
}

TEST(RecordList, TwoScansOfTheSameTreeShareNoIdentifier)
{
    const auto records = smallHome("/home/alice");
    const auto first = RecordList::fromRecords("/home/alice", records);
    const auto second = RecordList::fromRecords("/home/alice", records);
    for (std::size_t i = 0; i < records.size(); ++i)
        EXPECT_EQ(second->positionOf(first->id(i)), std::nullopt);
}

TEST(RecordList, OneThatWasNeverFilledIsEmpty)
{
    const RecordList list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.root(), "");
    EXPECT_EQ(list.folderCount(), 0U);
    EXPECT_EQ(list.positionOf(Uuid::random()), std::nullopt);
    EXPECT_EQ(list.summary(), StorageSummary());
    EXPECT_TRUE(RecordList::fromRecords("/home/alice", {})->empty());
}

TEST(RecordList, SumsStopAtTheLimitsOf64Bits)
{
    EXPECT_EQ(saturatingSum(largest, 1), largest);
    EXPECT_EQ(saturatingSum(largest, largest), largest);
    EXPECT_EQ(saturatingSum(smallest, -1), smallest);
    EXPECT_EQ(saturatingSum(largest, smallest), -1);
    auto records = std::vector{file("/a", largest), file("/.b", largest - 1), file("/.c", 2)};
    records[1].isHidden = true;
    records[2].isHidden = true;
    const auto list = RecordList::fromRecords("/", records);
    EXPECT_EQ(list->summary(), (StorageSummary{3, largest, largest}));
    EXPECT_EQ(list->without(std::vector<std::uint32_t>{0, 2})->summary(),
        (StorageSummary{1, largest - 1, largest - 1}));
}

} // namespace
} // namespace kestavon
