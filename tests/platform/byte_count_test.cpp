#include "platform/byte_count.h"

#include <limits>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

struct Row {
    std::int64_t bytes;
    const char* text;
};

TEST(FileByteCount, CountsInThousands)
{
    const Row rows[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {2, "2 bytes"},
        {999, "999 bytes"},
        {1000, "1 KB"},
        {1499, "1 KB"},
        {1500, "2 KB"},
        {999'499, "999 KB"},
        {1'000'000, "1 MB"},
        {1'049'999, "1 MB"},
        {1'050'001, "1.1 MB"},
        {1'900'000, "1.9 MB"},
        {1'073'741'824, "1.07 GB"},
        {1'200'000'000, "1.2 GB"},
        {1'234'567'898, "1.23 GB"},
        {12'345'678'987, "12.35 GB"},
        {100'000'000'000, "100 GB"},
        {2'010'000'000'000, "2.01 TB"},
        {7'770'000'000'000'000, "7.77 PB"},
        {largest, "9.22 EB"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fileByteCount(row.bytes), row.text) << row.bytes;
}

TEST(FileByteCount, MovesToTheNextUnitInsteadOfShowingAThousand)
{
    const Row rows[] = {
        {999'500, "1 MB"},
        {999'949, "1 MB"},
        {999'950, "1 MB"},
        {999'949'999, "999.9 MB"},
        {999'950'000, "1 GB"},
        {999'994'999'999, "999.99 GB"},
        {999'995'000'000, "1 TB"},
        {999'994'999'999'999, "999.99 TB"},
        {999'995'000'000'000, "1 PB"},
        {999'994'999'999'999'999, "999.99 PB"},
        {999'995'000'000'000'000, "1 EB"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fileByteCount(row.bytes), row.text) << row.bytes;
}

TEST(FileByteCount, RoundsExactTiesToTheEvenDigit)
{
    const Row rows[] = {
        {2'500, "2 KB"},
        {2'501, "3 KB"},
        {3'500, "4 KB"},
        {1'050'000, "1 MB"},
        {1'150'000, "1.2 MB"},
        {1'250'000, "1.2 MB"},
        {1'005'000'000, "1 GB"},
        {1'015'000'000, "1.02 GB"},
        {1'015'000'000'000'000'000, "1.02 EB"},
        {1'025'000'000'000'000'000, "1.02 EB"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fileByteCount(row.bytes), row.text) << row.bytes;
}

TEST(MemoryByteCount, CountsInUnitsOf1024)
{
    const Row rows[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1000, "1,000 bytes"},
        {1023, "1,023 bytes"},
        {1024, "1 KB"},
        {1536, "2 KB"},
        {2560, "2 KB"},
        {1'023'000, "999 KB"},
        {1'024'000, "1,000 KB"},
        {1'040'000, "1,016 KB"},
        {1'048'063, "1,023 KB"},
        {1'048'064, "1 MB"},
        {33'554'432, "32 MB"},
        {268'435'456, "256 MB"},
        {1'073'689'395, "1,023.9 MB"},
        {1'073'689'396, "1 GB"},
        {1'073'741'824, "1 GB"},
        {1'234'567'898, "1.15 GB"},
        {1'099'506'259'066, "1,023.99 GB"},
        {1'099'506'259'067, "1 TB"},
        {1'125'894'409'284'485, "1,023.99 TB"},
        {1'125'894'409'284'486, "1 PB"},
        {largest, "8 EB"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(memoryByteCount(row.bytes), row.text) << row.bytes;
}

TEST(ByteCounts, PutAnAsciiMinusBeforeNegativeAmounts)
{
    EXPECT_EQ(fileByteCount(-1), "-1 byte");
    EXPECT_EQ(fileByteCount(-1023), "-1 KB");
    EXPECT_EQ(fileByteCount(-1'234'567'898), "-1.23 GB");
    EXPECT_EQ(fileByteCount(smallest), "-9.22 EB");
    EXPECT_EQ(memoryByteCount(-1023), "-1,023 bytes");
    EXPECT_EQ(memoryByteCount(smallest), "-8 EB");
}

} // namespace
} // namespace kestavon
