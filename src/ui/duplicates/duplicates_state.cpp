#include "ui/duplicates/duplicates_state.h"

#include "ui/duplicates/duplicates_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QPointer>

#include <utility>

namespace kestavon {

DuplicatesState::DuplicatesState(AppModel& model)
    : m_model(model)
    , m_rows(model)
{
    connect(&model, &AppModel::fieldChanged, this, &DuplicatesState::follow);
}

void DuplicatesState::follow(AppModel::Field field)
{
    switch (field) {
    case AppModel::Field::duplicates:
        m_confirmation.cancel();
        m_rows.reload();
        Q_EMIT changed();
        break;
    case AppModel::Field::records:
    case AppModel::Field::scanPhase: Q_EMIT changed(); break;
    case AppModel::Field::duplicatePhase:
        Q_EMIT changed();
        Q_EMIT progressChanged();
        break;
    case AppModel::Field::duplicateProgress: Q_EMIT progressChanged(); break;
    default: break;
    }
}

QString DuplicatesState::phaseText() const
{
    return displayText(m_model.duplicatePhase().text());
}

QString DuplicatesState::progressText() const
{
    return analyzing() ? kestavon::progressText(m_model.duplicateProgress()) : QString();
}

QString DuplicatesState::summary() const
{
    const auto& list = *m_model.duplicates();
    return list.empty() ? QString() : duplicatesSummary(list.size(), list.reclaimableBytes());
}

QString DuplicatesState::spokenText() const
{
    if (foundSome())
        return summary();
    return foundNone() ? QStringLiteral("No duplicates found") : phaseText();
}

void DuplicatesState::analyze()
{
    if (!analyzing())
        m_model.startDuplicateAnalysis();
}

void DuplicatesState::stop()
{
    if (analyzing())
        m_model.stopDuplicateAnalysis();
}

void DuplicatesState::askMerge(bool toTrash)
{
    askMerge(toTrash, mergeQuestion(toTrash, m_model.duplicates()->size()));
}

void DuplicatesState::askMerge(bool toTrash, ConfirmationTexts question)
{
    if (!m_merging && foundSome())
        m_confirmation.ask(std::move(question), [this, toTrash] { merge(toTrash); });
}

void DuplicatesState::merge(bool toTrash)
{
    m_merging = true;
    Q_EMIT changed();
    m_model.mergeDuplicates(
        toTrash, [self = QPointer<DuplicatesState>(this)](const std::string& error) {
            if (!self)
                return;
            self->m_merging = false;
            Q_EMIT self->changed();
            if (!error.empty())
                self->m_confirmation.setErrorMessage(fileNameText(error));
        });
}

} // namespace kestavon
