#include "concurrency/thread_crew.h"

#include "concurrency/cancelled.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace kestavon {

namespace {

/// Shared by the threads and whoever waits for them; whichever goes last frees it.
struct Crew {
    std::function<void()> work;
    std::mutex mutex;
    std::condition_variable_any changed;
    unsigned running = 0; // guarded by mutex
    std::exception_ptr failure; // guarded by mutex

    void run()
    {
        std::exception_ptr thrown;
        try {
            work();
        } catch (...) {
            thrown = std::current_exception();
        }
        const std::lock_guard lock(mutex);
        if (thrown)
            failure = thrown;
        --running;
        changed.notify_all();
    }
};

} // namespace

void runOnThreads(unsigned threads, std::function<void()> work, const std::stop_token& stop,
    std::chrono::milliseconds patience)
{
    const auto crew = std::make_shared<Crew>();
    crew->work = std::move(work);
    std::unique_lock lock(crew->mutex);
    for (unsigned i = 0; i < threads; ++i) {
        try {
            std::thread([crew] { crew->run(); }).detach();
        } catch (const std::system_error&) {
            if (crew->running == 0)
                throw;
            break; // The system has no more threads to give: these will do.
        }
        ++crew->running;
    }
    const auto allDone = [&crew] { return crew->running == 0; };
    if (!crew->changed.wait(lock, stop, allDone))
        crew->changed.wait_for(lock, patience, allDone);
    if (stop.stop_requested())
        throw Cancelled{};
    if (crew->failure)
        std::rethrow_exception(crew->failure);
}

} // namespace kestavon
