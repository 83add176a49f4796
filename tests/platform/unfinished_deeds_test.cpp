#include "platform/file_mover.h"
#include "platform/file_remover.h"
#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/patience.h"
#include "support/as_ordinary_user.h"
#include "support/entries.h"
#include "support/faulty_calls.h"
#include "support/temporary_tree.h"
#include "support/tree_picture.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <latch>
#include <memory>
#include <new>
#include <optional>
#include <tuple>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kestavon {
namespace {

using test::entriesIn;
using test::Fault;
using test::FaultyCalls;
using test::isThere;
using test::pictureOf;
using test::SystemCall;

namespace fs = std::filesystem;

constexpr uid_t ordinaryUser = 65534;

/// Deeds in a process of their own that is killed before each of its calls in turn, and what the
/// next start makes of that.
class UnfinishedDeedTest : public testing::Test {
protected:
    using Deed = std::function<void()>;

    /// `prepare` and `check` surround every kill; the last deed ends by itself.
    void sweep(const Deed& prepare, const Deed& deed, const Deed& check,
        const FaultyCalls::Rule& disk = nullptr)
    {
        constexpr int mostCalls = 500;
        int kills = 0;
        for (bool wasKilled = true; wasKilled; ++kills) {
            SCOPED_TRACE("killed before call " + std::to_string(kills));
            ASSERT_LT(kills, mostCalls);
            prepare();
            wasKilled = isKilledBefore(kills, deed, disk);
            clear();
            check();
            EXPECT_EQ(entriesIn(m_journal), 0U) << "something was left to be done";
            if (HasFailure())
                return;
        }
        EXPECT_GT(kills, 3);
    }

    void clear()
    {
        std::optional<test::AsOrdinaryUser> user;
        if (m_isOfOrdinaryUser)
            user.emplace();
        m_mover.clearUnfinishedMoves(m_home / "held");
    }

