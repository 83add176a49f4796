#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QStyleHints>

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;
using testing::ElementsAre;

/// Smart Clean over real files in a temporary home of a Mac.
class SmartCleanWindow : public test::WindowTest {
protected:
    SmartCleanWindow()
    {
        machine.home = folder.path();
        machine.files->listable.insert(folder / "Library/Mail");
        machine.hasRealTrash = true;
    }

    void show()
    {
        TestWindow::open({.readsJunkFromDisk = true});
        model->setSection(AppSection::smartClean);
        processEvents();
    }
    /// Writes a file of so many bytes, dated later than the one before it.
    void write(const std::string& name, std::size_t bytes)
    {
        using namespace std::chrono;
        const auto path = folder.writeFile(name, std::string(bytes, 'x'));
        m_date += hours(1);
        std::filesystem::last_write_time(path, file_clock::from_sys(m_date));
    }
    void writeCaches()
    {
        write("Library/Caches/first", 3000);
        write("Library/Caches/second", 1000);
        write("Library/Caches/third", 2000);
    }
    void scanAll()
    {
        clickItem("scanAll");
        waitUntilScanned();
    }
    void waitUntilScanned()
    {
        ASSERT_TRUE(processEventsUntil([&] { return !states->smartClean()->scanning(); }));
        processEvents();
    }
    void openCaches()
    {
        clickItem("App Caches button");
        ASSERT_TRUE(item("previewItems"));
        waitForRows();
    }
    void waitForRows()
    {
        ASSERT_TRUE(processEventsUntil([&] { return preview().rowCount() > 0; }));
        processEvents();
    }
    void waitForRemoval()
    {
        ASSERT_TRUE(processEventsUntil([&] { return !preview().isBusy(); }));
        processEvents();
    }
    void sortBy(const QString& label)
    {
        const auto before = preview().contentRevision();
        clickItem("sortPicker");
        click(label);
        ASSERT_TRUE(processEventsUntil([&] { return preview().contentRevision() > before; }));
        processEvents();
    }

    PreviewState& preview() { return *states->smartClean()->preview(); }
    std::vector<std::string> rows()
    {
        std::vector<std::string> names;
        for (int row = 0; row < preview().rowCount(); ++row)
            names.push_back(preview().nameText(row).toStdString());
        return names;
    }
    /// What a screen reader says of the item in this row.
    QString spokenRow(int row)
    {
        const auto name = preview().nameText(row);
        for (auto* child : need("previewItems").childItems()) {
            auto* accessible = QAccessible::queryAccessibleInterface(child);
            if (child->isVisible() && accessible && accessible->role() == QAccessible::ListItem
                && accessible->text(QAccessible::Name).startsWith(name + ", "))
                return accessible->text(QAccessible::Name);
        }
        return {};
    }
    QString description(const char* name)
    {
        return QAccessible::queryAccessibleInterface(&need(name))->text(QAccessible::Description);
    }
    QPointF rowPoint(int row) { return need("previewItems").mapToScene({200, 40.0 * row + 20}); }
    QString label(const char* button) { return need(button).property("label").toString(); }
    QString text(const char* name) { return need(name).property("text").toString(); }
    bool enabled(const char* name) { return need(name).isEnabled(); }
    bool exists(const std::string& name) { return std::filesystem::exists(folder / name); }

    test::TemporaryFolder folder;

private:
    std::chrono::sys_seconds m_date{std::chrono::sys_days(std::chrono::year(2026) / 1 / 1)};
};

TEST_F(SmartCleanWindow, InvitesToAScanAndThenSaysThatAllIsClean)
{
    show();
    EXPECT_TRUE(shown("Smart Clean"));
    EXPECT_TRUE(shown("Scan to discover hidden space hogs"));
    EXPECT_TRUE(shown("Browser Caches"));
    EXPECT_TRUE(shown("Safari · Chrome · Firefox · Edge · Arc"));
    EXPECT_EQ(label("App Caches button"), "Scan");
    EXPECT_FALSE(item("cleanAll"));
    EXPECT_FALSE(item("summaryBar"));
    EXPECT_FALSE(item("accessBanner"));

    scanAll();
    EXPECT_TRUE(shown("Your Mac is clean."));
    EXPECT_TRUE(shown("Nothing found"));
    EXPECT_FALSE(item("App Caches button"));
    EXPECT_FALSE(item("cleanAll"));
    EXPECT_TRUE(item("summaryBar"));
}

