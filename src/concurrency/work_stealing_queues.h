#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace kestavon {

/// Tasks shared by a fixed number of workers, numbered from 0. Each worker has a queue of its own
/// and takes its newest task; when it has none it takes the oldest of another worker, which in a
/// tree is the largest piece left. A worker that finds nothing sleeps.
///
/// The work is over when every task was taken and reported done, or when the queues were closed.
template <class Task> class WorkStealingQueues {
public:
    explicit WorkStealingQueues(unsigned workers)
        : m_queues(workers)
    {
    }

    /// Adds tasks that `worker` is about to go on with: it takes the last of them next.
    void add(unsigned worker, std::span<Task> tasks)
    {
        push(worker, tasks);
        if (tasks.size() > 1) // A single one is taken by its own worker at once.
            wakeOne();
    }

    /// Adds a task for any other worker, while `worker` is busy.
    void offer(unsigned worker, Task task)
    {
        push(worker, {&task, 1});
        wakeOne();
    }

    /// The next task for `worker`, which waits for it; nothing when the work is over.
    std::optional<Task> take(unsigned worker)
    {
        for (;;) {
            if (m_closed)
                return std::nullopt;
            if (auto task = tryTake(worker))
                return task;
            std::unique_lock lock(m_sleepMutex);
            // Whoever adds a task after this second look sees the sleeper and wakes it.
            ++m_sleepers;
            auto task = tryTake(worker);
            if (!task && !isOver())
                m_wake.wait(lock);
            --m_sleepers;
            if (task)
                return task;
            if (isOver())
                return std::nullopt;
        }
    }

    /// Reports a taken task as done, after the tasks that came of it were added.
    void done()
    {
        if (--m_unfinished == 0)
            wakeAll();
    }

    /// Ends the work: every `take` returns nothing from now on.
    void close()
    {
        m_closed = true;
        wakeAll();
    }

    bool isClosed() const { return m_closed; }

private:
    struct alignas(64) Queue {
        std::mutex mutex;
        std::deque<Task> tasks; // guarded by mutex
    };

    bool isOver() const { return m_closed || m_unfinished == 0; }

    void push(unsigned worker, std::span<Task> tasks)
    {
        m_unfinished += tasks.size();
        auto& queue = m_queues[worker];
        const std::lock_guard lock(queue.mutex);
        for (auto& task : tasks)
            queue.tasks.push_back(std::move(task));
    }

    std::optional<Task> tryTake(unsigned worker)
    {
        {
            auto& own = m_queues[worker];
            const std::lock_guard lock(own.mutex);
            if (!own.tasks.empty()) {
                std::optional<Task> task(std::move(own.tasks.back()));
                own.tasks.pop_back();
                return task;
            }
        }
        for (std::size_t i = 1; i < m_queues.size(); ++i) {
            auto& other = m_queues[(worker + i) % m_queues.size()];
            const std::lock_guard lock(other.mutex);
            if (!other.tasks.empty()) {
                std::optional<Task> task(std::move(other.tasks.front()));
                other.tasks.pop_front();
                return task;
            }
        }
        return std::nullopt;
    }

    void wakeOne()
    {
        if (m_sleepers == 0)
            return;
        const std::lock_guard lock(m_sleepMutex);
        m_wake.notify_one();
    }

    void wakeAll()
    {
        const std::lock_guard lock(m_sleepMutex);
        m_wake.notify_all();
    }

    std::vector<Queue> m_queues;
    std::atomic<std::size_t> m_unfinished = 0;
    std::atomic<bool> m_closed = false;
    std::atomic<unsigned> m_sleepers = 0;
    std::mutex m_sleepMutex;
    std::condition_variable m_wake;
};

} // namespace kestavon
