#include "platform/linux/removal/patience.h"

#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kestavon {

bool runWithPatience(std::chrono::milliseconds patience, std::function<void()> work)
{
    struct Ending {
        std::mutex mutex;
        std::condition_variable happened;
        bool hasHappened = false; // guarded by mutex
    };
    const auto ending = std::make_shared<Ending>();
    auto run = [ending, work = std::move(work)] {
        try {
            work();
        } catch (const std::exception&) { // For want of memory: nobody above would catch it.
        }
        const std::lock_guard lock(ending->mutex);
        ending->hasHappened = true;
        ending->happened.notify_all();
    };
    try {
        std::thread(std::move(run)).detach();
    } catch (const std::system_error&) {
        return false;
    }
    std::unique_lock lock(ending->mutex);
    return ending->happened.wait_for(lock, patience, [&ending] { return ending->hasHappened; });
}

} // namespace kestavon
