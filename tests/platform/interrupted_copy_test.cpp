#include "platform/file_mover.h"
#include "support/as_ordinary_user.h"
#include "support/entries.h"
#include "support/faulty_calls.h"
#include "support/temporary_tree.h"
#include "support/tree_picture.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <utility>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kestavon {
namespace {

using Kind = FileError::Kind;
using test::entriesIn;
using test::Fault;
using test::FaultyCalls;
using test::isThere;
using test::pictureOf;
using test::SystemCall;

namespace fs = std::filesystem;

constexpr std::string_view partialPrefix = ".kestavon-partial-";
constexpr std::string_view asidePrefix = ".kestavon-removed-";

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

    FileResult<MoveReport> move() { return m_mover.move(m_home / "from/tree", m_other / "held"); }

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

TEST_F(InterruptedCopyTest, IsWholeAtOnePlaceWheneverItIsStopped)
{
    m_home.writeFile("from/tree/a", "small");
    m_home.writeFile("from/tree/sub/z", "small");
    const auto before = pictureOf(m_home / "from/tree");
    int undone = 0;
    int done = 0;
    for (int stopAt = 1; done < 3; ++stopAt) {
        SCOPED_TRACE(stopAt);
        ASSERT_LT(stopAt, 1000);
        std::stop_source stop;
        int calls = 0;
        FileResult<MoveReport> moved = MoveReport{};
        {
            const FaultyCalls watch([&](const SystemCall&) -> std::optional<Fault> {
                if (++calls == stopAt)
                    stop.request_stop();
                return std::nullopt;
            });
            moved
                = m_mover.move(m_home / "from/tree", m_other / "held", {.stop = stop.get_token()});
        }
        if (!moved) {
            ++undone;
            EXPECT_EQ(moved.error().kind, Kind::cancelled);
            expectNothingMoved(before);
            continue;
        }
        ++done;
        EXPECT_FALSE(moved->remainsAtSource);
        EXPECT_EQ(pictureOf(m_other / "held"), before);
        EXPECT_EQ(entriesIn(m_home / "from"), 0U);
        ASSERT_TRUE(m_mover.move(m_other / "held", m_home / "from/tree"));
    }
    EXPECT_GT(undone, 10);
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

TEST_F(InterruptedCopyTest, LeavesTheSourceWhenTheCopyLacksSomething)
{
    const auto before = pictureOf(m_home / "from/tree");
    for (const auto* damage : {"gone", "short", "more"}) {
        SCOPED_TRACE(damage);
        const FaultyCalls calls([&](const SystemCall& call) -> std::optional<Fault> {
            if (call.call != "renameat2" || !call.name.starts_with(partialPrefix))
                return std::nullopt;
            const auto copy = m_other / std::string(call.name);
            if (damage == std::string_view("gone"))
                fs::remove(copy + "/sub/z");
            else if (damage == std::string_view("short"))
                fs::resize_file(copy + "/a", 2'000'000);
            else
                std::ofstream(copy + "/theirs") << "theirs";
            return std::nullopt;
        });
        EXPECT_FALSE(move());
        expectNothingMoved(before);
    }
}

TEST_F(InterruptedCopyTest, CopiesDataThatADiskCallsAHole)
{
    m_home.file("from/tree/sparse", 8'000'000);
    std::fstream(m_home / "from/tree/sparse", std::ios::in | std::ios::out).seekp(5'000'000)
        << "data";
    const auto before = pictureOf(m_home / "from/tree");
    const FaultyCalls calls([](const SystemCall& call) {
        return call.call == "lseek" && call.flags == SEEK_DATA ? std::optional(Fault{ENXIO})
                                                               : std::nullopt;
    });
    ASSERT_TRUE(move());
    EXPECT_EQ(pictureOf(m_other / "held"), before);
    struct stat copy { };
    ASSERT_EQ(::stat((m_other / "held/sparse").c_str(), &copy), 0);
    EXPECT_LT(copy.st_blocks * 512, 4'000'000) << "its holes were filled";
}

TEST_F(InterruptedCopyTest, LeavesTheSourceWhenTheCopyDoesNotReachTheDisk)
{
    const auto before = pictureOf(m_home / "from/tree");
    for (int failing = 1; failing <= 5; ++failing) {
        SCOPED_TRACE(failing);
        int calls = 0;
        const FaultyCalls faults([&](const SystemCall& call) {
            return call.call == "fsync" && ++calls == failing ? std::optional(Fault{EIO})
                                                              : std::nullopt;
        });
        EXPECT_FALSE(move());
        ASSERT_GE(calls, failing);
        expectNothingMoved(before);
    }
}

TEST_F(InterruptedCopyTest, KeepsTheCopyWhenItCannotTellWhereTheSourceIs)
{
    const auto before = pictureOf(m_home / "from/tree");
    bool isAside = false;
    const FaultyCalls calls([&](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "renameat2" && call.target.starts_with(asidePrefix)) {
            isAside = true;
            return Fault{EIO, true};
        }
        if (isAside && call.call == "statx"
            && (call.name == "tree" || call.name.starts_with(asidePrefix)))
            return Fault{EIO};
        return std::nullopt;
    });
    const auto moved = move();
    ASSERT_TRUE(moved);
    EXPECT_TRUE(moved->remainsAtSource);
    EXPECT_EQ(pictureOf(m_other / "held"), before);
    EXPECT_GT(
        ::getxattr((m_other / "held").c_str(), "user.kestavon.removed-source", nullptr, 0), 0);
}

TEST_F(InterruptedCopyTest, KeepsTheCopyWhenTheDiskRefusesInWordsWhatItHasDone)
{
    fs::remove(m_home / "from/tree/a");
    const auto before = pictureOf(m_home / "from/tree");
    const FaultyCalls calls([](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "unlinkat" && call.name == "z")
            return Fault{EIO, true};
        if (call.call == "unlinkat" && (call.name == "sub" || call.name.starts_with(asidePrefix)))
            return Fault{EIO};
        return std::nullopt;
    });
    const auto moved = move();
    ASSERT_TRUE(moved);
    EXPECT_TRUE(moved->remainsAtSource);
    EXPECT_EQ(pictureOf(m_other / "held"), before);
}

