#include "storage/visit_budget.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

constexpr std::uint64_t limit = 1 << 30;

TEST(VisitBudget, AsksForMemoryAtEveryThousandthVisit)
{
    int asked = 0;
    VisitBudget budget(
        [&asked] {
            ++asked;
            return std::optional(limit - 1);
        },
        limit);
    EXPECT_EQ(budget.request(999, 1), 999U);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(budget.request(1, 1), 1U);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(budget.request(2999, 1), 2999U);
    EXPECT_EQ(asked, 3);
    EXPECT_FALSE(budget.isExhausted());
}

TEST(VisitBudget, GrantsWhatComesBeforeTheVisitAtWhichTheLimitIsReached)
{
    int asked = 0;
    VisitBudget budget([&asked] { return std::optional(++asked < 3 ? limit - 1 : limit); }, limit);
    EXPECT_EQ(budget.request(1500, 1), 1500U);
    EXPECT_EQ(budget.request(5000, 1), 1499U);
    EXPECT_TRUE(budget.isExhausted());
    EXPECT_EQ(budget.request(1, 1), 0U);
    EXPECT_EQ(asked, 3);
}

TEST(VisitBudget, GoesOnWhenMemoryCannotBeTold)
{
    VisitBudget silent([] { return std::optional<std::uint64_t>(); }, 0);
    EXPECT_EQ(silent.request(5000, 1), 5000U);
    VisitBudget unasked({}, 0);
    EXPECT_EQ(unasked.request(5000, 1), 5000U);
}

TEST(VisitBudget, EndsBeforeTheNamesOutgrowTheirOffsets)
{
    VisitBudget budget({}, limit, 100);
    EXPECT_EQ(budget.request(10, 60), 10U);
    EXPECT_EQ(budget.request(10, 40), 10U);
    EXPECT_FALSE(budget.isExhausted());
    EXPECT_EQ(budget.request(1, 1), 0U);
    EXPECT_TRUE(budget.isExhausted());
}

} // namespace
} // namespace kestavon
