#pragma once

#include "core/domain/action_kind.h"
#include "core/domain/file_work.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace kestavon {

/// How far one operation on files has come: the thread that works writes it down, the main thread
/// reads it and may ask for an end. Any thread.
class WorkMeter {
public:
    /// Work that ends within this time is not worth a word.
    static constexpr std::chrono::milliseconds patience{500};

    explicit WorkMeter(FileWork::Deed deed);

    /// The work on so many items begins; it may have waited for others since it was asked for.
    /// Calls after the first do nothing.
    void begin(std::size_t items);
    /// The turn of the item at `path` has come.
    void beginItem(const std::string& path);
    /// Of the item in hand.
    void tellCopied(std::int64_t bytes, std::int64_t ofBytes);
    void tellRemoved(std::int64_t entries);
    /// The item in hand was deleted as a whole.
    void tellRemovedWhole();

    /// What there is to tell; nothing until the work has lasted for a while.
    std::optional<FileWork> reading() const;
    /// The item that was stopped while it was being deleted, if some of it is gone.
    std::optional<PartlyDeleted> partlyDeleted() const;
    void requestStop();
    std::stop_token stopToken() const { return m_stop.get_token(); }
    bool isStopped() const { return m_stop.stop_requested(); }

private:
    std::stop_source m_stop;

    mutable std::mutex m_mutex; // guards all below
    std::optional<std::chrono::steady_clock::time_point> m_beginning;
    FileWork m_work;
    std::int64_t m_removedBefore = 0; ///< entries of the items before the one in hand
};

/// Whom those who remove files tell how far they are, and who may end it.
struct WorkWatch {
    std::stop_token stop = {};
    std::function<void(const std::string& path)> begins = {};
    std::function<void(std::int64_t done, std::int64_t total)> copied = {};
    std::function<void(std::int64_t entries)> removed = {};
    std::function<void()> removedWhole = {};
};

FileWork::Deed deedOf(ActionKind action);

/// A watch that reads the meter, and owns it.
WorkWatch watchOf(const std::shared_ptr<WorkMeter>& meter);

} // namespace kestavon
