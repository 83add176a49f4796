#include "ui/shell/shell_rules.h"

#include <set>

#include <gmock/gmock.h>

namespace kestavon {

namespace {

CleanupCandidate candidateOf(std::int64_t bytes)
{
    CleanupCandidate candidate;
    candidate.estimatedBytes = bytes;
    return candidate;
}

InstalledApp appThatLeft(std::initializer_list<std::int64_t> sizes)
{
    InstalledApp app;
    for (const auto size : sizes)
        app.leftovers.emplace_back().size = size;
    return app;
}

TEST(ShellRules, BadgesStopCountingAtNinetyNine)
{
    const std::pair<std::size_t, const char*> rows[]
        = {{0, ""}, {1, "1"}, {99, "99"}, {100, "99+"}, {250, "99+"}};
    for (const auto& [badge, text] : rows)
        EXPECT_EQ(badgeText(badge), text) << badge;
}

TEST(ShellRules, SmartCleanCountsScannedCategoriesWithSomethingInThem)
{
    JunkGroup found;
    found.isScanned = true;
    found.items = {candidateOf(0), candidateOf(1)};
    auto empty = found;
    empty.items = {candidateOf(0)};
    auto unscanned = found;
    unscanned.isScanned = false;
    EXPECT_EQ(smartCleanBadge({found, empty, unscanned, JunkGroup{}, found}), 2U);
}

TEST(ShellRules, TheUninstallerCountsAppsThatLeftBytesBehind)
{
    EXPECT_EQ(uninstallerBadge({appThatLeft({0, 12}), appThatLeft({0}), appThatLeft({})}), 1U);
}

TEST(ShellRules, SecurityCountsSuspiciousAndWorse)
{
    std::vector<SecurityFinding> findings;
    for (const auto& level : allCases<ThreatLevel>()) {
        findings.emplace_back();
        findings.back().level = level.value;
    }
    EXPECT_EQ(securityBadge(findings), 3U);
}

TEST(ShellRules, EverySectionStandsOnceInTheSidebar)
{
    std::set<AppSection> seen;
    std::size_t rows = 0;
    for (const auto& group : sidebarGroups()) {
        for (const auto section : group.sections) {
            seen.insert(section);
            ++rows;
            EXPECT_EQ(lookOf(section).section, section) << rawValue(section);
        }
    }
    EXPECT_EQ(seen.size(), allCases<AppSection>().size());
    EXPECT_EQ(rows, seen.size());
}

TEST(ShellRules, TheDiskWarnsAboveItsThresholdsOnly)
{
    struct Row {
        std::int64_t total, free;
        const char* symbol;
        const char* symbolColor;
        const char* barColor;
    };
    const Row rows[] = {
        {0, 0, "internaldrive", "primary", "blue"},
        {100, 25, "internaldrive", "primary", "blue"},
        {10'000, 2'499, "internaldrive", "orange", "orange"},
        {10, 1, "internaldrive", "orange", "orange"},
        {10'000, 999, "internaldrive.fill", "red", "red"},
        {100, 120, "internaldrive", "primary", "blue"},
    };
    for (const auto& row : rows) {
        const auto fraction = diskUsedFraction(row.total, row.free);
        EXPECT_EQ(statusSymbol(fraction), row.symbol) << row.free << " of " << row.total;
        EXPECT_EQ(statusSymbolColor(fraction), row.symbolColor) << row.free << " of " << row.total;
        EXPECT_EQ(statusDiskColor(fraction), row.barColor) << row.free << " of " << row.total;
    }
}

TEST(ShellRules, MemoryPressureIsWhatProgramsHold)
{
    EXPECT_EQ(memoryPressure(std::nullopt), 0);
    EXPECT_EQ(memoryPressure(MemorySnapshot{}), 0);
    EXPECT_DOUBLE_EQ(
        memoryPressure(MemorySnapshot{
            .freeBytes = 10, .activeBytes = 50, .inactiveBytes = 25, .wiredBytes = 15}),
        0.65);
    EXPECT_EQ(statusMemoryColor(0.65), "green");
    EXPECT_EQ(statusMemoryColor(0.6501), "orange");
    EXPECT_EQ(statusMemoryColor(0.85), "orange");
    EXPECT_EQ(statusMemoryColor(0.8501), "red");
}

TEST(ShellRules, OnboardingIsForThoseWithoutAccessWhoNeverSawIt)
{
    EXPECT_TRUE(offersOnboarding(false, false));
    EXPECT_FALSE(offersOnboarding(false, true));
    EXPECT_FALSE(offersOnboarding(true, false));
    EXPECT_FALSE(offersOnboarding(true, true));
}

} // namespace

} // namespace kestavon
