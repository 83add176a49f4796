#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/support/window_test.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;

class HistoryWindow : public test::WindowTest {
protected:
    HistoryWindow()
    {
        open();
        model->setSection(AppSection::history);
        processEvents();
    }
    void scanFiles(int count)
    {
        scan(std::vector<FileRecord>(
            static_cast<std::size_t>(count), test::file("/home/alice/a", 1)));
        processEvents();
    }
};

TEST_F(HistoryWindow, ListsEveryEventTheNewestFirst)
{
    EXPECT_TRUE(shown("0 events"));
    EXPECT_EQ(item("clearHistory"), nullptr);
    for (int count = 1; count <= 5; ++count)
        scanFiles(count);
    waitFor("5 events"); // those that came at once are shown together
    EXPECT_EQ(states->history()->events()->detailText(0), "5 items scanned");
    EXPECT_EQ(states->history()->events()->detailText(4), "1 items scanned");
    EXPECT_EQ(states->history()->events()->detailText(5), "");
    const auto* newest = shown("5 items scanned");
    const auto* oldest = shown("1 items scanned");
    ASSERT_TRUE(newest && oldest);
    EXPECT_EQ(oldest->mapToScene({0, 0}).y() - newest->mapToScene({0, 0}).y(), 4 * 52);
}

TEST_F(HistoryWindow, KeepsTheAgesCurrentWhileItIsShown)
{
    scanFiles(1);
    EXPECT_TRUE(shown("now"));
    machine.clock->time += std::chrono::minutes(5);
    waitFor("5 minutes ago");
    EXPECT_TRUE(states->history()->events()->ticking());
    model->setSection(AppSection::dashboard);
    processEvents();
    EXPECT_FALSE(states->history()->events()->ticking());
}

TEST_F(HistoryWindow, ClearsWithoutAskingAndStartsAnew)
{
    scanFiles(1);
    scanFiles(2);
    ASSERT_TRUE(test::processEventsUntil([&] { // laid out with the next frame
        const auto& button = need("clearHistory");
        return button.mapToScene({button.width(), 0}).x() < window->width();
    }));
    clickItem("clearHistory");
    EXPECT_TRUE(model->history().empty());
    EXPECT_TRUE(shown("0 events"));
    EXPECT_EQ(item("clearHistory"), nullptr);
    scanFiles(3);
    EXPECT_TRUE(shown("1 events"));
}

TEST_F(HistoryWindow, ScrollsByKeyboardThroughAHistoryLongerThanTheWindow)
{
    for (int count = 1; count <= 30; ++count)
        scanFiles(count);
    waitFor("30 events");
    EXPECT_FALSE(shown("1 items scanned"));
    need("events").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(focusedName(), "History");
    press(Qt::Key_End);
    EXPECT_TRUE(shown("1 items scanned"));
    EXPECT_FALSE(shown("30 items scanned"));
    press(Qt::Key_Home);
    EXPECT_TRUE(shown("30 items scanned"));
}

} // namespace
} // namespace kestavon
