#pragma once

#include "core/domain/record_list.h"
#include "core/model/background.h"
#include "core/model/record_selection.h"
#include "core/model/record_view.h"
#include "platform/calendar.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestavon {

/// The rows of the Storage and Large Files tables: a list's records sorted by size, filtered by a
/// text, selected by clicks and keys.
///
/// Written for a table that draws only the rows in sight and asks for each by its number: bind to
/// `rowCount` and ask for rows 0 to `rowCount` - 1, again whenever a revision has changed
/// (`{ rows.contentRevision; return rows.text(row, 0) }`). A row that does not exist is blank, so a
/// delegate may outlive its row.
///
/// Sorting and filtering happen on a thread of this object's own, and the rows stay as they are
/// until the new ones are ready; a newer request replaces one that is still being worked on. Main
/// thread only; no call takes time that grows with the number of records, except that selecting
/// takes some nanoseconds for every row selected.
class RecordTableModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::shared_ptr<const kestavon::RecordList> records READ records WRITE setRecords
            NOTIFY recordsChanged)
    Q_PROPERTY(bool largestFilesOnly READ largestFilesOnly WRITE setLargestFilesOnly NOTIFY
            largestFilesOnlyChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged)
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(int contentRevision READ contentRevision NOTIFY rowsChanged)
    Q_PROPERTY(int selectionRevision READ selectionRevision NOTIFY selectionChanged)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)
    Q_PROPERTY(qint64 selectedBytes READ selectedBytes NOTIFY selectionChanged)
    Q_PROPERTY(QString selectedSizeText READ selectedSizeText NOTIFY selectionChanged)
    Q_PROPERTY(int currentRow READ currentRow NOTIFY selectionChanged)
public:
    explicit RecordTableModel(QObject* parent = nullptr);
    ~RecordTableModel() override;

    /// @name What the table shows
    /// @{
    /// The scan's records, as `AppModel::records` publishes them. Another list empties the
    /// selection at once and an empty or null one also the table; otherwise the old rows stay until
    /// the new ones are sorted.
    const std::shared_ptr<const RecordList>& records() const { return m_records; }
    void setRecords(std::shared_ptr<const RecordList> records);
    /// Whether only the 100 largest records that are not folders are shown (Large Files); otherwise
    /// all are (Storage).
    bool largestFilesOnly() const { return m_largestFilesOnly; }
    void setLargestFilesOnly(bool only);
    /// Rows are shown when their name or full path contains this text, see `RecordFilter`. Selected
    /// records that it hides stay selected but are not counted and not acted on.
    const QString& filter() const { return m_filter; }
    void setFilter(const QString& filter);
    /// Whether rows for the latest records or filter are still on their way.
    bool isBusy() const { return m_request.has_value(); }
    /// @}

    /// @name Rows, by number from 0
    /// @{
    int rowCount() const { return static_cast<int>(view().rowCount()); }
    /// Grows whenever a row may show something else than before.
    int contentRevision() const { return m_contentRevision; }
    /// What the table's column shows, each on one line: name, size, date and path; with
    /// `largestFilesOnly` name, size and path.
    Q_INVOKABLE QString text(int row, int column) const;
    Q_INVOKABLE QString nameText(int row) const; ///< the last path component
    Q_INVOKABLE QString sizeText(int row) const; ///< "12.3 MB"
    Q_INVOKABLE QString dateText(int row) const; ///< "16 Nov 2026 at 14:05"; "—" when unknown
    Q_INVOKABLE QString pathText(int row) const; ///< the full path
    /// The size as a share of the first row's, 0 to 1: for a bar beside it.
    Q_INVOKABLE double sizeShare(int row) const;
    Q_INVOKABLE bool isFolder(int row) const;
    /// The full path's bytes, to do something with.
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    /// @}

    /// @name Selecting
    /// `modifiers` are Qt's keyboard modifiers (an event's or a point's `modifiers`).
    /// @{
    Q_INVOKABLE bool isSelected(int row) const;
    /// Grows whenever `isSelected`, `currentRow` or the totals may answer differently.
    int selectionRevision() const { return m_selectionRevision; }
    /// A click: selects the row; with Ctrl turns it on or off; with Shift selects from the anchor
    /// to it; with both adds that range.
    Q_INVOKABLE void click(int row, int modifiers);
    /// A key: ±1 for the arrows, ± the rows in sight for Page Up and Down, ±`rowCount` for Home
    /// and End. With Shift extends the selection; with Ctrl moves without selecting.
    Q_INVOKABLE void move(int delta, int modifiers);
    /// Turns the current row on or off (Space after moving with Ctrl).
    Q_INVOKABLE void toggleCurrent();
    /// Adds every row shown.
    Q_INVOKABLE void selectAll();
    /// Empties the selection, records hidden by the filter included.
    Q_INVOKABLE void clearSelection();
    /// The row the keys move from; -1 when there is none, or the filter hides it.
    int currentRow() const;
    /// Whether anything is selected, records hidden by the filter included.
    bool hasSelection() const { return !m_selection.empty(); }
    /// How many rows are; hidden records do not count, here and below.
    int selectedCount() const { return static_cast<int>(m_selection.count()); }
    qint64 selectedBytes() const { return m_selection.bytes(); }
    QString selectedSizeText() const;
    /// The records of the selected rows, as positions in `shownRecords`, ascending: a folder comes
    /// before what it holds.
    std::vector<std::uint32_t> selectedVisiblePositions() const;
    /// The list whose rows are shown: `records`, except while its rows are on their way.
    const std::shared_ptr<const RecordList>& shownRecords() const { return view().records(); }
    /// @}

Q_SIGNALS:
    void recordsChanged();
    void largestFilesOnlyChanged();
    void filterChanged();
    void busyChanged();
    /// Other rows are shown, or other records in them.
    void rowsChanged();
    void selectionChanged();

private:
    const RecordView& view() const { return *m_selection.view(); }
    std::optional<std::uint32_t> positionAt(int row) const;
    void restart();
    void request();
    void cancelRequest();
    void show(std::shared_ptr<const RecordView> rows);
    void announceSelection();
    template <class T> void disposeInBackground(T value);

    const SystemCalendar m_calendar;

    std::shared_ptr<const RecordList> m_records = std::make_shared<const RecordList>();
    bool m_largestFilesOnly = false;
    QString m_filter;
    RecordSelection m_selection; ///< and the view that is shown
    int m_contentRevision = 0;
    int m_selectionRevision = 0;

    std::shared_ptr<RecordViews> m_views; ///< of m_records; used on the queue's thread
    std::optional<std::stop_source> m_request; ///< the rows that are on their way
    std::shared_ptr<SerialQueue> m_queue = std::make_shared<SerialQueue>();
};

} // namespace kestavon
