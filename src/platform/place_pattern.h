#pragma once

#include <string>
#include <string_view>

namespace kestavon {

/// Whether `name` is as the pattern says: "*" stands for any text, none too, and "#" for a digit.
/// Names are bytes. Any thread.
bool namePatternMatches(std::string_view pattern, std::string_view name);

/// A place by its path, of which the part behind a known folder may hold wildcards.
struct PlacePattern {
    std::string folder; ///< absolute; taken as it is written
    /// The path from there, component by component as in `namePatternMatches`; empty: the folder
    /// itself.
    std::string below = {};

    friend bool operator==(const PlacePattern&, const PlacePattern&) = default;
};

/// Whether the absolute `path` is such a place or lies below one.
bool isInPlace(std::string_view path, const PlacePattern& place);

/// The same, or such a place can lie below `path`. Any thread.
bool touchesPlace(std::string_view path, const PlacePattern& place);

/// The pattern's last component.
std::string_view lastComponent(const PlacePattern& place);

} // namespace kestavon
