// Reviews a category of many items in the main window, and tells how long its event loop was ever
// kept from the next event: preview_window_bench [ITEMS]
//
// The items are made in memory; no file is looked at until they are removed, and none is found.

#include "support/records.h"
#include "ui/support/test_window.h"
#include "window/longest_gap.h"

#include <QApplication>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

using namespace kestavon;
using bench::runFor;
using bench::runUntil;

namespace {

std::vector<CleanupCandidate> itemsOf(int count)
{
    std::vector<CleanupCandidate> items;
    for (int i = 0; i < count; ++i) {
        // A few of each name, in folders of their own.
        items.push_back({.id = Uuid::random(),
            .record = test::file("/home/alice/Library/Caches/folder-" + std::to_string(i % 5)
                    + "/org.example.some-item-" + std::to_string(i / 2),
                1 + i * 7919L % 1'000'000, Timestamp(std::chrono::hours(i * 7 % 500'000))),
            .reason = "Application cache"});
        items.back().estimatedBytes = items.back().record.size;
    }
    return items;
}

} // namespace

int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    const auto count = argc > 1 ? std::atoi(argv[1]) : 100'000;
    test::TestWindow window;
    window.machine.files->listable = {"/home/alice/Library/Mail"}; // no sheet in the way
    window.machine.runningApplications->applications
        = {{.identifier = "org.example.some-item-7", .name = "Some"}};
    window.open({});
    window.model->setSection(AppSection::smartClean);
    auto& screen = *window.states->smartClean();
    auto& preview = *screen.preview();

    bench::LongestGap gap;
    const auto step = [&](const char* what, const std::function<void()>& action) {
        runFor(300);
        gap.restart();
        action();
        runFor(300);
        gap.print(what);
    };
    const auto open = [&] {
        screen.review(0);
        runUntil([&] { return preview.rowCount() > 0; });
    };
    const auto remove = [&](const std::function<void()>& begin) {
        begin();
        runUntil([&] { return !preview.isBusy(); });
        preview.notice()->dismissError();
    };

    step("idle", [] {});
    for (std::size_t i = 0; i < allCases<JunkCategory>().size(); ++i)
        window.junkScanner->finishWith(i < 2 ? itemsOf(count) : std::vector<CleanupCandidate>());
    step("a scan of all", [&] {
        screen.scanAll();
        runUntil([&] { return !screen.scanning(); });
    });
    step("the sheet opens", open);
    step("a wheel, 300 notches", [&] { bench::turnWheel(*window.window, 300); });
    step("every order", [&] {
        for (const int order : {1, 2, 3, 4, 0}) {
            const auto before = preview.contentRevision();
            preview.sortBy(order);
            runUntil([&] { return preview.contentRevision() > before; });
        }
    });
    auto& list = window.need("previewItems");
    list.forceActiveFocus(Qt::TabFocusReason);
    step("End", [&] { QTest::keyClick(window.window, Qt::Key_End); });
    step("all ticked, and one not", [&] {
        preview.selectEverything();
        runFor(50);
        preview.toggle(3);
    });
    step("a move to the Safe Area that finds nothing",
        [&] { remove([&] { preview.moveToSafeArea(); }); });
    step("the sheet closes", [&] { preview.close(); });
    step("everything is cleaned", [&] {
        screen.askCleanAll();
        screen.confirmation()->confirm();
        runUntil([&] { return !screen.cleaning(); });
    });
    gap.printLongest();
}
