#include "core/domain/uuid.h"
#include "platform/file_mover.h"
#include "support/temporary_tree.h"
#include "support/tree_picture.h"

#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kestavon {
namespace {

using Kind = FileError::Kind;
using test::pictureOf;

namespace fs = std::filesystem;

bool isThere(const std::string& path)
{
    return fs::symlink_status(path).type() != fs::file_type::not_found;
}

std::size_t entriesIn(const std::string& folder)
{
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

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

/// Copies to another device that something comes in between of.
class InterruptedCopyTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!m_other)
            GTEST_SKIP() << "no second device here";
        m_home.writeFile("from/tree/a", std::string(3'000'000, 'a'));
        m_home.writeFile("from/tree/sub/z", std::string(3'000'000, 'z'));
    }

    FileResult<MoveReport> moveWith(const std::function<void()>& firstProgress)
    {
        MoveOptions options;
        options.stop = m_stop.get_token();
        options.progress = [&, done = false](std::int64_t, std::int64_t) mutable {
            if (!std::exchange(done, true))
                firstProgress();
        };
        return m_mover.move(m_home / "from/tree", m_other / "held", options);
    }

    void expectNothingMoved(const std::map<std::string, std::string>& source)
    {
        EXPECT_EQ(pictureOf(m_home / "from/tree"), source);
        EXPECT_EQ(entriesIn(m_home / "from"), 1U);
        EXPECT_EQ(entriesIn(m_other.path()), 0U);
    }

    test::TemporaryTree m_home;
    test::OtherDevice m_other;
    std::stop_source m_stop;
    SystemFileMover m_mover;
};

TEST_F(InterruptedCopyTest, CanBeCancelled)
{
    const auto before = pictureOf(m_home / "from/tree");
    const auto moved = moveWith([this] { m_stop.request_stop(); });
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().kind, Kind::cancelled);
    expectNothingMoved(before);
}

TEST_F(InterruptedCopyTest, KeepsASourceThatChanges)
{
    const std::vector<std::function<void()>> changes{
        [this] { m_home.writeFile("from/tree/newcomer", "new"); },
        [this] { m_home.writeFile("from/tree/sub/newcomer", "new"); },
        [this] { std::ofstream(m_home / "from/tree/a", std::ios::app) << "more"; },
        [this] { m_home.writeFile("from/tree/sub/z", std::string(3'000'000, 'y')); },
        [this] { fs::remove(m_home / "from/tree/sub/z"); },
        [this] { m_home.setMode("from/tree/a", 0400); },
        [this] { fs::rename(m_home / "from/tree/a", m_home / "from/tree/b"); },
        [this] { fs::create_symlink("/", m_home / "from/tree/link"); },
        [this] { // The same size and date as before: only the time of change tells.
            const auto former = fs::last_write_time(m_home / "from/tree/a");
            m_home.writeFile("from/tree/a", std::string(3'000'000, 'b'));
            fs::last_write_time(m_home / "from/tree/a", former);
        },
        [this] { // The same with another name elsewhere, through which it is written to.
            const auto former = fs::last_write_time(m_home / "from/tree/a");
            m_home.writeFile("second name of a", std::string(3'000'000, 'c'));
            fs::last_write_time(m_home / "second name of a", former);
        },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(i);
        std::map<std::string, std::string> changed;
        const auto moved = moveWith([&] {
            changes[i]();
            changed = pictureOf(m_home / "from/tree");
        });
        ASSERT_FALSE(moved);
        EXPECT_EQ(moved.error().kind, Kind::changed);
        expectNothingMoved(changed);
        m_home.writeFile("from/tree/sub/z", std::string(3'000'000, 'z'));
        m_home.writeFile("from/tree/b", std::string(3'000'000, 'a'));
        if (!isThere(m_home / "from/tree/a"))
            m_home.writeFile("from/tree/a", std::string(3'000'000, 'a'));
        if (!isThere(m_home / "second name of a"))
            fs::create_hard_link(m_home / "from/tree/a", m_home / "second name of a");
    }
}

TEST_F(InterruptedCopyTest, LeavesADestinationThatAppears)
{
    const auto before = pictureOf(m_home / "from/tree");
    const auto moved = moveWith([this] { std::ofstream(m_other / "held") << "theirs"; });
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().kind, Kind::fileExists);
    EXPECT_EQ(pictureOf(m_home / "from/tree"), before);
    EXPECT_EQ(fs::file_size(m_other / "held"), 6U);
    EXPECT_EQ(entriesIn(m_other.path()), 1U);
}

TEST_F(InterruptedCopyTest, UndoesACopyThatTheDiskRefuses)
{
    const auto before = pictureOf(m_home / "from/tree");
    struct rlimit old { };
    ::getrlimit(RLIMIT_FSIZE, &old);
    const auto formerHandler = ::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit tight {
        1'000'000, old.rlim_max
    };
    ::setrlimit(RLIMIT_FSIZE, &tight); // Writes beyond the first megabyte of a file fail.
    const auto moved = m_mover.move(m_home / "from/tree", m_other / "held");
    ::setrlimit(RLIMIT_FSIZE, &old);
    ::signal(SIGXFSZ, formerHandler);
    ASSERT_FALSE(moved);
    expectNothingMoved(before);
}

