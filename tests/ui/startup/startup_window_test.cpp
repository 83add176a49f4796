#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <QTest>

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;

/// The Startup Items over a Mac's disk with three jobs of the user's and one of the system's.
class StartupWindow : public test::WindowTest {
protected:
    StartupWindow()
    {
        machine.home = folder / "Users/alice";
        machine.systemRoot = folder.path();
        machine.hasRealTrash = true;
        machine.files->listable.insert(machine.home + "/Library/Mail");
        for (const std::string name : {"a", "b", "c"})
            define("Users/alice/Library/LaunchAgents/" + name + ".plist", "org.example." + name);
        define("Library/LaunchDaemons/s.plist", "org.example.system");
        open();
        model->setSection(AppSection::startup);
        processEvents();
    }

    void define(const std::string& file, const std::string& label)
    {
        folder.writeFile(file,
            "<plist version=\"1.0\"><dict><key>Label</key><string>" + label
                + "</string><key>Program</key><string>/opt/" + label + "</string></dict></plist>");
    }
    bool isDefined(const std::string& name)
    {
        return std::filesystem::exists(
            folder / ("Users/alice/Library/LaunchAgents/" + name + ".plist"));
    }
    void loadItems()
    {
        clickItem("scanStartup");
        ASSERT_TRUE(processEventsUntil([&] { return model->startupItems().size() == 4; }));
        letSettle();
    }
    void letSettle()
    {
        processEvents();
        auto* timer = window->findChild<QObject*>(QStringLiteral("startupSettling"));
        ASSERT_NE(timer, nullptr);
        EXPECT_TRUE(processEventsUntil([&] { return !timer->property("running").toBool(); }));
    }
    bool waitUntilListed(std::size_t count)
    {
        return processEventsUntil([&] { return model->startupItems().size() == count; });
    }

    test::TemporaryFolder folder;
};

TEST_F(StartupWindow, ListsOnRequestInTwoSections)
{
    EXPECT_TRUE(shown("No startup items loaded"));
    EXPECT_TRUE(shown("LaunchAgents and LaunchDaemons on your Mac — review and remove unwanted "
                      "entries."));
    loadItems();
    EXPECT_FALSE(shown("No startup items loaded"));
    for (const auto* text :
        {"Your Launch Agents", "Installed by you or third-party apps — safe to remove",
            "org.example.a", "/opt/org.example.a", "System Launch Agents & Daemons",
            "Protected — managed by macOS", "org.example.system", "Protected"})
        EXPECT_TRUE(shown(text)) << text;
    EXPECT_NE(item("remove 3"), nullptr);
    EXPECT_EQ(item("remove 5"), nullptr);
}

TEST_F(StartupWindow, RemovesWithoutAskingAndOnlyTheItemUnderThePointer)
{
    loadItems();
    clickItem("remove 1");
    ASSERT_TRUE(waitUntilListed(3));
    clickItem("remove 1"); // now the next one's
    QTest::qWait(50);
    EXPECT_FALSE(isDefined("a"));
    EXPECT_TRUE(isDefined("b"));
    EXPECT_EQ(model->history().front().title, "Startup item removed");
    EXPECT_EQ(model->history().front().detail, "org.example.a");
    EXPECT_TRUE(shown("1 item moved to the Trash"));

    letSettle();
    clickItem("remove 2");
    ASSERT_TRUE(waitUntilListed(2));
    EXPECT_FALSE(isDefined("c"));
    click("Undo");
    ASSERT_TRUE(waitUntilListed(3));
    EXPECT_TRUE(isDefined("c"));
}

TEST_F(StartupWindow, SaysWhyAnItemCouldNotBeRemoved)
{
    loadItems();
    std::filesystem::remove(folder / "Users/alice/Library/LaunchAgents/a.plist");
    clickItem("remove 1");
    waitFor("Error");
    EXPECT_TRUE(shown(states->startup()->confirmation()->errorMessage()));
    clickItem("ok");
    waitUntilGone("Error");
    EXPECT_EQ(model->startupItems().size(), 4U);
    clickItem("refreshStartup");
    ASSERT_TRUE(waitUntilListed(3));
}

TEST_F(StartupWindow, WorksFromTheKeyboard)
{
    loadItems();
    EXPECT_EQ(focusedName(), "Startup items");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Remove");
    press(Qt::Key_Space);
    ASSERT_TRUE(waitUntilListed(3));
    EXPECT_FALSE(isDefined("b"));
}

} // namespace
} // namespace kestavon
