// Uses the main window on a real folder as a person does, and tells how long its event loop was
// ever kept from the next event: window_bench FOLDER
//
// Time on the clock counts what a person feels, and what else runs on the machine with it; the
// main thread's processor time in the same stretch says how much of it was the window's own.

#include "platform/resident_memory.h"
#include "storage/file_scanner.h"
#include "ui/support/test_window.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>
#include <functional>

#include <time.h>

namespace {

using namespace kestavon;

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
    double longest() const { return m_longest; }
    double longestProcessor() const { return m_longestProcessor; }

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

void runUntil(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 300'000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
}

void runFor(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    runUntil([&] { return timer.elapsed() > milliseconds; });
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: window_bench FOLDER\n", stderr);
        return 2;
    }
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    test::TestWindow window;
    window.machine.files->listable = {"/home/alice/Library/Mail"}; // no sheet in the way
    window.open({.otherScanner = std::make_shared<FileScanner>(
                     std::vector<std::string>{}, std::uint64_t{1} << 40, residentMemoryBytes)});
    auto& rows = *window.states->storage()->rows();
    const auto busy
        = [&] { return rows.isBusy() || window.states->largeFiles()->rows()->isBusy(); };
    LongestGap gap;
    const auto step = [&](const char* what, const std::function<void()>& action) {
        runFor(300);
        gap.restart();
        action();
        runUntil([&] { return !busy(); });
        runFor(300);
        gap.print(what);
    };

    step("idle", [] {});
    step("a scan, on the Dashboard", [&] {
        window.model->setSelectedRoot(argv[1]);
        window.model->startStorageScan();
        runUntil([&] { return !window.model->scanPhase().isScanning(); });
    });
    std::printf("  %zu records\n", window.model->records()->size());
    step("Storage opened and sorted", [&] { window.model->setSection(AppSection::storage); });
    step("a wheel, 300 notches", [&] {
        const QPointF middle(600, 500);
        for (int notch = 0; notch < 300; ++notch) {
            QWheelEvent wheel(middle, window.window->mapToGlobal(middle), {}, {0, -120},
                Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(window.window, &wheel);
            runFor(3);
        }
    });
    step("the scroll bar dragged over all rows", [&] {
        auto& table = window.need("fileTable");
        const auto end = 34.0 * rows.rowCount();
        for (int part = 0; part <= 200; ++part) {
            table.setProperty("offset", end * part / 200);
            runFor(3);
        }
    });
    window.need("tableBody").forceActiveFocus(Qt::TabFocusReason);
    step("Ctrl+A", [&] { QTest::keyClick(window.window, Qt::Key_A, Qt::ControlModifier); });
    step("a click in the middle", [&] {
        QTest::mouseClick(window.window, Qt::LeftButton, Qt::NoModifier, {600, 500});
    });
    step("Shift+End, half of the rows",
        [&] { QTest::keyClick(window.window, Qt::Key_End, Qt::ShiftModifier); });
    step("the filter's box",
        [&] { QTest::keyClick(window.window, Qt::Key_F, Qt::ControlModifier); });
    for (const auto key : {Qt::Key_E, Qt::Key_P, Qt::Key_O, Qt::Key_Backspace, Qt::Key_Backspace,
             Qt::Key_Backspace}) {
        step("a key in the filter", [&] { QTest::keyClick(window.window, key); });
        std::printf("  %d rows\n", rows.rowCount());
    }
    step("Large Files", [&] { window.model->setSection(AppSection::largeFiles); });
    step("and back", [&] { window.model->setSection(AppSection::storage); });
    step("another scan while the table is shown", [&] {
        window.model->startStorageScan();
        runUntil([&] { return !window.model->scanPhase().isScanning(); });
    });
    std::printf("longest gap %.1f ms, of the thread's own %.1f ms\n", gap.longest(),
        gap.longestProcessor());
}
