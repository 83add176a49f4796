#pragma once

#include "platform/linux/process_stat.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace kestavon {

/// The number that a folder of /proc is called by; nothing for its other entries.
std::optional<std::int32_t> processIdOf(std::string_view name);

/// The last part of a path.
std::string_view baseName(std::string_view path);

/// Calls `look` with the parts of `text` until it returns true.
template <class Look> void forEachPart(std::string_view text, char separator, Look look)
{
    while (!text.empty()) {
        const auto part = text.substr(0, text.find(separator));
        if (look(part))
            return;
        text.remove_prefix(std::min(part.size() + 1, text.size()));
    }
}

/// What the link below an open folder says; empty when it cannot be read.
std::string linkAt(int folder, const char* name);

/// What a process says of itself, as far as it can be read.
struct ProcessFacts {
    std::int32_t id = 0;
    ::uid_t user = 0;
    std::string name; ///< cut after 15 bytes
    std::string controlGroups; ///< a line each
    std::string flatpak; ///< the application's identifier
    std::string environment; ///< "NAME=VALUE", each ended by a NUL
    std::string program; ///< the path
    std::string arguments; ///< each ended by a NUL

    std::string_view variable(std::string_view wanted) const;
    std::string_view argument(int number) const;
};

/// One look at what a process says of itself. Its arguments and variables lie in its own memory:
/// while somebody holds the lock of that, in a page fault on a disk that does not answer, the
/// system keeps whoever asks waiting. So a thread of its own asks, which may be left behind.
class ProcessReading {
public:
    using ReadFile = std::function<std::string(int process, const char* name)>;

    /// Begins to read the process `id` of the open folder `processes`. `ownMounts` is how the
    /// mounts that this process sees are called: a sandbox has others. `readFile` reads its files,
    /// when it is not empty. Null when the process is gone.
    static std::shared_ptr<ProcessReading> begin(int processes, const std::string& id,
        const ProcessStat& stat, std::string ownMounts, ReadFile readFile = {});

    /// Waits for a quarter of a second at most. Whether all was read.
    bool waitForEnd();
    bool isOver();
    /// What was read so far.
    ProcessFacts facts();

private:
    class Reader;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    ProcessFacts m_facts; // guarded by m_mutex
    bool m_isOver = false; // guarded by m_mutex
};

} // namespace kestavon