TEST_F(InterruptedCopyTest, TellsHowFarItIs)
{
    std::int64_t last = 0;
    MoveOptions options;
    options.progress = [&](std::int64_t done, std::int64_t total) {
        EXPECT_GT(done, last);
        EXPECT_EQ(total, 6'000'000);
        last = done;
    };
    ASSERT_TRUE(m_mover.move(m_home / "from/tree", m_other / "held", options));
    EXPECT_EQ(last, 6'000'000);
}

TEST(UnfinishedMoveTests, AreClearedAwayUnlessTheyAreAtWork)
{
    const test::TemporaryTree home;
    const auto id = Uuid::random().text();
    home.writeFile(".kestavon-partial-" + id + "/sub/half", "half");
    home.setMode(".kestavon-partial-" + id + "/sub", 0555);
    home.writeFile(".kestavon-partial-notes", "a person's own");
    home.writeFile(".kestavon-removed-" + id, "a copy of this was not found");
    home.writeFile("item", "other");
    SystemFileMover mover;

    const int lock = ::open(home.path().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(lock, LOCK_SH), 0); // Another program's move is at work here.
    mover.clearUnfinishedMoves(home.path());
    EXPECT_EQ(entriesIn(home.path()), 4U);
    ::close(lock);

    mover.clearUnfinishedMoves(home.path());
    EXPECT_EQ(entriesIn(home.path()), 3U);
    EXPECT_TRUE(isThere(home / ".kestavon-partial-notes"));
    EXPECT_TRUE(isThere(home / (".kestavon-removed-" + id)));
    EXPECT_TRUE(isThere(home / "item"));
}

/// A move that a crash ended while its source was being deleted.
class UnfinishedRemovalTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (const auto& folder : {"from/" + m_removed, std::string("to/copy")}) {
            m_home.writeFile(folder + "/a", "one");
            m_home.writeFile(folder + "/sub/b", "two");
            m_home.writeFile(folder + "/locked/c", "three");
            m_home.link(folder + "/sub/link", "nowhere");
            m_home.makeFolder(folder + "/empty");
            ASSERT_EQ(::mkfifo((m_home / (folder + "/pipe")).c_str(), 0600), 0);
            m_home.setMode(folder + "/locked", 0555);
        }
        const auto mark = m_home / ("from/" + m_removed) + '\0' + "tree";
        if (::setxattr((m_home / "to/copy").c_str(), "user.kestavon.removed-source", mark.data(),
                mark.size(), 0)
            != 0)
            GTEST_SKIP() << "no extended attributes here";
    }
    bool hasMark() const
    {
        return ::getxattr((m_home / "to/copy").c_str(), "user.kestavon.removed-source", nullptr, 0)
            >= 0;
    }

    test::TemporaryTree m_home;
    std::string m_removed = ".kestavon-removed-" + Uuid::random().text();
    SystemFileMover m_mover;
};

TEST_F(UnfinishedRemovalTest, GoesOnWithWhatTheCopyHolds)
{
    fs::remove(m_home / ("from/" + m_removed + "/a")); // So far it had got.
    const auto copy = pictureOf(m_home / "to/copy");
    const int lock = ::open((m_home / "from").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(lock, LOCK_SH), 0); // Another program's move is at work there.
    m_mover.clearUnfinishedMoves(m_home / "to");
    EXPECT_EQ(entriesIn(m_home / "from"), 1U);
    ::close(lock);

    m_mover.clearUnfinishedMoves(m_home / "to");
    EXPECT_EQ(entriesIn(m_home / "from"), 0U);
    EXPECT_FALSE(hasMark());
    EXPECT_EQ(pictureOf(m_home / "to/copy"), copy);
}

TEST_F(UnfinishedRemovalTest, GivesBackWhatTheCopyDoesNotHold)
{
    const auto from = "from/" + m_removed;
    m_home.writeFile(from + "/sub/b", "TWO"); // as long as before
    m_home.writeFile(from + "/moved in/old", "from before the crash");
    m_home.setModified(from + "/moved in/old", Timestamp{std::chrono::hours(24)});
    m_mover.clearUnfinishedMoves(m_home / "to");
    EXPECT_FALSE(hasMark());
    EXPECT_EQ(m_home.readFile("from/tree/sub/b"), "TWO");
    EXPECT_EQ(m_home.readFile("from/tree/moved in/old"), "from before the crash");
    EXPECT_EQ(entriesIn(m_home / "from/tree"), 2U);
}

TEST_F(UnfinishedRemovalTest, DeletesNothingWhoseCopyIsGone)
{
    const auto from = pictureOf(m_home / ("from/" + m_removed));
    fs::rename(m_home / "to/copy", m_home / "elsewhere");
    m_mover.clearUnfinishedMoves(m_home / "to");
    m_mover.clearUnfinishedMoves(m_home / "from");
    EXPECT_EQ(pictureOf(m_home / ("from/" + m_removed)), from);
}

} // namespace
} // namespace kestavon
