#pragma once

#include "core/domain/junk_items.h"
#include "core/domain/preview_sort_order.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <vector>

namespace kestavon {

/// The positions of `items` in this order; equals stay as they are. A date that is not known is
/// older than any other, and names go by their bytes: capitals come before small letters. Any
/// thread; when `stop` is requested meanwhile the result means nothing.
std::vector<std::uint32_t> previewOrder(
    const JunkItems& items, PreviewSortOrder order, const std::stop_token& stop = {});

/// For each item, whether another one has the same name, so that only the folder tells them apart.
std::vector<bool> shareTheirName(const JunkItems& items);

/// "4 of 128"
QString previewSelectionText(std::size_t selected, std::size_t items);
/// "4 selected"
QString selectedText(std::size_t selected);
/// Why the sheet stays open after a move to the Safe Area left `unmoved` items where they were.
QString partialMoveText(std::size_t unmoved);

} // namespace kestavon
