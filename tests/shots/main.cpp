// Draws every screen in its states, light and dark, as PNG files: kestavon_shots FOLDER [NAME-PART]
#include "shots/paper_disk.h"
#include "shots/shot_data.h"
#include "support/event_loop.h"
#include "support/moments.h"
#include "support/records.h"
#include "ui/smartclean/preview_rules.h"
#include "ui/support/test_window.h"
#include "ui/widgets/threat_badge_rules.h"

#include <QApplication>
#include <QDir>
#include <QQmlComponent>
#include <QTest>

#include <cstdio>
#include <functional>
#include <span>
#include <vector>

namespace {

using namespace kestavon;
using test::TestWindow;

struct Shot {
    const char* name;
    AppSection section;
    std::function<void(TestWindow&)> prepare = {};
    bool alsoAtMinimumSize = false;
    bool asksForAccess = false;
};

void scanHome(TestWindow& window)
{
    window.scan({.records = shots::livedInHome()});
}

/// Three scans, so that there is a history, at different times.
void scanOften(TestWindow& window)
{
    for (const int minutes : {5, 4, 2}) {
        scanHome(window);
        window.machine.clock->time += std::chrono::minutes(minutes);
    }
    window.states->dashboard()->recentActivity()->setTicking(false);
    window.states->dashboard()->recentActivity()->setTicking(true);
}

void startScan(TestWindow& window)
{
    window.model->startStorageScan();
    window.scanner->waitForScans(1);
    window.scanner->reportLiveCount(128'000);
    test::processEventsUntil([&] { return window.states->liveCount().shown() == 128'000; });
}

/// Where the middle of a table row is.
QPointF rowPoint(TestWindow& window, int row)
{
    const auto& body = window.need("tableBody");
    return body.mapToScene({150, 34.0 * row + 17});
}

void selectThree(TestWindow& window)
{
    scanHome(window);
    window.clickAt(rowPoint(window, 1));
    window.clickAt(rowPoint(window, 3), Qt::ControlModifier);
    window.clickAt(rowPoint(window, 7), Qt::ControlModifier);
    window.press(Qt::Key_Up, Qt::ControlModifier);
    window.press(Qt::Key_Down, Qt::ControlModifier);
    QTest::mouseMove(window.window, rowPoint(window, 10).toPoint());
    test::processEvents();
}

/// Suggestions, the first of which are ticked but for two.
void suggest(TestWindow& window)
{
    window.machine.clock->time = test::utc(2026, 11, 22, 14, 5);
    window.scan({.records = shots::homeToClean()});
    window.model->deselectAllCleanup();
    for (int row = 0; row < 10; ++row) {
        if (row != 1 && row != 4)
            window.states->cleaner()->toggle(row);
    }
    window.clickAt(window.need("suggestions").mapToScene({25, 3 * 52 + 26}));
    window.press(Qt::Key_Down);
    window.states->cleaner()->toggle(3);
}

/// A scan of a home that holds duplicates, and a search in it that has come so far.
void startSearch(TestWindow& window)
{
    window.scan({.records = shots::homeWithCopies().records});
    window.model->startDuplicateAnalysis();
    window.duplicateFinder->waitForSearches(1).front().progress({3'120'000'000, 8'450'000'000});
    test::processEvents();
}

void endSearch(TestWindow& window)
{
    test::processEventsUntil([&] { return !window.model->duplicatePhase().isScanning(); });
    test::processEvents();
}

void findCopies(TestWindow& window)
{
    startSearch(window);
    window.duplicateFinder->finishWith(shots::homeWithCopies().groups);
    endSearch(window);
}

/// Lets the first categories be scanned, or all of them.
void findJunk(TestWindow& window, std::size_t categories = allCases<JunkCategory>().size())
{
    for (const auto& entry : std::span(allCases<JunkCategory>()).first(categories))
        window.junkScanner->finishWith(shots::junkOf(entry.value));
    window.model->scanAllJunk();
    const auto& groups = window.model->junkGroups();
    test::processEventsUntil([&] { return groups[categories - 1].isScanned; });
    test::processEvents();
}

/// Opens the sheet of the category, ticks some items and leaves the pointer over another.
void previewJunk(TestWindow& window, const char* button)
{
    findJunk(window);
    window.need(button).forceActiveFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Space);
    auto& preview = *window.states->smartClean()->preview();
    test::processEventsUntil([&] { return preview.rowCount() > 0; });
    test::processEvents();
    const auto& rows = window.need("previewItems");
    for (const int row : {0, 1, 3, 4})
        window.clickAt(rows.mapToScene({150, 40.0 * row + 20}));
    QTest::mouseMove(window.window, rows.mapToScene({150, 40.0 * 2 + 20}).toPoint());
    test::processEvents();
}

/// Moves things to the Safe Area at different times.
void hold(TestWindow& window)
{
    for (const auto& held : shots::itemsToHold()) {
        window.machine.clock->time = held.movedAt;
        JunkGroup group;
        group.items = {held.candidate};
        bool done = false;
        window.model->cleanJunkItems(group, {held.candidate.id}, ActionKind::safeArea, {},
            [&done](const std::string&) { done = true; });
        test::processEventsUntil([&done] { return done; });
    }
}

/// A move to the Safe Area that is copying, with the bars of what came before it.
void moveForEver(TestWindow& window)
{
    suggest(window);
    CleanupCandidate endless;
    endless.id = Uuid::random();
    endless.record.path = shots::endlessPath;
    endless.record.isDirectory = true;
    JunkGroup group;
    group.items = {endless};
    window.model->cleanJunkItems(group, {endless.id}, ActionKind::safeArea);
    window.states->undoOffer()->show(
        undoOfferText({ActionKind::trash, 3}), QStringLiteral("Undo"), [] {});
    window.states->notice()->show(undoReportText({.restored = 12}));
    test::processEventsUntil([&] { return window.states->work()->shown(); });
    QTest::qWait(200); // until the bars have come up
}

/// Lets the holding folder hold items of earlier runs, and shows them.
void showEarlier(TestWindow& window)
{
    auto& places = dynamic_cast<shots::PaperPlaces&>(*window.machine.places);
    for (auto& [name, marks] : shots::earlierItems()) {
        places.names.push_back(name);
        if (!marks.empty())
            places.marks.emplace(name, marks);
    }
    window.states->safeArea()->lookForEarlier();
    test::processEventsUntil([&] { return window.states->safeArea()->offersEarlier(); });
}

/// A day's history of scans, moves and restores.
void makeHistory(TestWindow& window)
{
    window.scan({.records = shots::livedInHome(), .hitMemoryLimit = true});
    window.machine.clock->time = test::utc(2026, 11, 22, 12, 10);
    hold(window);
    for (const int minutes : {9, 7, 11, 5}) {
        window.machine.clock->time += std::chrono::minutes(minutes);
        window.states->safeArea()->restore(3);
        test::processEventsUntil([&] { return !window.states->safeArea()->items()->isBusy(3); });
    }
    scanOften(window);
    window.states->history()->events()->setTicking(false);
    window.states->history()->events()->setTicking(true);
}

const std::vector<Shot> shotList{
    {"dashboard-idle", AppSection::dashboard},
    {"dashboard-scanning", AppSection::dashboard, startScan},
    {"dashboard-finished", AppSection::dashboard, scanOften, true},
    {"dashboard-partial", AppSection::dashboard,
        [](TestWindow& window) {
            window.scan({.records = shots::livedInHome(), .hitMemoryLimit = true});
        }},
    {"dashboard-failed", AppSection::dashboard,
        [](TestWindow& window) {
            window.model->startStorageScan();
            window.scanner->failWith("The folder “/mnt/archive” could not be opened.");
            test::processEventsUntil([&] { return !window.model->scanPhase().isScanning(); });
        }},
    {"dashboard-notice", AppSection::dashboard,
        [](TestWindow& window) {
            window.scan(
                {.records = shots::livedInHome(), .rootProblem = {}, .unreadableFolders = 12});
        }},
    {"storage-empty", AppSection::storage},
    {"storage-empty-scanning", AppSection::storage, startScan},
    {"storage-filled", AppSection::storage, scanHome},
    {"storage-selected", AppSection::storage, selectThree, true},
    {"storage-filtered", AppSection::storage,
        [](TestWindow& window) {
            selectThree(window);
            window.clickItem("filterField");
            window.type(QStringLiteral("qcow"));
            window.settle();
        }},
    {"storage-notice", AppSection::storage,
        [](TestWindow& window) {
            window.scan(
                {.records = shots::livedInHome(), .rootProblem = {}, .unreadableFolders = 1});
        }},
    {"large-files", AppSection::largeFiles, scanHome, true},
    {"large-files-empty", AppSection::largeFiles},
    {"dialog-confirm", AppSection::storage,
        [](TestWindow& window) {
            selectThree(window);
            window.states->storage()->removal()->askDelete();
        }},
    {"alert-error", AppSection::storage,
        [](TestWindow& window) {
            auto& removal = *window.states->storage()->removal();
            removal.setRemove([](RemovalKind, RecordPick, const RecordRemoval::Done& done) {
                done(QStringLiteral("“photos-2016-2024.tar” could not be moved to the Trash "
                                    "because you don’t have permission to access it."));
            });
            selectThree(window);
            removal.askTrash();
            removal.confirm();
        }},
    {"undo", AppSection::storage,
        [](TestWindow& window) {
            scanHome(window);
            window.states->undoOffer()->show(
                undoOfferText({ActionKind::trash, 3}), QStringLiteral("Undo"), [] {});
        }},
    {"work", AppSection::cleaner, moveForEver, true},
    {"path-menu", AppSection::storage,
        [](TestWindow& window) {
            scanHome(window);
            QTest::mouseClick(window.window, Qt::RightButton, {}, rowPoint(window, 3).toPoint());
            test::processEvents();
        }},
    {"duplicates-empty", AppSection::duplicates},
    {"duplicates-idle", AppSection::duplicates,
        [](TestWindow& window) { window.scan({.records = shots::homeWithCopies().records}); }},
    {"duplicates-analyzing", AppSection::duplicates, startSearch},
    {"duplicates-failed", AppSection::duplicates,
        [](TestWindow& window) {
            startSearch(window);
            window.duplicateFinder->failWith("There isn't enough memory.");
            endSearch(window);
        }},
    {"duplicates", AppSection::duplicates, findCopies, true},
    {"duplicates-keyboard", AppSection::duplicates,
        [](TestWindow& window) {
            findCopies(window);
            window.need("groups").forceActiveFocus(Qt::TabFocusReason);
            for (int i = 0; i < 14; ++i)
                window.press(Qt::Key_Down);
        }},
    {"duplicates-end", AppSection::duplicates,
        [](TestWindow& window) {
            findCopies(window);
            window.need("groups").forceActiveFocus(Qt::TabFocusReason);
            window.press(Qt::Key_End);
        }},
    {"duplicates-none", AppSection::duplicates,
        [](TestWindow& window) {
            startSearch(window);
            window.duplicateFinder->finishWith({});
            endSearch(window);
        }},
    {"dialog-merge-trash", AppSection::duplicates,
        [](TestWindow& window) {
            findCopies(window);
            window.clickItem("mergeToTrash");
        }},
    {"dialog-merge-forever", AppSection::duplicates,
        [](TestWindow& window) {
            findCopies(window);
            window.clickItem("mergeForever");
        }},
    {"smartclean-before", AppSection::smartClean},
    {"smartclean-without-access", AppSection::smartClean,
        [](TestWindow& window) {
            window.machine.files->listable.clear();
            window.model->refreshFullDiskAccess();
        }},
    {"smartclean-scanning", AppSection::smartClean,
        [](TestWindow& window) { findJunk(window, 5); }},
    {"smartclean-after", AppSection::smartClean,
        [](TestWindow& window) {
            findCopies(window);
            findJunk(window);
        },
        true},
    {"smartclean-after-scrolled", AppSection::smartClean,
        [](TestWindow& window) {
            findCopies(window);
            findJunk(window);
            QTest::qWait(60); // the cards find their places
            window.need("analyzeNow").forceActiveFocus(Qt::TabFocusReason);
        },
        true},
    {"smartclean-clean", AppSection::smartClean,
        [](TestWindow& window) {
            for (std::size_t i = 0; i < allCases<JunkCategory>().size(); ++i)
                window.junkScanner->finishWith({});
            window.model->scanAllJunk();
            test::processEventsUntil([&] { return !window.states->smartClean()->scanning(); });
        }},
    {"preview-sheet", AppSection::smartClean,
        [](TestWindow& window) { previewJunk(window, "App Caches button"); }, true},
    {"preview-sheet-popover", AppSection::smartClean,
        [](TestWindow& window) {
            previewJunk(window, "Mail & Messages button");
            window.need("previewItems").forceActiveFocus(Qt::TabFocusReason);
            window.press(Qt::Key_Tab);
            window.press(Qt::Key_Return);
        }},
    {"preview-sheet-sort", AppSection::smartClean,
        [](TestWindow& window) {
            previewJunk(window, "App Caches button");
            window.clickItem("sortPicker");
        }},
    {"dialog-notice", AppSection::smartClean,
        [](TestWindow& window) {
            previewJunk(window, "App Caches button");
            window.states->smartClean()->preview()->notice()->setErrorMessage(partialMoveText(3));
        }},
    {"dialog-clean-all", AppSection::smartClean,
        [](TestWindow& window) {
            findJunk(window);
            window.clickItem("cleanAll");
        }},
    {"cleaner", AppSection::cleaner, suggest, true},
    {"cleaner-empty", AppSection::cleaner},
    {"cleaner-few", AppSection::cleaner,
        [](TestWindow& window) {
            window.scan({.records = RecordList::fromRecords("/home/alice",
                             std::vector{test::file("/home/alice/Library/Caches/a/one.db", 1'000),
                                 test::file("/home/alice/Library/Caches/a/two.db", 2'000)})});
        }},
    {"dialog-cleaner", AppSection::cleaner,
        [](TestWindow& window) {
            suggest(window);
            window.clickItem("moveToSafeArea");
        }},
    {"safe-area", AppSection::quarantine, hold, true},
    {"safe-area-empty", AppSection::quarantine},
    {"safe-area-keyboard", AppSection::quarantine,
        [](TestWindow& window) {
            hold(window);
            window.need("Held items").forceActiveFocus(Qt::TabFocusReason);
            window.press(Qt::Key_Down);
        }},
    {"safe-area-earlier-offered", AppSection::quarantine,
        [](TestWindow& window) {
            hold(window);
            showEarlier(window);
        }},
    {"safe-area-earlier", AppSection::quarantine,
        [](TestWindow& window) {
            hold(window);
            showEarlier(window);
            window.states->safeArea()->showEarlier();
        },
        true},
    {"safe-area-earlier-only", AppSection::quarantine,
        [](TestWindow& window) {
            showEarlier(window);
            window.states->safeArea()->showEarlier();
        }},
    {"dialog-restore-all", AppSection::quarantine,
        [](TestWindow& window) {
            hold(window);
            window.clickItem("restoreAll");
        }},
    {"dialog-delete-all", AppSection::quarantine,
        [](TestWindow& window) {
            hold(window);
            window.clickItem("deleteAll");
        }},
    {"history", AppSection::history, makeHistory, true},
    {"history-empty", AppSection::history},
    {"settings", AppSection::settings},
    {"popover", AppSection::dashboard,
        [](TestWindow& window) {
            scanHome(window);
            window.clickItem("statusItem");
        }},
    {"onboarding-sheet", AppSection::dashboard, {}, false, true},
    {"placeholder", AppSection::processes},
};

void draw(const Shot& shot, const QString& theme, QSize size, const QString& file)
{
    TestWindow window;
    const auto moved = std::make_shared<std::set<std::string>>();
    window.machine.mover = std::make_shared<shots::PaperMover>(moved);
    window.machine.places = std::make_shared<shots::PaperPlaces>(moved);
    window.machine.settings->setFlag("kv.fda.onboardingShown", !shot.asksForAccess);
    if (!shot.asksForAccess)
        window.machine.files->listable.insert("/home/alice/Library/Mail");
    window.machine.memory->value = MemorySnapshot{.freeBytes = 2'310'000'000,
        .activeBytes = 6'000'000'000,
        .inactiveBytes = 4'000'000'000,
        .wiredBytes = 1'500'000'000};
    window.open({.theme = theme, .size = size});
    window.model->setSection(shot.section);
    test::processEvents();
    if (shot.prepare)
        shot.prepare(window);
    test::processEvents();
    QTest::qWait(60); // the focus caret and hover fills come with their first frame
    if (!window.window->grabWindow().save(file))
        throw std::runtime_error("Cannot write " + file.toStdString());
}

/// The shared parts, in a window of their own that the main window's engine draws.
void drawComponents(const QString& theme, const QString& file)
{
    TestWindow window;
    window.machine.memory->value = MemorySnapshot{.freeBytes = 2'310'000'000,
        .activeBytes = 6'000'000'000,
        .inactiveBytes = 4'000'000'000,
        .wiredBytes = 1'500'000'000};
    window.machine.settings->setFlag("kv.fda.onboardingShown", true);
    window.open({.theme = theme});

    QVariantList badges;
    for (const auto& level : allCases<ThreatLevel>()) {
        const auto badge = threatBadge(level.value);
        badges.append(QVariantMap{{QStringLiteral("label"), badge.label},
            {QStringLiteral("symbol"), badge.symbol}, {QStringLiteral("color"), badge.color}});
    }
    QQmlComponent component(window.engine.get(), QUrl(QStringLiteral("qrc:/shots/Components.qml")));
    const std::unique_ptr<QObject> gallery(component.createWithInitialProperties(
        {{QStringLiteral("ui"), QVariant::fromValue(window.states.get())},
            {QStringLiteral("themeChoice"), theme}, {QStringLiteral("badges"), badges}}));
    auto* item = qobject_cast<QQuickItem*>(gallery.get());
    if (!item)
        throw std::runtime_error(component.errorString().toStdString());
    QQuickWindow frame;
    frame.resize(QSizeF(item->width(), item->height()).toSize());
    item->setParentItem(frame.contentItem());
    frame.show();
    QTest::qWait(100);
    if (!frame.grabWindow().save(file))
        throw std::runtime_error("Cannot write " + file.toStdString());
}

/// Settings in a window of its own.
void drawSettingsWindow(const QString& theme, const QString& file)
{
    TestWindow window;
    window.machine.settings->setFlag("kv.fda.onboardingShown", true);
    window.open({.theme = theme});
    window.press(Qt::Key_Comma, Qt::ControlModifier);
    QQuickWindow* settings = nullptr;
    const auto isThere = [&] {
        for (auto* candidate : QGuiApplication::topLevelWindows()) {
            if (candidate->title() == QStringLiteral("Settings") && candidate->isExposed())
                settings = qobject_cast<QQuickWindow*>(candidate);
        }
        return settings != nullptr;
    };
    if (!QTest::qWaitFor(isThere) || !settings->grabWindow().save(file))
        throw std::runtime_error("Cannot draw " + file.toStdString());
}

} // namespace

int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("usage: kestavon_shots FOLDER [PART OF A NAME]\n", stderr);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const std::string_view part = argc > 2 ? argv[2] : "";
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "Cannot make the folder %s\n", argv[1]);
        return 1;
    }
    int drawn = 0;
    for (const auto& shot : shotList) {
        if (std::string_view(shot.name).find(part) == std::string_view::npos)
            continue;
        for (const auto& theme : {QStringLiteral("light"), QStringLiteral("dark")}) {
            const auto name
                = QLatin1String(shot.name) + QLatin1Char('-') + theme + QStringLiteral(".png");
            draw(shot, theme, {1280, 820}, folder.filePath(name));
            ++drawn;
            if (shot.alsoAtMinimumSize) {
                draw(shot, theme, {1180, 760}, folder.filePath(QStringLiteral("min-size-") + name));
                ++drawn;
            }
        }
    }
    const auto drawOwn = [&](std::string_view name, auto drawIt) {
        if (name.find(part) == std::string_view::npos)
            return;
        for (const auto& theme : {QStringLiteral("light"), QStringLiteral("dark")}) {
            const auto file = QString::fromUtf8(name.data(), int(name.size())) + QLatin1Char('-');
            drawIt(theme, folder.filePath(file + theme + QStringLiteral(".png")));
            ++drawn;
        }
    };
    drawOwn("components", drawComponents);
    drawOwn("settings-window", drawSettingsWindow);
    std::printf("%d pictures in %s\n", drawn, argv[1]);
    return drawn == 0;
}
