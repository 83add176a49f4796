#pragma once

#include "core/domain/record_pick.h"

#include <QObject>
#include <QString>

#include <functional>

namespace kestavon {

/// How selected records are removed.
enum class RemovalKind { trash, permanent };

/// What the question before a removal says.
struct RemovalQuestion {
    QString title;
    QString message;
    QString action; ///< on the button that goes ahead
};

RemovalQuestion removalQuestion(RemovalKind kind, std::size_t count);

/// The removal of a table's selected records: the question before it, the deed, and the alert when
/// it fails. The question is about the records that are selected when it is put; should the
/// selection change meanwhile, the question is withdrawn and nothing is removed. Main thread.
class RecordRemoval final : public QObject {
    Q_OBJECT
    /// The question is being put; its texts stay as they are while it fades out.
    Q_PROPERTY(bool asking READ asking NOTIFY askingChanged)
    Q_PROPERTY(QString title READ title NOTIFY askingChanged)
    Q_PROPERTY(QString message READ message NOTIFY askingChanged)
    Q_PROPERTY(QString action READ action NOTIFY askingChanged)
    /// Why the last removal failed; empty unless the alert is to be shown.
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
public:
    /// Called on the main thread with the reason, or with nothing on success.
    using Done = std::function<void(const QString& error)>;
    /// Removes the records and later calls `done`.
    using Remove = std::function<void(RemovalKind, RecordPick, Done done)>;

    /// `selected` gives the selected records that are shown; `clearSelection` empties the
    /// selection.
    RecordRemoval(std::function<RecordPick()> selected, std::function<void()> clearSelection,
        QObject* parent = nullptr);

    /// Gives the deed behind the buttons; without one, nothing is asked.
    void setRemove(Remove remove);
    /// The selection changed: withdraws a question about another one.
    void selectionChanged();

    bool asking() const { return m_asking; }
    const QString& title() const { return m_question.title; }
    const QString& message() const { return m_question.message; }
    const QString& action() const { return m_question.action; }
    const QString& errorMessage() const { return m_errorMessage; }

    Q_INVOKABLE void askTrash() { ask(RemovalKind::trash); }
    Q_INVOKABLE void askDelete() { ask(RemovalKind::permanent); }
    /// Goes ahead with what was asked.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void dismissError();

Q_SIGNALS:
    void askingChanged();
    void errorMessageChanged();

private:
    void ask(RemovalKind kind);
    void finish(const QString& error);

    std::function<RecordPick()> m_selected;
    std::function<void()> m_clearSelection;
    Remove m_remove;
    bool m_asking = false;
    RemovalKind m_kind = RemovalKind::trash;
    RecordPick m_asked; ///< what the question is about
    RemovalQuestion m_question;
    QString m_errorMessage;
};

} // namespace kestavon
