#pragma once

#include "duplicates/duplicate_finder.h"
#include "support/scripted_runs.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::test {

/// A duplicate search whose runs end when, and as, the test says; see ScriptedRuns.
class FakeDuplicateFinder {
public:
    using Groups = std::vector<std::vector<std::uint32_t>>; ///< positions in the records

    std::shared_ptr<const DuplicateList> operator()(std::shared_ptr<const RecordList> records,
        const DuplicateSearchOptions& options, const std::stop_token& stop)
    {
        auto list = std::make_shared<DuplicateList>(std::move(records));
        for (const auto& positions : m_runs.run(options, stop, ignoresStop)) {
            std::vector<DuplicateList::Member> members;
            for (const auto position : positions)
                members.push_back({.position = position, .identity = {}});
            list->append({}, members);
        }
        return list;
    }

    /// The finder for who keeps a function.
    static auto asFinder(std::shared_ptr<FakeDuplicateFinder> finder)
    {
        return [finder = std::move(finder)](std::shared_ptr<const RecordList> records,
                   const DuplicateSearchOptions& options, const std::stop_token& stop) {
            return (*finder)(std::move(records), options, stop);
        };
    }

    /// Lets the running search, or else the next one, find these groups.
    void finishWith(Groups groups) { m_runs.finishWith(std::move(groups)); }
    void failWith(const std::string& message) { m_runs.failWith(message); }

    /// Blocks until `count` searches have begun, and returns what each was told.
    std::vector<DuplicateSearchOptions> waitForSearches(std::size_t count)
    {
        return m_runs.waitFor(count);
    }

    /// A search that does not hear its token.
    bool ignoresStop = false;

private:
    ScriptedRuns<DuplicateSearchOptions, Groups> m_runs;
};

} // namespace kestavon::test
