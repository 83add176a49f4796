#include "core/model/record_queries.h"

#include "concurrency/cancelled.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <span>

namespace kestavon {

namespace {

// The sort deals with short keys: 32 bits that tell sizes up to 128 MiB apart and of larger ones at
// least the first 27 bits. The few records that a key does not tell apart are put right afterwards.

constexpr unsigned exactBits = 26;
constexpr std::int64_t exactEnd = std::int64_t{1} << (exactBits + 1);

/// A key that is no smaller for a smaller size: sizes in the manner of a floating-point number,
/// counted down. Every negative size has the last key.
std::uint32_t keyOf(std::int64_t size)
{
    if (size < 0)
        return ~std::uint32_t{0};
    const auto value = static_cast<std::uint64_t>(size);
    const auto shift
        = static_cast<unsigned>(std::bit_width(value | (1U << exactBits))) - exactBits - 1;
    const auto rank = (std::uint64_t{shift} << exactBits) + (value >> shift);
    return ~static_cast<std::uint32_t>(rank + 1);
}

/// A record on its way to its place: the key above, the position below.
using Entry = std::uint64_t;
constexpr unsigned positionBits = 32;

constexpr unsigned digitBits = 11;
constexpr std::size_t digitCount = 3; // which 32 bits make
using DigitCounts = std::array<std::uint32_t, std::size_t{1} << digitBits>;

std::size_t digitOf(std::uint32_t key, std::size_t digit)
{
    return key >> digit * digitBits & ((1U << digitBits) - 1);
}

std::size_t digitOf(Entry entry, std::size_t digit)
{
    return digitOf(static_cast<std::uint32_t>(entry >> positionBits), digit);
}

void throwIfStopped(const std::stop_token& stop)
{
    if (stop.stop_requested())
        throw Cancelled{};
}

/// Puts right what keys do not tell apart: equal keys of large sizes, which come first, and of
/// negative ones, which come last.
void sortEqualKeys(Column<std::uint32_t>& order, std::span<const std::int64_t> sizes)
{
    const auto sortStably = [&](std::size_t first, std::size_t end) {
        std::stable_sort(order.data() + first, order.data() + end,
            [sizes](std::uint32_t a, std::uint32_t b) { return sizes[a] > sizes[b]; });
    };
    std::size_t first = 0;
    while (first < order.size() && sizes[order[first]] >= exactEnd) {
        const auto key = keyOf(sizes[order[first]]);
        auto end = first + 1;
        while (end < order.size() && keyOf(sizes[order[end]]) == key)
            ++end;
        sortStably(first, end);
        first = end;
    }
    first = order.size();
    while (first > 0 && sizes[order[first - 1]] < 0)
        --first;
    sortStably(first, order.size());
}

} // namespace

// A radix sort from the lowest digit up: each pass deals the entries out by one digit and keeps
// their order otherwise, so the whole is stable. The first pass reads the sizes themselves and the
// last one writes positions only.
Column<std::uint32_t> largestFirst(const RecordList& records, const std::stop_token& stop)
{
    const auto sizes = records.sizes();
    const auto size = sizes.size();
    std::array<DigitCounts, digitCount> places{};
    for (const auto value : sizes) {
        const auto key = keyOf(value);
        for (std::size_t digit = 0; digit < digitCount; ++digit)
            ++places[digit][digitOf(key, digit)];
    }
    for (auto& counts : places) // from how many there are to where the first one goes
        std::exclusive_scan(counts.begin(), counts.end(), counts.begin(), std::uint32_t{0});
    throwIfStopped(stop);

    Column<Entry> byLowest(size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto key = keyOf(sizes[i]);
        byLowest[places[0][digitOf(key, 0)]++] = Entry{key} << positionBits | i;
    }
    throwIfStopped(stop);
    Column<Entry> byMiddle(size);
    for (const auto entry : byLowest.span())
        byMiddle[places[1][digitOf(entry, 1)]++] = entry;
    throwIfStopped(stop);
    Column<std::uint32_t> order(size);
    for (const auto entry : byMiddle.span())
        order[places[2][digitOf(entry, 2)]++] = static_cast<std::uint32_t>(entry);
    sortEqualKeys(order, sizes);
    return order;
}

std::vector<std::uint32_t> largestFiles(const RecordList& records, std::size_t limit)
{
    const auto sizes = records.sizes();
    const auto standsBefore = [sizes](std::uint32_t a, std::uint32_t b) {
        return sizes[a] != sizes[b] ? sizes[a] > sizes[b] : a < b;
    };
    // A heap with the last of the best on top. Records come in ascending order, so one of equal
    // size can never displace an earlier one and most fall to a single comparison.
    std::vector<std::uint32_t> best;
    for (std::size_t i = 0; i < sizes.size() && limit > 0; ++i) {
        if (best.size() == limit && sizes[i] <= sizes[best.front()])
            continue;
        if (records.isDirectory(i))
            continue;
        if (best.size() == limit) {
            std::ranges::pop_heap(best, standsBefore);
            best.pop_back();
        }
        best.push_back(static_cast<std::uint32_t>(i));
        std::ranges::push_heap(best, standsBefore);
    }
    std::ranges::sort_heap(best, standsBefore);
    return best;
}

} // namespace kestavon
