#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "ui/support/window_test.h"

#include <mutex>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;

class PerformanceWindow : public test::WindowTest {
protected:
    void show(std::size_t applications)
    {
        for (std::size_t i = 0; i < applications; ++i)
            machine.runningApplications->applications.push_back(
                {.name = "App " + std::to_string(i + 1),
                    .process = static_cast<std::int32_t>(300 + i),
                    .memoryBytes = 3'000'000'000 - i * 100'000'000});
        open();
        model->setSection(AppSection::performance);
        processEvents();
    }
    int consumers()
    {
        int count = 0;
        while (item(("consumer " + std::to_string(count)).c_str()))
            ++count;
        return count;
    }
};

TEST_F(PerformanceWindow, ShowsTheFiguresAndWhoTakesMost)
{
    show(30);
    waitFor("App 1");
    EXPECT_EQ(consumers(), 8);
    EXPECT_TRUE(shown("Live macOS memory · updated every second"));
    EXPECT_TRUE(shown("2.31 GB"));
    EXPECT_TRUE(shown("6 GB"));
    EXPECT_TRUE(shown("1.5 GB"));
    EXPECT_TRUE(shown("4 GB"));
    EXPECT_TRUE(shown("Wired 1.5 GB"));
    EXPECT_TRUE(shown("Last 60 seconds"));
    EXPECT_TRUE(shown("App 8"));
    EXPECT_FALSE(shown("App 9"));
    EXPECT_TRUE(shown("2.9 GB"));
}

TEST_F(PerformanceWindow, ListsWhoRunsAlsoWithoutMemoryStatistics)
{
    machine.memory->value.reset();
    show(5);
    waitFor("App 5");
    EXPECT_EQ(consumers(), 5);
    EXPECT_TRUE(shown("Memory statistics unavailable."));
    EXPECT_EQ(item("freeMemory"), nullptr);
    EXPECT_EQ(item("memoryBar"), nullptr);
    EXPECT_TRUE(shown("Free Up RAM"));
}

TEST_F(PerformanceWindow, ReadsAgainForAsLongAsItIsShown)
{
    show(1);
    const auto& asked = machine.runningApplications->asked;
    ASSERT_TRUE(processEventsUntil([&] { return asked >= 2; }));
    const auto* loop = window->findChild<QObject*>("refreshing");
    ASSERT_TRUE(loop);
    EXPECT_EQ(loop->property("interval").toInt(), 1000);
    model->setSection(AppSection::history);
    processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window->findChild<QObject*>("refreshing")) << "nobody looks any more";
    const auto left = asked.load();
    model->setSection(AppSection::performance);
    EXPECT_TRUE(processEventsUntil([&] { return asked > left; }));
}

TEST_F(PerformanceWindow, ReadsNothingWhileTheWindowCannotBeSeen)
{
    show(1);
    const auto* loop = window->findChild<QObject*>("refreshing");
    ASSERT_TRUE(loop);
    const auto goesOn = [loop] { return loop->property("running").toBool(); };
    EXPECT_TRUE(goesOn());
    for (const auto away : {&QWindow::hide, &QWindow::showMinimized}) {
        (window->*away)();
        EXPECT_TRUE(processEventsUntil([&] { return !goesOn(); }));
        const auto left = machine.runningApplications->asked.load();
        window->showNormal();
        EXPECT_TRUE(processEventsUntil(
            [&] { return goesOn() && machine.runningApplications->asked > left; }));
    }
}

TEST_F(PerformanceWindow, TheButtonTellsWhatItBroughtForAWhile)
{
    show(1);
    auto& button = need("ramOptimizer");
    button.setProperty("resultTime", 60'000);
    machine.memoryRelief->whenRelieved
        = [this] { machine.memory->value->inactiveBytes = 3'731'564'544; };
    {
        const std::lock_guard hung(machine.memoryRelief->hung);
        clickItem("ramOptimizer");
        EXPECT_TRUE(shown("Optimizing…"));
        clickItem("ramOptimizer"); // nothing happens
    }
    waitFor("268.4 MB reclaimed");
    EXPECT_EQ(machine.memoryRelief->times, 1);
    EXPECT_EQ(model->history().front().detail, "256 MB reclaimed from inactive pages");

    // The time of the first result is over in the middle of the second one's.
    clickItem("ramOptimizer");
    waitFor("Zero KB reclaimed");
    button.setProperty("resultTime", 50);
    press(Qt::Key_Tab);
    clickItem("ramOptimizer");
    waitFor("Zero KB reclaimed");
    waitFor("Free Up RAM");
    EXPECT_EQ(machine.memoryRelief->times, 3);
}

TEST_F(PerformanceWindow, AnEarlierResultsTimeDoesNotEndALaterOne)
{
    show(1);
    auto& button = need("ramOptimizer");
    button.setProperty("resultTime", 60'000);
    const auto* time = button.findChild<QObject*>("resultTimer");
    ASSERT_TRUE(time);
    clickItem("ramOptimizer");
    waitFor("Zero KB reclaimed");
    EXPECT_TRUE(time->property("running").toBool());
    {
        const std::lock_guard hung(machine.memoryRelief->hung);
        clickItem("ramOptimizer");
        EXPECT_TRUE(shown("Optimizing…"));
        EXPECT_FALSE(time->property("running").toBool());
    }
    waitFor("Zero KB reclaimed");
    EXPECT_TRUE(time->property("running").toBool());
}

} // namespace
} // namespace kestavon
