#include "support/qt_printing.h"
#include "ui/widgets/disk_bar_rules.h"

#include <limits>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

TEST(DiskBar, TurnsOrangeAndRedOnlyAboveItsThresholds)
{
    struct Case {
        std::int64_t used;
        std::int64_t total;
        double fill;
        QString color;
    };
    const Case cases[] = {
        {0, 1000, 0, "accent"},
        {750, 1000, 0.75, "accent"},
        {751, 1000, 0.751, "orange"},
        {900, 1000, 0.9, "orange"},
        {901, 1000, 0.901, "red"},
        {950, 1000, 0.95, "red"},
        {1000, 1000, 1, "red"},
        {1500, 1000, 1, "red"}, // more used than there is: the bar is full, not longer
        {-500, 1000, 0, "accent"}, // more free than there is
        {1, 1, 1, "red"},
        {900, 0, 0, "accent"}, // the size is unknown
        {5, -1, 0, "accent"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.used << " of " << c.total);
        const auto bar = diskBar(c.used, c.total);
        EXPECT_DOUBLE_EQ(bar.fill, c.fill);
        EXPECT_EQ(bar.color, c.color);
    }
}

TEST(DiskBar, TellsWhatIsUsedAndWhatIsFree)
{
    const auto bar = diskBarOfVolume(512'110'190'592, 158'617'000'000);
    EXPECT_EQ(bar.used, "353.49 GB");
    EXPECT_EQ(bar.free, "158.62 GB free of 512.11 GB");
    EXPECT_NEAR(bar.fill, 0.6903, 0.0001);

    EXPECT_EQ(diskBar(1500, 1000).free, "-500 bytes free of 1 KB");
}

TEST(DiskBar, ShowsZeroOfZeroWhileTheSizeIsUnknown)
{
    const auto bar = diskBarOfVolume(0, 5'000'000);
    EXPECT_EQ(bar.used, "Zero KB");
    EXPECT_EQ(bar.free, "Zero KB free of Zero KB");
    EXPECT_EQ(bar.fill, 0);
}

TEST(DiskBar, SurvivesTotalsAtTheLimitOfTheType)
{
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(diskBarOfVolume(most, 0).fill, 1);
    EXPECT_EQ(diskBarOfVolume(most, -1).fill, 1);
}

} // namespace
} // namespace kestavon
