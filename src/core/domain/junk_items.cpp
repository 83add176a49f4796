#include "core/domain/junk_items.h"

#include "core/domain/record_list.h"

#include <utility>

namespace kestavon {

JunkItems::JunkItems()
{
    static const auto none = std::make_shared<const Shared>();
    m_shared = none;
}

JunkItems::JunkItems(List items)
{
    std::int64_t bytes = 0;
    for (const auto& item : items)
        bytes = saturatingSum(bytes, item.estimatedBytes);
    m_shared = std::make_shared<const Shared>(Shared{.items = std::move(items), .bytes = bytes});
}

JunkItems::JunkItems(std::initializer_list<CleanupCandidate> items)
    : JunkItems(List(items))
{
}

} // namespace kestavon
