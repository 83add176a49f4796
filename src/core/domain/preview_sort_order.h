#pragma once

#include "core/domain/named_enum.h"

namespace kestavon {

/// The order of the list in which Smart Clean shows a category's items.
enum class PreviewSortOrder { sizeDesc, sizeAsc, nameAsc, dateDesc, dateAsc };

template <> struct NamedCases<PreviewSortOrder> {
    static constexpr std::array<NamedCase<PreviewSortOrder>, 5> table{{
        {PreviewSortOrder::sizeDesc, "Largest First"},
        {PreviewSortOrder::sizeAsc, "Smallest First"},
        {PreviewSortOrder::nameAsc, "Name A–Z"},
        {PreviewSortOrder::dateDesc, "Newest First"},
        {PreviewSortOrder::dateAsc, "Oldest First"},
    }};
};

} // namespace kestavon
