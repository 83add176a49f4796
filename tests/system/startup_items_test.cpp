#include "support/binary_list.h"
#include "support/temporary_tree.h"
#include "system/startup_items.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string job(const std::string& entries)
{
    return "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>";
}

std::string text(const std::string& key, const std::string& value)
{
    return "<key>" + key + "</key><string>" + value + "</string>";
}

std::vector<std::string> labelsAndPrograms(const std::vector<StartupItem>& items)
{
    std::vector<std::string> texts;
    for (const auto& item : items)
        texts.push_back(item.label + ": " + item.programPath);
    return texts;
}

TEST(StartupItems, TellWhatAJobIsCalledAndWhatItRuns)
{
    const test::TemporaryTree tree;
    const auto arguments = [](const std::string& elements) {
        return "<key>ProgramArguments</key><array>" + elements + "</array>";
    };
    const auto write = [&tree](const std::string& name, const std::string& content) {
        tree.writeFile("agents/" + name, content);
    };
    write("a.plist",
        job(text("Label", "called a") + text("Program", "/bin/a")
            + arguments("<string>/bin/other</string>")));
    write("b.plist", job(arguments("<string>/usr/bin/true</string><string>-x</string>")));
    write("c.plist", job("<key>Label</key><integer>3</integer>" + arguments("")));
    write("d.plist", job(arguments("<string>/bin/d</string><integer>1</integer>")));
    write("e.plist", job(""));
    write(
        "f.plist", job(text("Label", "") + text("Program", "") + arguments("<string>x</string>")));
    write(".hidden.plist", job(text("Program", "/bin/h")));
    test::BinaryList binary;
    binary.objects = {std::string("\xd1\x01\x02"), "\x57Program", "\x56/bin/z"};
    write("z.plist", binary.bytes());

    EXPECT_THAT(labelsAndPrograms(listStartupItems({{{tree / "agents", false}}})),
        ElementsAre(".hidden: /bin/h", "called a: /bin/a", "b: /usr/bin/true",
            "c: ", "d: ", "e: ", ": ", "z: /bin/z"));
}

TEST(StartupItems, LeaveOutWhatDefinesNoJob)
{
    const test::TemporaryTree tree;
    tree.writeFile("agents/readme.txt", job(""));
    tree.writeFile("agents/job.PLIST", job(""));
    tree.writeFile("agents/.plist", job(""));
    tree.writeFile("agents/broken.plist", "<plist><dict>");
    tree.writeFile("agents/list.plist", "<plist version=\"1.0\"><array/></plist>");
    tree.writeFile("agents/folder.plist/job.plist", job(""));
    tree.link("agents/dangling.plist", "nowhere");
    EXPECT_THAT(
        listStartupItems({{{tree / "agents", false}, {tree / "missing", true}}}), IsEmpty());
}

TEST(StartupItems, TheUsersOwnComeFirstAndFoldersKeepTheirOrder)
{
    const test::TemporaryTree tree;
    for (const auto* path : {"daemons/a.plist", "agents/b.plist", "own/d.plist", "own/c.plist"})
        tree.writeFile(path, job(""));
    const auto items = listStartupItems(
        {{{tree / "daemons", true}, {tree / "own", false}, {tree / "agents", true}}});
    std::vector<std::string> paths;
    for (const auto& item : items)
        paths.push_back(item.plistURL);
    EXPECT_THAT(paths,
        ElementsAre(tree / "own/c.plist", tree / "own/d.plist", tree / "daemons/a.plist",
            tree / "agents/b.plist"));
    EXPECT_FALSE(items[1].isSystem);
    EXPECT_TRUE(items[2].isSystem);
    EXPECT_NE(items[0].id, items[1].id);
}

TEST(StartupItems, AMacsHomeHasItsOwnAndTheDisksFolders)
{
    const test::TemporaryTree disk;
    disk.folder("Users/a/Library");
    const auto layout = makeHostLayout({.home = disk / "Users/a", .systemRoot = disk.path()});
    std::vector<std::string> folders;
    for (const auto& [folder, isSystem, form] : layout.startupFolders)
        folders.push_back(folder + (isSystem ? " (system)" : ""));
    EXPECT_THAT(folders,
        ElementsAre(disk / "Users/a/Library/LaunchAgents",
            disk / "Library/LaunchAgents" + " (system)",
            disk / "Library/LaunchDaemons" + " (system)"));
}

} // namespace
} // namespace kestavon
