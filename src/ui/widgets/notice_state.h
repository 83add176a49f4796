#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>

namespace kestavon {

/// The quiet bar at the foot of the window: a sentence that needs no answer, sometimes with one
/// thing to do about it. It goes by itself, and a newer one takes its place. Main thread.
class NoticeState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged)
    /// The texts stay as they are while the bar slides out.
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    /// On the button; empty: there is none.
    Q_PROPERTY(QString action READ action NOTIFY textChanged)
    /// Somebody is at the bar: it stays until `held` is false, and its time begins again.
    Q_PROPERTY(bool held READ held WRITE setHeld NOTIFY heldChanged)
public:
    static constexpr std::chrono::milliseconds usualTime = std::chrono::seconds(10);

    /// `time`: how long the bar is shown.
    explicit NoticeState(std::chrono::milliseconds time);

    bool shown() const { return m_shown; }
    const QString& text() const { return m_text; }
    const QString& action() const { return m_action; }
    bool held() const { return m_held; }
    void setHeld(bool held);

    /// Shows `text`; `act` is what the button `action` does, once and while it is shown.
    void show(const QString& text, const QString& action = {}, std::function<void()> act = {});

    /// Does what the button says; the bar goes unless that shows another notice. Nothing without a
    /// button.
    Q_INVOKABLE void act();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void shownChanged();
    void textChanged();
    void heldChanged();

private:
    QTimer m_timer;
    int m_number = 0; ///< of the notice that is shown
    bool m_shown = false;
    bool m_held = false;
    QString m_text;
    QString m_action;
    std::function<void()> m_act;
};

} // namespace kestavon
