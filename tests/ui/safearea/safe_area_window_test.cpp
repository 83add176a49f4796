#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "support/temporary_folder.h"
#include "ui/shell/window_folder_picker.h"
#include "ui/support/window_test.h"

#include <QClipboard>
#include <QTest>

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;
using testing::ElementsAre;

/// The Safe Area with real files in a temporary home.
class SafeAreaWindow : public test::WindowTest {
protected:
    SafeAreaWindow()
    {
        machine.home = folder.path();
        machine.files->listable.insert(folder / "Library/Mail");
        open();
        model->setSection(AppSection::quarantine);
        processEvents();
    }

    /// Moves caches with these names, the last of which is listed last.
    void hold(const std::vector<std::string>& names)
    {
        std::vector<FileRecord> records;
        for (const auto& name : names)
            records.push_back(test::file(folder.writeFile(pathOf(name), name), 1));
        scan(records);
        bool done = false;
        model->moveSelectedCleanupToSafeArea([&done](const std::string&) { done = true; });
        ASSERT_TRUE(processEventsUntil([&done] { return done; }));
        ASSERT_EQ(model->quarantine().size(), names.size());
        letSettle();
    }
    static std::string pathOf(const std::string& name) { return "Library/Caches/" + name; }
    bool isBack(const std::string& name) { return folder.readFile(pathOf(name)) == name; }
    std::vector<std::string> held()
    {
        std::vector<std::string> names;
        for (const auto& item : model->quarantine())
            names.push_back(std::filesystem::path(item.originalPath).filename());
        return names;
    }
    std::size_t filesInHoldingFolder()
    {
        std::size_t count = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(
                 folder / "Library/Application Support/Kestavon/Quarantine"))
            ++count;
        return count;
    }
    bool waitUntilHeld(std::size_t count)
    {
        return processEventsUntil([&] { return model->quarantine().size() == count; });
    }
    /// The buttons wait out a double click after the list has changed.
    void letSettle()
    {
        processEvents();
        const auto isSettled = [this](const char* name) {
            const auto* list = item(name);
            return !list || !list->parentItem()->property("isSettling").toBool();
        };
        EXPECT_TRUE(processEventsUntil(
            [&] { return isSettled("Held items") && isSettled("Earlier items"); }));
    }

    test::TemporaryFolder folder;
};

TEST_F(SafeAreaWindow, SaysThatItIsEmptyAndOffersNothing)
{
    EXPECT_TRUE(shown("Files here are held safely — restore them or permanently delete when "
                      "you're sure."));
    EXPECT_TRUE(shown("Safe Area is empty"));
    EXPECT_TRUE(shown(
        "Files you clean with Smart Clean appear here.\nNothing has been permanently deleted."));
    EXPECT_EQ(item("restoreAll"), nullptr);
    EXPECT_EQ(item("deleteAll"), nullptr);
}

TEST_F(SafeAreaWindow, RestoresOneItemAndDeletesAnotherWithoutAsking)
{
    hold({"a", "b", "c"});
    EXPECT_TRUE(shown("Application cache"));
    EXPECT_TRUE(shown(QString::fromStdString(folder / pathOf("b"))));
    clickItem("Held items restore 1");
    ASSERT_TRUE(waitUntilHeld(2));
    EXPECT_THAT(held(), ElementsAre("a", "c"));
    EXPECT_TRUE(isBack("b"));
    EXPECT_EQ(model->history().front().title, "Item restored");

    letSettle();
    clickItem("Held items delete 1");
    ASSERT_TRUE(waitUntilHeld(1));
    EXPECT_THAT(held(), ElementsAre("a"));
    EXPECT_EQ(filesInHoldingFolder(), 1U);
    EXPECT_EQ(model->history().front().title, "Permanently deleted");
    EXPECT_EQ(model->history().front().detail, "c");
}