TEST_F(SmartCleanWindow, ShowsTheBannerUntilThereIsAccess)
{
    machine.files->listable.clear();
    machine.settings->setFlag("kv.fda.onboardingShown", true);
    show();
    EXPECT_TRUE(item("accessBanner"));
    machine.files->listable.insert(folder / "Library/Mail");
    click("Re-check");
    EXPECT_FALSE(item("accessBanner"));
}

TEST_F(SmartCleanWindow, ScansOneCategoryAlone)
{
    writeCaches();
    write("Library/Logs/log", 1000);
    show();
    clickItem("App Caches button");
    waitUntilScanned();
    EXPECT_EQ(label("App Caches button"), "Review & Clean");
    EXPECT_EQ(label("System Logs button"), "Scan");
    EXPECT_TRUE(shown("6 KB of junk found · 3 items"));
    EXPECT_EQ(label("cleanAll"), "Clean All · 6 KB");
    EXPECT_TRUE(shown("3 items"));

    scanAll();
    EXPECT_TRUE(shown("7 KB of junk found · 4 items"));
    EXPECT_EQ(label("System Logs button"), "Review & Clean");
}

TEST_F(SmartCleanWindow, FillsTheBreakdownWhileItGrows)
{
    writeCaches();
    show();
    window->setProperty("reducedMotion", false);
    const auto filled = [this] {
        const auto& bar = need("breakdownBar");
        const auto* segments = bar.childItems().at(0);
        double length = -segments->property("spacing").toDouble();
        for (const auto* segment : segments->childItems()) {
            if (segment->isVisible() && segment->width() > 0) // and not what makes them
                length += segment->width() + segments->property("spacing").toDouble();
        }
        return length / bar.width();
    };
    const auto isGrown = [this] { return need("breakdownBar").property("grown").toDouble() == 1; };
    int moments = 0;
    for (const auto* category : {"App Caches button", "System Logs button", "Trash button"}) {
        write("Library/Logs/log", 1000);
        write(".Trash/thing", 9000);
        need(category).forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_Space);
        waitUntilScanned();
        while (!isGrown()) {
            EXPECT_NEAR(filled(), 1, 0.001);
            ++moments;
            processEvents();
        }
        EXPECT_NEAR(filled(), 1, 0.001);
    }
    EXPECT_GT(moments, 3);
}

TEST_F(SmartCleanWindow, SortsAndTicksInThePreview)
{
    writeCaches();
    show();
    scanAll();
    openCaches();
    EXPECT_EQ(text("selectedCount"), "0 selected");
    EXPECT_EQ(text("selectedSize"), "Zero KB");
    for (const auto* button : {"previewDelete", "previewTrash", "previewSafeArea"})
        EXPECT_FALSE(enabled(button)) << button;
    EXPECT_THAT(rows(), ElementsAre("first", "third", "second"));

    clickAt(rowPoint(1));
    EXPECT_EQ(label("allItems"), "1 of 3");
    EXPECT_EQ(text("selectedSize"), "2 KB");
    EXPECT_TRUE(need("allItems").property("mixed").toBool());
    EXPECT_TRUE(enabled("previewTrash"));
    sortBy("Name A–Z");
    EXPECT_THAT(rows(), ElementsAre("first", "second", "third"));
    EXPECT_TRUE(preview().isSelected(2)) << "the tick stays with its item";
    sortBy("Newest First");
    EXPECT_THAT(rows(), ElementsAre("third", "second", "first"));
    sortBy("Oldest First");
    EXPECT_THAT(rows(), ElementsAre("first", "second", "third"));
    sortBy("Smallest First");
    EXPECT_THAT(rows(), ElementsAre("second", "third", "first"));

    clickItem("allItems");
    EXPECT_EQ(label("allItems"), "3 of 3");
    EXPECT_EQ(label("selectAllItems"), "Deselect All");
    clickItem("allItems");
    EXPECT_EQ(label("allItems"), "0 of 3");
    clickItem("selectAllItems");
    EXPECT_EQ(text("selectedCount"), "3 selected");

    clickItem("closePreview");
    EXPECT_FALSE(item("previewItems"));
    openCaches();
    EXPECT_EQ(text("selectedCount"), "0 selected");
    EXPECT_THAT(rows(), ElementsAre("first", "third", "second")) << "the largest first again";
    EXPECT_TRUE(shown("Largest First"));
}

