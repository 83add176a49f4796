#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kestavon {

/// Runs jobs one at a time, in the order given, on a thread of its own. That thread, and those that
/// its jobs start, are less urgent than the caller's unless told otherwise: a scan with a worker
/// for every core and more must not keep the window from drawing.
///
/// The destructor drops the jobs that have not begun and does not wait for the one that has: a read
/// from a dead network share may never return, and neither stopping nor quitting may hang on it. So
/// a job owns, by value or shared pointer, everything it touches.
class SerialQueue {
public:
    enum class Urgency {
        background, ///< gives way to the window
        utility, ///< gives way to all other work too
        asTheCaller, ///< for what the window waits for
    };

    explicit SerialQueue(Urgency urgency = Urgency::background);
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    /// Any thread. A job must not throw.
    void post(std::function<void()> job);

    /// Drops the jobs that have not begun, takes no more, and waits for the one that has until
    /// `deadline`. Whether none runs any more.
    bool close(std::chrono::steady_clock::time_point deadline);

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace kestavon
