#include "storage/visit_budget.h"

#include <utility>

namespace kestavon {

namespace {

constexpr std::uint64_t visitsBetweenProbes = 1000;

} // namespace

VisitBudget::VisitBudget(
    MemoryProbe probe, std::uint64_t memoryLimitBytes, std::uint64_t nameLimitBytes)
    : m_probe(std::move(probe))
    , m_memoryLimitBytes(memoryLimitBytes)
    , m_nameLimitBytes(nameLimitBytes)
{
}

std::uint64_t VisitBudget::request(std::uint64_t entries, std::uint64_t nameBytes)
{
    const std::lock_guard lock(m_mutex);
    if (m_exhausted)
        return 0;
    if (nameBytes > m_nameLimitBytes - m_nameBytes) {
        m_exhausted = true;
        return 0;
    }
    m_nameBytes += nameBytes;

    const auto first = m_visited;
    m_visited += entries;
    auto probed = (first / visitsBetweenProbes + 1) * visitsBetweenProbes;
    for (; probed <= m_visited; probed += visitsBetweenProbes) {
        const auto resident = m_probe ? m_probe() : std::nullopt;
        if (resident && *resident >= m_memoryLimitBytes) {
            m_exhausted = true;
            return probed - 1 - first;
        }
    }
    return entries;
}

void VisitBudget::exhaust()
{
    const std::lock_guard lock(m_mutex);
    m_exhausted = true;
}

bool VisitBudget::isExhausted() const
{
    const std::lock_guard lock(m_mutex);
    return m_exhausted;
}

} // namespace kestavon
