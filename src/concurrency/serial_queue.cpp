#include "concurrency/serial_queue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// How much less urgent than the window the jobs are; see sched(7).
constexpr int niceness = 5;

/// For this thread, and for those that it starts.
void letOthersGoFirst()
{
    const auto thread = static_cast<id_t>(::gettid()); // on Linux each thread has its own
    ::setpriority(PRIO_PROCESS, thread, ::getpriority(PRIO_PROCESS, thread) + niceness);
}

} // namespace

/// Shared by the queue and its thread; whichever goes last frees it.
struct SerialQueue::State {
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> jobs; // guarded by mutex
    bool closed = false; // guarded by mutex

    void run()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [this] { return closed || !jobs.empty(); });
            if (closed)
                return;
            auto job = std::move(jobs.front());
            jobs.pop_front();
            lock.unlock();
            job();
            job = nullptr; // What the job owned goes before the next one starts.
            lock.lock();
        }
    }
};

SerialQueue::SerialQueue(Urgency urgency)
    : m_state(std::make_shared<State>())
{
    std::thread([state = m_state, urgency] {
        if (urgency == Urgency::background)
            letOthersGoFirst();
        state->run();
    }).detach();
}

SerialQueue::~SerialQueue()
{
    std::deque<std::function<void()>> dropped; // freed without the lock
    const std::lock_guard lock(m_state->mutex);
    m_state->closed = true;
    dropped.swap(m_state->jobs);
    m_state->wake.notify_all();
}

void SerialQueue::post(std::function<void()> job)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->jobs.push_back(std::move(job));
    m_state->wake.notify_one();
}

} // namespace kestavon
