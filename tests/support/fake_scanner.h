#pragma once

#include "storage/file_scanning.h"
#include "support/scripted_runs.h"

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::test {

/// A scanner whose scans end when, and as, the test says; see ScriptedRuns.
class FakeScanner final : public FileScanning {
public:
    ScanOutcome scan(const std::string& root, ScanProgressCounter& counter,
        const LiveCountSink& postLiveCount, std::stop_token stop) override
    {
        {
            const std::lock_guard lock(m_mutex);
            m_post = postLiveCount;
        }
        auto outcome = m_runs.run(root, stop, ignoresStop);
        counter.add(static_cast<std::int64_t>(outcome.records->size()));
        return outcome;
    }

    /// Lets the running scan, or else the next one, return this.
    void finishWith(ScanOutcome outcome) { m_runs.finishWith(std::move(outcome)); }
    void finishWith(std::string root, const std::vector<FileRecord>& records)
    {
        finishWith({.records = RecordList::fromRecords(std::move(root), records)});
    }
    void failWith(const std::string& message) { m_runs.failWith(message); }

    /// Reports a live count as the scan's own threads would.
    void reportLiveCount(std::int64_t count)
    {
        const std::lock_guard lock(m_mutex);
        m_post(count);
    }

    /// Blocks until `count` scans have begun, and returns the roots of all begun so far.
    std::vector<std::string> waitForScans(std::size_t count) { return m_runs.waitFor(count); }

    std::size_t scansBegun() const { return m_runs.begun(); }

    /// A scan that does not hear its token, like one stuck in a read.
    bool ignoresStop = false;

private:
    ScriptedRuns<std::string, ScanOutcome> m_runs;
    std::mutex m_mutex;
    LiveCountSink m_post; // guarded by m_mutex
};

} // namespace kestavon::test
