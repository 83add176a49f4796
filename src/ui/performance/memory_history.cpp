#include "ui/performance/memory_history.h"

namespace kestavon {

namespace {

/// Between two visits to the screen nobody looked.
constexpr std::chrono::seconds longestGap{5};

std::optional<std::array<double, 3>> topsOf(const std::optional<MemorySnapshot>& memory)
{
    if (!memory)
        return std::nullopt;
    const auto wired = static_cast<double>(memory->wiredBytes);
    const auto active = static_cast<double>(memory->activeBytes);
    const auto inactive = static_cast<double>(memory->inactiveBytes);
    const auto total = wired + active + inactive + static_cast<double>(memory->freeBytes);
    if (total <= 0)
        return std::nullopt;
    return std::array{wired / total, (wired + active) / total, (wired + active + inactive) / total};
}

} // namespace

void MemoryHistory::add(const std::optional<MemorySnapshot>& memory, Moment now)
{
    m_samples.push_back({.taken = now, .tops = topsOf(memory)});
    // The last one before the minute stays: the line begins there, outside of the chart.
    while (m_samples.size() > 1 && m_samples[1].taken <= now - span)
        m_samples.pop_front();
}

std::vector<MemoryHistory::Point> MemoryHistory::points(Moment now) const
{
    using Seconds = std::chrono::duration<double>;
    std::vector<Point> points;
    const Sample* previous = nullptr;
    for (const auto& sample : m_samples) {
        if (sample.tops) {
            points.push_back({.place = 1 - Seconds(now - sample.taken) / Seconds(span),
                .tops = *sample.tops,
                .beginsAnew
                = !previous || !previous->tops || sample.taken - previous->taken > longestGap});
        }
        previous = &sample;
    }
    return points;
}

} // namespace kestavon
