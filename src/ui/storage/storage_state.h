#pragma once

#include "ui/widgets/file_table_state.h"

namespace kestavon {

/// The Storage screen: every scanned file and folder. Main thread.
class StorageState final : public kestavon::FileTableState { // in full, for the QML tools
    Q_OBJECT
    /// "418236 items, sorted by size": all records, whatever the filter shows.
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY recordsChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
public:
    explicit StorageState(AppModel& model);

    QString subtitle() const;
    /// Records whose name or full path contains this are shown; all when it is empty.
    QString searchText() const { return rows()->filter(); }
    void setSearchText(const QString& text) { rows()->setFilter(text); }

Q_SIGNALS:
    void searchTextChanged();
};

} // namespace kestavon
