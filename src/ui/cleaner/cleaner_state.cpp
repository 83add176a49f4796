#include "ui/cleaner/cleaner_state.h"

#include "ui/cleaner/cleaner_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QPointer>

namespace kestavon {

CleanerState::CleanerState(AppModel& model)
    : m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        switch (field) {
        case AppModel::Field::cleanupCandidates:
            ++m_contentRevision;
            Q_EMIT rowsChanged();
            updateSelection();
            break;
        case AppModel::Field::selectedCleanupIDs: updateSelection(); break;
        default: break;
        }
    });
    updateSelection();
}

std::optional<std::size_t> CleanerState::positionOf(int row) const
{
    if (row < 0 || row >= rowCount())
        return std::nullopt;
    return static_cast<std::size_t>(row);
}

QString CleanerState::nameText(int row) const
{
    const auto i = positionOf(row);
    return i ? fileNameText(candidates().records()->name(candidates().recordPosition(*i)))
             : QString();
}

QString CleanerState::pathText(int row) const
{
    return fileNameText(filePath(row).bytes);
}

FilePath CleanerState::filePath(int row) const
{
    const auto i = positionOf(row);
    return {i ? candidates().records()->path(candidates().recordPosition(*i)) : std::string()};
}

QString CleanerState::reasonText(int row) const
{
    const auto i = positionOf(row);
    return i ? displayText(candidates().reason(*i)) : QString();
}

QString CleanerState::modifiedText(int row) const
{
    const auto i = positionOf(row);
    return i ? kestavon::modifiedText(
               candidates().records()->modifiedAt(candidates().recordPosition(*i)),
               *m_model.platform().calendar)
             : QString();
}

QString CleanerState::sizeText(int row) const
{
    const auto i = positionOf(row);
    return i ? byteText(candidates().estimatedBytes(*i)) : QString();
}

QString CleanerState::symbol(int row) const
{
    const auto i = positionOf(row);
    return i ? displayText(suggestionLook(candidates().reason(*i)).symbol) : QString();
}

QString CleanerState::symbolColor(int row) const
{
    const auto i = positionOf(row);
    return displayText(suggestionLook(i ? candidates().reason(*i) : "").color);
}

bool CleanerState::isSelected(int row) const
{
    const auto i = positionOf(row);
    return i && m_model.selectedCleanupIDs().contains(candidates().id(*i));
}

void CleanerState::toggle(int row)
{
    if (const auto i = positionOf(row))
        m_model.setCleanupSelected(candidates().id(*i), !isSelected(row));
}

bool CleanerState::allSelected() const
{
    return allAreSelected(m_model.selectedCleanupIDs().size(), candidates().size());
}

QString CleanerState::allLabel() const
{
    return allSelected() ? u"Deselect All"_s : u"Select All"_s;
}

void CleanerState::toggleAll()
{
    if (allSelected())
        m_model.deselectAllCleanup();
    else
        m_model.selectAllCleanup();
}

void CleanerState::askMove()
{
    if (canMove())
        m_confirmation.ask(
            cleanupQuestion(m_model.selectedCleanupIDs().size()), [this] { move(); });
}

void CleanerState::move()
{
    m_moving = true;
    Q_EMIT selectionChanged();
    m_model.moveSelectedCleanupToSafeArea(
        [self = QPointer<CleanerState>(this)](const std::string& error) {
            if (!self)
                return;
            self->m_moving = false;
            Q_EMIT self->selectionChanged();
            self->m_confirmation.setErrorMessage(fileNameText(error));
        });
}

void CleanerState::goToDashboard()
{
    m_model.setSection(AppSection::dashboard);
}

void CleanerState::updateSelection()
{
    m_confirmation.cancel();
    ++m_selectionRevision;
    const auto& selection = m_model.selectedCleanupIDs();
    m_selectionText = cleanupSelectionText(selection.size(), candidates().size());
    m_reclaimText = kestavon::reclaimText(selectedBytes(candidates(), selection));
    Q_EMIT selectionChanged();
}

} // namespace kestavon
