#pragma once

#include "core/domain/cleanup_candidate.h"
#include "core/domain/junk_category.h"
#include "support/scripted_runs.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::test {

/// A scanner of junk whose runs end when, and as, the test says; see ScriptedRuns. A stopped one
/// comes back with `foundWhenStopped`, as the real one does with what it has.
class FakeJunkScanner {
public:
    std::vector<CleanupCandidate> operator()(JunkCategory category, const std::stop_token& stop)
    {
        try {
            return m_runs.run(category, stop, false);
        } catch (const Cancelled&) {
            return foundWhenStopped;
        }
    }

    /// The scanner for who keeps a function.
    static auto asScanner(std::shared_ptr<FakeJunkScanner> scanner)
    {
        return [scanner = std::move(scanner)](JunkCategory category, const std::stop_token& stop) {
            return (*scanner)(category, stop);
        };
    }

    /// Lets the running scan, or else the next one, find these.
    void finishWith(std::vector<CleanupCandidate> items) { m_runs.finishWith(std::move(items)); }

    /// Blocks until `count` scans have begun, and returns the categories of all so far.
    std::vector<JunkCategory> waitForScans(std::size_t count) { return m_runs.waitFor(count); }

    std::vector<CleanupCandidate> foundWhenStopped;

private:
    ScriptedRuns<JunkCategory, std::vector<CleanupCandidate>> m_runs;
};

/// A file or folder as an item of a category.
inline CleanupCandidate junk(std::string path, std::int64_t bytes, bool isDirectory = false)
{
    return {.id = Uuid::random(),
        .record = {.id = Uuid::random(),
            .path = std::move(path),
            .size = bytes,
            .isDirectory = isDirectory},
        .reason = "Junk",
        .estimatedBytes = bytes};
}

} // namespace kestavon::test
