#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "ui/support/window_test.h"

#include <QTest>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;
using testing::ElementsAre;

class ProcessesWindow : public test::WindowTest {
protected:
    ProcessesWindow()
    {
        machine.runningApplications->applications = {
            {.name = "Web Browser", .process = 4211, .startedAt = 1, .memoryBytes = 2'870'000'000},
            {.name = "Code Editor",
                .icon = "/no/such/icon.png",
                .process = 3870,
                .startedAt = 2,
                .memoryBytes = 1'940'000'000},
            {.name = "System Shell",
                .process = 1764,
                .memoryBytes = 271'200'000,
                .isOfSession = true}};
        machine.processSignals->starts = {{4211, 1}, {3870, 2}, {1764, 0}};
        open();
        model->setSection(AppSection::processes);
        waitFor("Web Browser");
    }
};

TEST_F(ProcessesWindow, ListsWhatRunsByMemoryAndProtectsTheSystem)
{
    EXPECT_TRUE(shown("Running Processes"));
    EXPECT_TRUE(shown("3 apps ·"));
    EXPECT_TRUE(shown("sorted by memory"));
    EXPECT_TRUE(shown("PID 4211"));
    EXPECT_TRUE(shown("2.87 GB"));
    EXPECT_TRUE(shown("System process — protected"));
    EXPECT_TRUE(item("forceQuit 0"));
    EXPECT_TRUE(item("forceQuit 1"));
    EXPECT_EQ(item("forceQuit 2"), nullptr);
}

TEST_F(ProcessesWindow, SaysThatNothingRuns)
{
    EXPECT_EQ(item("noProcesses"), nullptr);
    machine.runningApplications->applications.clear();
    states->processes()->refresh();
    waitFor("No running applications");
    EXPECT_TRUE(shown("0 apps ·"));
    press(Qt::Key_F, Qt::ControlModifier);
    type("x");
    EXPECT_FALSE(shown("No matches")) << "one face at a time";
}

TEST_F(ProcessesWindow, SearchesByNameAndCountsAll)
{
    press(Qt::Key_F, Qt::ControlModifier);
    type("edit");
    EXPECT_FALSE(shown("Web Browser"));
    EXPECT_TRUE(shown("Code Editor"));
    EXPECT_TRUE(shown("3 apps ·"));
    type("x");
    EXPECT_TRUE(shown("No matches"));
    press(Qt::Key_Escape);
    EXPECT_TRUE(shown("Web Browser"));
    type("shell");
    model->setSection(AppSection::history);
    processEvents();
    model->setSection(AppSection::processes);
    waitFor("Web Browser");
}

TEST_F(ProcessesWindow, AsksBeforeItQuitsAnApplication)
{
    clickItem("forceQuit 1");
    waitFor("Force quit \"Code Editor\"?");
    EXPECT_TRUE(shown("The app will be asked to quit. Unsaved data may be lost."));
    clickItem("cancel");
    waitUntilGone("Force quit \"Code Editor\"?");
    EXPECT_THAT(machine.processSignals->terminated, ElementsAre());

    clickItem("forceQuit 1");
    waitFor("Force quit \"Code Editor\"?");
    clickItem("confirm");
    EXPECT_THAT(machine.processSignals->terminated, ElementsAre(3870));
    waitUntilGone("Force quit \"Code Editor\"?");
    EXPECT_TRUE(shown("Code Editor")) << "until the next refresh";
    EXPECT_FALSE(shown("Could Not Quit"));
}

TEST_F(ProcessesWindow, TellsWhenAnApplicationCouldNotBeAsked)
{
    machine.processSignals->starts = {{4211, 99}}; // another process has the id by now
    clickItem("forceQuit 0");
    waitFor("Force quit \"Web Browser\"?");
    clickItem("confirm");
    waitFor("Could Not Quit");
    EXPECT_TRUE(shown("Could not quit Web Browser — permission denied."));
    EXPECT_THAT(machine.processSignals->terminated, ElementsAre());
    clickItem("ok");
    waitUntilGone("Could Not Quit");
}

TEST_F(ProcessesWindow, TheRowUnderAPressedButtonStays)
{
    const auto point = middleOf(need("forceQuit 0")).toPoint();
    QTest::mousePress(window, Qt::LeftButton, {}, point);
    machine.runningApplications->applications[0].memoryBytes = 1;
    const auto before = machine.runningApplications->asked.load();
    states->processes()->refresh();
    ASSERT_TRUE(processEventsUntil([&] {
        return machine.runningApplications->asked > before
            && model->processes().back().processName == "Web Browser";
    }));
    EXPECT_EQ(states->processes()->nameText(0), "Web Browser");
    QTest::mouseRelease(window, Qt::LeftButton, {}, point);
    waitFor("Force quit \"Web Browser\"?");
    ASSERT_TRUE(processEventsUntil(
        [&] { return states->processes()->nameText(0) == QString("Code Editor"); }));
    EXPECT_TRUE(shown("Force quit \"Web Browser\"?"));
}

TEST_F(ProcessesWindow, WorksFromTheKeyboard)
{
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Processes");
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), "Force Quit");
    press(Qt::Key_Return);
    waitFor("Force quit \"Code Editor\"?");
    press(Qt::Key_Escape);
    waitUntilGone("Force quit \"Code Editor\"?");
}

TEST_F(ProcessesWindow, ReadsAgainForAsLongAsItIsShown)
{
    const auto* loop = window->findChild<QObject*>("refreshing");
    ASSERT_TRUE(loop);
    EXPECT_EQ(loop->property("interval").toInt(), 3000);
    EXPECT_TRUE(loop->property("running").toBool());
    EXPECT_TRUE(loop->property("repeat").toBool());
    window->hide();
    EXPECT_FALSE(loop->property("running").toBool()) << "it may stay so for days";
    window->show();
    EXPECT_TRUE(loop->property("running").toBool());
    model->setSection(AppSection::history);
    processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window->findChild<QObject*>("refreshing"));
}

} // namespace
} // namespace kestavon
