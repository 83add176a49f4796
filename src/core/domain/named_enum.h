#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace kestavon {

/// One case of an enumeration whose raw value is the text the user sees.
template <class Enum> struct NamedCase {
    Enum value;
    std::string_view raw;
};

/// Every case of `Enum` with its raw value, in declared order. An enumeration that is backed by
/// texts specialises this with a `static constexpr std::array`.
template <class Enum> struct NamedCases;

/// All cases in declared order.
template <class Enum> constexpr const auto& allCases()
{
    return NamedCases<Enum>::table;
}

/// The case's raw value.
template <class Enum> constexpr std::string_view rawValue(Enum value)
{
    return NamedCases<Enum>::table[static_cast<std::size_t>(value)].raw;
}

/// The case with exactly this raw value (letter case and spaces count); nothing for any other text.
template <class Enum> constexpr std::optional<Enum> fromRawValue(std::string_view raw)
{
    for (const auto& entry : NamedCases<Enum>::table) {
        if (entry.raw == raw)
            return entry.value;
    }
    return std::nullopt;
}

} // namespace kestavon
