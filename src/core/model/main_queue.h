#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <deque>
#include <functional>
#include <mutex>

namespace kestavon {

/// Functions handed to the main thread, run there in the order posted, each from the event loop.
/// The hand-over is a mutex and an eventfd(2) rather than a posted Qt event, so that
/// ThreadSanitizer sees the order although Qt's libraries are not instrumented.
class MainQueue final : public QObject {
    Q_OBJECT
public:
    /// The one queue of the process. The first call must come from the main thread, after the
    /// application object was made.
    static MainQueue& instance();

    /// Any thread. What is still queued when the application ends is dropped.
    void post(std::function<void()> function);

private:
    MainQueue();
    void drain();

    std::mutex m_mutex;
    std::deque<std::function<void()>> m_functions; // guarded by m_mutex
    int m_eventFd; // fixed at construction
    QSocketNotifier m_notifier; // main thread only
};

} // namespace kestavon
