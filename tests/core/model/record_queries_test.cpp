#include "concurrency/cancelled.h"
#include "core/model/record_queries.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestavon {
namespace {

using testing::ElementsAreArray;

std::shared_ptr<const RecordList> listOf(const std::vector<std::int64_t>& sizes)
{
    std::vector<FileRecord> records(sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        records[i].path = "/r/" + std::to_string(i);
        records[i].size = sizes[i];
    }
    return RecordList::fromRecords("/r", records);
}

std::vector<std::uint32_t> stableOrder(const RecordList& records)
{
    std::vector<std::uint32_t> order(records.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::stable_sort(
        order, [&](auto a, auto b) { return records.fileSize(a) > records.fileSize(b); });
    return order;
}

TEST(LargestFirst, OrdersAsAStableSortDoes)
{
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    constexpr auto highest = std::numeric_limits<std::int64_t>::max();
    std::mt19937_64 random(3);
    // Few bits give many ties.
    for (const unsigned bits : {0U, 1U, 3U, 10U, 11U, 12U, 22U, 23U, 33U, 34U, 40U, 63U, 64U}) {
        std::vector<std::int64_t> sizes(3'000);
        for (auto& size : sizes)
            size = bits == 0 ? 5 : static_cast<std::int64_t>(random() >> (64 - bits));
        const auto records = listOf(sizes);
        EXPECT_THAT(largestFirst(*records).span(), ElementsAreArray(stableOrder(*records)))
            << bits << " bits";
    }
    // Large sizes next to each other, at and around the powers of two.
    std::vector<std::int64_t> close;
    for (unsigned power = 24; power < 63; ++power) {
        for (int copy = 0; copy < 60; ++copy)
            close.push_back((std::int64_t{1} << power) + static_cast<int>(random() % 7) - 3);
    }
    std::ranges::shuffle(close, random);
    for (const auto& sizes : std::vector<std::vector<std::int64_t>>{
             close, {}, {7}, {0, 0, 0}, {lowest, highest, 0, -1, highest, lowest}, {-5, -3, -5}}) {
        const auto records = listOf(sizes);
        EXPECT_THAT(largestFirst(*records).span(), ElementsAreArray(stableOrder(*records)));
    }
}

TEST(LargestFirst, StopsWhenTold)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(largestFirst(*listOf({1, 2, 3}), stop.get_token()), Cancelled);
}

TEST(LargestFiles, AreTheFirstOfTheStableOrderWithoutFolders)
{
    std::mt19937_64 random(5);
    for (const std::size_t count : {0U, 40U, 100U, 101U, 5'000U}) {
        std::vector<FileRecord> records(count);
        for (std::size_t i = 0; i < count; ++i) {
            records[i].path = "/r/" + std::to_string(i);
            records[i].isDirectory = random() % 3 == 0;
            // Folders are the largest records: they must neither appear nor take a place.
            records[i].size
                = static_cast<std::int64_t>(random() % 50) + (records[i].isDirectory ? 1'000 : 0);
        }
        const auto list = RecordList::fromRecords("/r", records);
        auto expected = stableOrder(*list);
        std::erase_if(expected, [&](auto i) { return list->isDirectory(i); });
        if (expected.size() > 100)
            expected.resize(100);
        EXPECT_EQ(largestFiles(*list, 100), expected) << count << " records";
    }
    EXPECT_TRUE(largestFiles(*listOf({3, 4}), 0).empty());
}

} // namespace
} // namespace kestavon
