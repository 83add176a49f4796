#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/record_removal.h"
#include "ui/widgets/record_table_model.h"

#include <QObject>

namespace kestavon {

/// "3 selected · 57.91 GB"
QString selectionSummaryText(int count, const QString& size);

/// A screen that lists scanned files: the rows, their selection and its removal. Main thread.
class FileTableState : public QObject {
    Q_OBJECT
    /// No scan has found anything yet.
    Q_PROPERTY(bool empty READ empty NOTIFY recordsChanged)
    Q_PROPERTY(kestavon::RecordTableModel* rows READ rows CONSTANT)
    Q_PROPERTY(kestavon::RecordRemoval* removal READ removal CONSTANT)
    /// Something is selected, be it hidden by the filter.
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    /// Selected rows are in sight: only those can be removed.
    Q_PROPERTY(bool canRemove READ canRemove NOTIFY selectionChanged)
    /// "3 selected · 57.91 GB", of the rows in sight; keeps its last text while nothing is
    /// selected.
    Q_PROPERTY(QString selectionSummary READ selectionSummary NOTIFY selectionChanged)
public:
    FileTableState(AppModel& model, bool largestFilesOnly);

    bool empty() const { return m_model.records()->empty(); }
    RecordTableModel* rows() { return &m_rows; }
    const RecordTableModel* rows() const { return &m_rows; }
    RecordRemoval* removal() { return &m_removal; }
    bool hasSelection() const { return m_rows.hasSelection(); }
    bool canRemove() const { return m_rows.selectedCount() > 0; }
    const QString& selectionSummary() const { return m_selectionSummary; }

    /// The screen is gone: what it showed is forgotten.
    Q_INVOKABLE void reset();

Q_SIGNALS:
    void recordsChanged();
    void selectionChanged();

protected:
    AppModel& model() { return m_model; }
    const AppModel& model() const { return m_model; }

private:
    void remove(RemovalKind kind, RecordPick selected, RecordRemoval::Done done);
    void followSelection();

    AppModel& m_model;
    RecordTableModel m_rows;
    RecordRemoval m_removal;
    QString m_selectionSummary;
};

} // namespace kestavon
