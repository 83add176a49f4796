#include "core/model/record_queries.h"

#include "concurrency/cancelled.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>

namespace kestavon {

namespace {

/// A size that is to be sorted upwards: how far it is below the largest one. Unsigned arithmetic,
/// so that it is right for any two 64-bit numbers.
using Key = std::uint64_t;

constexpr unsigned maxDigitBits = 11;
constexpr std::size_t maxDigits = 6; // 64 bits in digits of 11
using DigitCounts = std::array<std::uint32_t, std::size_t{1} << maxDigitBits>;

/// The keys' common split into digits, lowest first.
struct Digits {
    std::size_t count = 0;
    unsigned bits = 0;

    explicit Digits(Key largestKey)
    {
        const auto keyBits = static_cast<unsigned>(std::bit_width(largestKey));
        count = (keyBits + maxDigitBits - 1) / maxDigitBits;
        if (count > 0)
            bits = (keyBits + static_cast<unsigned>(count) - 1) / static_cast<unsigned>(count);
    }

    std::size_t of(Key key, std::size_t digit) const
    {
        return key >> digit * bits & ((Key{1} << bits) - 1);
    }
};

/// Turns how often each digit value occurs into where its first entry goes.
void makeOffsets(DigitCounts& counts)
{
    std::exclusive_scan(counts.begin(), counts.end(), counts.begin(), std::uint32_t{0});
}

void throwIfStopped(const std::stop_token& stop)
{
    if (stop.stop_requested())
        throw Cancelled{};
}

struct Entries {
    Column<Key> keys;
    Column<std::uint32_t> positions;

    explicit Entries(std::size_t size)
        : keys(size)
        , positions(size)
    {
    }
};

} // namespace

// A radix sort from the lowest digit up: each pass deals the entries out by one digit and keeps
// their order otherwise, so the whole is stable. The first pass reads the sizes themselves and the
// last one writes positions only.
Column<std::uint32_t> largestFirst(const RecordList& records, const std::stop_token& stop)
{
    const auto sizes = records.sizes();
    const auto size = sizes.size();
    Column<std::uint32_t> order(size);
    if (size == 0)
        return order;
    const auto [smallest, largest] = std::ranges::minmax(sizes);
    const auto keyOf = [top = static_cast<Key>(largest)](
                           std::int64_t value) { return top - static_cast<Key>(value); };
    const Digits digits(keyOf(smallest));
    if (digits.count == 0) {
        std::iota(order.data(), order.data() + size, 0U);
        return order;
    }

    std::array<DigitCounts, maxDigits> offsets{};
    for (const auto value : sizes) {
        for (std::size_t digit = 0; digit < digits.count; ++digit)
            ++offsets[digit][digits.of(keyOf(value), digit)];
    }
    for (std::size_t digit = 0; digit < digits.count; ++digit)
        makeOffsets(offsets[digit]);
    throwIfStopped(stop);

    const auto last = digits.count - 1;
    if (last == 0) {
        for (std::size_t i = 0; i < size; ++i)
            order[offsets[0][digits.of(keyOf(sizes[i]), 0)]++] = static_cast<std::uint32_t>(i);
        return order;
    }
    Entries from(size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto key = keyOf(sizes[i]);
        const auto to = offsets[0][digits.of(key, 0)]++;
        from.keys[to] = key;
        from.positions[to] = static_cast<std::uint32_t>(i);
    }
    Entries into(last > 1 ? size : 0);
    for (std::size_t digit = 1; digit < last; ++digit) {
        throwIfStopped(stop);
        for (std::size_t i = 0; i < size; ++i) {
            const auto to = offsets[digit][digits.of(from.keys[i], digit)]++;
            into.keys[to] = from.keys[i];
            into.positions[to] = from.positions[i];
        }
        std::swap(from, into);
    }
    throwIfStopped(stop);
    for (std::size_t i = 0; i < size; ++i)
        order[offsets[last][digits.of(from.keys[i], last)]++] = from.positions[i];
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
