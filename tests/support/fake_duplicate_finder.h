#pragma once

#include "concurrency/cancelled.h"
#include "duplicates/duplicate_finder.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::test {

/// A duplicate search whose runs end when, and as, the test says: each waits for one `finish…`
/// call, or ends by itself when its token is stopped.
class FakeDuplicateFinder {
public:
    using Groups = std::vector<std::vector<std::uint32_t>>; ///< positions in the records

    std::shared_ptr<const DuplicateList> operator()(std::shared_ptr<const RecordList> records,
        const DuplicateSearchOptions& options, const std::stop_token& stop)
    {
        std::unique_lock lock(m_mutex);
        m_begun.push_back(options);
        m_changed.notify_all();
        const auto hasEnding = [this] { return !m_endings.empty(); };
        if (ignoresStop)
            m_changed.wait(lock, hasEnding);
        else if (!m_changed.wait(lock, stop, hasEnding))
            throw Cancelled{};
        auto ending = std::move(m_endings.front());
        m_endings.pop_front();
        lock.unlock();
        auto list = std::make_shared<DuplicateList>(std::move(records));
        for (const auto& positions : ending()) {
            std::vector<DuplicateList::Member> members;
            for (const auto position : positions)
                members.push_back({.position = position, .identity = {}});
            list->append({}, members);
        }
        return list;
    }

    /// Lets the running search, or else the next one, find these groups.
    void finishWith(Groups groups)
    {
        endWith([groups = std::move(groups)] { return groups; });
    }
    void failWith(const std::string& message)
    {
        endWith([message]() -> Groups { throw std::runtime_error(message); });
    }

    /// Blocks until `count` searches have begun, and returns what each was told.
    std::vector<DuplicateSearchOptions> waitForSearches(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_begun.size() >= count; });
        return m_begun;
    }

    /// A search that does not hear its token.
    bool ignoresStop = false;

private:
    void endWith(std::function<Groups()> ending)
    {
        const std::lock_guard lock(m_mutex);
        m_endings.push_back(std::move(ending));
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<std::function<Groups()>> m_endings; // guarded by m_mutex
    std::vector<DuplicateSearchOptions> m_begun; // guarded by m_mutex
};

} // namespace kestavon::test
