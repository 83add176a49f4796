#include "concurrency/serial_queue.h"

#include "concurrency/giving_way.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// How much less urgent than the window the jobs are; see sched(7).
constexpr int nicenessOf(SerialQueue::Urgency urgency)
{
    switch (urgency) {
    case SerialQueue::Urgency::background: return 5;
    case SerialQueue::Urgency::utility: return 10;
    case SerialQueue::Urgency::asTheCaller: break;
    }
    return 0;
}

std::atomic<bool> givesWay{true};

/// For this thread, and for those that it starts.
void letOthersGoFirst(int niceness)
{
    if (!givesWay)
        return;
    const auto thread = static_cast<id_t>(::gettid()); // on Linux each thread has its own
    ::setpriority(PRIO_PROCESS, thread, ::getpriority(PRIO_PROCESS, thread) + niceness);
}

} // namespace

void giveWayToNobody()
{
    givesWay = false;
}

/// Shared by the queue and its thread; whichever goes last frees it.
struct SerialQueue::State {
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable ended;
    std::deque<std::function<void()>> jobs; // guarded by mutex
    bool closed = false; // guarded by mutex
    bool running = false; // guarded by mutex

    void run()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [this] { return closed || !jobs.empty(); });
            if (closed)
                return;
            auto job = std::move(jobs.front());
            jobs.pop_front();
            running = true;
            lock.unlock();
            job();
            job = nullptr; // What the job owned goes before the next one starts.
            lock.lock();
            running = false;
            ended.notify_all();
        }
    }
};

SerialQueue::SerialQueue(Urgency urgency)
    : m_state(std::make_shared<State>())
{
    std::thread([state = m_state, urgency] {
        if (const int niceness = nicenessOf(urgency); niceness > 0)
            letOthersGoFirst(niceness);
        state->run();
    }).detach();
}

SerialQueue::~SerialQueue()
{
    close({});
}

bool SerialQueue::close(std::chrono::steady_clock::time_point deadline)
{
    std::deque<std::function<void()>> dropped; // freed without the lock
    std::unique_lock lock(m_state->mutex);
    m_state->closed = true;
    dropped.swap(m_state->jobs);
    m_state->wake.notify_all();
    const auto isIdle = [this] { return !m_state->running; };
    return isIdle() || m_state->ended.wait_until(lock, deadline, isIdle);
}

void SerialQueue::post(std::function<void()> job)
{
    const std::lock_guard lock(m_state->mutex);
    if (m_state->closed)
        return;
    m_state->jobs.push_back(std::move(job));
    m_state->wake.notify_one();
}

} // namespace kestavon
