#include "core/domain/junk_items.h"

#include <limits>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

CleanupCandidate item(std::int64_t bytes)
{
    return {.id = Uuid::random(), .record = {}, .reason = {}, .estimatedBytes = bytes};
}

TEST(JunkItems, SumUpToTheLargestNumber)
{
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(JunkItems().bytes(), 0);
    EXPECT_EQ(JunkItems({item(3), item(4)}).bytes(), 7);
    EXPECT_EQ(JunkItems({item(most), item(5), item(most)}).bytes(), most);
}

TEST(JunkItems, AreSharedByTheirCopies)
{
    const JunkItems items{item(3), item(4)};
    const auto copy = items;
    EXPECT_TRUE(copy.isCopyOf(items));
    EXPECT_EQ(&copy[0], &items[0]);
    const JunkItems equal(std::vector(items.begin(), items.end()));
    EXPECT_EQ(equal, items);
    EXPECT_FALSE(equal.isCopyOf(items));
}

} // namespace
} // namespace kestavon
