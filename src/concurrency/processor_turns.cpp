#include "concurrency/processor_turns.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace kestavon {

ProcessorTurns::ProcessorTurns(std::stop_token stop)
    : m_stop(std::move(stop))
    , m_free(std::max(1, static_cast<int>(std::thread::hardware_concurrency())))
{
}

void ProcessorTurns::take()
{
    std::unique_lock lock(m_mutex);
    m_given.wait(lock, m_stop, [this] { return m_free > 0; });
    --m_free;
}

void ProcessorTurns::giveBack()
{
    const std::lock_guard lock(m_mutex);
    ++m_free;
    m_given.notify_one();
}

} // namespace kestavon
