#pragma once

#include "platform/property_list.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kestavon {

/// Counts what a list gives against its limits, and remembers the first thing that was wrong.
class PropertyBudget {
public:
    explicit PropertyBudget(const PropertyListLimits& limits)
        : m_limits(limits)
    {
    }

    /// Whether one more value, inside `depth` arrays and dictionaries, is within the limits.
    bool takeValue(std::size_t depth)
    {
        if (depth > m_limits.depth || m_values == m_limits.values)
            return fail(PropertyListProblem::tooLarge);
        ++m_values;
        return true;
    }

    /// Whether as many more bytes of text or data are within the limits.
    bool takeBytes(std::size_t count)
    {
        if (count > m_limits.textBytes - m_bytes)
            return fail(PropertyListProblem::tooLarge);
        m_bytes += count;
        return true;
    }

    /// The same for a text. One with a NUL would be cut short by whoever hands it to the system.
    bool takeText(std::string_view text)
    {
        if (text.find('\0') != std::string_view::npos)
            return fail(PropertyListProblem::malformed);
        return takeBytes(text.size());
    }

    /// Always false.
    bool fail(PropertyListProblem problem)
    {
        if (!m_problem)
            m_problem = problem;
        return false;
    }

    PropertyListProblem problem() const
    {
        return m_problem.value_or(PropertyListProblem::malformed);
    }
    bool hasFailed() const { return m_problem.has_value(); }

private:
    const PropertyListLimits m_limits;
    std::size_t m_values = 0;
    std::size_t m_bytes = 0;
    std::optional<PropertyListProblem> m_problem;
};

} // namespace kestavon
