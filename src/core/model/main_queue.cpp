#include "core/model/main_queue.h"

#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace kestavon {

MainQueue& MainQueue::instance()
{
    // Never destroyed: a worker that outlives the event loop may still post.
    static auto* queue = new MainQueue;
    return *queue;
}

MainQueue::MainQueue()
    : m_eventFd(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
    , m_notifier(m_eventFd, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] { drain(); });
}

void MainQueue::post(std::function<void()> function)
{
    {
        const std::lock_guard lock(m_mutex);
        m_functions.push_back(std::move(function));
    }
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_eventFd, &one, sizeof one);
}

void MainQueue::drain()
{
    std::uint64_t ignored = 0;
    [[maybe_unused]] const auto got = ::read(m_eventFd, &ignored, sizeof ignored);
    std::deque<std::function<void()>> functions;
    {
        const std::lock_guard lock(m_mutex);
        functions.swap(m_functions);
    }
    for (auto& function : functions)
        function();
}

} // namespace kestavon
