#include "platform/propertylist/xml_scalars.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <system_error>

namespace kestavon {

namespace {

using MaybeValue = std::optional<PropertyValue>;

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

template <class Number, class... Base>
std::errc readNumber(std::string_view text, Number& number, Base... base)
{
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number, base...);
    return error == std::errc() && rest != end ? std::errc::invalid_argument : error;
}

MaybeValue integerOf(std::string_view text)
{
    using Limits = std::numeric_limits<std::int64_t>;
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal)
        text.remove_prefix(2);
    std::uint64_t magnitude = 0;
    const auto error = readNumber(text, magnitude, isHexadecimal ? 16 : 10);
    const bool isTooLarge = error == std::errc::result_out_of_range
        || magnitude > static_cast<std::uint64_t>(Limits::max());
    if (isTooLarge)
        return PropertyValue{isNegative ? Limits::min() : Limits::max()};
    if (error != std::errc())
        return std::nullopt;
    const auto value = static_cast<std::int64_t>(magnitude);
    return PropertyValue{isNegative ? -value : value};
}

MaybeValue realOf(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0;
    const auto error = readNumber(text, value);
    if (error == std::errc::invalid_argument)
        return std::nullopt;
    if (error == std::errc::result_out_of_range) // the number is as large, or as small, as can be
        return PropertyValue{
            text.find("e-") != text.npos ? 0.0 : std::numeric_limits<double>::max()};
    return PropertyValue{value};
}

/// "2026-11-16T14:05:00Z", and nothing else.
MaybeValue dateOf(std::string_view text)
{
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:ddZ";
    const auto fits
        = [](char c, char wanted) { return wanted == 'd' ? c >= '0' && c <= '9' : c == wanted; };
    if (!std::ranges::equal(text, form, fits))
        return std::nullopt;
    const auto number = [text](std::size_t at, std::size_t length) {
        int value = 0;
        readNumber(text.substr(at, length), value);
        return value;
    };
    namespace chrono = std::chrono;
    const auto day = chrono::year(number(0, 4)) / number(5, 2) / number(8, 2);
    if (!day.ok())
        return std::nullopt;
    // Others are further from 1970 than a moment can tell; year 4001 is how lists say "never".
    constexpr chrono::year first(1678);
    constexpr chrono::year last(2261);
    if (day.year() < first)
        return PropertyValue{Timestamp::min()};
    if (day.year() > last)
        return PropertyValue{Timestamp::max()};
    return PropertyValue{Timestamp(chrono::sys_days(day)) + chrono::hours(number(11, 2))
        + chrono::minutes(number(14, 2)) + chrono::seconds(number(17, 2))};
}

int base64Digit(char c)
{
    constexpr std::string_view digits
        = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const auto position = digits.find(c);
    return position == digits.npos ? -1 : static_cast<int>(position);
}

MaybeValue dataOf(std::string_view text)
{
    PropertyValue::Data data;
    unsigned bits = 0;
    int count = 0;
    for (const char c : text) {
        if (isSpace(c) || c == '=')
            continue;
        const auto digit = base64Digit(c);
        if (digit < 0)
            return std::nullopt;
        bits = bits << 6U | static_cast<unsigned>(digit);
        count += 6;
        if (count >= 8) {
            count -= 8;
            data.bytes += static_cast<char>(bits >> static_cast<unsigned>(count) & 0xFFU);
        }
    }
    return PropertyValue{std::move(data)};
}

struct Scalar {
    std::string_view element;
    MaybeValue (*valueOf)(std::string_view text);
};

constexpr std::array<Scalar, 7> scalars{{
    {"string",
        [](std::string_view text) -> MaybeValue { return PropertyValue{std::string(text)}; }},
    {"integer", [](std::string_view text) { return integerOf(trimmed(text)); }},
    {"real", [](std::string_view text) { return realOf(trimmed(text)); }},
    {"date", [](std::string_view text) { return dateOf(trimmed(text)); }},
    {"data", dataOf},
    {"true", [](std::string_view) -> MaybeValue { return PropertyValue{true}; }},
    {"false", [](std::string_view) -> MaybeValue { return PropertyValue{false}; }},
}};

} // namespace

std::optional<PropertyValue> xmlScalar(std::string_view element, std::string_view text)
{
    const auto* const scalar = std::ranges::find(scalars, element, &Scalar::element);
    return scalar->valueOf(text);
}

bool isXmlScalar(std::string_view element)
{
    return std::ranges::find(scalars, element, &Scalar::element) != scalars.end();
}

} // namespace kestavon
