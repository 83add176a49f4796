#pragma once

#include "ui/support/test_window.h"

#include <gmock/gmock.h>

namespace kestavon::test {

/// The main window used as a person uses it: found by the texts it shows, clicked and typed into.
/// Any warning from QML fails the test.
class WindowTest : public testing::Test, protected TestWindow {
protected:
    WindowTest();
    ~WindowTest() override;

    /// Opens the window; what is set on `machine` before counts.
    void open();

    /// The visible item of `window` (the main one by default) that shows exactly `text`, or null.
    QQuickItem* shown(const QString& text, QQuickWindow* window = nullptr) const;
    /// Waits until such an item is there, or no longer there; fails after some seconds.
    QQuickItem* waitFor(const QString& text, QQuickWindow* window = nullptr);
    void waitUntilGone(const QString& text);
    /// Clicks the middle of the item that shows `text`.
    void click(const QString& text, QQuickWindow* window = nullptr);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
        QQuickWindow* window = nullptr);
    /// The second window with this title, once it is exposed.
    QQuickWindow* waitForWindow(const QString& title);
    /// The accessible name of what has the keyboard.
    QString focusedName() const;
};

} // namespace kestavon::test
