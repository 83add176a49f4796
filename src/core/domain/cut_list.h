#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kestavon {

/// The positions in `earlier` that are neither in `list`, which was cut from it, nor in `positions`
/// (ascending). Nothing when `list` holds what `earlier` does not. Takes lists with `ordinal(i)`,
/// ascending, and `size()`.
template <class List>
std::optional<std::vector<std::uint32_t>> positionsOutside(
    const List& earlier, const List& list, std::span<const std::uint32_t> positions)
{
    std::vector<std::uint32_t> outside;
    std::size_t kept = 0;
    auto next = positions.begin();
    for (std::uint32_t i = 0; i < earlier.size(); ++i) {
        const bool isKept = kept < list.size() && list.ordinal(kept) == earlier.ordinal(i);
        const bool isNamed = next != positions.end() && *next == i;
        kept += isKept ? 1 : 0;
        next += isNamed ? 1 : 0;
        if (!isKept && !isNamed)
            outside.push_back(i);
    }
    if (kept != list.size())
        return std::nullopt;
    return outside;
}

} // namespace kestavon
