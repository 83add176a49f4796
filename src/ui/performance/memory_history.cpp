#include "ui/performance/memory_history.h"

#include <algorithm>

namespace kestavon {

namespace {

/// Of all memory; changes smaller than this do not fill a chart.
constexpr double leastRange = 0.02;

double shareOf(const MemoryHistory::Point& point, MemoryHistory::Figure figure)
{
    using enum MemoryHistory::Figure;
    const auto& tops = point.tops;
    switch (figure) {
    case wired: return tops[0];
    case active: return tops[1] - tops[0];
    case inactive: return tops[2] - tops[1];
    case free: break;
    }
    return 1 - tops[2];
}

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

std::vector<MemoryHistory::Height> MemoryHistory::heightsOf(
    const std::vector<Point>& points, Figure figure)
{
    if (points.empty())
        return {};
    double least = 1;
    double most = 0;
    for (const auto& point : points) {
        least = std::min(least, shareOf(point, figure));
        most = std::max(most, shareOf(point, figure));
    }
    const auto range = std::max(most - least, leastRange);
    const auto bottom = (least + most - range) / 2;
    std::vector<Height> heights;
    for (const auto& point : points)
        heights.push_back({.place = point.place,
            .height = (shareOf(point, figure) - bottom) / range,
            .beginsAnew = point.beginsAnew});
    return heights;
}

} // namespace kestavon
