#include "ui/smartclean/preview_rules.h"

#include "core/domain/removal_guard.h"
#include "ui/widgets/display_text.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <unordered_map>

namespace kestavon {

namespace {

using Positions = std::vector<std::uint32_t>;

/// Sorts by a key that is taken from each item once: what is compared lies close together then.
template <class Compare, class KeyOf>
Positions sortedBy(
    const JunkItems& items, Compare isBefore, KeyOf keyOf, const std::stop_token& stop)
{
    using Key = decltype(keyOf(items[0]));
    std::vector<std::pair<Key, std::uint32_t>> keyed;
    keyed.reserve(items.size());
    for (std::uint32_t i = 0; i < items.size(); ++i)
        keyed.emplace_back(keyOf(items[i]), i);
    if (!stop.stop_requested())
        std::ranges::stable_sort(keyed, isBefore, [](const auto& entry) { return entry.first; });
    Positions positions;
    positions.reserve(keyed.size());
    for (const auto& entry : keyed)
        positions.push_back(entry.second);
    return positions;
}

std::int64_t bytesOf(const CleanupCandidate& item)
{
    return item.estimatedBytes;
}

std::string_view nameOf(const CleanupCandidate& item)
{
    return lastComponent(item.record.path);
}

Timestamp dateOf(const CleanupCandidate& item)
{
    return item.record.modifiedAt.value_or(Timestamp::min());
}

} // namespace

Positions previewOrder(const JunkItems& items, PreviewSortOrder order, const std::stop_token& stop)
{
    switch (order) {
    case PreviewSortOrder::sizeDesc: return sortedBy(items, std::ranges::greater(), bytesOf, stop);
    case PreviewSortOrder::sizeAsc: return sortedBy(items, std::ranges::less(), bytesOf, stop);
    case PreviewSortOrder::nameAsc: return sortedBy(items, std::ranges::less(), nameOf, stop);
    case PreviewSortOrder::dateDesc: return sortedBy(items, std::ranges::greater(), dateOf, stop);
    case PreviewSortOrder::dateAsc: return sortedBy(items, std::ranges::less(), dateOf, stop);
    }
    return {};
}

std::vector<bool> shareTheirName(const JunkItems& items)
{
    std::unordered_map<std::string_view, std::uint32_t> count;
    count.reserve(items.size());
    for (const auto& item : items)
        ++count[nameOf(item)];
    std::vector<bool> shared;
    shared.reserve(items.size());
    for (const auto& item : items)
        shared.push_back(count[nameOf(item)] > 1);
    return shared;
}

QString previewSelectionText(std::size_t selected, std::size_t items)
{
    return u"%1 of %2"_s.arg(QString::number(selected), QString::number(items));
}

QString selectedText(std::size_t selected)
{
    return u"%1 selected"_s.arg(selected);
}

QString partialMoveText(std::size_t unmoved)
{
    return u"%1 file(s) could not be moved — they may be protected or no longer exist. Try 'Delete "
           u"Forever' to remove them directly."_s.arg(unmoved);
}

} // namespace kestavon