    bool isKilledBefore(int call, const Deed& deed, const FaultyCalls::Rule& disk) const
    {
        std::fflush(nullptr);
        const pid_t child = ::fork();
        if (child == 0) {
            // A thread of the parent's may have held a lock of the allocator's as it forked: what
            // hangs for that is killed too, and any moment will do.
            ::alarm(5);
            int calls = 0;
            const FaultyCalls kill([&](const SystemCall& made) -> std::optional<Fault> {
                if (calls++ == call)
                    ::kill(::getpid(), SIGKILL);
                return disk ? disk(made) : std::nullopt;
            });
            deed();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
        return WIFSIGNALED(status);
    }

    void SetUp() override
    {
        m_home.makeFolder("held");
        m_home.makeFolder("from");
        m_home.makeFolder("journal");
    }

    bool hasMarks(const std::string& path) const
    {
        return ::llistxattr(path.c_str(), nullptr, 0) > 0;
    }

    /// Expects the item at one of the two places, and nothing else beside either.
    void expectOnePlace(const std::string& from, const std::string& to) const
    {
        EXPECT_NE(isThere(from + "/item"), isThere(to + "/item"));
        EXPECT_EQ(entriesIn(from) + entriesIn(to), 1U);
    }

    test::TemporaryTree m_home;
    test::OtherDevice m_other;
    std::string m_journal = m_home / "journal";
    bool m_isOfOrdinaryUser = false;
    SystemFileMover m_mover{m_journal, std::chrono::minutes(1)};
    SystemFileRemover m_remover{m_journal};
};

TEST_F(UnfinishedDeedTest, WhatCanCarryNoMarkIsAtOnePlaceAfterTheNextStart)
{
    if (!m_other)
        GTEST_SKIP() << "no second device here";
    struct {
        const char* what;
        Deed make;
    } const rows[] = {
        {"a link", [this] { m_home.link("from/item", "nowhere"); }},
        {"a pipe", [this] { ASSERT_EQ(::mkfifo((m_home / "from/item").c_str(), 0640), 0); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        std::map<std::string, std::string> before;
        sweep(
            [&] {
                fs::remove(m_other / "item");
                fs::remove(m_home / "from/item");
                row.make();
                before = pictureOf(m_home / "from/item");
            },
            [this] { std::ignore = m_mover.move(m_home / "from/item", m_other / "item"); },
            [&] {
                expectOnePlace(m_home / "from", m_other.path());
                const auto here = m_home / "from/item";
                EXPECT_EQ(pictureOf(isThere(here) ? here : m_other / "item"), before);
            });
    }
}

TEST_F(UnfinishedDeedTest, WhatIsPutBackToAnotherDeviceLeavesNothingHalfThere)
{
    if (!m_other)
        GTEST_SKIP() << "no second device here";
    std::map<std::string, std::string> before;
    sweep(
        [&] {
            fs::remove_all(m_other / "item");
            m_home.writeFile("from/item/a", "one");
            m_home.writeFile("from/item/sub/b", "two");
            before = pictureOf(m_home / "from/item");
        },
        [this] {
            std::ignore
                = m_mover.move(m_home / "from/item", m_other / "item", {.remembersTarget = true});
        },
        [&] {
            expectOnePlace(m_home / "from", m_other.path());
            const auto here = m_home / "from/item";
            const auto there = m_other / "item";
            EXPECT_EQ(pictureOf(isThere(here) ? here : there), before);
            EXPECT_FALSE(isThere(there) && hasMarks(there));
            fs::remove_all(here);
        });
}

TEST_F(UnfinishedDeedTest, ADisksHalfCopyWaitsForTheDisk)
{
    if (!m_other)
        GTEST_SKIP() << "no second device here";
    fs::create_directory(m_other / "disk");
    m_home.link("from/item", "nowhere");
    const auto move
        = [this] { std::ignore = m_mover.move(m_home / "from/item", m_other / "disk/item"); };
    const auto atRename = [](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "renameat2" && call.name.starts_with(".kestavon-partial-"))
            ::kill(::getpid(), SIGKILL);
        return std::nullopt;
    };
    ASSERT_TRUE(isKilledBefore(-1, move, atRename));
    ASSERT_EQ(entriesIn(m_other / "disk"), 1U);
    fs::rename(m_other / "disk", m_other / "not mounted");
    m_mover.clearUnfinishedMoves(m_home / "held");
    fs::rename(m_other / "not mounted", m_other / "disk");
    m_mover.clearUnfinishedMoves(m_home / "held");
    EXPECT_EQ(entriesIn(m_other / "disk"), 0U);
    EXPECT_TRUE(isThere(m_home / "from/item"));
    EXPECT_EQ(entriesIn(m_journal), 0U);
}

TEST_F(UnfinishedDeedTest, ASourceWhoseCopyWasTakenAwayIsShownAgain)
{
    if (!m_other)
        GTEST_SKIP() << "no second device here";
    m_home.writeFile("from/item/a", "one");
    const auto before = pictureOf(m_home / "from/item");
    const auto move = [this] {
        std::ignore
            = m_mover.move(m_home / "from/item", m_other / "item", {.remembersTarget = true});
    };
    const auto atUnlink = [](const SystemCall& call) -> std::optional<Fault> {
        if (call.call == "unlinkat" && call.name == "a")
            ::kill(::getpid(), SIGKILL);
        return std::nullopt;
    };
    ASSERT_TRUE(isKilledBefore(-1, move, atUnlink));
    ASSERT_FALSE(isThere(m_home / "from/item"));
    fs::remove_all(m_other / "item");
    m_mover.clearUnfinishedMoves(m_home / "held");
    EXPECT_EQ(pictureOf(m_home / "from/item"), before);
    EXPECT_EQ(entriesIn(m_home / "from"), 1U);
}

TEST_F(UnfinishedDeedTest, ADeletedFileIsGoneOrHasItsName)
{
    sweep([this] { m_home.writeFile("from/item", "content"); },
        [this] {
            struct stat status { };
            ::lstat((m_home / "from/item").c_str(), &status);
            const auto nanoseconds
                = [](const timespec& time) { return time.tv_sec * 1'000'000'000 + time.tv_nsec; };
            std::ignore = m_remover.removeFileIf(m_home / "from/item",
                {.device = status.st_dev,
                    .inode = status.st_ino,
                    .size = status.st_size,
                    .modifiedAt = nanoseconds(status.st_mtim),
                    .changedAt = nanoseconds(status.st_ctim)},
                [] { return true; });
        },
        [this] {
            if (entriesIn(m_home / "from") != 0) {
                EXPECT_EQ(m_home.readFile("from/item"), "content");
            }
        });
    EXPECT_EQ(entriesIn(m_home / "from"), 0U);
}

TEST_F(UnfinishedDeedTest, WhereRenamesMayReplaceAnItemHasOneNameAfterTheNextStart)
{
    const auto network = [](const SystemCall& call) -> std::optional<Fault> {
        return call.call == "renameat2" && call.flags != 0 ? std::optional(Fault{EINVAL})
                                                           : std::nullopt;
    };
    sweep(
        [this] {
            fs::remove(m_home / "held/item");
            m_home.writeFile("from/item", "content");
        },
        [this] { std::ignore = m_mover.move(m_home / "from/item", m_home / "held/item"); },
        [this] {
            expectOnePlace(m_home / "from", m_home / "held");
            const auto* where = isThere(m_home / "from/item") ? "from/item" : "held/item";
            EXPECT_EQ(m_home.readFile(where), "content");
        },
        network);
}

TEST_F(UnfinishedDeedTest, MarksAreOnlyOnWhatIsHeld)
{
    m_home.writeFile("from/item", "content");
    if (::setxattr((m_home / "from/item").c_str(), "user.test", "", 0, 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    ASSERT_EQ(::removexattr((m_home / "from/item").c_str(), "user.test"), 0);
    const auto from = m_home / "from/item";
    const auto held = m_home / "held/item";
    sweep(
        [&] {
            if (isThere(held))
                fs::rename(held, from);
            ::removexattr(from.c_str(), "user.kestavon.original-path");
        },
        [&] {
            std::ignore
                = m_mover.move(from, held, {.marks = {{"user.kestavon.original-path", from}}});
        },
        [&] {
            EXPECT_FALSE(isThere(from) && hasMarks(from));
            EXPECT_FALSE(isThere(held) && !hasMarks(held));
        });
    sweep(
        [&] {
            if (isThere(from))
                fs::rename(from, held);
            ASSERT_EQ(::setxattr(held.c_str(), "user.kestavon.reason", "why", 3, 0), 0);
        },
        [&] { std::ignore = m_mover.move(held, from, {.unmarkPrefix = "user.kestavon."}); },
        [&] {
            EXPECT_FALSE(isThere(from) && hasMarks(from));
            EXPECT_FALSE(isThere(held) && !hasMarks(held));
        });
}

TEST_F(UnfinishedDeedTest, PermissionsComeBack)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can be two users";
    const auto giveAway = [this](const std::string& name) {
        ASSERT_EQ(::lchown((m_home / name).c_str(), ordinaryUser, ordinaryUser), 0);
    };
    const auto asOrdinaryUser = [](const Deed& deed) {
        return [deed] {
            if (::setgid(ordinaryUser) != 0 || ::setuid(ordinaryUser) != 0)
                ::_exit(1);
            deed();
        };
    };
    const auto modeOf = [this](const std::string& name) {
        struct stat status { };
        return ::lstat((m_home / name).c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    };
    m_home.setMode(".", 0755);
    for (const auto* folder : {"held", "from", "journal"})
        giveAway(folder);
    m_isOfOrdinaryUser = true;
    sweep(
        [&] {
            fs::remove_all(m_home / "held/item");
            m_home.writeFile("from/item/file", "content");
            giveAway("from/item");
            m_home.setMode("from/item", 0555);
        },
        asOrdinaryUser(
            [this] { std::ignore = m_mover.move(m_home / "from/item", m_home / "held/item"); }),
        [&] {
            EXPECT_EQ(modeOf(isThere(m_home / "from/item") ? "from/item" : "held/item"), 0555U);
            fs::remove_all(m_home / "from/item");
        });
    sweep(
        [&] {
            fs::remove_all(m_home / "from/item");
            m_home.writeFile("from/item/sub/inner/file");
            m_home.writeFile("from/item/sub/second");
            for (const auto* name :
                {"from/item", "from/item/sub", "from/item/sub/inner", "from/item/sub/inner/file"}) {
                giveAway(name);
                m_home.setMode(name, 0555);
            }
        },
        asOrdinaryUser([this] { std::ignore = m_remover.remove(m_home / "from/item"); }),
        [&] {
            for (const auto* name : {"from/item", "from/item/sub", "from/item/sub/inner"}) {
                if (isThere(m_home / name)) {
                    EXPECT_EQ(modeOf(name), 0555U) << name;
                }
            }
        });
}

TEST_F(UnfinishedDeedTest, WhatSomebodyIsAtWorkOnIsLeftAlone)
{
    m_home.writeFile("from/.kestavon-removed-0", "content");
    struct stat status { };
    ASSERT_EQ(::lstat((m_home / "from/.kestavon-removed-0").c_str(), &status), 0);
    {
        JournalEntry entry(m_journal + "/11111111-2222-4333-8444-555555555555");
        ASSERT_TRUE(entry.add(NotedFile{.folder = m_home / "from",
            .name = "item",
            .aside = ".kestavon-removed-0",
            .inode = status.st_ino,
            .target = {}}));
        m_mover.clearUnfinishedMoves(m_home / "held");
        EXPECT_FALSE(isThere(m_home / "from/item"));
        entry.leave();
    }
    m_mover.clearUnfinishedMoves(m_home / "held");
    EXPECT_EQ(m_home.readFile("from/item"), "content");
}

TEST_F(UnfinishedDeedTest, NobodyDoesWhatTheFilesOfOthersSay)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can be two users";
    m_home.writeFile("from/item", "content");
    m_home.setMode("from/item", 0600);
    struct stat status { };
    ASSERT_EQ(::lstat((m_home / "from/item").c_str(), &status), 0);
    const auto path = m_journal + "/11111111-2222-4333-8444-555555555555";
    {
        JournalEntry entry(path);
        ASSERT_TRUE(entry.add(NotedPermissions{.path = m_home / "from/item",
            .inode = status.st_ino,
            .former = 0666,
            .borrowed = 0600}));
        entry.leave();
    }
    const auto modeAfterClearing = [&] {
        m_mover.clearUnfinishedMoves(m_home / "held");
        return ::lstat((m_home / "from/item").c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    };
    ASSERT_EQ(::chown(path.c_str(), ordinaryUser, ordinaryUser), 0);
    EXPECT_EQ(modeAfterClearing(), 0600U);
    ASSERT_EQ(::chown(path.c_str(), 0, 0), 0);
    EXPECT_EQ(modeAfterClearing(), 0666U);
}

TEST(PatienceTests, WorkThatDoesNotEndIsLeftBehind)
{
    EXPECT_TRUE(runWithPatience(std::chrono::minutes(1), [] {}));
    EXPECT_TRUE(runWithPatience(std::chrono::minutes(1), [] { throw std::bad_alloc(); }));
    const auto mayEnd = std::make_shared<std::latch>(1);
    const auto hasEnded = std::make_shared<std::latch>(1);
    EXPECT_FALSE(runWithPatience(std::chrono::milliseconds(1), [mayEnd, hasEnded] {
        mayEnd->wait(); // for a server that does not answer
        hasEnded->count_down();
    }));
    mayEnd->count_down();
    hasEnded->wait();
}

TEST(DeedJournalTests, ReadsWhatItWroteUpToATornNote)
{
    const Note notes[] = {
        NotedMove{.targetFolder = "/a\nb",
            .targetName = "\xff",
            .partialCopy = "p",
            .source = {.path = "/s", .formerName = "f", .inode = 7}},
        NotedFile{.folder = "/f", .name = "n", .aside = "a", .inode = 8, .target = {}},
        NotedPermissions{.path = "/p", .inode = 9, .former = 0555, .borrowed = 0755},
        NotedMarks{.path = "/m", .inode = 10, .prefix = "user."},
    };
    std::string text;
    for (const auto& note : notes)
        text += textOf(note);
    const auto read = notesIn(text);
    ASSERT_EQ(read.size(), 4U);
    std::string again;
    for (const auto& note : read)
        again += textOf(note);
    EXPECT_EQ(again, text);
    for (std::size_t torn = 0; torn < text.size(); ++torn)
        EXPECT_LT(notesIn(text.substr(0, torn)).size(), 4U) << torn;
    const auto& move = std::get<NotedMove>(read[0]);
    EXPECT_EQ(move.targetFolder, "/a\nb");
    EXPECT_EQ(move.source.inode, 7U);
    EXPECT_EQ(std::get<NotedPermissions>(read[2]).former, 0555U);
}

} // namespace
} // namespace kestavon
