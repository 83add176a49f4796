#include "platform/byte_count.h"

#include <array>
#include <string_view>

namespace kestavon {

namespace {

struct Unit {
    std::string_view name;
    int decimals; ///< digits after the point at most; trailing zeros are not shown
};

constexpr std::array<Unit, 6> units{{
    {"KB", 0},
    {"MB", 1},
    {"GB", 2},
    {"TB", 2},
    {"PB", 2},
    {"EB", 2},
}};

constexpr std::uint64_t powerOfTen(int exponent)
{
    std::uint64_t power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

/// `bytes / unitBytes` with `decimals` digits after the point, as a whole number of the last digit;
/// an exact tie goes to the even digit. Digit by digit, so that nothing leaves 64 bits.
std::uint64_t roundedIn(std::uint64_t unitBytes, int decimals, std::uint64_t bytes)
{
    auto digits = bytes / unitBytes;
    auto rest = bytes % unitBytes;
    for (int i = 0; i < decimals; ++i) {
        rest *= 10;
        digits = digits * 10 + rest / unitBytes;
        rest %= unitBytes;
    }
    const auto missing = unitBytes - rest;
    const bool roundsUp = rest > missing || (rest == missing && digits % 2 == 1);
    return digits + (roundsUp ? 1 : 0);
}

/// Below a million, which is all that an amount in its own unit reaches.
std::string grouped(std::uint64_t number)
{
    auto text = std::to_string(number);
    if (text.size() > 3)
        text.insert(text.size() - 3, 1, ',');
    return text;
}

std::string decimalText(std::uint64_t digits, int decimals)
{
    const auto scale = powerOfTen(decimals);
    auto text = grouped(digits / scale);
    if (digits % scale == 0)
        return text;
    auto fraction = std::to_string(scale + digits % scale).substr(1);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    return text + '.' + fraction;
}

std::string byteCountText(std::int64_t bytes, std::uint64_t base)
{
    if (bytes == 0)
        return "Zero KB";
    const std::string sign = bytes < 0 ? "-" : "";
    const auto magnitude = bytes < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(bytes)
                                     : static_cast<std::uint64_t>(bytes);
    if (magnitude < base)
        return sign + grouped(magnitude) + (magnitude == 1 ? " byte" : " bytes");

    std::uint64_t unitBytes = base;
    for (std::size_t i = 0;; ++i, unitBytes *= base) {
        const auto& unit = units[i];
        const auto digits = roundedIn(unitBytes, unit.decimals, magnitude);
        // An amount that would round to a whole next unit is shown in that one.
        const bool fits = digits < base * powerOfTen(unit.decimals);
        if (fits || i + 1 == units.size())
            return sign + decimalText(digits, unit.decimals) + ' ' + std::string(unit.name);
    }
}

} // namespace

std::string fileByteCount(std::int64_t bytes)
{
    return byteCountText(bytes, 1000);
}

std::string memoryByteCount(std::int64_t bytes)
{
    return byteCountText(bytes, 1024);
}

} // namespace kestavon
