#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

namespace kestavon::test {

/// Runs what the main thread has been handed so far.
inline void processEvents()
{
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

/// Runs the event loop until `condition` holds; false when it does not within ten seconds.
template <class Condition> bool processEventsUntil(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 10'000)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    }
    return true;
}

} // namespace kestavon::test
