#include "support/qt_printing.h"
#include "ui/widgets/memory_bar_rules.h"
#include "ui/widgets/threat_badge_rules.h"

#include <limits>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

TEST(MemoryBar, SharesAllMemoryAmongItsKinds)
{
    const auto shares = memoryShares(MemorySnapshot{.freeBytes = 4'000'000'000,
        .activeBytes = 3'000'000'000,
        .inactiveBytes = 2'000'000'000,
        .wiredBytes = 1'000'000'000});
    const struct {
        QString label;
        QString color;
        double share;
    } expected[] = {
        {"Wired 1 GB", "red", 0.1},
        {"Active 3 GB", "orange", 0.3},
        {"Inactive 2 GB", "blue", 0.2},
        {"Free 4 GB", "green", 0.4},
    };
    for (std::size_t i = 0; i < shares.size(); ++i) {
        EXPECT_EQ(shares[i].label, expected[i].label);
        EXPECT_EQ(shares[i].color, expected[i].color);
        EXPECT_DOUBLE_EQ(shares[i].share, expected[i].share);
    }
}

TEST(MemoryBar, IsEmptyWhenNothingIsKnown)
{
    for (const auto& snapshot :
        {std::optional<MemorySnapshot>(), std::optional(MemorySnapshot{})}) {
        for (const auto& kind : memoryShares(snapshot)) {
            EXPECT_EQ(kind.share, 0);
            EXPECT_TRUE(kind.label.endsWith("Zero KB"));
        }
    }
}

TEST(MemoryBar, KeepsItsSharesBelowOneForAbsurdCounters)
{
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    double sum = 0;
    for (const auto& kind : memoryShares(MemorySnapshot{most, most, most, most}))
        sum += kind.share;
    EXPECT_DOUBLE_EQ(sum, 1);
}

TEST(ThreatBadge, HasAWordASymbolAndAColourForEachLevel)
{
    const struct {
        ThreatLevel level;
        QString label;
        QString symbol;
        QString color;
    } cases[] = {
        {ThreatLevel::safe, "Safe", "checkmark.shield.fill", "green"},
        {ThreatLevel::unknown, "Unknown", "questionmark.circle", "secondary"},
        {ThreatLevel::suspicious, "Suspicious", "exclamationmark.triangle", "orange"},
        {ThreatLevel::highRisk, "High Risk", "exclamationmark.octagon", "red"},
        {ThreatLevel::confirmed, "Confirmed Signature", "exclamationmark.octagon.fill", "red"},
    };
    for (const auto& c : cases) {
        const auto badge = threatBadge(c.level);
        EXPECT_EQ(badge.label, c.label);
        EXPECT_EQ(badge.symbol, c.symbol);
        EXPECT_EQ(badge.color, c.color);
    }
}

} // namespace
} // namespace kestavon
