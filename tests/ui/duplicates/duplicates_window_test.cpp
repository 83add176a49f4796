#include "support/event_loop.h"
#include "support/moments.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include <filesystem>
#include <stdexcept>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::file;
using test::processEvents;
using test::processEventsUntil;

/// The Duplicates screen; each search ends as the test says.
class DuplicatesWindow : public test::WindowTest {
protected:
    DuplicatesWindow()
    {
        open();
        model->setSection(AppSection::duplicates);
        processEvents();
    }

    void scanTwoPairs()
    {
        const auto day = [](unsigned number) { return test::utc(2026, 11, number); };
        scan({file("/home/alice/a/film.mov", 5000, day(2)),
            file("/home/alice/b/film copy.mov", 5000, day(3)), file("/home/alice/c/note", 1000),
            file("/home/alice/d/note", 1000), file("/home/alice/e/note", 1000, day(1))});
        processEvents();
    }
    void find(test::FakeDuplicateFinder::Groups groups)
    {
        states->duplicates()->analyze();
        duplicateFinder->finishWith(std::move(groups));
        waitForEnd();
    }
    void waitForEnd()
    {
        ASSERT_TRUE(processEventsUntil([&] { return !states->duplicates()->analyzing(); }));
        processEvents();
    }
    /// The rows in sight from top to bottom, as a screen reader hears them.
    std::vector<std::string> spokenRows()
    {
        std::vector<std::pair<double, std::string>> rows;
        for (auto* child : need("groups").childItems()) {
            auto* accessible = QAccessible::queryAccessibleInterface(child);
            if (child->isVisible() && accessible && accessible->role() == QAccessible::ListItem)
                rows.emplace_back(child->y(), accessible->text(QAccessible::Name).toStdString());
        }
        std::ranges::sort(rows);
        std::vector<std::string> names;
        for (auto& row : rows)
            names.push_back(std::move(row.second));
        return names;
    }
    static std::string dateOf(unsigned day)
    {
        return SystemCalendar().dateText(test::utc(2026, 11, day));
    }
};

TEST_F(DuplicatesWindow, AsksForAScanFirst)
{
    EXPECT_TRUE(shown("Storage scan needed first"));
    EXPECT_TRUE(shown("Duplicate detection compares files from your storage scan. Run a scan, then "
                      "tap Analyze Duplicates."));
    EXPECT_FALSE(item("analyze"));

    scanTwoPairs();
    EXPECT_FALSE(shown("Storage scan needed first"));
    EXPECT_TRUE(item("analyze"));
    EXPECT_FALSE(item("mergeToTrash"));
    EXPECT_FALSE(shown("No duplicates found")) << "nobody has looked yet";

    model->startStorageScan();
    processEvents();
    EXPECT_FALSE(states->duplicates()->canAnalyze());
    EXPECT_TRUE(shown("Storage scan needed first"));
}

TEST_F(DuplicatesWindow, TellsHowFarTheSearchIsAndStopsItAtOnce)
{
    scanTwoPairs();
    clickItem("analyze");
    EXPECT_TRUE(shown("Computing SHA-256 hashes…"));
    EXPECT_FALSE(item("analyze"));
    const auto search = duplicateFinder->waitForSearches(1).front();
    search.progress({.bytesDone = 1'000, .bytesToDo = 13'000});
    waitFor("1 KB of 13 KB");
    EXPECT_TRUE(shown("Computing SHA-256 hashes…")) << "the figure stands beside it";

    clickItem("stopAnalysis");
    EXPECT_EQ(model->duplicatePhase(), ScanPhase::idle());
    EXPECT_FALSE(shown("Computing SHA-256 hashes…"));
    EXPECT_TRUE(need("analyze").isEnabled());
    EXPECT_FALSE(shown("No duplicates found"));
}

TEST_F(DuplicatesWindow, SaysThatNothingWasFoundOrWhyTheSearchFailed)
{
    scanTwoPairs();
    find({});
    EXPECT_TRUE(shown("No duplicates found"));
    EXPECT_FALSE(shown("Merge duplicates"));

    clickItem("analyze");
    EXPECT_FALSE(shown("No duplicates found"));
    duplicateFinder->failWith("There isn't enough memory.");
    waitForEnd();
    EXPECT_TRUE(shown("There isn't enough memory."));
    EXPECT_FALSE(shown("Computing SHA-256 hashes…"));
    clickItem("analyzeAgain");
    EXPECT_TRUE(shown("Computing SHA-256 hashes…"));
}

