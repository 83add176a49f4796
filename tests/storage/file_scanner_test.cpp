#include "storage/file_scanner.h"
#include "storage/scans.h"
#include "support/as_ordinary_user.h"
#include "support/moments.h"
#include "support/temporary_tree.h"

#include <filesystem>
#include <fstream>
#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <unistd.h>

namespace kestavon {
namespace {

using test::noLimit;
using test::scannedNames;
using test::scanOf;
using test::TemporaryTree;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

std::map<std::string, FileRecord> recordsByName(const RecordList& records)
{
    std::map<std::string, FileRecord> byName;
    const auto names = test::namesIn(records);
    for (std::size_t i = 0; i < names.size(); ++i)
        byName.emplace(names[i], records[i]);
    return byName;
}

TEST(FileScanner, DeliversAFolderThenAllOfItThenItsNextSibling)
{
    const TemporaryTree tree;
    for (const auto* name : {"b", "a.txt", "a-b", "a/z", "a/B/inner", "a/b", "\xff", "A", "a0"})
        tree.file(name);

    // The slash sorts nowhere: "a" with all of it stands before "a-b" and "a.txt".
    EXPECT_THAT(scannedNames(tree.path()),
        ElementsAre("A", "a", "a/B", "a/B/inner", "a/b", "a/z", "a-b", "a.txt", "a0", "b", "\xff"));
}

TEST(FileScanner, RecordsWhatTheFileSystemTells)
{
    const TemporaryTree tree;
    tree.file("folder/file", 12'345);
    tree.file("folder/.hidden", std::int64_t{5} << 40);
    tree.file(".git/config", 7);
    tree.link("link", "folder/file");
    const auto time = test::utc(2024, 2, 29, 12, 30, 15, 123'456'789);
    const auto beforeTheEpoch = test::utc(1950, 1, 1, 0, 0, 0, 1);
    tree.setModified("folder/file", time);
    tree.setModified("link", beforeTheEpoch);
    tree.setModified("folder", test::utc(2001, 1, 1));

    const auto outcome = scanOf(tree.path());
    const auto records = recordsByName(*outcome.records);
    ASSERT_EQ(records.size(), 6U);
    EXPECT_FALSE(outcome.hitMemoryLimit);
    EXPECT_FALSE(outcome.rootProblem);
    EXPECT_EQ(outcome.unreadableFolders, 0U);

    const auto& file = records.at("folder/file");
    EXPECT_EQ(file.path, tree / "folder/file");
    EXPECT_EQ(file.size, 12'345);
    EXPECT_EQ(file.modifiedAt, time);
    EXPECT_FALSE(file.isDirectory);
    EXPECT_FALSE(file.isHidden);

    const auto& folder = records.at("folder");
    EXPECT_EQ(folder.size, 0);
    EXPECT_EQ(folder.modifiedAt, test::utc(2001, 1, 1));
    EXPECT_TRUE(folder.isDirectory);

    EXPECT_EQ(records.at("folder/.hidden").size, std::int64_t{5} << 40);
    EXPECT_TRUE(records.at("folder/.hidden").isHidden);
    EXPECT_TRUE(records.at(".git").isHidden);
    EXPECT_FALSE(records.at(".git/config").isHidden) << "only its own name can hide an entry";

    const auto& link = records.at("link");
    EXPECT_EQ(link.size, 11) << "the length of the target's name";
    EXPECT_EQ(link.modifiedAt, beforeTheEpoch);
    EXPECT_FALSE(link.isDirectory);
}

TEST(FileScanner, NeverFollowsALinkBelowTheRoot)
{
    const TemporaryTree tree;
    tree.file("folder/file");
    tree.link("folder/loop", "..");
    tree.link("folder/self", "self");
    tree.link("dangling", "nowhere");
    tree.link("toFolder", "folder");

    const auto outcome = scanOf(tree.path());
    EXPECT_THAT(test::namesIn(*outcome.records),
        ElementsAre("dangling", "folder", "folder/file", "folder/loop", "folder/self", "toFolder"));
    EXPECT_FALSE(recordsByName(*outcome.records).at("toFolder").isDirectory);
    EXPECT_EQ(outcome.unreadableFolders, 0U);
}

TEST(FileScanner, FollowsARootThatIsALinkAndKeepsItsSpelling)
{
    const TemporaryTree tree;
    tree.file("real/file");
    tree.link("root", "real");

    const auto outcome = scanOf(tree / "root");
    ASSERT_EQ(outcome.records->size(), 1U);
    EXPECT_EQ(outcome.records->path(0), tree / "root/file");
    EXPECT_EQ(scanOf(tree / "root//").records->path(0), tree / "root/file");
}

TEST(FileScanner, ListsAPackageWithoutItsContents)
{
    const TemporaryTree tree;
    for (const auto* package :
        {"Editor.app", "Old.APP", "Build.xcarchive", "x.y.PhotosLibrary", "Agent.xpc"})
        tree.file(std::string(package) + "/Contents/inside");
    for (const auto* folder :
        {".app", "app", "a.app.d", "End.", "Kit.framework", "Name.application"})
        tree.file(std::string(folder) + "/inside");
    tree.file("file.app");

    EXPECT_THAT(scannedNames(tree.path()),
        ElementsAre(".app", ".app/inside", "Agent.xpc", "Build.xcarchive", "Editor.app", "End.",
            "End./inside", "Kit.framework", "Kit.framework/inside", "Name.application",
            "Name.application/inside", "Old.APP", "a.app.d", "a.app.d/inside", "app", "app/inside",
            "file.app", "x.y.PhotosLibrary"));
    EXPECT_THAT(scannedNames(tree / "Editor.app"), ElementsAre("Contents", "Contents/inside"))
        << "the folder that the scan starts at is entered whatever it is";
}

TEST(FileScanner, ListsAnApplicationFolderWithoutItsContents)
{
    const TemporaryTree tree;
    for (const auto* name : {"App/AppRun", "App/editor.desktop", "App/usr/bin/editor",
             "NoDescription/AppRun", "NoDescription/x", "NoStart/editor.desktop"})
        tree.file(name);
    // Too large to be listed in one reading.
    for (const auto* folder : {"LargeApp/", "LargeNoApp/"}) {
        for (int i = 0; i < 3000; ++i)
            tree.file(folder + std::to_string(i) + std::string(30, 'x'));
        tree.file(std::string(folder) + "AppRun");
    }
    tree.file("LargeApp/editor.desktop");

    const auto names = scannedNames(tree.path());
    EXPECT_EQ(names.size(), 7U + 3002U);
    EXPECT_THAT(std::vector(names.begin(), names.begin() + 4),
        ElementsAre("App", "LargeApp", "LargeNoApp", "LargeNoApp/0" + std::string(30, 'x')));
    EXPECT_THAT(std::vector(names.end() - 5, names.end()),
        ElementsAre("NoDescription", "NoDescription/AppRun", "NoDescription/x", "NoStart",
            "NoStart/editor.desktop"));
    EXPECT_THAT(scannedNames(tree / "App"), Contains("usr/bin/editor"));
}

TEST(FileScanner, KeepsNamesOfAnyBytes)
{
    const TemporaryTree tree;
    const std::vector<std::string> names{"\x01\n\t", " a%20b#?", "nfd-e\xcc\x81",
        std::string(255, 'n'), "\xc3\x28 not UTF-8", "\xe6\x97\xa5\xe6\x9c\xac"};
    for (const auto& name : names)
        tree.file(name + "/" + name, 1);

    std::vector<std::string> expected;
    for (const auto& name : names) {
        expected.push_back(name);
        expected.push_back(name + "/" + name);
    }
    const auto records = scanOf(tree.path()).records;
    EXPECT_EQ(test::namesIn(*records), expected);
    for (std::size_t i = 0; i < records->size(); ++i) {
        const bool nonAscii = std::ranges::any_of(
            records->name(i), [](char c) { return static_cast<unsigned char>(c) > 0x7f; });
        EXPECT_EQ((records->flags(i) & RecordFlags::nonAsciiName) != 0, nonAscii) << i;
    }
}

TEST(FileScanner, LeavesOutWhatLiesAtOrBelowAnExcludedPath)
{
    const TemporaryTree tree;
    for (const auto* name : {"System/a", "Systemfoo/a", "x/System/a", "private/var/db/a",
             "private/var/dba", "private/var/run/a", "file"})
        tree.file(name);
    const auto excluding = [](std::vector<std::string> prefixes) {
        return FileScanner(std::move(prefixes), noLimit, {});
    };

    EXPECT_THAT(scannedNames(tree.path(),
                    excluding({tree / "System", tree / "private/var/db", tree / "file"})),
        ElementsAre("Systemfoo", "Systemfoo/a", "private", "private/var", "private/var/dba",
            "private/var/run", "private/var/run/a", "x", "x/System", "x/System/a"));
    EXPECT_THAT(scannedNames(tree / "System", excluding({tree / "System"})), IsEmpty());
    EXPECT_THAT(scannedNames(tree / "private/var/db", excluding({tree / "private"})), IsEmpty());
    EXPECT_EQ(scannedNames(tree.path(), excluding({"/System", "System", tree / "Sys", "/"})),
        scannedNames(tree.path()));
}

TEST(FileScanner, ExcludesBelowTheRootOfAllByTheirOwnPaths)
{
    // Everything but one folder is excluded, for the machine's own tree is not ours to walk.
    const TemporaryTree tree;
    tree.file("file");
    std::vector<std::string> way, prefixes;
    for (std::filesystem::path path = tree.path(); path != "/"; path = path.parent_path())
        way.push_back(path);
    for (const auto& folder : way) {
        for (const auto& entry :
            std::filesystem::directory_iterator(std::filesystem::path(folder).parent_path())) {
            if (entry.path() != folder)
                prefixes.push_back(entry.path());
        }
    }
    const auto records = scanOf("/", FileScanner(prefixes, noLimit, {})).records;
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < records->size(); ++i)
        paths.push_back(records->path(i));
    EXPECT_THAT(paths, IsSupersetOf({way.back(), way.front(), tree / "file"}));
    for (const auto& prefix : prefixes)
        EXPECT_THAT(paths, Not(Contains(prefix)));
}

TEST(FileScanner, SaysWhyARootCannotBeWalked)
{
    const test::AsOrdinaryUser user; // nothing is closed to root
    const TemporaryTree tree;
    tree.file("file");
    tree.link("dangling", "nowhere");
    tree.link("toFile", "file");
    tree.folder("closed");
    tree.setMode("closed", 0);

    const auto problemOf = [&](const char* name) { return scanOf(tree / name).rootProblem; };
    EXPECT_EQ(problemOf("nowhere"), RootProblem::missing);
    EXPECT_EQ(problemOf("dangling"), RootProblem::missing);
    EXPECT_EQ(problemOf("file"), RootProblem::notAFolder);
    EXPECT_EQ(problemOf("toFile"), RootProblem::notAFolder);
    EXPECT_EQ(problemOf("file/inside"), RootProblem::notAFolder);
    const auto outcome = scanOf(tree / "nowhere");
    ASSERT_TRUE(outcome.records);
    EXPECT_TRUE(outcome.records->empty());
    EXPECT_FALSE(outcome.hitMemoryLimit);
    EXPECT_EQ(problemOf("closed"), RootProblem::notPermitted);
}

TEST(FileScanner, GoesOnAfterAFolderThatItMayNotRead)
{
    const test::AsOrdinaryUser user;
    const TemporaryTree tree;
    for (const auto* name : {"a/file", "closed/file", "listable/file", "z"})
        tree.file(name);
    tree.setMode("closed", 0);
    tree.setMode("listable", 0444);

    const auto outcome = scanOf(tree.path());
    EXPECT_THAT(
        test::namesIn(*outcome.records), ElementsAre("a", "a/file", "closed", "listable", "z"));
    EXPECT_EQ(outcome.unreadableFolders, 2U);
}

TEST(FileScanner, PseudoFileSystemsAreListedButNotEntered)
{
    ASSERT_TRUE(std::filesystem::exists("/proc/self"));
    std::vector<std::string> others;
    for (const auto& entry : std::filesystem::directory_iterator("/")) {
        if (entry.path() != "/proc")
            others.push_back(entry.path().native());
    }
    EXPECT_THAT(scannedNames("/", FileScanner(others, noLimit, {})), ElementsAre("proc"));
}

TEST(FileScanner, PseudoFileSystemsAreRefusedAsTheRoot)
{
    const auto outcome = scanOf("/proc");
    EXPECT_EQ(outcome.rootProblem, RootProblem::notStorage);
    EXPECT_TRUE(outcome.records->empty());
    std::ifstream mounts("/proc/self/mounts");
    for (std::string line; std::getline(mounts, line);) {
        if (line.starts_with("devtmpfs /dev ")) {
            EXPECT_EQ(scanOf("/dev").rootProblem, RootProblem::notStorage);
        }
    }
}

} // namespace
} // namespace kestavon
