#include "support/as_ordinary_user.h"
#include "support/temporary_tree.h"
#include "walk/folder_names.h"
#include "walk/folder_sizes.h"

#include <filesystem>
#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <unistd.h>

namespace kestavon {
namespace {

using test::TemporaryTree;
using testing::ElementsAre;
using testing::Pair;

using Sizes = std::map<std::string, std::int64_t>;

/// The sizes of the folders in the tree, by name.
Sizes sizesIn(const std::string& path, unsigned threads = 0, const std::stop_token& stop = {})
{
    const auto entries = namedEntriesOf(path);
    std::vector<FolderToMeasure> folders;
    std::vector<std::string> names;
    for (const auto& name : entries->names) {
        const auto facts = lookAt(entries->folder->get(), name.c_str());
        if (!facts || !facts->isDirectory)
            continue;
        folders.push_back({.parent = entries->folder, .name = name, .device = facts->device});
        names.push_back(name);
    }
    const auto sizes = folderSizes(std::move(folders), stop, {.threads = threads});
    EXPECT_EQ(sizes.size(), names.size());
    Sizes result;
    for (std::size_t i = 0; i < sizes.size(); ++i)
        result[names[i]] = sizes[i];
    return result;
}

TEST(FolderSizes, AreTheSumsOfTheFilesInThem)
{
    const TemporaryTree tree;
    tree.file("beside", 1000);
    tree.file("a/file", 1);
    tree.file("a/b/c/d/file", 2);
    tree.file("a/b/.hidden", 4);
    tree.file("a-b/file", 8);
    tree.folder("empty/of/files");
    tree.link("a-b/link", "sixteen letters!");
    tree.link("a-b/loop", "."); // of one letter
    tree.link("a-b/elsewhere", "../a");
    std::filesystem::create_hard_link(tree / "a/file", tree / "a/same file");
    EXPECT_THAT(sizesIn(tree.path()),
        ElementsAre(Pair("a", 8), Pair("a-b", 8 + 16 + 1 + 4), Pair("empty", 0)));
}

TEST(FolderSizes, CountNothingOfPackagesOnTheWay)
{
    const TemporaryTree tree;
    for (const std::string where : {"", "folder/"}) {
        tree.file(where + "Editor.app/Contents/code", 100);
        tree.file(where + "Editor.app/Contents/Inner.BUNDLE/code", 1000);
        tree.file(where + "Packed/AppRun", 10);
        tree.file(where + "Packed/editor.desktop", 1);
    }
    tree.file("folder/file.app", 5); // a file
    EXPECT_THAT(sizesIn(tree.path()),
        ElementsAre(Pair("Editor.app", 100), Pair("Packed", 11), Pair("folder", 5)));
}

TEST(FolderSizes, AreTheSameForAnyNumberOfThreads)
{
    const TemporaryTree tree;
    for (int i = 0; i < 3000; ++i) // too many for one reading
        tree.file("large/a name of some length, number " + std::to_string(i), i);
    for (int i = 0; i < 200; ++i)
        tree.file("many/" + std::to_string(i % 20) + "/" + std::to_string(i) + "/file", i);
    tree.chain("level", 2500); // deeper than a path can name
    const std::int64_t large = 2999 * 3000 / 2;
    for (const unsigned threads : {1U, 2U, 16U}) {
        EXPECT_THAT(sizesIn(tree.path(), threads),
            ElementsAre(Pair("large", large), Pair("level", 1), Pair("many", 199 * 200 / 2)));
    }
}

TEST(FolderSizes, AreReadThroughTheDeepestFolders)
{
    const TemporaryTree tree;
    std::string name = "top";
    std::int64_t sum = 0;
    for (int level = 0; level < 39; ++level) {
        name += '/' + std::string(100, static_cast<char>('a' + level % 26));
        tree.file(name + "/file", level);
        sum += level;
    }
    EXPECT_THAT(sizesIn(tree.path()), ElementsAre(Pair("top", sum)));
}

TEST(FolderSizes, StopAtTheLargestNumber)
{
    const TemporaryTree tree;
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    std::error_code error;
    tree.file("holes/a");
    std::filesystem::resize_file(tree / "holes/a", static_cast<std::uintmax_t>(most) / 8, error);
    if (error)
        GTEST_SKIP() << "no file may be so large here";
    for (int i = 0; i < 9; ++i)
        std::filesystem::create_hard_link(tree / "holes/a", tree / ("holes/" + std::to_string(i)));
    EXPECT_THAT(sizesIn(tree.path()), ElementsAre(Pair("holes", most)));
}

TEST(FolderSizes, LeaveOutWhatCannotBeRead)
{
    const test::AsOrdinaryUser user;
    const TemporaryTree tree;
    tree.file("closed/file", 1);
    tree.file("open/closed/file", 2);
    tree.file("open/file", 4);
    tree.setMode("closed", 0);
    tree.setMode("open/closed", 0);
    EXPECT_THAT(sizesIn(tree.path()), ElementsAre(Pair("closed", 0), Pair("open", 4)));
}

TEST(FolderSizes, OfFoldersThatHaveGoneAreNothing)
{
    const TemporaryTree tree;
    tree.file("gone/file", 1);
    tree.file("now a link/file", 2);
    tree.file("other/file", 4);
    const auto entries = namedEntriesOf(tree.path());
    std::vector<FolderToMeasure> folders;
    for (const auto& name : entries->names)
        folders.push_back({.parent = entries->folder,
            .name = name,
            .device = lookAt(entries->folder->get(), name.c_str())->device});
    std::filesystem::remove_all(tree / "gone");
    std::filesystem::remove_all(tree / "now a link");
    tree.link("now a link", "other");
    EXPECT_THAT(folderSizes(std::move(folders), {}), ElementsAre(0, 0, 4));
}

TEST(FolderSizes, ComeBackAsTheyAreAfterAStop)
{
    const TemporaryTree tree;
    tree.file("folder/file", 1);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THAT(sizesIn(tree.path(), 4, stop.get_token()), ElementsAre(Pair("folder", 0)));
    EXPECT_THAT(folderSizes({}, {}), testing::IsEmpty());
}

TEST(NamedEntries, AreAllOfAFolderInTheOrderOfTheirBytes)
{
    const TemporaryTree tree;
    for (const auto* name : {"b", "B", "a.b", "a b", ".hidden", "\xFF", "é"})
        tree.file(name);
    tree.link("link to it", ".");
    const auto entries = namedEntriesOf(tree / "link to it");
    ASSERT_TRUE(entries);
    EXPECT_THAT(
        entries->names, ElementsAre(".hidden", "B", "a b", "a.b", "b", "link to it", "é", "\xFF"));
    EXPECT_FALSE(namedEntriesOf(tree / "b"));
    EXPECT_FALSE(namedEntriesOf(tree / "missing"));
}

} // namespace
} // namespace kestavon
