#pragma once

#include "support/fake_duplicate_finder.h"
#include "support/fake_junk_scanner.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "ui/ui_states.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>
#include <string>
#include <vector>

namespace kestavon::test {

/// The real main window over a machine, a scanner and a search that exist only in memory. Needs a
/// QGuiApplication.
class TestWindow {
public:
    struct Options {
        QString theme = QStringLiteral("light");
        QSize size = {1280, 820};
        /// Scans in place of `scanner`, such as one that reads the disk.
        std::shared_ptr<FileScanning> otherScanner = nullptr;
        /// Searches in place of `duplicateFinder`.
        AppModel::DuplicateFinder otherDuplicateFinder = {};
        /// Looks for junk where the machine's layout says, in place of `junkScanner`.
        bool readsJunkFromDisk = false;
    };

    TestWindow() = default;
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    /// Opens the window and waits until it is drawn; what is set on `machine` before counts. Throws
    /// when it does not load.
    void open(const Options& options);

    /// The item below the window with this object name, first come; null when there is none.
    QQuickItem* item(const char* objectName) const;
    /// Like `item`, and fails loudly without it.
    QQuickItem& need(const char* objectName) const;

    void clickAt(const QPointF& point, Qt::KeyboardModifiers modifiers = {});
    /// Where the middle of the item is, once everything around it has its place.
    static QPointF middleOf(const QQuickItem& target);
    /// Clicks the middle of the item.
    void clickItem(const char* objectName);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void type(const QString& text);
    /// Waits until the window shows all that was changed before.
    void waitForFrame();

    /// Scans, with these records as the result, and waits until the tables show them.
    void scan(const std::vector<FileRecord>& records);
    void scan(ScanOutcome outcome);
    /// Waits until the tables show the rows for the latest filter.
    bool settle();

    FakeMachine machine;
    std::shared_ptr<FakeScanner> scanner = std::make_shared<FakeScanner>();
    std::shared_ptr<FakeDuplicateFinder> duplicateFinder = std::make_shared<FakeDuplicateFinder>();
    std::shared_ptr<FakeJunkScanner> junkScanner = std::make_shared<FakeJunkScanner>();
    std::unique_ptr<AppModel> model;
    std::unique_ptr<UiStates> states;
    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow* window = nullptr;
};

} // namespace kestavon::test