TEST_F(DuplicatesWindow, ListsTheGroupsInTheirOrderAndMarksTheNewestCopy)
{
    scanTwoPairs();
    find({{0, 1}, {2, 3, 4}});
    EXPECT_TRUE(shown("2 groups · 7 KB reclaimable"));
    EXPECT_TRUE(shown("Keeps the newest copy in each group · deletes the rest"));
    EXPECT_THAT(spokenRows(),
        testing::ElementsAre("film.mov, 2 copies, Save 5 KB",
            "film.mov, /home/alice/a/film.mov, " + dateOf(2),
            "film copy.mov, /home/alice/b/film copy.mov, " + dateOf(3) + ", Kept",
            "note, 3 copies, Save 2 KB", "note, /home/alice/c/note, —",
            "note, /home/alice/d/note, —", "note, /home/alice/e/note, " + dateOf(1) + ", Kept"));
    for (const auto* text : {"2 copies", "Save 2 KB", "film copy.mov", "/home/alice/d/note", "—"})
        EXPECT_TRUE(shown(text)) << text;

    model->startStorageScan();
    processEvents();
    EXPECT_FALSE(item("groups"));
}

TEST_F(DuplicatesWindow, OffersThePathOfTheCurrentFileAndNoneForAHeading)
{
    scanTwoPairs();
    find({{0, 1}, {2, 3, 4}});
    need("groups").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(focusedName(), "Duplicate groups");
    press(Qt::Key_Menu);
    EXPECT_FALSE(shown("Copy Path"));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    click("Copy Path");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "/home/alice/b/film copy.mov");

    const auto* note = waitFor("/home/alice/c/note");
    QTest::mouseClick(window, Qt::RightButton, {}, note->mapToScene({20, 8}).toPoint());
    click("Copy Path");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "/home/alice/c/note");
}

TEST_F(DuplicatesWindow, KeepsTheCurrentRowInViewAmongManyThousands)
{
    constexpr std::uint32_t count = 20'000;
    std::vector<FileRecord> records;
    test::FakeDuplicateFinder::Groups groups;
    for (std::uint32_t i = 0; i < count; ++i) {
        for (const char* folder : {"x", "y"})
            records.push_back(file(
                std::string("/home/alice/") + folder + "/item-" + std::to_string(i), count - i));
        groups.push_back({2 * i, 2 * i + 1});
    }
    scan(records);
    find(std::move(groups));
    need("groups").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    EXPECT_TRUE(shown("/home/alice/y/item-19999"));
    EXPECT_FALSE(shown("/home/alice/x/item-0"));
    const auto rowsInSight = spokenRows().size();
    EXPECT_THAT(rowsInSight, testing::AllOf(testing::Gt(8), testing::Lt(30)));

    const auto& list = need("groups");
    const auto offset = [&list] { return list.property("offset").toDouble(); };
    const auto end = offset();
    press(Qt::Key_PageUp); // to the top of what is in sight
    press(Qt::Key_PageUp);
    EXPECT_LT(offset(), end - list.height() / 2);
    EXPECT_GT(offset(), end - 1.5 * list.height()) << "no row is passed over";
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_PageDown);
    EXPECT_EQ(offset(), end);
    press(Qt::Key_Home);
    EXPECT_TRUE(shown("/home/alice/x/item-0"));
    EXPECT_EQ(offset(), 0);
}

TEST_F(DuplicatesWindow, WithdrawsTheQuestionWhenTheGroupsAreOthers)
{
    scanTwoPairs();
    find({{0, 1}});
    clickItem("mergeForever");
    waitFor("Permanently delete duplicate copies?");
    states->duplicates()->analyze();
    waitUntilGone("Permanently delete duplicate copies?");
    EXPECT_FALSE(states->duplicates()->merging());
}

TEST_F(DuplicatesWindow, TheKeyboardGoesToTheButtonThatTakesTheOthersPlace)
{
    scanTwoPairs();
    need("analyze").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_TRUE(states->duplicates()->analyzing());
    EXPECT_TRUE(need("stopAnalysis").hasActiveFocus());
    press(Qt::Key_Space);
    EXPECT_FALSE(states->duplicates()->analyzing());
    EXPECT_TRUE(need("analyze").hasActiveFocus());

    press(Qt::Key_Space);
    duplicateFinder->failWith("The disk is on fire.");
    waitForEnd();
    EXPECT_TRUE(need("analyzeAgain").hasActiveFocus());
    press(Qt::Key_Return);
    EXPECT_TRUE(need("stopAnalysis").hasActiveFocus());
    duplicateFinder->finishWith({{0, 1}});
    waitForEnd();
    EXPECT_TRUE(need("analyze").hasActiveFocus());
    EXPECT_EQ(states->duplicates()->spokenText(), "1 groups · 5 KB reclaimable");
}

