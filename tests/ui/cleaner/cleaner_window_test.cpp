#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;

/// The Cleaner over real files in a temporary home.
class CleanerWindow : public test::WindowTest {
protected:
    CleanerWindow()
    {
        machine.home = folder.path();
        machine.files->listable.insert(folder / "Library/Mail");
        open();
        model->setSection(AppSection::cleaner);
        processEvents();
    }

    /// Writes caches of 1000 bytes and scans them.
    void scanCaches(const std::vector<std::string>& names)
    {
        std::vector<FileRecord> records;
        for (const auto& name : names) {
            const auto path = folder.writeFile("Library/Caches/" + name, std::string(1000, 'x'));
            records.push_back(test::file(path, 1000));
        }
        scan(records);
        processEvents();
    }

    QString text(const char* name) { return need(name).property("text").toString(); }
    QString label(const char* button) { return need(button).property("label").toString(); }
    bool enabled(const char* button) { return need(button).isEnabled(); }
    QPointF rowPoint(int row) { return need("suggestions").mapToScene({300, 52.0 * row + 26}); }
    bool isHeld(const std::string& name)
    {
        return !std::filesystem::exists(folder / ("Library/Caches/" + name));
    }

    test::TemporaryFolder folder;
};

TEST_F(CleanerWindow, LeadsToTheDashboardWhileThereIsNothingToSuggest)
{
    EXPECT_TRUE(shown("Quick Clean"));
    EXPECT_TRUE(shown("No suggestions yet"));
    clickItem("goToDashboard");
    EXPECT_EQ(model->section(), AppSection::dashboard);
}

TEST_F(CleanerWindow, TicksWithTheMouseAndOnceForAll)
{
    scanCaches({"a", "b", "c"});
    EXPECT_EQ(text("selectionText"), "3 of 3 selected");
    EXPECT_EQ(text("reclaimText"), "3 KB to reclaim");
    EXPECT_EQ(label("selectAll"), "Deselect All");
    EXPECT_TRUE(shown("Modified —")) << "these records have no date";

    clickItem("selectAll");
    EXPECT_EQ(text("selectionText"), "0 of 3 selected");
    EXPECT_EQ(text("reclaimText"), "Zero KB to reclaim");
    EXPECT_EQ(label("selectAll"), "Select All");
    EXPECT_FALSE(enabled("moveToSafeArea"));

    clickAt(rowPoint(1));
    EXPECT_EQ(text("selectionText"), "1 of 3 selected");
    EXPECT_TRUE(states->cleaner()->isSelected(1));
    EXPECT_TRUE(enabled("moveToSafeArea"));
    clickAt(need("suggestions").mapToScene({25, 52 * 1 + 26})); // the box itself
    EXPECT_EQ(text("selectionText"), "0 of 3 selected");
    clickItem("selectAll");
    EXPECT_EQ(text("selectionText"), "3 of 3 selected");
}

TEST_F(CleanerWindow, TicksWithTheKeyboard)
{
    scanCaches({"a", "b", "c"});
    need("suggestions").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(focusedName(), "Suggestions");
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_FALSE(states->cleaner()->isSelected(1));
    EXPECT_EQ(text("selectionText"), "2 of 3 selected");
    press(Qt::Key_End);
    press(Qt::Key_Space);
    EXPECT_FALSE(states->cleaner()->isSelected(2));
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(text("selectionText"), "3 of 3 selected");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Move to Safe Area") << "the rows are one stop of the Tab key";
}

TEST_F(CleanerWindow, MovesTheTickedOnesAfterAskingAndLeavesTheOthers)
{
    scanCaches({"a", "b", "c"});
    clickAt(rowPoint(0));
    clickItem("moveToSafeArea");
    waitFor("Move 2 items to Safe Area?");
    clickItem("cancel");
    waitUntilGone("Move 2 items to Safe Area?");
    EXPECT_FALSE(states->cleaner()->moving());

    clickItem("moveToSafeArea");
    waitFor("Move 2 items to Safe Area?");
    clickItem("confirm");
    ASSERT_TRUE(processEventsUntil([&] { return !states->cleaner()->moving(); }));
    EXPECT_FALSE(isHeld("a"));
    EXPECT_TRUE(isHeld("b"));
    EXPECT_TRUE(isHeld("c"));
    EXPECT_EQ(model->quarantine().size(), 2U);
    EXPECT_EQ(text("selectionText"), "0 of 1 selected");
    EXPECT_EQ(model->history().front().detail, "2 items moved safely");
}

TEST_F(CleanerWindow, WithdrawsTheQuestionWhenAScanBringsOtherSuggestions)
{
    scanCaches({"a"});
    clickItem("moveToSafeArea");
    waitFor("Move 1 items to Safe Area?");
    scanCaches({"a", "b"});
    waitUntilGone("Move 1 items to Safe Area?");
    EXPECT_FALSE(isHeld("a"));
}

TEST_F(CleanerWindow, SaysWhyAMoveFailedAndKeepsListAndTicks)
{
    scanCaches({"a", "b"});
    clickAt(rowPoint(1));
    folder.writeFile("Library/Application Support", "a file where a folder must be");
    clickItem("moveToSafeArea");
    clickItem("confirm");
    waitFor("Operation Failed");
    EXPECT_TRUE(shown(states->cleaner()->confirmation()->errorMessage()));
    clickItem("ok");
    waitUntilGone("Operation Failed");
    EXPECT_EQ(text("selectionText"), "1 of 2 selected");
    EXPECT_FALSE(isHeld("a"));
    EXPECT_TRUE(enabled("moveToSafeArea"));
}

TEST_F(CleanerWindow, KeepsTheCurrentRowInViewAmongManyThousands)
{
    std::vector<FileRecord> records;
    for (int i = 0; i < 30'000; ++i)
        records.push_back(test::file(folder / ("Library/Caches/item-" + std::to_string(i)), i));
    scan(records);
    need("suggestions").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    EXPECT_TRUE(shown("item-29999"));
    EXPECT_FALSE(shown("item-0"));
    press(Qt::Key_PageUp);
    press(Qt::Key_Home);
    EXPECT_TRUE(shown("item-0"));
}

} // namespace
} // namespace kestavon
