#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "ui/widgets/notice_state.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;

TEST(NoticeState, GoesByItselfUnlessSomebodyIsAtIt)
{
    NoticeState notice(20ms);
    notice.setHeld(true);
    notice.show("Done");
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 60)
        test::processEvents();
    EXPECT_TRUE(notice.shown());
    notice.setHeld(false);
    EXPECT_TRUE(test::processEventsUntil([&] { return !notice.shown(); }));
    EXPECT_EQ(notice.text(), "Done") << "for as long as it slides out";
}

TEST(NoticeState, ActsOnceAndOnlyWhileItIsShown)
{
    NoticeState notice(NoticeState::usualTime);
    int acts = 0;
    const auto act = [&acts] { ++acts; };
    notice.act();
    notice.show("Moved", "Undo", act);
    notice.act();
    notice.act();
    EXPECT_EQ(acts, 1);
    EXPECT_FALSE(notice.shown());

    notice.show("Moved", "Undo", act);
    notice.dismiss();
    notice.act();
    notice.show("Moved", "Undo", act);
    notice.show("A newer one");
    notice.act();
    EXPECT_EQ(acts, 1);
    EXPECT_EQ(notice.action(), "");
}

} // namespace
} // namespace kestavon
