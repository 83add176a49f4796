#pragma once

#include <QSocketNotifier>

#include <array>
#include <functional>
#include <memory>

namespace kestavon {

/// Calls a function on the main thread when the user presses Ctrl+C (SIGINT) or the process is
/// asked to end (SIGTERM), instead of ending the process there and then. The second time ends it at
/// once, with `interruptedExitCode`. One at a time; the earlier behaviour returns with the
/// destructor.
class InterruptWatch {
public:
    explicit InterruptWatch(std::function<void()> onInterrupt);
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;

private:
    std::function<void()> m_onInterrupt;
    std::unique_ptr<QSocketNotifier> m_notifier;
    using Handler = void (*)(int);
    std::array<Handler, 2> m_earlier{};
};

} // namespace kestavon
