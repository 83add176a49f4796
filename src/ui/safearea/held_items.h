#pragma once

#include "core/domain/quarantine_item.h"
#include "platform/calendar.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kestavon {

/// Items of the Safe Area as rows from 0; a row that does not exist is blank. Ask again whenever
/// the revision has changed. Main thread.
class HeldItems final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(int revision READ revision NOTIFY changed)
public:
    using Source = std::function<const std::vector<QuarantineItem>&()>;
    using Busy = std::function<bool(const Uuid&)>;

    /// `source` gives the items as they are now, and is asked anew after `reload`; `busy` tells of
    /// each whether it is being worked on, until `refresh`.
    HeldItems(Source source, Busy busy, std::shared_ptr<const Calendar> calendar);

    int rowCount() const { return static_cast<int>(m_source().size()); }
    int revision() const { return m_revision; }
    Q_INVOKABLE QString nameText(int row) const;
    /// Where restoring puts the item, or that this is not known.
    Q_INVOKABLE QString pathText(int row) const;
    Q_INVOKABLE kestavon::FilePath originalPath(int row) const;
    Q_INVOKABLE kestavon::FilePath heldPath(int row) const; ///< where the item lies now
    Q_INVOKABLE QString reasonText(int row) const;
    Q_INVOKABLE QString movedText(int row) const;
    /// Whether the item is being restored or deleted.
    Q_INVOKABLE bool isBusy(int row) const;
    bool isBusy(const Uuid& id) const { return m_busy(id); }

    std::optional<QuarantineItem> itemAt(int row) const;
    void reload();
    void refresh();

Q_SIGNALS:
    /// Other items stand in the rows.
    void rowsChanged();
    /// A row may show something else than before.
    void changed();

private:
    const QuarantineItem* at(int row) const;

    Source m_source;
    Busy m_busy;
    std::shared_ptr<const Calendar> m_calendar;
    int m_revision = 0;
};

} // namespace kestavon
