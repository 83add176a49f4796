#include "ui/performance/memory_history.h"
#include "ui/performance/performance_rules.h"

#include <cmath>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;

MemorySnapshot memory(std::uint64_t wired, std::uint64_t active, std::uint64_t inactive)
{
    return {.freeBytes = 100 - wired - active - inactive,
        .activeBytes = active,
        .inactiveBytes = inactive,
        .wiredBytes = wired};
}

TEST(PerformanceRules, ListTheEightThatTakeMost)
{
    EXPECT_EQ(consumerCount({}), 0U);
    EXPECT_EQ(consumerCount(std::vector<AppProcessInfo>(5)), 5U);
    EXPECT_EQ(consumerCount(std::vector<AppProcessInfo>(30)), 8U);
}

TEST(PerformanceRules, MeasureAProcessByAllMemory)
{
    EXPECT_EQ(memoryShare(15, memory(10, 20, 30)), 0.15);
    EXPECT_FALSE(isLargeShare(memoryShare(15, memory(10, 20, 30))));
    EXPECT_TRUE(isLargeShare(memoryShare(16, memory(10, 20, 30))));
    EXPECT_EQ(memoryShare(500, memory(10, 20, 30)), 1) << "shared pages count more than once";
    EXPECT_EQ(memoryShare(5, std::nullopt), 1);
    EXPECT_EQ(memoryShare(5, MemorySnapshot{}), 1);
    EXPECT_EQ(memoryShare(0, std::nullopt), 0);
    constexpr auto most = ~std::uint64_t{0};
    EXPECT_EQ(memoryShare(most, MemorySnapshot{most, most, most, most}), 0.25);
}

TEST(MemoryHistory, HoldsOneMinute)
{
    MemoryHistory history;
    const MemoryHistory::Moment start{};
    EXPECT_TRUE(history.points(start).empty());
    for (int second = 0; second <= 90; ++second)
        history.add(memory(10, 20, 30), start + std::chrono::seconds(second));
    const auto points = history.points(start + 90s);
    ASSERT_EQ(points.size(), 61U);
    EXPECT_EQ(points.front().place, 0);
    EXPECT_EQ(points[30].place, 0.5);
    EXPECT_EQ(points.back().place, 1);
    EXPECT_EQ(points.back().tops, (std::array{0.1, 0.3, 0.6}));
    EXPECT_LT(history.points(start + 91s).front().place, 0) << "where the line comes from";
}

TEST(MemoryHistory, ShowsEachFigureBetweenItsLeastAndItsMost)
{
    using Figure = MemoryHistory::Figure;
    const std::vector<MemoryHistory::Point> points{{.place = 0, .tops = {0.2, 0.5, 0.9}},
        {.place = 0.5, .tops = {0.2, 0.6, 0.9}}, {.place = 1, .tops = {0.21, 0.51, 0.8}}};
    const auto heights = [&points](Figure figure) {
        std::vector<double> result;
        for (const auto& height : MemoryHistory::heightsOf(points, figure))
            result.push_back(std::round(height.height * 100) / 100);
        return result;
    };
    EXPECT_THAT(heights(Figure::active), testing::ElementsAre(0, 1, 0));
    EXPECT_THAT(heights(Figure::free), testing::ElementsAre(0, 0, 1));
    EXPECT_THAT(heights(Figure::wired), testing::ElementsAre(0.25, 0.25, 0.75))
        << "a small change must not look like a large one";
    EXPECT_TRUE(MemoryHistory::heightsOf({}, Figure::free).empty());
}

TEST(MemoryHistory, DrawsNoLineOverTheTimeInWhichNobodyLooked)
{
    MemoryHistory history;
    const MemoryHistory::Moment start{};
    const auto begins = [&](std::chrono::seconds now) {
        std::vector<bool> begin;
        for (const auto& point : history.points(start + now))
            begin.push_back(point.beginsAnew);
        return begin;
    };
    history.add(memory(10, 20, 30), start);
    history.add(memory(10, 20, 30), start + 1s);
    history.add(memory(10, 20, 30), start + 20s);
    EXPECT_EQ(begins(20s), (std::vector{true, false, true}));
    history.add(std::nullopt, start + 21s);
    history.add(MemorySnapshot{}, start + 22s);
    history.add(memory(10, 20, 30), start + 23s);
    EXPECT_EQ(begins(23s), (std::vector{true, false, true, true}));
}

} // namespace
} // namespace kestavon