TEST_F(SafeAreaWindow, ADoubleClickDeletesOnlyTheItemUnderThePointer)
{
    hold({"a", "b", "c"});
    clickItem("Held items delete 0");
    ASSERT_TRUE(waitUntilHeld(2));
    clickItem("Held items delete 0"); // now the next item's
    clickItem("Held items restore 0");
    QTest::qWait(50);
    EXPECT_THAT(held(), ElementsAre("b", "c"));
    letSettle();
    clickItem("Held items delete 0");
    EXPECT_TRUE(waitUntilHeld(1));
}

TEST_F(SafeAreaWindow, RestoresAllButWhatCannotGoBackWithoutAnAlert)
{
    hold({"a", "b", "c"});
    folder.writeFile(pathOf("b"), "came meanwhile");
    clickItem("restoreAll");
    waitFor("Restore all 3 items?");
    clickItem("cancel");
    waitUntilGone("Restore all 3 items?");
    EXPECT_EQ(model->quarantine().size(), 3U);

    clickItem("restoreAll");
    clickItem("confirm");
    ASSERT_TRUE(processEventsUntil([&] { return !states->safeArea()->working(); }));
    EXPECT_THAT(held(), ElementsAre("b"));
    EXPECT_TRUE(isBack("a"));
    EXPECT_TRUE(isBack("c"));
    EXPECT_EQ(folder.readFile(pathOf("b")), "came meanwhile");
    EXPECT_FALSE(shown("Operation Failed"));
    EXPECT_EQ(model->history()[0].detail, folder / pathOf("c"));
    EXPECT_EQ(model->history()[1].detail, folder / pathOf("a")) << "one event for each";
    EXPECT_TRUE(need("restoreAll").isEnabled());
}

TEST_F(SafeAreaWindow, DeletesAllAfterAsking)
{
    hold({"a", "b"});
    clickItem("deleteAll");
    waitFor("Permanently delete all 2 items?");
    EXPECT_EQ(focusedName(), "Cancel");
    press(Qt::Key_Escape);
    waitUntilGone("Permanently delete all 2 items?");
    EXPECT_EQ(filesInHoldingFolder(), 2U);

    clickItem("deleteAll");
    clickItem("confirm");
    ASSERT_TRUE(waitUntilHeld(0));
    EXPECT_EQ(filesInHoldingFolder(), 0U);
    EXPECT_TRUE(shown("Safe Area is empty"));
    EXPECT_EQ(model->history().front().detail, "2 items permanently deleted");
}

TEST_F(SafeAreaWindow, WithdrawsTheQuestionWhenMoreComesIn)
{
    hold({"a"});
    clickItem("deleteAll");
    waitFor("Permanently delete all 1 items?");
    scan({test::file(folder.writeFile(pathOf("b"), "b"), 1)});
    model->moveSelectedCleanupToSafeArea();
    ASSERT_TRUE(waitUntilHeld(2));
    waitUntilGone("Permanently delete all 1 items?");
    EXPECT_EQ(filesInHoldingFolder(), 2U) << "nobody was asked about the second";
}

TEST_F(SafeAreaWindow, SaysWhyOneItemCouldNotBeRestored)
{
    hold({"a"});
    folder.writeFile(pathOf("a"), "came meanwhile");
    clickItem("Held items restore 0");
    waitFor("Operation Failed");
    EXPECT_TRUE(shown(states->safeArea()->confirmation()->errorMessage()));
    clickItem("ok");
    waitUntilGone("Operation Failed");
    EXPECT_THAT(held(), ElementsAre("a"));
    EXPECT_EQ(folder.readFile(pathOf("a")), "came meanwhile");
    EXPECT_TRUE(need("Held items restore 0").isEnabled());
}

