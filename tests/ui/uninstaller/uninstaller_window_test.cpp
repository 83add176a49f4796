#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <QClipboard>
#include <QTest>

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;

/// The App Uninstaller over a Mac's disk with three applications.
class UninstallerWindow : public test::WindowTest {
protected:
    UninstallerWindow()
    {
        machine.home = folder / "Users/alice";
        machine.systemRoot = folder.path();
        machine.hasRealTrash = true;
        machine.files->listable.insert(machine.home + "/Library/Mail");
        for (const std::string name : {"Code Editor", "Photo Desk", "Spare"}) {
            folder.writeFile("Applications/" + name + ".app/Contents/Info.plist",
                "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example."
                    + (name == "Spare" ? "edit" : name.substr(0, 5)) + "</string></dict></plist>");
        }
        leave("Caches/Code Editor/a", 3'000);
        leave("Logs/Code Editor/b", 1'000);
        leave("Caches/com.example.photo", 9'000);
        open();
        model->setSection(AppSection::appUninstaller);
        processEvents();
    }

    void leave(const std::string& name, std::size_t bytes)
    {
        folder.writeFile("Users/alice/Library/" + name, std::string(bytes, 'x'));
    }
    bool isLeft(const std::string& name)
    {
        return std::filesystem::exists(folder / ("Users/alice/Library/" + name));
    }
    bool isInstalled(const std::string& name)
    {
        return std::filesystem::exists(folder / ("Applications/" + name + ".app"));
    }
    /// The list comes, and the buttons count.
    void scanApps()
    {
        clickItem("scanInstalledApps");
        ASSERT_TRUE(processEventsUntil([&] { return !model->isLoadingApps(); }));
        letSettle();
    }
    void letSettle()
    {
        processEvents();
        EXPECT_TRUE(processEventsUntil(
            [&] { return !need("apps").parentItem()->property("isSettling").toBool(); }));
    }
    bool waitForEvent(const std::string& title)
    {
        return processEventsUntil(
            [&] { return !model->history().empty() && model->history().front().title == title; });
    }

    test::TemporaryFolder folder;
};

TEST_F(UninstallerWindow, OffersTheScanAndListsWhatLeavesMostFirst)
{
    EXPECT_TRUE(shown("Find and remove apps along with all their leftover files."));
    EXPECT_TRUE(shown("No apps scanned yet"));
    EXPECT_EQ(item("appSearch"), nullptr);
    scanApps();
    EXPECT_TRUE(shown("3 apps · 13 KB in leftover files"));
    EXPECT_TRUE(shown("Rescan"));
    for (const auto* title : {"App", "Leftover Size", "Leftover Files", "Actions"})
        EXPECT_TRUE(shown(title)) << title;
    const auto yOf = [this](const char* text) { return middleOf(*shown(text)).y(); };
    EXPECT_LT(yOf("Photo Desk"), yOf("Code Editor"));
    EXPECT_LT(yOf("Code Editor"), yOf("Spare"));
    EXPECT_TRUE(shown("com.example.Photo"));
    EXPECT_TRUE(shown("Clean"));
    EXPECT_TRUE(shown("0 files"));
    EXPECT_NE(item("leftovers 1"), nullptr);
    EXPECT_EQ(item("leftovers 2"), nullptr);
    EXPECT_NE(item("uninstall 2"), nullptr);
}

TEST_F(UninstallerWindow, RemovesLeftoversWithoutAsking)
{
    scanApps();
    clickItem("leftovers 1");
    ASSERT_TRUE(waitForEvent("Code Editor leftovers removed"));
    EXPECT_EQ(model->history().front().detail, "2 files (4 KB)");
    EXPECT_FALSE(isLeft("Caches/Code Editor"));
    EXPECT_TRUE(isInstalled("Code Editor"));
    EXPECT_TRUE(isLeft("Caches/com.example.photo"));
    processEvents();
    EXPECT_EQ(item("leftovers 1"), nullptr);
    EXPECT_TRUE(shown("3 apps · 9 KB in leftover files"));
}

TEST_F(UninstallerWindow, AsksHowMuchGoes)
{
    scanApps();
    clickItem("uninstall 1");
    waitFor("Uninstall \"Code Editor\"?");
    EXPECT_EQ(focusedName(), "Cancel");
    EXPECT_TRUE(shown("The app and its leftover files will be moved to the Trash."));
    clickItem("cancel");
    waitUntilGone("Uninstall \"Code Editor\"?");
    EXPECT_TRUE(isInstalled("Code Editor"));

    clickItem("uninstall 1");
    click("Move App Only to Trash");
    ASSERT_TRUE(waitForEvent("Code Editor uninstalled"));
    EXPECT_EQ(model->history().front().detail, "Moved to Trash");
    EXPECT_FALSE(isInstalled("Code Editor"));
    EXPECT_TRUE(isLeft("Caches/Code Editor/a"));

    letSettle();
    clickItem("uninstall 0");
    waitFor("Uninstall \"Photo Desk\"?");
    click("Move App + All Leftovers to Trash");
    ASSERT_TRUE(waitForEvent("Photo Desk uninstalled"));
    EXPECT_EQ(model->history().front().detail, "Moved to Trash + 1 leftover files");
    EXPECT_FALSE(isLeft("Caches/com.example.photo"));
    EXPECT_EQ(model->history().size(), 2U) << "one answer, one deed";
    waitFor("1 apps · Zero KB in leftover files");
}

TEST_F(UninstallerWindow, ADoubleClickIsAboutOneApplication)
{
    scanApps();
    clickItem("uninstall 0");
    click("Move App Only to Trash");
    ASSERT_TRUE(processEventsUntil([&] { return model->installedApps().size() == 2; }));
    clickItem("leftovers 0"); // now the next one's
    QTest::qWait(50);
    EXPECT_TRUE(isLeft("Caches/Code Editor/a"));
}

TEST_F(UninstallerWindow, AButtonThatIsHeldWhileTheListChangesDoesNothing)
{
    scanApps();
    const auto place = middleOf(need("leftovers 0")).toPoint();
    QTest::mousePress(window, Qt::LeftButton, {}, place);
    model->uninstallApp(model->installedApps()[0], false);
    ASSERT_TRUE(waitForEvent("Photo Desk uninstalled"));
    letSettle();
    QTest::mouseRelease(window, Qt::LeftButton, {}, place);
    QTest::qWait(50);
    EXPECT_TRUE(isLeft("Caches/Code Editor/a"));
    clickItem("leftovers 0");
    EXPECT_TRUE(waitForEvent("Code Editor leftovers removed"));
}

TEST_F(UninstallerWindow, AQuestionStaysWhileWhatItIsAboutDoes)
{
    scanApps();
    clickItem("uninstall 1");
    waitFor("Uninstall \"Code Editor\"?");
    model->uninstallApp(model->installedApps()[0], false);
    ASSERT_TRUE(waitForEvent("Photo Desk uninstalled"));
    processEvents();
    EXPECT_TRUE(shown("Uninstall \"Code Editor\"?"));
    model->removeLeftovers(model->installedApps()[0]);
    ASSERT_TRUE(waitForEvent("Code Editor leftovers removed"));
    waitUntilGone("Uninstall \"Code Editor\"?");
}

TEST_F(UninstallerWindow, FindsByNameAndShowsWhatIsLeft)
{
    scanApps();
    clickItem("appSearch");
    type("edit");
    processEvents();
    EXPECT_TRUE(shown("Code Editor"));
    EXPECT_FALSE(shown("Spare")) << "whose identifier alone has it";
    clickItem("files 0");
    const auto path = folder / "Users/alice/Library/Logs/Code Editor";
    waitFor(QString::fromStdString(path));
    EXPECT_TRUE(shown("Logs"));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    click("Copy Path");
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), path);

    clickItem("appSearch");
    press(Qt::Key_Escape);
    processEvents();
    EXPECT_TRUE(shown("Spare"));
    EXPECT_TRUE(shown(QString::fromStdString(path))) << "still open";
    type("zzz");
    waitFor("No app with this name");
}

TEST_F(UninstallerWindow, WorksFromTheKeyboard)
{
    scanApps();
    EXPECT_EQ(focusedName(), "Search…");
    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), "Apps");
    press(Qt::Key_Right);
    waitFor("Cache");
    press(Qt::Key_Down);
    press(Qt::Key_Left);
    waitUntilGone("Cache");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "1 files");
    press(Qt::Key_Space);
    waitFor("Cache");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Remove Leftovers");
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Uninstall All");
    press(Qt::Key_Return);
    waitFor("Uninstall \"Photo Desk\"?");
    press(Qt::Key_Escape);
    waitUntilGone("Uninstall \"Photo Desk\"?");
    EXPECT_EQ(focusedName(), "Uninstall All");
    press(Qt::Key_Backtab);
    press(Qt::Key_Space);
    ASSERT_TRUE(waitForEvent("Photo Desk leftovers removed"));
}

TEST_F(UninstallerWindow, ScrollsThousandsOfApplications)
{
    for (int i = 0; i < 3'000; ++i)
        folder.makeFolder("Applications/Many " + std::to_string(i) + ".app");
    scanApps();
    EXPECT_EQ(states->uninstaller()->rows()->rowCount(), 3'003);
    need("apps").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    waitFor("Many 999"); // the last one in the order of the names' bytes, but for one
    EXPECT_LT(need("apps").property("slots").toInt(), 40) << "items for what is in sight only";
}

} // namespace
} // namespace kestavon
