#pragma once

#include "concurrency/cancelled.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::test {

/// What a fake job does while a test scripts it: each run waits for one `finishWith` or `failWith`
/// call, or ends by itself when its token is stopped. `Begun` is what a run was started with.
template <class Begun, class Result> class ScriptedRuns {
public:
    /// The job's thread: waits for the run's ending. Throws Cancelled when it is stopped first.
    Result run(Begun begun, const std::stop_token& stop, bool ignoresStop)
    {
        std::unique_lock lock(m_mutex);
        m_begun.push_back(std::move(begun));
        m_changed.notify_all();
        const auto hasEnding = [this] { return !m_endings.empty(); };
        if (ignoresStop)
            m_changed.wait(lock, hasEnding);
        else if (!m_changed.wait(lock, stop, hasEnding) || stop.stop_requested())
            throw Cancelled{}; // an ending that came by now is for the next run
        auto ending = std::move(m_endings.front());
        m_endings.pop_front();
        lock.unlock();
        return ending();
    }

    /// Lets the current run, or else the next one, return this.
    void finishWith(Result result)
    {
        endWith([result = std::move(result)] { return result; });
    }
    void failWith(const std::string& message)
    {
        endWith([message]() -> Result { throw std::runtime_error(message); });
    }

    /// Blocks until `count` runs have begun, and returns what all so far were started with.
    std::vector<Begun> waitFor(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_begun.size() >= count; });
        return m_begun;
    }

    /// How many runs have begun so far.
    std::size_t begun() const
    {
        const std::lock_guard lock(m_mutex);
        return m_begun.size();
    }

private:
    void endWith(std::function<Result()> ending)
    {
        const std::lock_guard lock(m_mutex);
        m_endings.push_back(std::move(ending));
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<std::function<Result()>> m_endings; // guarded by m_mutex
    std::vector<Begun> m_begun; // guarded by m_mutex
};

} // namespace kestavon::test
