#include "support/qt_printing.h"
#include "ui/shell/undo_state.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(UndoTexts, SayWhatMovedAndWhatCameBack)
{
    EXPECT_EQ(undoOfferText({ActionKind::trash, 1}), "1 item moved to the Trash");
    EXPECT_EQ(undoOfferText({ActionKind::safeArea, 12}), "12 items moved to the Safe Area");

    EXPECT_EQ(undoReportText({.restored = 1}), "1 item is back where it was.");
    EXPECT_EQ(undoReportText({.restored = 3, .listed = false}),
        "3 items are back where they were. A new scan will list what is back.");
    EXPECT_EQ(undoReportText({.restored = 2, .failed = 1, .error = "“a” is in the way."}),
        "1 of 3 items could not be put back: “a” is in the way.");
    EXPECT_EQ(undoReportText({.failed = 1, .error = "“a” is in the way.", .listed = false}),
        "1 of 1 item could not be put back: “a” is in the way.");
    EXPECT_EQ(undoReportText({.restored = 1, .left = 2}), "Stopped: 1 of 3 items put back.");
}

} // namespace
} // namespace kestavon
