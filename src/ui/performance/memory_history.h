#pragma once

#include "core/domain/system_state.h"

#include <array>
#include <chrono>
#include <deque>
#include <optional>
#include <vector>

namespace kestavon {

/// What memory was used for during the last minute. Main thread.
class MemoryHistory {
public:
    using Moment = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::seconds span{60};

    /// A snapshot taken at `now`, which is no earlier than those before; nothing while there was
    /// none.
    void add(const std::optional<MemorySnapshot>& memory, Moment now);

    /// What the chart draws at one moment.
    struct Point {
        double place = 0; ///< 1 for now, 0 for a minute ago
        /// How high wired memory reaches, active above it, and inactive on top; 0 to 1.
        std::array<double, 3> tops{};
        /// No figures lead here from the point before.
        bool beginsAnew = false;
    };
    /// The points of the minute that ends at `now`, the oldest first. One that is a little older
    /// may lead it, at a place below 0.
    std::vector<Point> points(Moment now) const;

    /// One of the four that memory is made of.
    enum class Figure { wired, active, inactive, free };
    /// What a small chart of one figure draws: heights from 0 to 1, where 0 and 1 are the least and
    /// the most of the minute. What changed by little looks flat, in the middle.
    struct Height {
        double place = 0; ///< as a point's
        double height = 0;
        bool beginsAnew = false;
    };
    static std::vector<Height> heightsOf(const std::vector<Point>& points, Figure figure);

private:
    struct Sample {
        Moment taken;
        std::optional<std::array<double, 3>> tops;
    };
    std::deque<Sample> m_samples;
};

} // namespace kestavon
