#include "core/domain/uuid.h"
#include "platform/file_mover.h"
#include "support/as_ordinary_user.h"
#include "support/entries.h"
#include "support/temporary_tree.h"
#include "support/tree_picture.h"

#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kestavon {
namespace {

using Kind = FileError::Kind;
using test::entriesIn;
using test::isThere;
using test::pictureOf;

namespace fs = std::filesystem;

struct stat statusOf(const std::string& path)
{
    struct stat status { };
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

/// One of everything that a folder can hold and an ordinary user can make.
void makeRichTree(const test::TemporaryTree& home, const std::string& name)
{
    const auto at = [&name](const std::string& rest) { return name + "/" + rest; };
    home.writeFile(at("a"), std::string(300'000, 'a'));
    home.writeFile(at("empty"));
    home.writeFile(at("sub/locked/inner"), "kept");
    home.makeFolder(at("sub/empty folder"));
    home.writeFile(at(std::string("odd \xff\n name")), "odd");
    home.link(at("relative"), "sub/locked");
    home.link(at("dangling"), "/nonexistent/kestavon");
    fs::create_hard_link(home / at("a"), home / at("sub/second name of a"));
    ASSERT_EQ(::mkfifo((home / at("pipe")).c_str(), 0640), 0);
    ASSERT_EQ(::mknod((home / at("socket")).c_str(), S_IFSOCK | 0600, 0), 0);
    home.file(at("sparse"), 1 << 24);
    std::fstream(home / at("sparse"), std::ios::in | std::ios::out).seekp((1 << 24) - 3) << "end";
    ::setxattr((home / at("empty")).c_str(), "user.note", "n\0te", 4, 0);
    home.setMode(at("empty"), 0440);
    home.setMode(at("sub/locked"), 0555);
    const Timestamp old{std::chrono::nanoseconds(981'173'106'123'456'789)};
    for (const auto* entry : {"a", "relative", "pipe", "sub/empty folder", "sub"})
        home.setModified(at(entry), old);
    home.setMode(name, 0750);
    home.setModified(name, old);
}

/// Moves within one device and from one to the other.
class FileMoverTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override
    {
        if (crossesDevices() && !m_other)
            GTEST_SKIP() << "no second device here";
        m_target = crossesDevices() ? m_other / "target" : m_home / "target";
        fs::create_directory(m_target);
    }
    static bool crossesDevices() { return GetParam(); }
    std::string target(const std::string& name) const { return m_target + '/' + name; }

    test::TemporaryTree m_home;
    test::OtherDevice m_other;
    std::string m_target;
    SystemFileMover m_mover;
};

INSTANTIATE_TEST_SUITE_P(Devices, FileMoverTest, testing::Bool(),
    [](const auto& device) { return device.param ? "Across" : "Within"; });

TEST_P(FileMoverTest, KeepsAllThatAFolderHolds)
{
    makeRichTree(m_home, "from/tree");
    const auto before = pictureOf(m_home / "from/tree");
    const auto inode = statusOf(m_home / "from/tree").st_ino;

    const auto moved = m_mover.move(m_home / "from/tree", target("held"));
    ASSERT_TRUE(moved) << moved.error().message;
    EXPECT_EQ(moved->copied, crossesDevices());
    EXPECT_FALSE(moved->remainsAtSource);
    EXPECT_EQ(pictureOf(target("held")), before);
    EXPECT_EQ(entriesIn(m_home / "from"), 0U);
    EXPECT_EQ(entriesIn(m_target), 1U);
    EXPECT_EQ(
        statusOf(target("held/a")).st_ino, statusOf(target("held/sub/second name of a")).st_ino);
    EXPECT_LT(statusOf(target("held/sparse")).st_blocks, 2000);
    if (!crossesDevices()) {
        EXPECT_EQ(statusOf(target("held")).st_ino, inode);
    }

    ASSERT_TRUE(m_mover.move(target("held"), m_home / "from/tree"));
    EXPECT_EQ(pictureOf(m_home / "from/tree"), before);
    EXPECT_EQ(entriesIn(m_target), 0U);
}

TEST_P(FileMoverTest, MovesEveryKindOfSingleItem)
{
    makeRichTree(m_home, "tree");
    for (const auto* name : {"empty", "relative", "dangling", "pipe", "socket", "sparse"}) {
        const auto before = pictureOf(m_home / ("tree/" + std::string(name)));
        ASSERT_TRUE(m_mover.move(m_home / ("tree/" + std::string(name)), target(name))) << name;
        EXPECT_EQ(pictureOf(target(name)), before) << name;
        EXPECT_FALSE(isThere(m_home / ("tree/" + std::string(name)))) << name;
    }
}

TEST_P(FileMoverTest, ReplacesNothing)
{
    m_home.writeFile("file", "mine");
    m_home.writeFile("folder/inner", "mine");
    const auto source = pictureOf(m_home.path());
    std::ofstream(target("taken by a file")) << "theirs";
    fs::create_directory(target("taken by a folder"));
    fs::create_symlink("nowhere", target("taken by a link"));
    const auto taken = pictureOf(m_target);
    for (const auto* name : {"taken by a file", "taken by a folder", "taken by a link"}) {
        for (const auto* item : {"file", "folder"}) {
            const auto moved = m_mover.move(m_home / item, target(name));
            ASSERT_FALSE(moved) << item << " " << name;
            EXPECT_EQ(moved.error().kind, Kind::fileExists) << item << " " << name;
            EXPECT_NE(moved.error().message.find(item), std::string::npos);
        }
    }
    EXPECT_EQ(pictureOf(m_target), taken);
    EXPECT_EQ(m_home.readFile("file"), "mine");
    EXPECT_EQ(m_home.readFile("folder/inner"), "mine");
}

TEST_P(FileMoverTest, MovesTreesDeeperThanAnyPath)
{
    const std::string name(100, 'd');
    m_home.chain(name, 200);
    ASSERT_TRUE(m_mover.move(m_home / name, target("deep")));
    EXPECT_FALSE(isThere(m_home / name));
    ASSERT_TRUE(m_mover.move(target("deep"), m_home / name));
    EXPECT_TRUE(isThere(m_home / (name + "/" + name + "/" + name)));
    EXPECT_FALSE(isThere(target("deep")));
}

TEST_P(FileMoverTest, StaysAwayFromLinksThatTookAFoldersPlace)
{
    m_home.writeFile("walked/folder/item", "found");
    m_home.writeFile("elsewhere/item", "not meant");
    fs::rename(m_home / "walked/folder", m_home / "gone");
    m_home.link("walked/folder", m_home / "elsewhere");
    MoveOptions options;
    options.noLinksBelow = m_home / "walked";
    EXPECT_FALSE(m_mover.move(m_home / "walked/folder/item", target("item"), options));
    EXPECT_EQ(m_home.readFile("elsewhere/item"), "not meant");
    EXPECT_TRUE(m_mover.move(m_home / "walked/folder/item", target("item")));
}

TEST_P(FileMoverTest, PutsMarksOnAndTakesThemOff)
{
    m_home.writeFile("item", "bytes");
    m_home.setMode("item", 0444);
    MoveOptions options;
    options.marks = {{"user.kestavon.origin", "here"}};
    ASSERT_TRUE(m_mover.move(m_home / "item", target("item"), options));
    std::string value(16, '\0');
    const auto size
        = ::getxattr(target("item").c_str(), "user.kestavon.origin", value.data(), value.size());
    if (size < 0)
        GTEST_SKIP() << "no extended attributes here";
    EXPECT_EQ(value.substr(0, static_cast<std::size_t>(size)), "here");
    EXPECT_EQ(statusOf(target("item")).st_mode & 07777, 0444U);
    ASSERT_TRUE(m_mover.move(target("item"), m_home / "item", {.unmarkPrefix = "user.kestavon."}));
    EXPECT_EQ(::listxattr((m_home / "item").c_str(), nullptr, 0), 0);
    EXPECT_EQ(statusOf(m_home / "item").st_mode & 07777, 0444U);
}

TEST_P(FileMoverTest, LeavesAFolderWhereNoneWasExpected)
{
    m_home.writeFile("item/inner", "bytes");
    const auto moved = m_mover.move(m_home / "item", target("item"), {.refusesFolders = true});
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().kind, Kind::changed);
    EXPECT_EQ(m_home.readFile("item/inner"), "bytes");
    EXPECT_TRUE(m_mover.move(m_home / "item/inner", target("item"), {.refusesFolders = true}));
}

TEST_P(FileMoverTest, MovesAFolderThatItsOwnerMayNotWriteTo)
{
    ::chmod(m_home.path().c_str(), 0777);
    if (crossesDevices())
        ::chmod(m_other.path().c_str(), 0777);
    ::chmod(m_target.c_str(), 0777);
    const test::AsOrdinaryUser user;
    m_home.writeFile("locked/inner", "bytes");
    m_home.setMode("locked", 0555);
    ASSERT_TRUE(m_mover.move(m_home / "locked", target("locked")));
    EXPECT_EQ(statusOf(target("locked")).st_mode & 07777, 0555U);
    EXPECT_TRUE(isThere(target("locked/inner")));
    EXPECT_FALSE(isThere(m_home / "locked"));
}

TEST_P(FileMoverTest, LeavesAFolderInWhichAVolumeIsMounted)
{
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0)
        GTEST_SKIP() << "only root can mount";
    ASSERT_EQ(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    m_home.makeFolder("work/server");
    m_home.writeFile("work server", "beside it");
    ASSERT_EQ(::mount("none", (m_home / "work/server").c_str(), "tmpfs", 0, nullptr), 0);
    m_home.writeFile("work/server/file", "on the volume");
    const auto moved = SystemFileMover().move(m_home / "work", m_target + "/work");
    ASSERT_FALSE(moved) << "what empties that place later would empty the volume";
    EXPECT_EQ(moved.error().kind, Kind::permission);
    EXPECT_EQ(m_home.readFile("work/server/file"), "on the volume");
    EXPECT_EQ(entriesIn(m_target), 0U);
    EXPECT_TRUE(SystemFileMover().move(m_home / "work server", m_target + "/other"));
    ::umount((m_home / "work/server").c_str());
    EXPECT_TRUE(SystemFileMover().move(m_home / "work", m_target + "/work"));
}

TEST(FileMoverTests, RefusesToMoveAFolderIntoItself)
{
    const test::TemporaryTree home;
    home.writeFile("folder/inner/file", "bytes");
    EXPECT_FALSE(SystemFileMover().move(home / "folder", home / "folder/inner/folder"));
    EXPECT_EQ(home.readFile("folder/inner/file"), "bytes");
    EXPECT_EQ(entriesIn(home / "folder/inner"), 1U);
}

TEST(FileMoverTests, TellsWhatIsMissing)
{
    const test::TemporaryTree home;
    home.writeFile("item");
    SystemFileMover mover;
    EXPECT_EQ(mover.move(home / "none", home / "moved").error().kind, Kind::noSuchFile);
    EXPECT_EQ(mover.move(home / "item", home / "none/moved").error().kind, Kind::noSuchFile);
    EXPECT_FALSE(mover.move("item", home / "moved")); // Only absolute paths mean one item.
    EXPECT_FALSE(mover.move(home / "..", home / "moved"));
}

} // namespace
} // namespace kestavon
