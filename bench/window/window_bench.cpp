// Uses the main window on a real folder as a person does, and tells how long its event loop was
// ever kept from the next event: window_bench FOLDER
//
// Time on the clock counts what a person feels, and what else runs on the machine with it; the
// main thread's processor time in the same stretch says how much of it was the window's own.

#include "platform/resident_memory.h"
#include "storage/file_scanner.h"
#include "ui/support/test_window.h"
#include "window/longest_gap.h"

#include <QApplication>
#include <QTest>

#include <cstdio>
#include <functional>

using namespace kestavon;
using bench::runFor;
using bench::runUntil;

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
    bench::LongestGap gap;
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
    step("a wheel, 300 notches", [&] { bench::turnWheel(*window.window, 300); });
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
    gap.printLongest();
}
