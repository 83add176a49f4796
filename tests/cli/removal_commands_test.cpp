#include "cli/real_home.h"
#include "support/tree_picture.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class RemovalCommand : public test::CommandTest {
protected:
    RemovalCommand()
    {
        home.writeFile("files/Library/Caches/app/blob\n1", "123");
        home.writeFile("files/Library/Caches/app/caf\xE9", "4567");
        home.writeFile("files/document", "keep");
        home.writeFile("files/copies/old", std::string(5000, 'x'));
        home.writeFile("files/copies/new", std::string(5000, 'x'));
        home.setModified("files/copies/old", Timestamp(std::chrono::seconds(1'000'000'000)));
        home.makeFolder("Library/Logs");
        home.writeFile("Library/Logs/app.log", "1234");
    }

    /// What every removal would do.
    std::vector<std::vector<std::string>> everyRemoval() const
    {
        return {{"clean", files(), "--to", "safe-area"}, {"clean", files(), "--to", "trash"},
            {"clean", files(), "--to", "permanent"},
            {"clean", "--junk", "all", "--to", "permanent"},
            {"clean", "--junk", "system-logs", "--to", "trash"},
            {"remove", home / "files/document", "--to", "permanent"},
            {"remove", home / "files/document", "--to", "safe-area"},
            {"merge", files(), "--to", "permanent"}, {"merge", files(), "--to", "trash"}};
    }
};

TEST_F(RemovalCommand, DoNothingWithoutAYes)
{
    const auto before = test::pictureOf(home.path());
    for (const auto& arguments : everyRemoval()) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_THAT(err.str(), HasSubstr("--yes"));
        answers = {"n"};
        EXPECT_EQ(run(arguments), 1) << testing::PrintToString(arguments);
        EXPECT_THAT(err.str(), HasSubstr("? [y/N] "));
        EXPECT_THAT(err.str(), HasSubstr("kestavon: Nothing was changed.\n"));
        EXPECT_EQ(test::pictureOf(home.path()), before);
    }
}

TEST_F(RemovalCommand, TouchNothingInADryRun)
{
    const auto before = test::pictureOf(home.path());
    for (auto arguments : everyRemoval()) {
        arguments.push_back("--dry-run");
        EXPECT_EQ(run(arguments), 0);
        EXPECT_THAT(out.str(), HasSubstr("Would ")) << testing::PrintToString(arguments);
        arguments.push_back("--yes");
        arguments.push_back("--json");
        EXPECT_EQ(run(arguments), 0);
        EXPECT_FALSE(document().contains("history"));
        EXPECT_EQ(test::pictureOf(home.path()), before);
    }
}

TEST_F(RemovalCommand, CleanMovesSuggestionsToTheSafeAreaAndBack)
{
    const auto before = test::pictureOf(files() + "/Library/Caches/app/caf\xE9");
    answers = {"y"};
    ASSERT_EQ(run({"clean", files(), "--to", "safe-area"}), 0);
    EXPECT_THAT(err.str(),
        StartsWith("Move 2 items to Safe Area?\nFiles go to Safe Area — you can "
                   "restore or permanently delete them from there.\nMove to "
                   "Safe Area? [y/N] "));
    EXPECT_THAT(out.str(), HasSubstr("Items quarantined: 2 items moved safely\n"));
    EXPECT_FALSE(isThere("files/Library/Caches/app/blob\n1"));
    EXPECT_TRUE(isThere("files/document"));

    ASSERT_EQ(run({"safe-area", "restore", "--all", "--yes"}), 0);
    EXPECT_EQ(test::pictureOf(files() + "/Library/Caches/app/caf\xE9"), before);
    EXPECT_EQ(home.readFile("files/Library/Caches/app/blob\n1"), "123");
}

TEST_F(RemovalCommand, CleanTellsInJsonWhatWasDone)
{
    ASSERT_EQ(run({"clean", files(), "--to", "safe-area", "--yes", "--json"}), 0);
    const auto json = document();
    EXPECT_EQ(json["history"][0]["title"], "Items quarantined");
    ASSERT_EQ(json["quarantine"].size(), 2U);
    EXPECT_EQ(json["quarantine"][0]["originalPath"], files() + "/Library/Caches/app/blob\n1");
    EXPECT_TRUE(json["quarantine"][1].contains("originalPathBase64"));
    ASSERT_EQ(run({"clean", files(), "--to", "trash", "--yes"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("Nothing in "));
}

TEST_F(RemovalCommand, CleanDeletesSuggestionsForGood)
{
    ASSERT_EQ(run({"clean", files(), "--to", "permanent", "--yes"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("Files permanently deleted: 2 files · 7 bytes\n"));
    EXPECT_FALSE(isThere("files/Library/Caches/app/caf\xE9"));
    EXPECT_TRUE(isThere("files/document"));
}

TEST_F(RemovalCommand, CleanJunkTakesTheNamedCategoriesOnly)
{
    home.writeFile("Library/Caches/some.app/x", "cached");
    ASSERT_EQ(run({"clean", "--junk", "system-logs", "--to", "permanent", "--yes"}), 0);
    EXPECT_FALSE(isThere("Library/Logs/app.log"));
    EXPECT_TRUE(isThere("Library/Caches/some.app/x"));
    answers = {"yes"};
    ASSERT_EQ(run({"clean", "--junk", "all", "--to", "safe-area"}), 0);
    EXPECT_THAT(err.str(), StartsWith("Clean all "));
    EXPECT_FALSE(isThere("Library/Caches/some.app"));
    EXPECT_THAT(out.str(), HasSubstr("Smart Clean complete: 1 items"));
}

TEST_F(RemovalCommand, RemoveTakesALinkAndNotWhatItLeadsTo)
{
    home.link("files/link", "document");
    home.link("files/folder link", "copies");
    ASSERT_EQ(run({"remove", home / "files/copies/../link", home / "files/folder link/", "--to",
                  "permanent", "--yes"}),
        0);
    EXPECT_FALSE(isThere("files/link"));
    EXPECT_FALSE(isThere("files/folder link"));
    EXPECT_TRUE(isThere("files/document"));
    EXPECT_TRUE(isThere("files/copies/new"));
}

TEST_F(RemovalCommand, RemoveReachesItemsThroughLinkedFolders)
{
    home.link("files/short", "copies");
    ASSERT_EQ(run({"remove", home / "files/short/old", "--to", "safe-area", "--yes"}), 0);
    EXPECT_FALSE(isThere("files/copies/old"));
    EXPECT_TRUE(isThere("files/short"));
}

TEST_F(RemovalCommand, RemoveSaysWhatItRefusesAndWhyAndDoesTheRest)
{
    home.link("files/programs", "/usr/bin");
    home.writeFile("files/x.xpc");
    EXPECT_EQ(run({"remove", "/usr/bin/env", "/", home.path(), home / "files/programs/env",
                  home / "files/x.xpc", home / "files/nothing", home / "files/document",
                  home / "files/document", "--to", "trash", "--yes"}),
        1);
    const auto said = err.str();
    EXPECT_EQ(std::ranges::count(said, '\n'), 6) << said;
    EXPECT_THAT(said, HasSubstr("kestavon: /usr/bin/env belongs to the system"));
    EXPECT_THAT(said, HasSubstr("kestavon: / is refused: "));
    EXPECT_THAT(said, HasSubstr("kestavon: " + home.path() + " is refused: "));
    EXPECT_THAT(said, HasSubstr("files/programs/env belongs to the system"));
    EXPECT_THAT(said, HasSubstr("files/x.xpc belongs to the system"));
    EXPECT_THAT(said, HasSubstr("files/nothing: No such file or directory."));
    EXPECT_THAT(out.str(), HasSubstr("Files moved to Trash: 1 files"));
    EXPECT_FALSE(isThere("files/document"));
    EXPECT_TRUE(isThere("files/x.xpc"));
}

TEST_F(RemovalCommand, RemoveSaysWhyAPlaceIsRefused)
{
    home.makeFolder("files/project/.git");
    home.link("files/project/link", home / "files/copies");
    const std::pair<std::string, std::string> rows[]
        = {{home.path(), "the system or your account needs that place."},
            {"/proc", "another volume is mounted there."},
            {home / "files/project/.git", "it holds the history of the project around it."},
            {home / "files/project/.", "may be another folder than it seems; name it."},
            {home / "files/project/link/..", "may be another folder than it seems; name it."},
            {home / "files/document/", "Not a directory."}};
    for (const auto& [path, reason] : rows) {
        EXPECT_EQ(run({"remove", path, "--to", "permanent", "--yes"}), 1) << path;
        EXPECT_THAT(err.str(), HasSubstr(reason)) << path;
    }
    EXPECT_TRUE(isThere("files/project/.git") && isThere("files/copies/new"));
}

TEST_F(RemovalCommand, RemoveCountsEveryItemOnceWithWhatItHolds)
{
    home.writeFile("files/copies/deep/er", "12345");
    const std::vector<std::string> arguments{"remove", home / "files/copies/deep",
        home / "files/copies/", home / "files/copies", home / "files/copies/deep/er",
        home / "files/document", "--to", "permanent"};
    auto preview = arguments;
    preview.emplace_back("--dry-run");
    ASSERT_EQ(run(preview), 0);
    EXPECT_THAT(out.str(), HasSubstr("Would delete 2 items (10 KB) for good."));
    preview.emplace_back("--json");
    ASSERT_EQ(run(preview), 0);
    ASSERT_EQ(document()["records"].size(), 2U);
    EXPECT_EQ(document()["records"][0]["size"], 10'005);
    auto deed = arguments;
    deed.emplace_back("--yes");
    ASSERT_EQ(run(deed), 0);
    EXPECT_THAT(out.str(), HasSubstr("Files permanently deleted: 2 files · 10 KB"));
    EXPECT_FALSE(isThere("files/copies"));
}

TEST_F(RemovalCommand, AlwaysPrintsADocumentWhenOneIsWanted)
{
    answers = {"n", "n"};
    for (const auto& arguments : {std::vector<std::string>{"uninstall", "Nobody"},
             {"remove", home / "files/document", "--to", "trash"},
             {"clean", files(), "--to", "trash"}, {"disk", home / "nowhere"},
             {"safe-area", "restore", "11111111"}}) {
        auto wanted = arguments;
        wanted.emplace_back("--json");
        EXPECT_EQ(run(wanted), 1) << testing::PrintToString(arguments);
        EXPECT_TRUE(document().is_object());
        EXPECT_NE(err.str(), "");
    }
}

TEST_F(RemovalCommand, TellsInJsonOfEverythingThatIsHeld)
{
    ASSERT_EQ(run({"remove", home / "files/document", "--to", "safe-area", "--yes"}), 0);
    ASSERT_EQ(
        run({"remove", home / "files/copies/old", "--to", "safe-area", "--yes", "--json"}), 0);
    const auto held = document()["quarantine"];
    ASSERT_EQ(held.size(), 2U);
    EXPECT_EQ(held[0]["originalPath"], home / "files/copies/old");
    EXPECT_EQ(held[1]["originalPath"], home / "files/document");
}

TEST_F(RemovalCommand, UninstallMovesTheApplicationAndWhatItLeft)
{
    home.writeFile("Applications/Paint.app/Contents/Info.plist",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
        "<string>org.paint.Paint</string></dict></plist>");
    home.writeFile("Library/Caches/org.paint.Paint/cached", "12345");
    EXPECT_EQ(run({"uninstall", "Draw", "--yes"}), 1);
    EXPECT_THAT(err.str(), HasSubstr("No application is called Draw"));
    EXPECT_EQ(run({"uninstall", "Paint", "--dry-run"}), 0);
    EXPECT_EQ(run({"uninstall", "Paint"}), 2);
    EXPECT_TRUE(isThere("Applications/Paint.app"));
    EXPECT_EQ(run({"uninstall", "org.paint.Paint", "--app-only", "--yes"}), 0);
    EXPECT_FALSE(isThere("Applications/Paint.app"));
    EXPECT_TRUE(isThere("Library/Caches/org.paint.Paint"));

    home.writeFile("Applications/Paint.app/Contents/Info.plist",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
        "<string>org.paint.Paint</string></dict></plist>");
    answers = {"y"};
    EXPECT_EQ(run({"uninstall", "Paint"}), 0);
    EXPECT_THAT(err.str(), StartsWith("Uninstall \"Paint\"?\n"));
    EXPECT_THAT(out.str(), HasSubstr("Paint uninstalled: Moved to Trash + 1 leftover files"));
    EXPECT_FALSE(isThere("Library/Caches/org.paint.Paint"));
}

TEST_F(RemovalCommand, MergeKeepsTheNewestCopy)
{
    answers = {"y"};
    ASSERT_EQ(run({"merge", files(), "--to", "permanent"}), 0);
    EXPECT_THAT(err.str(), StartsWith("Permanently delete duplicate copies?\n"));
    EXPECT_FALSE(isThere("files/copies/old"));
    EXPECT_TRUE(isThere("files/copies/new"));
    EXPECT_THAT(out.str(), HasSubstr("Duplicates merged: 1 copies permanently deleted"));
    ASSERT_EQ(run({"merge", files(), "--to", "trash", "--yes"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("No duplicates found."));
}

} // namespace
} // namespace kestavon
