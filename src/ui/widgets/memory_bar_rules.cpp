#include "ui/widgets/memory_bar_rules.h"

#include "ui/widgets/display_text.h"

#include <algorithm>
#include <limits>

namespace kestavon {

namespace {

QString memoryText(std::uint64_t bytes)
{
    constexpr auto most = std::uint64_t{std::numeric_limits<std::int64_t>::max()};
    return byteText(static_cast<std::int64_t>(std::min(bytes, most)));
}

} // namespace

std::array<MemoryShare, 4> memoryShares(const std::optional<MemorySnapshot>& snapshot)
{
    const auto memory = snapshot.value_or(MemorySnapshot{});
    // Summed as floating point: the counters together may exceed 64 bits on a broken report.
    const double total = static_cast<double>(memory.freeBytes)
        + static_cast<double>(memory.activeBytes) + static_cast<double>(memory.inactiveBytes)
        + static_cast<double>(memory.wiredBytes);
    const auto kind = [total](const QString& name, const QString& color, std::uint64_t bytes) {
        return MemoryShare{
            .label = name + u' ' + memoryText(bytes),
            .color = color,
            .share = total > 0 ? static_cast<double>(bytes) / total : 0,
        };
    };
    return {
        kind(u"Wired"_s, u"red"_s, memory.wiredBytes),
        kind(u"Active"_s, u"orange"_s, memory.activeBytes),
        kind(u"Inactive"_s, u"blue"_s, memory.inactiveBytes),
        kind(u"Free"_s, u"green"_s, memory.freeBytes),
    };
}

} // namespace kestavon
