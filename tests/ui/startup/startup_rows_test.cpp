#include "core/domain/startup_item.h"
#include "support/qt_printing.h"
#include "ui/startup/startup_rows.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;

StartupItem item(std::string label, bool isSystem)
{
    return {.id = Uuid::random(),
        .label = std::move(label),
        .programPath = "/bin/true",
        .plistURL = "/l/x.plist",
        .isSystem = isSystem};
}

class StartupRowsTest : public testing::Test {
protected:
    std::vector<std::string> titles()
    {
        rows.reload();
        std::vector<std::string> texts;
        for (int row = 0; row < rows.rowCount(); ++row)
            texts.push_back(rows.titleText(row).toStdString());
        return texts;
    }

    std::vector<StartupItem> items;
    StartupRows rows{[this]() -> const std::vector<StartupItem>& { return items; },
        [](const Uuid&) { return false; }};
};

TEST_F(StartupRowsTest, HasASectionForEachKindThatThereIs)
{
    EXPECT_EQ(rows.rowCount(), 0);
    items = {item("a", false), item("b", false), item("c", true)};
    EXPECT_THAT(titles(),
        ElementsAre("Your Launch Agents", "a", "b", "System Launch Agents & Daemons", "c"));
    EXPECT_EQ(rows.detailText(0), "Installed by you or third-party apps — safe to remove");
    EXPECT_EQ(rows.detailText(3), "Protected — managed by macOS");
    EXPECT_EQ(rows.detailText(1), "/bin/true");
    EXPECT_FALSE(rows.isProtected(2));
    EXPECT_TRUE(rows.isProtected(4));
    EXPECT_EQ(rows.itemAt(3), nullptr);
    EXPECT_EQ(rows.itemAt(4), &items[2]);

    items.erase(items.begin(), items.begin() + 2);
    EXPECT_THAT(titles(), ElementsAre("System Launch Agents & Daemons", "c"));
    items = {item("a", false)};
    EXPECT_THAT(titles(), ElementsAre("Your Launch Agents", "a"));
}

TEST_F(StartupRowsTest, StandOnACardForEachSection)
{
    items = {item("a", false), item("b", false), item("c", true)};
    titles();
    const double expected[] = {0, 42, 96, 150, 210, 292};
    for (int row = 0; row <= rows.rowCount(); ++row) {
        EXPECT_EQ(rows.rowTop(row), expected[row]);
        if (row < rows.rowCount()) {
            EXPECT_EQ(rows.rowAt(expected[row]), row);
            EXPECT_EQ(rows.rowAt(expected[row + 1] - 0.5), row);
        }
    }
    EXPECT_EQ(rows.rowAt(10'000), 4);
    EXPECT_EQ(rows.cardTop(0), 42);
    EXPECT_EQ(rows.cardBottom(0), 150);
    EXPECT_EQ(rows.cardTop(1), 210);
    EXPECT_EQ(rows.cardBottom(1), 264);
}

} // namespace
} // namespace kestavon
