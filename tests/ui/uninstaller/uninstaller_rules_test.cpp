#include "support/qt_printing.h"
#include "ui/uninstaller/app_rows.h"
#include "ui/uninstaller/uninstaller_rules.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;

InstalledApp app(std::string name, const std::vector<std::int64_t>& leftovers)
{
    InstalledApp app{.id = Uuid::random(),
        .name = std::move(name),
        .bundleID = {},
        .appURL = "/Applications/X.app",
        .leftovers = {}};
    for (const auto size : leftovers)
        app.leftovers.push_back({.id = Uuid::random(),
            .url = "/home/left " + std::to_string(size),
            .size = size,
            .kind = LeftoverFile::LeftoverKind::cache});
    return app;
}

TEST(UninstallerRules, TheHeaderTellsWhatIsGoingOnOrWhatWasFound)
{
    EXPECT_EQ(uninstallerSubtitle({}, false),
        "Find and remove apps along with all their leftover files.");
    EXPECT_EQ(scanAppsLabel({}), "Scan Apps");
    const std::vector apps{app("a", {1'000'000'000, 300'000'000}), app("b", {})};
    EXPECT_EQ(uninstallerSubtitle(apps, false), "2 apps · 1.3 GB in leftover files");
    EXPECT_EQ(uninstallerSubtitle(apps, true), "Scanning installed apps…");
    EXPECT_EQ(scanAppsLabel(apps), "Rescan");
}

TEST(UninstallerRules, FromOneByteOnAnApplicationIsNotClean)
{
    EXPECT_EQ(leftoverSizeText(0), "Clean");
    EXPECT_EQ(leftoverSizeColor(0), "green");
    EXPECT_EQ(leftoverSizeText(1), "1 byte");
    EXPECT_EQ(leftoverSizeColor(1), "orange");
}

TEST(UninstallerRules, AsksWithAWayForTheApplicationAlone)
{
    auto editor = app("Code \nEditor", {});
    const auto question = uninstallQuestion(editor);
    EXPECT_EQ(question.title, "Uninstall \"Code ␤Editor\"?");
    EXPECT_EQ(question.message, "The app and its leftover files will be moved to the Trash.");
    EXPECT_EQ(question.action, "Move App + All Leftovers to Trash");
    EXPECT_EQ(question.alternative, "Move App Only to Trash");
    EXPECT_TRUE(question.destructive);
    editor.canBeMoved = false;
    const auto other = uninstallQuestion(editor);
    EXPECT_EQ(other.title, "Remove leftovers of \"Code ␤Editor\"?");
    EXPECT_EQ(other.action, "Move All Leftovers to Trash");
    EXPECT_EQ(other.alternative, "");
    EXPECT_FALSE(other.message.contains("The app and"));
}

/// Rows over a list that the test changes.
class AppRowsTest : public testing::Test {
protected:
    std::vector<std::string> shown() const
    {
        std::vector<std::string> texts;
        for (int row = 0; row < rows.rowCount(); ++row)
            texts.push_back((rows.isApp(row) ? "" : "- ") + rows.nameText(row).toStdString());
        return texts;
    }

    std::vector<InstalledApp> apps{app("Editor", {3, 2}), app("Viewer", {}), app("Éditions", {1})};
    AppRows rows{[this]() -> const std::vector<InstalledApp>& { return apps; },
        [](const Uuid&) { return false; }};
};

TEST_F(AppRowsTest, ShowsWhatAnOpenedApplicationHasLeft)
{
    EXPECT_THAT(shown(), ElementsAre("Editor", "Viewer", "Éditions"));
    EXPECT_EQ(rows.toggle(0), 0);
    EXPECT_EQ(rows.setOpen(3, true), 3) << "which has left nothing";
    EXPECT_EQ(rows.toggle(4), 4);
    EXPECT_THAT(shown(),
        ElementsAre(
            "Editor", "- /home/left 3", "- /home/left 2", "Viewer", "Éditions", "- /home/left 1"));
    EXPECT_EQ(rows.detailText(1), "Cache");
    EXPECT_EQ(rows.detailText(0), "Unknown ID");
    EXPECT_EQ(rows.filePath(1).bytes, "/home/left 3");
    EXPECT_FALSE(rows.isOpen(3));

    EXPECT_EQ(rows.setOpen(2, false), 0) << "from one of its lines back to the application";
    EXPECT_THAT(shown(), ElementsAre("Editor", "Viewer", "Éditions", "- /home/left 1"));
}

TEST_F(AppRowsTest, SaysOfALeftoverWhoElseHasIt)
{
    apps[1].leftovers = apps[0].leftovers;
    apps[2].leftovers.push_back(apps[0].leftovers[1]);
    apps.push_back(apps[2]);
    apps[3].name = "Fourth";
    rows.reload();
    rows.toggle(0);
    EXPECT_EQ(rows.sharedText(0), "");
    EXPECT_EQ(rows.sharedText(1), "also of Viewer");
    EXPECT_EQ(rows.sharedText(2), "also of Viewer and 2 more");
    apps.resize(2);
    rows.reload();
    rows.toggle(3);
    EXPECT_EQ(rows.sharedText(4), "also of Editor");
    apps.erase(apps.begin());
    rows.reload();
    EXPECT_EQ(rows.sharedText(1), "");
}

TEST_F(AppRowsTest, WithNothingToMoveThereIsNothingToPress)
{
    apps[0].canBeMoved = false;
    EXPECT_TRUE(rows.canUninstall(0));
    EXPECT_TRUE(rows.canUninstall(1));
    apps[1].canBeMoved = false;
    EXPECT_FALSE(rows.canUninstall(1));
}

TEST_F(AppRowsTest, LinesUpRowsOfTwoHeights)
{
    rows.toggle(0);
    const double expected[] = {0, 52, 86, 120, 172, 224};
    for (int row = 0; row <= rows.rowCount(); ++row) {
        EXPECT_EQ(rows.rowTop(row), expected[row]);
        if (row < rows.rowCount()) {
            EXPECT_EQ(rows.rowAt(expected[row]), row);
            EXPECT_EQ(rows.rowAt(expected[row + 1] - 0.5), row);
        }
    }
    EXPECT_EQ(rows.rowAt(-5), 0);
    EXPECT_EQ(rows.rowAt(10'000), 4);
    EXPECT_EQ(rows.rowTop(-1), 0);
}

TEST_F(AppRowsTest, FiltersByNameOnlyWhateverTheCase)
{
    apps[1].bundleID = "com.example.edit";
    rows.setFilter("edit");
    EXPECT_THAT(shown(), ElementsAre("Editor"));
    rows.setFilter("ÉDIT");
    EXPECT_THAT(shown(), ElementsAre("Éditions"));
    rows.toggle(0);
    EXPECT_THAT(shown(), ElementsAre("Éditions", "- /home/left 1"));
    rows.setFilter("");
    EXPECT_THAT(shown(), ElementsAre("Editor", "Viewer", "Éditions", "- /home/left 1"));
}

TEST_F(AppRowsTest, WhatIsOpenStaysOpenUntilItIsGone)
{
    rows.toggle(0);
    std::swap(apps[0], apps[1]);
    rows.reload();
    EXPECT_THAT(
        shown(), ElementsAre("Viewer", "Editor", "- /home/left 3", "- /home/left 2", "Éditions"));
    apps[1].leftovers.clear();
    rows.reload();
    EXPECT_THAT(shown(), ElementsAre("Viewer", "Editor", "Éditions"));
    EXPECT_FALSE(rows.isOpen(1));
}

} // namespace
} // namespace kestavon
