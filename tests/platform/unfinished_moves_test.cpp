#include "core/domain/uuid.h"
#include "platform/file_mover.h"
#include "support/entries.h"
#include "support/temporary_tree.h"
#include "support/tree_picture.h"

#include <filesystem>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kestavon {
namespace {

using test::entriesIn;
using test::isThere;
using test::pictureOf;

namespace fs = std::filesystem;

TEST(UnfinishedMoveTests, AreClearedAwayUnlessTheyAreAtWork)
{
    const test::TemporaryTree home;
    const auto id = Uuid::random().text();
    home.writeFile(".kestavon-partial-" + id + "/sub/half", "half");
    home.setMode(".kestavon-partial-" + id + "/sub", 0555);
    home.writeFile(".kestavon-partial-notes", "a person's own");
    home.writeFile(".kestavon-removed-" + id, "a copy of this was not found");
    home.writeFile(".kestavon-deleted-" + id + "/left", "of a folder that was being deleted");
    home.writeFile("item", "other");
    SystemFileMover mover;

    const int lock = ::open(home.path().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(lock, LOCK_SH), 0); // Another program's move is at work here.
    mover.clearUnfinishedMoves(home.path());
    EXPECT_EQ(entriesIn(home.path()), 5U);
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
        struct stat source { };
        ASSERT_EQ(::lstat((m_home / ("from/" + m_removed)).c_str(), &source), 0);
        if (!mark("to/copy", "user.kestavon.removed-source",
                m_home / ("from/" + m_removed) + '\0' + "tree" + '\0'
                    + std::to_string(source.st_ino)))
            GTEST_SKIP() << "no extended attributes here";
    }
    bool mark(const std::string& entry, const char* name, const std::string& value) const
    {
        return ::setxattr((m_home / entry).c_str(), name, value.data(), value.size(), 0) == 0;
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

TEST_F(UnfinishedRemovalTest, EndsAMoveThatLeftTheItemWholeAtBothPlaces)
{
    fs::rename(m_home / ("from/" + m_removed), m_home / "from/tree");
    const auto copy = pictureOf(m_home / "to/copy");
    m_mover.clearUnfinishedMoves(m_home / "to");
    EXPECT_EQ(entriesIn(m_home / "from"), 0U);
    EXPECT_FALSE(hasMark());
    EXPECT_EQ(pictureOf(m_home / "to/copy"), copy);
}

TEST_F(UnfinishedRemovalTest, LeavesAnItemThatIsNoLongerTheSourceOfTheCopy)
{
    fs::rename(m_home / ("from/" + m_removed), m_home / "from/tree");
    m_home.writeFile("from/tree/sub/b", "TWO"); // as long as before
    auto left = pictureOf(m_home / "from/tree");
    m_mover.clearUnfinishedMoves(m_home / "to");
    EXPECT_EQ(pictureOf(m_home / "from/tree"), left);

    // Its bytes are the same again, but it is another folder than the one that was copied.
    m_home.writeFile("from/tree/sub/b", "two");
    left = pictureOf(m_home / "from/tree");
    ASSERT_TRUE(mark("to/copy", "user.kestavon.removed-source",
        m_home / ("from/" + m_removed) + '\0' + "tree" + '\0' + '1'));
    m_mover.clearUnfinishedMoves(m_home / "to");
    EXPECT_EQ(pictureOf(m_home / "from/tree"), left);
}

} // namespace
} // namespace kestavon
