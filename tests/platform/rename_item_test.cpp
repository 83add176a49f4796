#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/rename_item.h"
#include "support/faulty_calls.h"
#include "support/temporary_folder.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <utility>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

namespace fs = std::filesystem;
using test::Fault;
using test::FaultyCalls;
using test::SystemCall;

/// An item "item" in the folder "from" that is to become "moved" in the folder "to".
class RenameItemTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_home.writeFile("from/item", "bytes");
        m_home.makeFolder("to");
    }
    int rename() const
    {
        const auto from = openFolder(m_home / "from");
        const auto to = openFolder(m_home / "to");
        return renameWithoutReplacing(from->get(), "item", to->get(), "moved");
    }
    std::size_t entriesIn(const char* folder) const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_home / folder), fs::directory_iterator()));
    }
    void expectMoved() const
    {
        EXPECT_EQ(m_home.readFile("to/moved"), "bytes");
        EXPECT_EQ(entriesIn("to"), 1U);
        EXPECT_EQ(entriesIn("from"), 0U);
    }
    void expectNotMoved() const
    {
        EXPECT_EQ(m_home.readFile("from/item"), "bytes");
        EXPECT_EQ(entriesIn("from"), 1U);
        EXPECT_EQ(entriesIn("to"), 0U);
    }

    test::TemporaryFolder m_home;
};

/// As many network and user-space file systems answer.
std::optional<Fault> refusesFlags(const SystemCall& call)
{
    if (call.call == "renameat2" && call.flags != 0)
        return Fault{EINVAL};
    return std::nullopt;
}

/// A disk that refuses flags and answers one call in its own way.
FaultyCalls::Rule refusesFlagsAnd(std::string_view answered, Fault fault)
{
    return [answered, fault](const SystemCall& call) {
        return call.call == answered ? std::optional(fault) : refusesFlags(call);
    };
}

TEST_F(RenameItemTest, MovesWhereNothingCanPromiseNotToReplace)
{
    const FaultyCalls calls(refusesFlags);
    EXPECT_EQ(rename(), 0);
    expectMoved();

    fs::create_symlink("nowhere", m_home / "from/item");
    EXPECT_EQ(rename(), EEXIST);
    fs::remove(m_home / "to/moved");
    EXPECT_EQ(rename(), 0);
    EXPECT_EQ(fs::read_symlink(m_home / "to/moved"), "nowhere");

    m_home.writeFile("from/item/inner", "kept");
    EXPECT_EQ(rename(), EEXIST);
    fs::remove(m_home / "to/moved");
    EXPECT_EQ(rename(), 0);
    EXPECT_EQ(m_home.readFile("to/moved/inner"), "kept");
    EXPECT_EQ(entriesIn("from"), 0U);
}

TEST_F(RenameItemTest, MovesWhereFilesHaveOneNameOnly)
{
    const FaultyCalls calls(refusesFlagsAnd("linkat", {EPERM}));
    m_home.writeFile("to/moved", "theirs");
    EXPECT_EQ(rename(), EEXIST);
    EXPECT_EQ(m_home.readFile("to/moved"), "theirs");
    fs::remove(m_home / "to/moved");
    EXPECT_EQ(rename(), 0);
    expectMoved();
}

TEST_F(RenameItemTest, KeepsTheLastNameWhenTheAnswerToAnUnlinkIsLost)
{
    for (const int answer : {ENOENT, EIO}) {
        for (const auto* call : {"unlinkat", "renameat", "linkat"}) {
            SCOPED_TRACE(std::string(call) + ' ' + std::to_string(answer));
            {
                const FaultyCalls calls(refusesFlagsAnd(call, {answer, true}));
                EXPECT_EQ(rename(), 0);
            }
            expectMoved();
            std::rename((m_home / "to/moved").c_str(), (m_home / "from/item").c_str());
        }
    }
}

TEST_F(RenameItemTest, KeepsTheItemWhenTheAnswerToARenameIsLost)
{
    const FaultyCalls calls([](const SystemCall& call) {
        return call.call == "renameat2" ? std::optional(Fault{ENOENT, true}) : std::nullopt;
    });
    EXPECT_EQ(rename(), 0);
    expectMoved();
}

TEST_F(RenameItemTest, DoesNotBelieveARenameThatDidNothing)
{
    const FaultyCalls calls([](const SystemCall& call) {
        return call.call == "renameat2" ? std::optional(Fault{}) : std::nullopt;
    });
    EXPECT_NE(rename(), 0);
    expectNotMoved();
}

TEST_F(RenameItemTest, StaysAtItsPlaceWhenItsNameCannotBeTakenAway)
{
    const FaultyCalls calls(refusesFlagsAnd("renameat", {EACCES}));
    EXPECT_EQ(rename(), EACCES);
    expectNotMoved();
}

TEST_F(RenameItemTest, LosesNoFileThatIsSavedBetweenTwoSteps)
{
    for (const auto* step : {"linkat", "renameat", "unlinkat"}) {
        SCOPED_TRACE(step);
        m_home.writeFile("from/item", "bytes");
        m_home.writeFile("saved", "newer");
        bool isSaved = false;
        {
            const FaultyCalls calls([&](const SystemCall& call) {
                if (call.call == step && !std::exchange(isSaved, true))
                    std::rename((m_home / "saved").c_str(), (m_home / "from/item").c_str());
                return refusesFlags(call);
            });
            rename();
        }
        ASSERT_TRUE(isSaved);
        // Which of the two moves is open; the newer one must be there.
        const bool isAtItsPlace = fs::exists(m_home / "from/item");
        EXPECT_EQ(m_home.readFile(isAtItsPlace ? "from/item" : "to/moved"), "newer");
        EXPECT_EQ(entriesIn("from"), isAtItsPlace ? 1U : 0U);
        fs::remove(m_home / "to/moved");
    }
}

TEST_F(RenameItemTest, KeepsAnEmptyFolderThatArrivedUnnoticed)
{
    fs::remove(m_home / "from/item");
    m_home.makeFolder("from/item");
    const FaultyCalls calls(refusesFlagsAnd("renameat", {EIO, true}));
    EXPECT_EQ(rename(), 0);
    EXPECT_TRUE(fs::is_directory(m_home / "to/moved"));
    EXPECT_EQ(entriesIn("from"), 0U);
}

} // namespace
} // namespace kestavon