TEST_F(SafeAreaWindow, ListsEarlierItemsOnRequestAndAsksForAFolderWhereThePlaceIsNotKnown)
{
    const auto heldPath = [](const std::string& name) {
        return "Library/Application Support/Kestavon/Quarantine/" + Uuid::random().text() + '-'
            + name;
    };
    folder.writeFile(heldPath("one"), "one");
    folder.writeFile(heldPath("two"), "two");
    EXPECT_EQ(item("showEarlier"), nullptr);
    model->setSection(AppSection::history);
    processEvents();
    model->setSection(AppSection::quarantine);
    ASSERT_TRUE(processEventsUntil([&] { return item("showEarlier") != nullptr; }));
    EXPECT_TRUE(shown("Safe Area is empty")) << "the list of this run stays as it was";
    QTest::qWait(50);
    clickItem("showEarlier");
    EXPECT_TRUE(shown("2 items from earlier"));
    EXPECT_TRUE(shown("Where it came from is not known."));
    EXPECT_TRUE(shown("Moved —"));

    letSettle();
    auto& picker = *states->shell()->folderPicker();
    const auto chosen = folder.makeFolder("chosen");
    const auto name = states->safeArea()->earlierItems()->nameText(0).toStdString();
    folder.writeFile("chosen/" + name, "came first");
    states->safeArea()->restoreEarlier(0);
    picker.accept(urlFromPath(chosen));
    waitFor("Operation Failed");
    clickItem("ok");
    EXPECT_EQ(folder.readFile("chosen/" + name), "came first");
    std::filesystem::remove(folder / ("chosen/" + name));
    states->safeArea()->restoreEarlier(0);
    picker.cancel();
    EXPECT_EQ(model->earlierQuarantine().size(), 2U);
    states->safeArea()->restoreEarlier(0);
    picker.accept(urlFromPath(chosen));
    ASSERT_TRUE(processEventsUntil([&] { return model->earlierQuarantine().size() == 1; }));
    EXPECT_EQ(folder.readFile("chosen/" + name), name);
}

TEST_F(SafeAreaWindow, AsksBeforeItDeletesAnEarlierItem)
{
    folder.writeFile(
        "Library/Application Support/Kestavon/Quarantine/" + Uuid::random().text() + "-notes.txt",
        "x");
    states->safeArea()->lookForEarlier();
    ASSERT_TRUE(processEventsUntil([&] { return item("showEarlier") != nullptr; }));
    states->safeArea()->showEarlier();
    letSettle();
    clickItem("Earlier items delete 0");
    waitFor("Permanently delete \"notes.txt\"?");
    clickItem("cancel");
    waitUntilGone("Permanently delete \"notes.txt\"?");
    EXPECT_EQ(filesInHoldingFolder(), 1U);
    clickItem("Earlier items delete 0");
    clickItem("confirm");
    ASSERT_TRUE(processEventsUntil([&] { return model->earlierQuarantine().empty(); }));
    EXPECT_EQ(filesInHoldingFolder(), 0U);
    EXPECT_EQ(model->history().front().detail, "notes.txt");
    EXPECT_FALSE(shown("1 items from earlier"));
}

TEST_F(SafeAreaWindow, OpensTheHeldItemButCopiesWhereItCameFrom)
{
    hold({"a"});
    need("Held items").forceActiveFocus(Qt::TabFocusReason);
    for (const auto* choice : {"Open", "Open Folder", "Copy Path"}) {
        press(Qt::Key_Menu);
        click(choice);
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), folder / pathOf("a"));
    ASSERT_TRUE(processEventsUntil([&] { return machine.workspace->opened().size() == 2; }));
    EXPECT_THAT(machine.workspace->opened(),
        ElementsAre(model->quarantine().front().quarantinedPath, folder / "Library/Caches"));
}

TEST_F(SafeAreaWindow, WorksFromTheKeyboard)
{
    hold({"a", "b", "c"});
    need("Held items").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(focusedName(), "Held items");
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Restore");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Delete Forever");
    press(Qt::Key_Down); // to the next row
    EXPECT_EQ(focusedName(), "Held items");
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    ASSERT_TRUE(waitUntilHeld(2));
    EXPECT_TRUE(isBack("c"));
    EXPECT_THAT(held(), ElementsAre("a", "b"));
}

} // namespace
} // namespace kestavon
