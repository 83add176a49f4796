// Scrolls through many groups of duplicates in the main window, and tells how long its event loop
// was ever kept from the next event: duplicates_window_bench [GROUPS]
//
// The groups are made in memory; no file is looked at until the merge at the end, which finds none.

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

struct Home {
    std::shared_ptr<const RecordList> records;
    test::FakeDuplicateFinder::Groups groups;
};

/// `count` groups of two to four copies, and a last one of `count` copies.
Home homeWithCopies(std::uint32_t count)
{
    Home home;
    std::vector<FileRecord> records;
    const auto add = [&](std::uint32_t group, std::uint32_t copy) {
        home.groups.back().push_back(static_cast<std::uint32_t>(records.size()));
        records.push_back(test::file("/home/alice/folder-" + std::to_string(copy % 1000)
                + "/some file of the group " + std::to_string(group) + ".dat",
            1'000'000 + count - group, Timestamp(std::chrono::hours(copy * 7 % 500'000))));
    };
    for (std::uint32_t group = 0; group <= count; ++group) {
        home.groups.emplace_back();
        const auto copies = group < count ? 2 + group % 3 : count;
        for (std::uint32_t copy = 0; copy < copies; ++copy)
            add(group, copy);
    }
    home.records = RecordList::fromRecords("/home/alice", records);
    return home;
}

} // namespace

int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    const auto count = argc > 1 ? static_cast<std::uint32_t>(std::atoi(argv[1])) : 100'000U;
    test::TestWindow window;
    window.machine.files->listable = {"/home/alice/Library/Mail"}; // no sheet in the way
    window.open({});
    auto& duplicates = *window.states->duplicates();
    auto home = homeWithCopies(count);
    window.scan({.records = home.records});
    window.model->setSection(AppSection::duplicates);

    bench::LongestGap gap;
    const auto step = [&](const char* what, const std::function<void()>& action) {
        runFor(300);
        gap.restart();
        action();
        runFor(300);
        gap.print(what);
    };
    const auto search = [&] {
        duplicates.analyze();
        window.duplicateFinder->finishWith(home.groups);
        runUntil([&] { return !duplicates.analyzing(); });
    };
    const auto key = [&](Qt::Key pressed, int times) {
        for (int i = 0; i < times; ++i) {
            QTest::keyClick(window.window, pressed);
            runFor(3);
        }
    };

    step("idle", [] {});
    step("the groups arrive", search);
    std::printf(
        "  %d groups, %d rows\n", duplicates.rows()->groupCount(), duplicates.rows()->rowCount());
    step("another screen", [&] { window.model->setSection(AppSection::cleaner); });
    step("storage", [&] { window.model->setSection(AppSection::storage); });
    step("another screen", [&] { window.model->setSection(AppSection::cleaner); });
    step("and back", [&] { window.model->setSection(AppSection::duplicates); });
    step("a wheel, 300 notches", [&] { bench::turnWheel(*window.window, 300); });
    auto& list = window.need("groups");
    step("the scroll bar dragged over all groups", [&] {
        const auto end = list.property("maxOffset").toDouble();
        for (int part = 0; part <= 300; ++part) {
            list.setProperty("offset", end * part / 300);
            runFor(3);
        }
    });
    list.forceActiveFocus(Qt::TabFocusReason);
    step("Home", [&] { key(Qt::Key_Home, 1); });
    step("300 rows down", [&] { key(Qt::Key_Down, 300); });
    step("100 pages down", [&] { key(Qt::Key_PageDown, 100); });
    step("End", [&] { key(Qt::Key_End, 1); });
    step("100 pages up", [&] { key(Qt::Key_PageUp, 100); });
    step("the window made larger and smaller", [&] {
        for (const auto height : {1000, 820, 760, 900}) {
            window.window->resize(1280, height);
            runFor(50);
        }
    });
    step("a search while the groups are shown", search);
    step("a merge that finds no file", [&] {
        duplicates.askMergeToTrash();
        runFor(100);
        duplicates.confirmation()->confirm();
        runUntil([&] { return !duplicates.merging(); });
    });
    gap.printLongest();
}
