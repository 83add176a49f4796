#include "ui/shell/status_state.h"

#include <gmock/gmock.h>

namespace kestavon {

namespace {

TEST(StatusMenuPlace, IsOnTheScreenOfTheTraysIcon)
{
    const QSize menu(220, 260);
    const QList<QRect> screens{{0, 0, 1920, 1080}, {1920, 200, 1280, 1024}};
    EXPECT_EQ(statusMenuPlace({1000, 30}, menu, screens), QPoint(890, 30));
    EXPECT_EQ(statusMenuPlace({1900, 30}, menu, screens), QPoint(1700, 30));
    EXPECT_EQ(statusMenuPlace({1000, 1070}, menu, screens), QPoint(890, 810)) << "above the panel";
    EXPECT_EQ(statusMenuPlace({3190, 230}, menu, screens), QPoint(2980, 230));
    EXPECT_EQ(statusMenuPlace({1950, 230}, menu, screens), QPoint(1920, 230))
        << "not across two screens";
    EXPECT_EQ(statusMenuPlace({2500, 1224}, menu, screens), QPoint(2390, 964))
        << "the point below a panel's icon may lie beyond its screen";
    EXPECT_EQ(statusMenuPlace({5, 5}, menu, {}), QPoint(5, 5));
}

} // namespace

} // namespace kestavon
