#include "cli/real_home.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::HasSubstr;

class SafeAreaCommand : public test::CommandTest {
protected:
    SafeAreaCommand()
    {
        home.writeFile("files/one", "1");
        home.writeFile("files/caf\xE9\n", "2");
        EXPECT_EQ(run({"remove", home / "files/one", home / "files/caf\xE9\n", "--to", "safe-area",
                      "--yes"}),
            0);
    }

    nlohmann::json held()
    {
        EXPECT_EQ(run({"safe-area", "list", "--json"}), 0);
        return document()["quarantine"];
    }
};

TEST_F(SafeAreaCommand, ListsWhatEarlierRunsMoved)
{
    const auto items = held();
    ASSERT_EQ(items.size(), 2U);
    ASSERT_EQ(run({"safe-area", "list"}), 0);
    EXPECT_THAT(out.str(), HasSubstr(home / "files/one\n"));
    EXPECT_THAT(out.str(), HasSubstr("caf\\xE9\\n\n"));
    ASSERT_EQ(run({"safe-area", "list", "--null"}), 0);
    EXPECT_TRUE(std::filesystem::exists(out.str().substr(0, out.str().find('\0'))));
}

TEST_F(SafeAreaCommand, RestoresByPathAndByIdentifier)
{
    ASSERT_EQ(run({"safe-area", "restore", home / "files/one"}), 0);
    EXPECT_EQ(home.readFile("files/one"), "1");
    const auto id = held().at(0)["id"].get<std::string>();
    ASSERT_EQ(run({"safe-area", "restore", id.substr(0, 8)}), 0);
    EXPECT_EQ(home.readFile("files/caf\xE9\n"), "2");
    EXPECT_EQ(held().size(), 0U);
}

TEST_F(SafeAreaCommand, TakesNoShortNameForAnIdentifier)
{
    const auto id = held().at(0)["id"].get<std::string>();
    for (const std::size_t length : {1, 2, 7}) {
        EXPECT_EQ(run({"safe-area", "delete", id.substr(0, length), "--yes"}), 1);
        EXPECT_THAT(err.str(), HasSubstr("No held item is called " + id.substr(0, length)));
    }
    EXPECT_EQ(held().size(), 2U);
}

TEST_F(SafeAreaCommand, FindsItemsByPathsInTheWorkingFolder)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(files());
    const auto code = run({"safe-area", "delete", "./one", "--yes", "--json"});
    std::filesystem::current_path(before);
    EXPECT_EQ(code, 0) << err.str();
    ASSERT_EQ(document()["quarantine"].size(), 1U) << "what is held still";
    EXPECT_TRUE(document()["quarantine"][0].contains("originalPathBase64"));
}

TEST_F(SafeAreaCommand, ReplacesNothing)
{
    home.writeFile("files/one", "newcomer");
    EXPECT_EQ(run({"safe-area", "restore", home / "files/one"}), 1);
    EXPECT_EQ(home.readFile("files/one"), "newcomer");
    EXPECT_EQ(run({"safe-area", "restore", "--all", "--yes"}), 1);
    EXPECT_THAT(err.str(), HasSubstr("files/one could not be restored"));
    EXPECT_EQ(held().size(), 1U);
}

TEST_F(SafeAreaCommand, RestoresIntoAnotherFolder)
{
    home.makeFolder("elsewhere");
    ASSERT_EQ(run({"safe-area", "restore", home / "files/one", "--into", home / "elsewhere"}), 0);
    EXPECT_EQ(home.readFile("elsewhere/one"), "1");
}

TEST_F(SafeAreaCommand, DeletesWithAConfirmationOnly)
{
    EXPECT_EQ(run({"safe-area", "delete", home / "files/one"}), 2);
    answers = {""};
    EXPECT_EQ(run({"safe-area", "empty"}), 1);
    EXPECT_EQ(run({"safe-area", "empty", "--dry-run"}), 0);
    EXPECT_EQ(held().size(), 2U);

    answers = {"y"};
    EXPECT_EQ(run({"safe-area", "delete", home / "files/one"}), 0);
    EXPECT_THAT(err.str(), HasSubstr("Permanently delete \"one\"?"));
    EXPECT_EQ(held().size(), 1U);
    EXPECT_EQ(run({"safe-area", "empty", "--yes"}), 0);
    EXPECT_EQ(held().size(), 0U);
    EXPECT_EQ(run({"safe-area", "empty", "--yes"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("The Safe Area is empty."));
}

TEST_F(SafeAreaCommand, SaysWhichItemsThereAreNot)
{
    EXPECT_EQ(run({"safe-area", "restore", "/never/held", home / "files/one"}), 1);
    EXPECT_THAT(err.str(), HasSubstr("No held item is called /never/held;"));
    EXPECT_TRUE(isThere("files/one")) << "the others go back all the same";
}

} // namespace
} // namespace kestavon
