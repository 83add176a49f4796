#include "ui/widgets/file_table_state.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <utility>

namespace kestavon {

QString selectionSummaryText(int count, const QString& size)
{
    return u"%1 selected · %2"_s.arg(QString::number(count), size);
}

FileTableState::FileTableState(AppModel& model, bool largestFilesOnly)
    : m_model(model)
    , m_removal(
          [this] {
              return RecordPick{m_rows.shownRecords(), m_rows.selectedVisiblePositions()};
          },
          [this] { m_rows.clearSelection(); })
{
    m_removal.setRemove([this](RemovalKind kind, RecordPick selected, RecordRemoval::Done done) {
        remove(kind, std::move(selected), std::move(done));
    });
    m_rows.setLargestFilesOnly(largestFilesOnly);
    m_rows.setRecords(model.records());
    connect(&m_rows, &RecordTableModel::selectionChanged, this, &FileTableState::followSelection);
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field != AppModel::Field::records)
            return;
        m_rows.setRecords(m_model.records());
        Q_EMIT recordsChanged();
    });
}

void FileTableState::remove(RemovalKind kind, RecordPick selected, RecordRemoval::Done done)
{
    auto finished
        = [done = std::move(done)](const std::string& error) { done(fileNameText(error)); };
    if (kind == RemovalKind::trash)
        m_model.trashRecords(std::move(selected), std::move(finished));
    else
        m_model.deleteRecordsPermanently(std::move(selected), std::move(finished));
}

void FileTableState::reset()
{
    m_rows.clearSelection();
    m_rows.setFilter({});
    m_removal.cancel();
    m_removal.dismissError();
}

void FileTableState::followSelection()
{
    if (hasSelection())
        m_selectionSummary
            = selectionSummaryText(m_rows.selectedCount(), m_rows.selectedSizeText());
    m_removal.selectionChanged();
    Q_EMIT selectionChanged();
}

} // namespace kestavon
