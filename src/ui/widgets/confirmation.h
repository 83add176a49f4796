#pragma once

#include "core/model/questions.h"

#include <QObject>
#include <QString>

#include <functional>

namespace kestavon {

/// What the question before a deed says.
struct ConfirmationTexts {
    QString title;
    QString message;
    QString action; ///< on the button that goes ahead
    bool destructive = false; ///< whether that button is red
    QString alternative = {}; ///< on a button that goes ahead in another way; empty: there is none

    friend bool operator==(const ConfirmationTexts&, const ConfirmationTexts&) = default;
};

/// The question as a dialog shows it.
ConfirmationTexts textsOf(const Question& question);

/// A screen's question before a deed, and its alert when a deed failed; one of each at a time. Main
/// thread. (Not final: QML derives from what it could make.)
class Confirmation : public QObject {
    Q_OBJECT
    /// The question is being put; its texts stay as they are while it fades out.
    Q_PROPERTY(bool asking READ asking NOTIFY askingChanged)
    Q_PROPERTY(QString title READ title NOTIFY askingChanged)
    Q_PROPERTY(QString message READ message NOTIFY askingChanged)
    Q_PROPERTY(QString action READ action NOTIFY askingChanged)
    Q_PROPERTY(bool destructive READ destructive NOTIFY askingChanged)
    Q_PROPERTY(QString alternative READ alternative NOTIFY askingChanged)
    /// Why the last deed failed; empty unless the alert is to be shown.
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
public:
    using QObject::QObject;

    /// Puts the question; `deed` is done when the user says yes, `otherDeed` when they choose the
    /// alternative. A question that is being put already stays.
    void ask(ConfirmationTexts texts, std::function<void()> deed,
        std::function<void()> otherDeed = nullptr);
    /// What the question that is being put says from now on; without one nothing happens.
    void reword(ConfirmationTexts texts);
    /// Shows the alert, or none for an empty message.
    void setErrorMessage(const QString& message);

    bool asking() const { return static_cast<bool>(m_deed); }
    const QString& title() const { return m_texts.title; }
    const QString& message() const { return m_texts.message; }
    const QString& action() const { return m_texts.action; }
    bool destructive() const { return m_texts.destructive; }
    const QString& alternative() const { return m_texts.alternative; }
    const QString& errorMessage() const { return m_errorMessage; }

    /// The user said yes.
    Q_INVOKABLE void confirm();
    /// The user chose the alternative.
    Q_INVOKABLE void confirmAlternative();
    /// The user said no, or what the question was about has changed.
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void dismissError() { setErrorMessage({}); }

Q_SIGNALS:
    void askingChanged();
    void errorMessageChanged();

private:
    void answer(std::function<void()> deed);

    ConfirmationTexts m_texts;
    std::function<void()> m_deed;
    std::function<void()> m_otherDeed;
    QString m_errorMessage;
};

} // namespace kestavon
