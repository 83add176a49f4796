#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <functional>

#include <time.h>

namespace kestavon::bench {

/// The longest stretch between two visits of the event loop to a timer that is always due.
class LongestGap {
public:
    LongestGap()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
        m_timer.start();
        restart();
    }
    void restart()
    {
        m_wall = m_processor = 0;
        m_lastWall = now(CLOCK_MONOTONIC);
        m_lastProcessor = now(CLOCK_THREAD_CPUTIME_ID);
    }
    /// Also counts the stretch that has not ended yet.
    void print(const char* what)
    {
        tick();
        std::printf("  %-44s longest gap %6.1f ms, of the thread's own %6.1f ms\n", what, m_wall,
            m_processor);
        m_longest = std::max(m_longest, m_wall);
        m_longestProcessor = std::max(m_longestProcessor, m_processor);
        restart();
    }
    void printLongest() const
    {
        std::printf(
            "longest gap %.1f ms, of the thread's own %.1f ms\n", m_longest, m_longestProcessor);
    }

private:
    static double now(clockid_t clock)
    {
        timespec time{};
        ::clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }
    void tick()
    {
        const auto wall = now(CLOCK_MONOTONIC);
        const auto processor = now(CLOCK_THREAD_CPUTIME_ID);
        m_wall = std::max(m_wall, wall - m_lastWall);
        m_processor = std::max(m_processor, processor - m_lastProcessor);
        m_lastWall = wall;
        m_lastProcessor = processor;
    }

    QTimer m_timer;
    double m_lastWall = 0, m_lastProcessor = 0;
    double m_wall = 0, m_processor = 0;
    double m_longest = 0, m_longestProcessor = 0;
};

/// Lets the event loop run until the condition holds, or five minutes.
inline void runUntil(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 300'000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
}

inline void runFor(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    runUntil([&] { return timer.elapsed() > milliseconds; });
}

/// A wheel over the middle of a window, notch after notch.
inline void turnWheel(QWindow& window, int notches)
{
    const QPointF middle(600, 500);
    for (int notch = 0; notch < notches; ++notch) {
        QWheelEvent wheel(middle, window.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window, &wheel);
        runFor(3);
    }
}

} // namespace kestavon::bench
