#pragma once

#include "core/model/app_model.h"
#include "ui/performance/memory_history.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// The Performance screen: memory figures, how they changed during the last minute, and who takes
/// most. Rows are from 0; one that does not exist is blank. Main thread.
class PerformanceState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasMemory READ hasMemory NOTIFY memoryChanged)
    Q_PROPERTY(QString freeText READ freeText NOTIFY memoryChanged)
    Q_PROPERTY(QString activeText READ activeText NOTIFY memoryChanged)
    Q_PROPERTY(QString wiredText READ wiredText NOTIFY memoryChanged)
    Q_PROPERTY(QString inactiveText READ inactiveText NOTIFY memoryChanged)
    Q_PROPERTY(int consumers READ consumers NOTIFY consumersChanged)
    /// Rows may show something else when it has changed.
    Q_PROPERTY(int revision READ revision NOTIFY consumersChanged)
    /// Memory is being reclaimed; what that brought is in `freedText` when it ends.
    Q_PROPERTY(bool optimizing READ optimizing NOTIFY optimizingChanged)
    Q_PROPERTY(QString freedText READ freedText NOTIFY optimizingChanged)
public:
    explicit PerformanceState(AppModel& model);

    bool hasMemory() const { return m_model.memory().has_value(); }
    QString freeText() const { return memoryText(&MemorySnapshot::freeBytes); }
    QString activeText() const { return memoryText(&MemorySnapshot::activeBytes); }
    QString wiredText() const { return memoryText(&MemorySnapshot::wiredBytes); }
    QString inactiveText() const { return memoryText(&MemorySnapshot::inactiveBytes); }
    int consumers() const;
    int revision() const { return m_revision; }
    bool optimizing() const { return m_model.isFreezingRAM(); }
    QString freedText() const;

    Q_INVOKABLE QString nameText(int row) const;
    Q_INVOKABLE QString icon(int row) const; ///< for an AppIcon
    Q_INVOKABLE QString memoryText(int row) const;
    Q_INVOKABLE double share(int row) const; ///< of all memory, 0 to 1
    Q_INVOKABLE bool isLarge(int row) const;

    /// Reads memory and processes anew; the screen does so every second.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void optimize() { m_model.optimizeMemory(); }

    const MemoryHistory& history() const { return m_history; }

Q_SIGNALS:
    void memoryChanged();
    void consumersChanged();
    void optimizingChanged();

private:
    QString memoryText(std::uint64_t MemorySnapshot::*counter) const;
    const AppProcessInfo* at(int row) const;

    AppModel& m_model;
    MemoryHistory m_history;
    int m_revision = 0;
};

} // namespace kestavon
