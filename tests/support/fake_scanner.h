#pragma once

#include "concurrency/cancelled.h"
#include "storage/file_scanning.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::test {

/// A scanner whose scans end when, and as, the test says: each waits for one `finish…` call, or
/// ends by itself when its token is stopped.
class FakeScanner final : public FileScanning {
public:
    ScanOutcome scan(const std::string& root, ScanProgressCounter& counter,
        const LiveCountSink& postLiveCount, std::stop_token stop) override
    {
        std::unique_lock lock(m_mutex);
        m_roots.push_back(root);
        m_post = postLiveCount;
        m_changed.notify_all();
        const auto hasEnding = [this] { return !m_endings.empty(); };
        if (ignoresStop)
            m_changed.wait(lock, hasEnding);
        else if (!m_changed.wait(lock, stop, hasEnding))
            throw Cancelled{};
        auto ending = std::move(m_endings.front());
        m_endings.pop_front();
        lock.unlock();
        auto outcome = ending();
        counter.add(static_cast<std::int64_t>(outcome.records->size()));
        return outcome;
    }

    /// Lets the running scan, or else the next one, return this.
    void finishWith(ScanOutcome outcome)
    {
        endWith([outcome = std::move(outcome)] { return outcome; });
    }
    void finishWith(std::string root, const std::vector<FileRecord>& records)
    {
        finishWith({.records = RecordList::fromRecords(std::move(root), records)});
    }
    void failWith(const std::string& message)
    {
        endWith([message]() -> ScanOutcome { throw std::runtime_error(message); });
    }

    /// Reports a live count as the scan's own threads would.
    void reportLiveCount(std::int64_t count)
    {
        const std::lock_guard lock(m_mutex);
        m_post(count);
    }

    /// Blocks until `count` scans have begun, and returns the roots of all begun so far.
    std::vector<std::string> waitForScans(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_roots.size() >= count; });
        return m_roots;
    }

    /// A scan that does not hear its token, like one stuck in a read.
    bool ignoresStop = false;

private:
    void endWith(std::function<ScanOutcome()> ending)
    {
        const std::lock_guard lock(m_mutex);
        m_endings.push_back(std::move(ending));
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<std::function<ScanOutcome()>> m_endings; // guarded by m_mutex
    std::vector<std::string> m_roots; // guarded by m_mutex
    LiveCountSink m_post; // guarded by m_mutex
};

} // namespace kestavon::test
