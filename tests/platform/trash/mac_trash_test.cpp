#include "platform/linux/trash/mac_trash.h"
#include "platform/trash/trash_fixture.h"

namespace kestavon {

namespace {

using test::isThere;
using test::modeOf;
using test::namesIn;
using ::testing::ElementsAre;
using Kind = FileError::Kind;

class MacTrashTest : public ::testing::Test {
protected:
    MacTrashTest()
    {
        m_folder.makeFolder("home/Library");
        m_layout.home = m_folder / "home";
        m_layout.kind = HomeKind::mac;
    }

    FileResult<std::string> put(const std::string& path)
    {
        auto result = makeTrash().trashItem(path, {});
        EXPECT_TRUE(!result || isThere(*result)) << "the item is not where it is said to lie";
        return result;
    }
    MacTrash makeTrash() const { return {m_layout, test::nothingProtected()}; }
    std::vector<std::string> items() const { return namesIn(m_folder / "home/.Trash"); }

    test::TemporaryFolder m_folder;
    HostLayout m_layout;
};

TEST_F(MacTrashTest, NumbersWhatHasTheSameNameBeforeTheExtension)
{
    for (const auto* content : {"first", "second", "third"})
        ASSERT_TRUE(put(m_folder.writeFile("home/report.txt", content)));
    ASSERT_TRUE(put(m_folder.makeFolder("home/Editor.app")));
    ASSERT_TRUE(put(m_folder.makeFolder("home/Editor.app")));
    EXPECT_THAT(items(),
        ElementsAre("Editor 2.app", "Editor.app", "report 2.txt", "report 3.txt", "report.txt"));
    EXPECT_EQ(m_folder.readFile("home/.Trash/report.txt"), "first");
    EXPECT_EQ(m_folder.readFile("home/.Trash/report 3.txt"), "third");
    EXPECT_EQ(modeOf(m_folder / "home/.Trash"), 0700u);
}

TEST_F(MacTrashTest, CountsOnAfterAHundredItemsOfOneName)
{
    m_folder.writeFile("home/.Trash/report.txt");
    for (int number = 2; number <= 120; ++number)
        m_folder.writeFile("home/.Trash/report " + std::to_string(number) + ".txt");
    const auto trashed = put(m_folder.writeFile("home/report.txt", "content"));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(*trashed, m_folder / "home/.Trash/report 121.txt");
}

TEST_F(MacTrashTest, TakesLongNamesLinksAndNamesThatAreNoText)
{
    const std::string longName = std::string(251, 'n') + ".txt";
    for (const auto& name : {longName, longName, std::string("\xff\n")})
        ASSERT_TRUE(put(m_folder.writeFile("home/" + name, name)));
    std::filesystem::create_symlink("nowhere", m_folder / "home/.Trash/dangling");
    std::filesystem::create_symlink("nowhere too", m_folder / "home/dangling");
    ASSERT_TRUE(put(m_folder / "home/dangling"));
    EXPECT_THAT(items(),
        ElementsAre(
            "dangling", "dangling 2", std::string(249, 'n') + " 2.txt", longName, "\xff\n"));
    EXPECT_EQ(std::filesystem::read_symlink(m_folder / "home/.Trash/dangling"), "nowhere");
}

TEST_F(MacTrashTest, RefusesTheTrashAndWhatLiesInIt)
{
    ASSERT_TRUE(put(m_folder.writeFile("home/folder/below", "content")));
    ASSERT_TRUE(put(m_folder / "home/folder"));
    const std::tuple<std::string, Kind> refused[]{
        {m_folder / "home/.Trash/below", Kind::fileExists},
        {m_folder / "home/.Trash", Kind::permission},
        {m_folder / "home", Kind::permission},
        {m_folder / "home/missing", Kind::noSuchFile},
    };
    for (const auto& [path, kind] : refused) {
        const auto result = put(path);
        ASSERT_FALSE(result) << path;
        EXPECT_EQ(result.error().kind, kind) << path;
    }
    EXPECT_THAT(items(), ElementsAre("below", "folder"));
    EXPECT_EQ(m_folder.readFile("home/.Trash/below"), "content");
}

TEST_F(MacTrashTest, CopiesFromAnotherDevice)
{
    const test::MemoryFolder memory;
    if (!memory.isOnAnotherDeviceThan(m_folder.path()))
        GTEST_SKIP() << "/dev/shm is no device of its own";
    (*memory).writeFile("folder/file", "content");
    m_folder.makeFolder("home/.Trash/folder");
    ASSERT_TRUE(put(*memory / "folder"));
    EXPECT_FALSE(isThere(*memory / "folder"));
    EXPECT_THAT(items(), ElementsAre("folder", "folder 2"));
    EXPECT_EQ(m_folder.readFile("home/.Trash/folder 2/file"), "content");
}

TEST_F(MacTrashTest, LeavesTheItemWhereItIsWhenTheTrashIsNoFolder)
{
    m_folder.writeFile("home/.Trash", "in the way");
    const auto path = m_folder.writeFile("home/file", "content");
    EXPECT_FALSE(put(path));
    EXPECT_EQ(m_folder.readFile("home/file"), "content");
    EXPECT_EQ(m_folder.readFile("home/.Trash"), "in the way");
}

} // namespace

} // namespace kestavon
