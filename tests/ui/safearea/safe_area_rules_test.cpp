#include "support/moments.h"
#include "support/qt_printing.h"
#include "ui/safearea/held_items.h"
#include "ui/safearea/safe_area_rules.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(SafeAreaQuestions, SayItemsForOneItemToo)
{
    const auto restore = restoreAllQuestion(1);
    EXPECT_EQ(restore.title, "Restore all 1 items?");
    EXPECT_EQ(restore.message, "Files will be moved back to their original locations.");
    EXPECT_EQ(restore.action, "Restore All");
    EXPECT_FALSE(restore.destructive);

    const auto remove = deleteAllQuestion(12345);
    EXPECT_EQ(remove.title, "Permanently delete all 12345 items?");
    EXPECT_EQ(
        remove.message, "This cannot be undone. Files will be permanently removed from your Mac.");
    EXPECT_EQ(remove.action, "Delete All Forever");
    EXPECT_TRUE(remove.destructive);
}

TEST(SafeAreaTexts, KnowAnItemByWhatIsKnownOfIt)
{
    const auto held = "/held/" + Uuid::random().text() + "-long-na";
    EXPECT_EQ(originalName({.id = {},
                  .originalPath = "/home/alice/long-name.txt",
                  .quarantinedPath = held,
                  .reason = {},
                  .date = {}}),
        "long-name.txt");
    EXPECT_EQ(
        originalName(
            {.id = {}, .originalPath = {}, .quarantinedPath = held, .reason = {}, .date = {}}),
        "long-na");
    EXPECT_EQ(movedText({}, SystemCalendar()), "Moved —");
    EXPECT_EQ(pathIn("/", "a"), "/a");
    EXPECT_EQ(pathIn("/home/alice", "a"), "/home/alice/a");
}

TEST(HeldItems, ShowEachItemOnOneLineAndNothingBeyondTheLast)
{
    const auto calendar = std::make_shared<SystemCalendar>();
    const auto moment = test::utc(2026, 11, 16, 14, 5);
    const std::vector<QuarantineItem> list{{.id = Uuid::random(),
        .originalPath = "/home/alice/two\nlines/kept",
        .quarantinedPath = "/held/x",
        .reason = "Application cache",
        .date = moment}};
    HeldItems items(
        [&list]() -> const auto& { return list; }, [](const Uuid&) { return false; }, calendar);
    EXPECT_EQ(items.rowCount(), 1);
    EXPECT_EQ(items.nameText(0), "kept");
    EXPECT_EQ(items.pathText(0), "/home/alice/two␤lines/kept");
    EXPECT_EQ(items.reasonText(0), "Application cache");
    EXPECT_EQ(items.movedText(0), QString::fromStdString("Moved " + calendar->dateText(moment)));
    for (const int row : {-1, 1}) {
        EXPECT_EQ(items.nameText(row), "");
        EXPECT_FALSE(items.itemAt(row));
    }
}

} // namespace
} // namespace kestavon
