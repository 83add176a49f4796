#include "ui/support/window_test.h"

#include "support/event_loop.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QTest>

namespace kestavon::test {

namespace {

void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    // The offscreen platform says so of sizes and of raising.
    if (message.startsWith(QLatin1String("This plugin does not support")))
        return;
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    ADD_FAILURE() << "Qt warns: " << message.toStdString();
}

QQuickItem* findShown(QQuickItem* item, const QString& text)
{
    if (!item->isVisible() || item->opacity() == 0)
        return nullptr;
    if (item->inherits("QQuickText") && item->property("text").toString() == text)
        return item;
    // Last first: what lies on top is found before what it covers.
    const auto children = item->childItems();
    for (auto child = children.crbegin(); child != children.crend(); ++child) {
        if (auto* found = findShown(*child, text))
            return found;
    }
    return nullptr;
}

} // namespace

WindowTest::WindowTest()
{
    qInstallMessageHandler(failOnWarning);
    machine.files->listable.insert("/home/alice/Library/Mail");
    machine.memory->value = MemorySnapshot{.freeBytes = 2'310'000'000,
        .activeBytes = 6'000'000'000,
        .inactiveBytes = 4'000'000'000,
        .wiredBytes = 1'500'000'000};
}

WindowTest::~WindowTest()
{
    engine.reset();
    qInstallMessageHandler(nullptr);
}

void WindowTest::open()
{
    TestWindow::open({});
}

QQuickItem* WindowTest::shown(const QString& text, QQuickWindow* in) const
{
    return findShown((in ? in : window)->contentItem(), text);
}

QQuickItem* WindowTest::waitFor(const QString& text, QQuickWindow* in)
{
    QQuickItem* found = nullptr;
    EXPECT_TRUE(QTest::qWaitFor([&] { return (found = shown(text, in)) != nullptr; }))
        << "not shown: " << text.toStdString();
    return found;
}

void WindowTest::waitUntilGone(const QString& text)
{
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shown(text); })) << text.toStdString();
}

void WindowTest::click(const QString& text, QQuickWindow* in)
{
    auto* item = waitFor(text, in);
    ASSERT_TRUE(item);
    QTest::mouseClick(in ? in : window, Qt::LeftButton, {}, middleOf(*item).toPoint());
    processEvents();
}

void WindowTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers, QQuickWindow* in)
{
    QTest::keyClick(in ? in : window, key, modifiers);
    processEvents();
}

QQuickWindow* WindowTest::waitForWindow(const QString& title)
{
    QQuickWindow* found = nullptr;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        for (auto* candidate : QGuiApplication::topLevelWindows()) {
            if (candidate->title() == title && candidate->isExposed())
                found = qobject_cast<QQuickWindow*>(candidate);
        }
        return found != nullptr;
    })) << "no window "
        << title.toStdString();
    return found;
}

QString WindowTest::focusedName() const
{
    auto* item = window->activeFocusItem();
    auto* accessible = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    return accessible ? accessible->text(QAccessible::Name) : QString();
}

} // namespace kestavon::test