TEST_F(SmartCleanWindow, IsUsedWithTheKeyboardAlone)
{
    writeCaches();
    show();
    scanAll();
    need("App Caches button").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    waitForRows();
    EXPECT_EQ(focusedName(), "0 of 3");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Select All");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Sort");
    press(Qt::Key_Down);
    ASSERT_TRUE(processEventsUntil([&] { return preview().nameText(0) == "second"; }));
    press(Qt::Key_Return);
    EXPECT_TRUE(waitFor("Oldest First"));
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    ASSERT_TRUE(processEventsUntil([&] { return preview().nameText(0) == "first"; }));
    need("previewItems").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_TRUE(preview().isSelected(1));
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "About third");
    press(Qt::Key_Return);
    EXPECT_TRUE(shown("Application cache"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(shown("Application cache"));
    EXPECT_TRUE(preview().isPresented()) << "Escape closes one thing at a time";
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Delete Forever");
    press(Qt::Key_Escape);
    EXPECT_FALSE(preview().isPresented());
    EXPECT_EQ(focusedName(), "Review & Clean");
}

TEST_F(SmartCleanWindow, AsksBeforeAKeyRemovesAnything)
{
    writeCaches();
    show();
    scanAll();
    openCaches();
    need("previewItems").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    ASSERT_TRUE(processEventsUntil([&] { return !machine.workspace->opened().empty(); }));
    EXPECT_THAT(machine.workspace->opened(), ElementsAre(folder / "Library/Caches/first"));
    press(Qt::Key_Delete);
    EXPECT_FALSE(preview().notice()->asking()) << "nothing is ticked";
    press(Qt::Key_Space);
    press(Qt::Key_Delete);
    waitFor("Move 1 files to Trash?");
    clickItem("cancel");
    waitUntilGone("Move 1 files to Trash?");
    EXPECT_TRUE(exists("Library/Caches/first"));
    need("previewItems").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    waitFor("Permanently delete 1 files?");
    clickItem("confirm");
    waitForRemoval();
    EXPECT_FALSE(exists("Library/Caches/first"));
    EXPECT_FALSE(exists(".Trash/first"));
    EXPECT_TRUE(exists("Library/Caches/second"));
}

TEST_F(SmartCleanWindow, MovesTheTickedItemsAndClosesTheSheet)
{
    writeCaches();
    show();
    scanAll();
    openCaches();
    clickAt(rowPoint(0));
    clickItem("previewSafeArea");
    waitForRemoval();
    EXPECT_FALSE(preview().isPresented());
    EXPECT_FALSE(exists("Library/Caches/first"));
    EXPECT_EQ(model->quarantine().size(), 1U);
    EXPECT_TRUE(shown("3 KB of junk found · 2 items"));

    openCaches();
    clickAt(rowPoint(0));
    clickItem("previewTrash");
    waitForRemoval();
    EXPECT_FALSE(exists("Library/Caches/third"));
    EXPECT_TRUE(exists(".Trash/third"));

    openCaches();
    clickItem("selectAllItems");
    clickItem("previewDelete");
    waitForRemoval();
    EXPECT_FALSE(exists("Library/Caches/second"));
    EXPECT_TRUE(shown("Your Mac is clean."));
    EXPECT_FALSE(item("App Caches button"));
    EXPECT_EQ(focusedName(), "Scan All") << "the button that opened the sheet is gone";
}

TEST_F(SmartCleanWindow, StaysOpenAndSaysHowManyTheSafeAreaCouldNotTake)
{
    writeCaches();
    show();
    scanAll();
    openCaches();
    std::filesystem::remove(folder / "Library/Caches/first");
    clickItem("allItems");
    clickItem("previewSafeArea");
    waitForRemoval();
    EXPECT_TRUE(shown("Notice"));
    EXPECT_TRUE(shown("1 file(s) could not be moved — they may be protected or no longer exist. "
                      "Try 'Delete Forever' to remove them directly."));
    clickItem("ok");
    waitUntilGone("Notice");
    EXPECT_TRUE(preview().isPresented());
    EXPECT_EQ(label("allItems"), "1 of 3") << "the sheet shows what it was opened with";
    EXPECT_TRUE(enabled("previewDelete")) << "for what was not moved";
    clickItem("closePreview");
    EXPECT_TRUE(shown("Your Mac is clean."));
}

TEST_F(SmartCleanWindow, SaysWhyTheSafeAreaTookNothing)
{
    writeCaches();
    show();
    scanAll();
    openCaches();
    folder.writeFile("Library/Application Support", "a file where a folder must be");
    clickItem("allItems");
    clickItem("previewSafeArea");
    waitForRemoval();
    EXPECT_TRUE(shown("Notice"));
    EXPECT_TRUE(shown(preview().notice()->errorMessage()));
    clickItem("ok");
    EXPECT_TRUE(preview().isPresented());
    EXPECT_FALSE(preview().isBusy());
    clickItem("closePreview");

    clickItem("cleanAll");
    clickItem("confirm");
    waitFor("Clean Failed");
    clickItem("ok");
    EXPECT_TRUE(exists("Library/Caches/first"));
    EXPECT_EQ(label("cleanAll"), "Clean All · 6 KB");
}

TEST_F(SmartCleanWindow, MovesEverythingAfterAsking)
{
    writeCaches();
    write("Library/Logs/log", 4000);
    show();
    scanAll();
    clickItem("cleanAll");
    waitFor("Clean all 10 KB of junk?");
    EXPECT_EQ(focusedName(), "Cancel");
    clickItem("cancel");
    waitUntilGone("Clean all 10 KB of junk?");
    EXPECT_FALSE(states->smartClean()->cleaning());
    EXPECT_TRUE(exists("Library/Logs/log"));

    clickItem("cleanAll");
    clickItem("confirm");
    ASSERT_TRUE(processEventsUntil([&] { return !states->smartClean()->cleaning(); }));
    processEvents();
    EXPECT_EQ(model->quarantine().size(), 4U);
    EXPECT_FALSE(exists("Library/Caches/first"));
    EXPECT_FALSE(exists("Library/Logs/log"));
    EXPECT_TRUE(shown("Your Mac is clean."));
    EXPECT_FALSE(item("cleanAll"));
}

TEST_F(SmartCleanWindow, BringsIntoSightWhatTheKeyboardIsOn)
{
    show();
    window->resize(1180, 760);
    scan({test::file(folder / "a", 1)});
    const auto& button = need("analyzeNow");
    const auto inSight = [&] {
        const auto bottom = button.mapToScene({0, button.height()}).y();
        return bottom > 52 && bottom < window->height();
    };
    EXPECT_FALSE(inSight());
    need("analyzeNow").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(processEventsUntil(inSight));
    states->smartClean()->scanAll();
    waitUntilScanned();
    EXPECT_TRUE(item("summaryBar"));
    EXPECT_TRUE(processEventsUntil(inSight)) << "the breakdown has pushed it down";
}

TEST_F(SmartCleanWindow, TellsItemsOfOneNameApartByTheirFolders)
{
    write("Library/Containers/com.apple.mail/Data/Library/Caches/store", 100);
    write("Library/Mail/store", 200);
    write("Library/Mail/other", 300);
    show();
    need("Mail & Messages button").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    waitUntilScanned();
    press(Qt::Key_Space);
    waitForRows();
    EXPECT_THAT(rows(), ElementsAre("other", "store", "store"));
    EXPECT_EQ(preview().folderText(0), "");
    EXPECT_EQ(preview().folderText(1), QString::fromStdString(folder / "Library/Mail"));
    EXPECT_TRUE(shown(preview().folderText(2)));
    EXPECT_NE(preview().adviceText(1), preview().adviceText(2));
}

TEST_F(SmartCleanWindow, SaysWhichItemsBelongToAnApplicationThatRuns)
{
    machine.runningApplications->applications
        = {{.identifier = "org.example.editor", .name = "Editor"}};
    write("Library/Caches/org.example.Editor", 20);
    write("Library/Caches/org.example.Other", 10);
    write(".Trash/org.example.Editor", 10);
    show();
    scanAll();
    openCaches();
    waitFor("Editor is running");
    EXPECT_EQ(preview().runningText(0), "Editor is running");
    EXPECT_TRUE(preview().adviceText(0).contains("Editor is running: quit it first"));
    EXPECT_EQ(preview().runningText(1), "");
    EXPECT_EQ(spokenRow(0),
        "org.example.Editor, Editor is running, " + preview().dateText(0) + ", 20 bytes");
    EXPECT_EQ(spokenRow(1), "org.example.Other, " + preview().dateText(1) + ", 10 bytes");
    EXPECT_EQ(description("about 0"), preview().adviceText(0));
    clickItem("closePreview");
    clickItem("Trash button");
    waitForRows();
    sortBy("Smallest First"); // behind the search for owners
    EXPECT_FALSE(shown("Editor is running")) << "what was thrown away is nobody's";
    EXPECT_EQ(description("about 0"), preview().adviceText(0)) << "not the category's before";
    EXPECT_TRUE(preview().adviceText(0).startsWith("It was thrown away before"));
}

TEST_F(SmartCleanWindow, TheKeyboardGoesOnWhenItsButtonIsGone)
{
    write("Library/Logs/log", 10);
    write("Library/Caches/cache", 10);
    show();
    scanAll();
    need("System Logs button").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    waitForRows();
    preview().selectEverything();
    clickItem("previewTrash");
    waitForRemoval();
    ASSERT_TRUE(processEventsUntil([&] { return !preview().isPresented(); }));
    ASSERT_TRUE(processEventsUntil([&] { return need("App Caches button").hasActiveFocus(); }))
        << "there is more to review";
    EXPECT_TRUE(need("App Caches button").property("visualFocus").toBool());
}

TEST_F(SmartCleanWindow, MergesDuplicatesInItsOwnWords)
{
    const auto one = folder.writeFile("a/film.mov", "same");
    const auto two = folder.writeFile("b/film.mov", "same");
    show();
    EXPECT_EQ(text("duplicatesStatus"), "Run a storage scan first, then analyze for duplicates");
    EXPECT_FALSE(enabled("analyzeNow"));
    scan({test::file(one, 4), test::file(two, 4)});
    processEvents();
    EXPECT_EQ(
        text("duplicatesStatus"), "Find exact duplicate files using SHA-256 content matching");
    clickItem("analyzeNow");
    EXPECT_EQ(label("analyzeNow"), "Stop");
    clickItem("analyzeNow");
    EXPECT_EQ(label("analyzeNow"), "Analyze Now");
    clickItem("analyzeNow");
    duplicateFinder->finishWith({{0, 1}});
    ASSERT_TRUE(processEventsUntil([&] { return !model->duplicates()->empty(); }));
    processEvents();
    EXPECT_EQ(text("duplicatesStatus"), "1 groups · 4 bytes reclaimable");
    EXPECT_EQ(label("analyzeNow"), "Re-analyze");

    // Where Stop was: who clicks that twice must not be asked about something else.
    auto* hints = QGuiApplication::styleHints();
    const int usual = hints->mouseDoubleClickInterval();
    hints->setMouseDoubleClickInterval(60'000);
    clickAt(middleOf(need("cardMergeForever")));
    EXPECT_FALSE(shown("Permanently delete duplicate copies?"));
    hints->setMouseDoubleClickInterval(usual);
    clickItem("cardMergeForever");
    EXPECT_TRUE(shown("Permanently delete duplicate copies?"));
    EXPECT_TRUE(shown("This cannot be undone. Newest copy per group is kept; rest permanently "
                      "deleted."));
    clickItem("cancel");
    waitUntilGone("Permanently delete duplicate copies?");
    clickItem("cardMergeToTrash");
    EXPECT_TRUE(shown("Merge 1 groups?"));
    clickItem("cancel");
    waitUntilGone("Merge 1 groups?");
    EXPECT_TRUE(exists("a/film.mov") && exists("b/film.mov"));
}

TEST_F(SmartCleanWindow, ListsAHundredThousandItemsAndKeepsUp)
{
    show();
    std::vector<CleanupCandidate> items;
    for (int i = 0; i < 100'000; ++i) {
        const auto path = folder / ("Library/Caches/item-" + std::to_string(i));
        items.push_back({.id = Uuid::random(),
            .record = test::file(path, i + 1),
            .reason = "Application cache",
            .estimatedBytes = i + 1});
    }
    preview().open(
        {.id = Uuid::random(), .category = JunkCategory::appCaches, .items = std::move(items)});
    waitForRows();
    EXPECT_TRUE(shown("item-99999"));
    need("previewItems").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    EXPECT_TRUE(shown("item-0"));
    EXPECT_FALSE(shown("item-99999"));
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(label("allItems"), "100000 of 100000");
    EXPECT_EQ(text("selectedSize"), "5 GB");
}

} // namespace
} // namespace kestavon