TEST_F(InterruptedCopyTest, IsUndoneWhenTheDiskRemovesNothing)
{
    const auto before = pictureOf(m_home / "from/tree");
    const FaultyCalls calls([](const SystemCall& call) {
        const bool isOfSource = call.call == "unlinkat"
            && (call.name == "z" || call.name == "a" || call.name == "sub"
                || call.name.starts_with(asidePrefix));
        return isOfSource ? std::optional(Fault{EIO}) : std::nullopt;
    });
    EXPECT_FALSE(move());
    EXPECT_EQ(pictureOf(m_home / "from/tree"), before);
    EXPECT_EQ(entriesIn(m_home / "from"), 1U);
}

TEST_F(InterruptedCopyTest, MovesAFolderThatItsFileSystemCannotRename)
{
    const auto before = pictureOf(m_home / "from/tree");
    const FaultyCalls calls([](const SystemCall& call) {
        return call.call == "renameat2" && call.name == "tree" ? std::optional(Fault{EXDEV})
                                                               : std::nullopt;
    });
    const auto moved = move();
    ASSERT_TRUE(moved);
    EXPECT_FALSE(moved->remainsAtSource);
    EXPECT_EQ(pictureOf(m_other / "held"), before);
    EXPECT_EQ(entriesIn(m_home / "from"), 0U);
}

TEST_F(InterruptedCopyTest, LeavesAnItemThatTookTheSourcesPlace)
{
    m_home.writeFile("other/newer", "theirs");
    const FaultyCalls calls([this](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "renameat2" && call.target.starts_with(asidePrefix)) {
            fs::rename(m_home / "from/tree", m_home / "elsewhere");
            fs::rename(m_home / "other", m_home / "from/tree");
        }
        return std::nullopt;
    });
    const auto moved = move();
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().kind, Kind::changed);
    EXPECT_EQ(m_home.readFile("from/tree/newer"), "theirs");
    EXPECT_TRUE(isThere(m_home / "elsewhere/a"));
    EXPECT_EQ(entriesIn(m_home / "from"), 1U);
    EXPECT_EQ(entriesIn(m_other.path()), 0U);
}

TEST_F(InterruptedCopyTest, GivesBackWhatComesToLieInTheSourceAtTheLastMoment)
{
    const auto before = pictureOf(m_home / "from/tree");
    bool isWritten = false;
    const FaultyCalls calls([&](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "unlinkat" && call.name == "z" && !std::exchange(isWritten, true)) {
            for (const auto& entry : fs::directory_iterator(m_home / "from"))
                std::ofstream(entry.path() / "newcomer") << "theirs";
        }
        return std::nullopt;
    });
    const auto moved = move();
    ASSERT_TRUE(moved);
    EXPECT_TRUE(moved->remainsAtSource);
    EXPECT_EQ(pictureOf(m_other / "held"), before);
    EXPECT_EQ(m_home.readFile("from/tree/newcomer"), "theirs");
    EXPECT_EQ(entriesIn(m_home / "from/tree"), 1U);
}