/// The same with real files that are searched and merged.
class DuplicatesOnDisk : public test::WindowTest {
protected:
    explicit DuplicatesOnDisk(bool hasRealTrash = true)
    {
        machine.home = folder.path();
        machine.hasRealTrash = hasRealTrash;
        machine.files->listable.insert(folder / "Library/Mail");
        TestWindow::open({.otherDuplicateFinder = findDuplicates});
        model->setSection(AppSection::duplicates);
        std::vector<FileRecord> records;
        for (const auto& [name, day] : {std::pair("old", 1U), {"new", 3U}, {"older", 2U}})
            records.push_back(file(
                folder.writeFile(name, std::string(1000, 'x')), 1000, test::utc(2026, 11, day)));
        scan(records);
        clickItem("analyze");
        processEventsUntil([&] { return states->duplicates()->foundSome(); });
        processEvents();
    }

    bool exists(const char* name) { return std::filesystem::exists(folder / name); }
    void waitForMerge()
    {
        ASSERT_TRUE(processEventsUntil([&] { return !states->duplicates()->merging(); }));
        processEvents();
    }

    test::TemporaryFolder folder;
};

TEST_F(DuplicatesOnDisk, GoToTheTrashOnlyAfterAYesAndComeBackByUndo)
{
    EXPECT_TRUE(shown("3 copies"));
    EXPECT_TRUE(shown("Save 2 KB"));
    clickItem("mergeToTrash");
    waitFor("Merge 1 duplicate groups?");
    clickItem("cancel");
    waitUntilGone("Merge 1 duplicate groups?");
    EXPECT_TRUE(exists("old") && exists("new") && exists("older"));
    EXPECT_TRUE(shown("3 copies"));

    clickItem("mergeToTrash");
    waitFor("Merge 1 duplicate groups?");
    EXPECT_TRUE(need("cancel").property("visualFocus").toBool()) << "asked once more";
    clickItem("confirm");
    waitForMerge();
    EXPECT_TRUE(exists("new"));
    EXPECT_FALSE(exists("old") || exists("older"));
    EXPECT_FALSE(shown("3 copies"));
    EXPECT_FALSE(shown("No duplicates found")) << "nobody has looked again";
    EXPECT_TRUE(item("analyze"));
    EXPECT_EQ(model->history().front().detail, "2 copies moved to Trash · 2 KB freed");

    waitFor("2 items moved to the Trash");
    click("Undo");
    waitFor("2 items are back where they were.");
    EXPECT_TRUE(exists("old") && exists("new") && exists("older"));
}

TEST_F(DuplicatesOnDisk, GoForGoodAfterAYesAndTheMarkedOneStays)
{
    auto* mark = waitFor("Kept");
    const auto markY = mark->mapToScene({0, 0}).y();
    const auto keptY = waitFor(QString::fromStdString(folder / "new"))->mapToScene({0, 0}).y();
    EXPECT_NEAR(markY, keptY, 6) << "the mark is on the row of the newest";

    clickItem("mergeForever");
    waitFor("Permanently delete duplicate copies?");
    press(Qt::Key_Return); // the keyboard is on Cancel
    waitUntilGone("Permanently delete duplicate copies?");
    EXPECT_TRUE(exists("old"));

    clickItem("mergeForever");
    clickItem("confirm");
    waitForMerge();
    EXPECT_TRUE(exists("new"));
    EXPECT_FALSE(exists("old") || exists("older"));
    EXPECT_EQ(model->history().front().detail, "2 copies permanently deleted · 2 KB freed");
    EXPECT_FALSE(shown("Undo"));
}

class DuplicatesAndABrokenTrash : public DuplicatesOnDisk {
protected:
    DuplicatesAndABrokenTrash()
        : DuplicatesOnDisk(false)
    {
    }
};

TEST_F(DuplicatesAndABrokenTrash, AMergeThatFailedSaysWhyAndItsGroupsAreGone)
{
    machine.trash->whenTrashed
        = [](const std::string&) { throw std::runtime_error("The disk is on fire."); };
    clickItem("mergeToTrash");
    clickItem("confirm");
    waitForMerge();
    EXPECT_TRUE(waitFor("Error"));
    EXPECT_TRUE(shown("The disk is on fire."));
    clickItem("ok");
    waitUntilGone("Error");
    EXPECT_FALSE(states->duplicates()->foundSome());
    EXPECT_TRUE(exists("old") && exists("new") && exists("older"));
}

} // namespace
} // namespace kestavon
