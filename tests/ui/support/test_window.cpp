#include "ui/support/test_window.h"

#include "platform/linux/junk_locations.h"
#include "support/event_loop.h"
#include "ui/accessible_shim.h"
#include "ui/style/symbol_provider.h"
#include "ui/widgets/app_icon_provider.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlExtensionPlugin>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <stdexcept>
#include <utility>

Q_IMPORT_QML_PLUGIN(Kestavon_UiPlugin)

namespace kestavon::test {

namespace {

void useFonts()
{
    static const bool once = [] {
        for (const char* name : {"InterTabular-Regular", "InterTabular-Medium",
                 "InterTabular-SemiBold", "InterTabular-Bold", "InterDisplayTabular-Bold"})
            QFontDatabase::addApplicationFont(
                QStringLiteral(":/fonts/%1.otf").arg(QLatin1String(name)));
        QFont font(QStringLiteral("Inter Tabular"));
        font.setPixelSize(13);
        QGuiApplication::setFont(font);
        return true;
    }();
    static_cast<void>(once);
}

QQuickItem* findItem(QQuickItem* item, const QString& objectName)
{
    if (item->objectName() == objectName && item->isVisible())
        return item;
    for (auto* child : item->childItems()) {
        if (auto* found = findItem(child, objectName))
            return found;
    }
    return nullptr;
}

} // namespace

void TestWindow::open(const Options& options)
{
    useFonts();
    auto platform = machine.platform();
    if (options.readsJunkFromDisk)
        platform.layout.junkLocations = junkLocationsOf(platform.layout);
    model = std::make_unique<AppModel>(options.otherScanner ? options.otherScanner : scanner,
        std::move(platform),
        options.otherDuplicateFinder ? options.otherDuplicateFinder
                                     : FakeDuplicateFinder::asFinder(duplicateFinder),
        options.readsJunkFromDisk ? AppModel::JunkScanner()
                                  : FakeJunkScanner::asScanner(junkScanner));
    states = std::make_unique<UiStates>(*model);
    engine = std::make_unique<QQmlApplicationEngine>();
    installAccessibleShim(*engine);
    engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine->addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
    engine->addImageProvider(
        QStringLiteral("appicon"), new AppIconProvider(model->platform().layout.dataFolders));
    // Nothing fades or slides: what a click brings about is there when it returns.
    engine->setInitialProperties({{QStringLiteral("ui"), QVariant::fromValue(states.get())},
        {QStringLiteral("themeChoice"), options.theme}, {QStringLiteral("reducedMotion"), true}});
    engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Kestavon/Ui/shell/Main.qml")));
    if (engine->rootObjects().isEmpty())
        throw std::runtime_error("The window did not load.");
    window = qobject_cast<QQuickWindow*>(engine->rootObjects().first());
    window->resize(options.size);
    window->requestActivate();
    if (!QTest::qWaitForWindowExposed(window) || !QTest::qWaitForWindowActive(window)
        || !processEventsUntil([this] { return window->property("hasAppeared").toBool(); }))
        throw std::runtime_error("The window did not come up.");
}

TestWindow::~TestWindow()
{
    // The window goes before what it shows.
    engine.reset();
    states.reset();
    model.reset();
}

QQuickItem* TestWindow::item(const char* objectName) const
{
    return findItem(window->contentItem(), QLatin1String(objectName));
}

QQuickItem& TestWindow::need(const char* objectName) const
{
    if (auto* found = item(objectName))
        return *found;
    throw std::runtime_error(std::string("The window shows no ") + objectName);
}

void TestWindow::clickAt(const QPointF& point, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(window, Qt::LeftButton, modifiers, point.toPoint());
    processEvents();
}

QPointF TestWindow::middleOf(const QQuickItem& target)
{
    // Rows and columns place what they hold with the next frame, which a busy machine draws late.
    for (int pass = 0; pass < 2; ++pass) {
        std::vector<QQuickItem*> outermostLast;
        for (auto* around = target.parentItem(); around; around = around->parentItem())
            outermostLast.push_back(around);
        std::ranges::for_each(outermostLast.rbegin(), outermostLast.rend(),
            [](QQuickItem* around) { around->ensurePolished(); });
    }
    return target.mapToScene(QPointF(target.width() / 2, target.height() / 2));
}

void TestWindow::clickItem(const char* objectName)
{
    const auto& item = need(objectName);
    processEventsUntil([&item] { return !item.property("settling").toBool(); });
    clickAt(middleOf(item));
}

void TestWindow::waitForFrame()
{
    for (int i = 0; i < 2; ++i) { // one may have been on its way already
        QSignalSpy frames(window, &QQuickWindow::frameSwapped);
        window->update();
        if (!frames.wait())
            throw std::runtime_error("The window draws no more.");
    }
}

void TestWindow::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(window, key, modifiers);
    processEvents();
}

void TestWindow::type(const QString& text)
{
    for (const auto character : text)
        QTest::keyClick(window, character.toLatin1());
    processEvents();
}

void TestWindow::scan(const std::vector<FileRecord>& records)
{
    scan({.records = RecordList::fromRecords(model->selectedRoot(), records)});
}

void TestWindow::scan(ScanOutcome outcome)
{
    model->startStorageScan();
    scanner->finishWith(std::move(outcome));
    if (!processEventsUntil([&] { return !model->scanPhase().isScanning(); }) || !settle())
        throw std::runtime_error("The scan did not end.");
}

bool TestWindow::settle()
{
    const bool settled = processEventsUntil([&] {
        return !states->storage()->rows()->isBusy() && !states->largeFiles()->rows()->isBusy();
    });
    processEvents();
    return settled;
}

} // namespace kestavon::test