TEST_F(InterruptedCopyTest, KeepsTheSourceWhenTheDestinationVanishes)
{
    fs::create_directory(m_other / "into");
    const auto before = pictureOf(m_home / "from/tree");
    MoveOptions options;
    options.progress = [this](std::int64_t, std::int64_t) { fs::remove_all(m_other / "into"); };
    const auto moved = m_mover.move(m_home / "from/tree", m_other / "into/held", options);
    ASSERT_FALSE(moved);
    EXPECT_NE(moved.error().message.find("“tree”"), std::string::npos);
    expectNothingMoved(before);
}

TEST_F(InterruptedCopyTest, KeepsAccessLists)
{
    // Version 2; the owner may read and write, user 1234 read, the group nothing, nobody else.
    const std::string list("\x02\0\0\0"
                           "\x01\0\x06\0\xff\xff\xff\xff"
                           "\x02\0\x04\0\xd2\x04\0\0"
                           "\x04\0\0\0\xff\xff\xff\xff"
                           "\x10\0\x04\0\xff\xff\xff\xff"
                           "\x20\0\0\0\xff\xff\xff\xff",
        44);
    const auto listOf = [](const std::string& path, const char* kind) {
        std::string value(256, '\0');
        const auto size = ::getxattr(path.c_str(), kind, value.data(), value.size());
        value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
        return value;
    };
    constexpr auto* access = "system.posix_acl_access";
    constexpr auto* inherited = "system.posix_acl_default";
    const auto file = m_home / "from/tree/a";
    const auto folder = m_home / "from/tree/sub";
    if (::setxattr(file.c_str(), access, list.data(), list.size(), 0) != 0
        || ::setxattr(folder.c_str(), inherited, list.data(), list.size(), 0) != 0)
        GTEST_SKIP() << "no access lists here";
    const auto before = pictureOf(m_home / "from/tree");
    // The place that it goes to lets somebody into all that is made there.
    ASSERT_EQ(::setxattr(m_other.path().c_str(), inherited, list.data(), list.size(), 0), 0);
    ASSERT_TRUE(move());
    EXPECT_EQ(listOf(m_other / "held", inherited), "");
    EXPECT_EQ(listOf(m_other / "held", access), "");
    EXPECT_EQ(listOf(m_other / "held/a", access), list);
    EXPECT_EQ(listOf(m_other / "held/sub", inherited), list);
    EXPECT_EQ(listOf(m_other / "held/sub/z", access), "") << "copies inherit nothing";
    EXPECT_EQ(pictureOf(m_other / "held"), before);
}

TEST_F(InterruptedCopyTest, DoesNotTakeTwoNamesThatAreOneThereForATakenName)
{
    const auto before = pictureOf(m_home / "from/tree");
    const FaultyCalls calls([](const SystemCall& call) {
        return call.call == "mkdirat" && call.name == "sub" ? std::optional(Fault{EEXIST})
                                                            : std::nullopt;
    });
    const auto moved = move();
    ASSERT_FALSE(moved);
    EXPECT_NE(moved.error().kind, Kind::fileExists) << "another name would be tried for ever";
    expectNothingMoved(before);
}

TEST_F(InterruptedCopyTest, SaysInWordsThatThereIsNoRoomAndCopiesNothing)
{
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0)
        GTEST_SKIP() << "only root can mount";
    ASSERT_EQ(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    fs::create_directory(m_other / "small");
    ASSERT_EQ(::mount("none", (m_other / "small").c_str(), "tmpfs", 0, "size=1m"), 0);
    const auto before = pictureOf(m_home / "from/tree");
    bool isCopying = false;
    MoveOptions options;
    options.progress = [&](std::int64_t, std::int64_t) { isCopying = true; };
    const auto moved = m_mover.move(m_home / "from/tree", m_other / "small/held", options);
    EXPECT_EQ(entriesIn(m_other / "small"), 0U);
    ::umount((m_other / "small").c_str());
    fs::remove(m_other / "small");
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().kind, Kind::noSpace);
    EXPECT_NE(moved.error().message.find("“tree”"), std::string::npos);
    EXPECT_FALSE(isCopying) << "found out only when the disk was full";
    expectNothingMoved(before);
}

} // namespace
} // namespace kestavon
