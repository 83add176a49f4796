#include "ui/widgets/record_removal.h"

#include "core/model/questions.h"
#include "ui/widgets/display_text.h"

#include <QPointer>

#include <utility>

namespace kestavon {

RemovalQuestion removalQuestion(RemovalKind kind, std::size_t count)
{
    const auto question = questions::removeFiles(
        kind == RemovalKind::trash ? ActionKind::trash : ActionKind::permanent, count);
    return {
        .title = displayText(question.title),
        .message = displayText(question.message),
        .action = displayText(question.action),
    };
}

RecordRemoval::RecordRemoval(
    std::function<RecordPick()> selected, std::function<void()> clearSelection, QObject* parent)
    : QObject(parent)
    , m_selected(std::move(selected))
    , m_clearSelection(std::move(clearSelection))
{
}

void RecordRemoval::setRemove(Remove remove)
{
    m_remove = std::move(remove);
}

void RecordRemoval::ask(RemovalKind kind)
{
    auto selected = m_selected();
    if (!m_remove || m_asking || selected.positions.empty())
        return;
    m_kind = kind;
    m_question = removalQuestion(kind, selected.positions.size());
    m_asked = std::move(selected);
    m_asking = true;
    Q_EMIT askingChanged();
}

void RecordRemoval::selectionChanged()
{
    if (m_asking && m_selected() != m_asked)
        cancel();
}

void RecordRemoval::confirm()
{
    if (!m_asking)
        return;
    auto asked = std::exchange(m_asked, {});
    m_asking = false;
    Q_EMIT askingChanged();
    m_remove(
        m_kind, std::move(asked), [self = QPointer<RecordRemoval>(this)](const QString& error) {
            if (self)
                self->finish(error);
        });
}

void RecordRemoval::cancel()
{
    if (!m_asking)
        return;
    m_asked = {};
    m_asking = false;
    Q_EMIT askingChanged();
}

void RecordRemoval::finish(const QString& error)
{
    if (error.isEmpty()) {
        m_clearSelection();
        return;
    }
    m_errorMessage = error;
    Q_EMIT errorMessageChanged();
}

void RecordRemoval::dismissError()
{
    if (m_errorMessage.isEmpty())
        return;
    m_errorMessage.clear();
    Q_EMIT errorMessageChanged();
}

} // namespace kestavon
