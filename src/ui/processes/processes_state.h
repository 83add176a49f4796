#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/confirmation.h"

#include <QObject>
#include <QString>

#include <vector>

namespace kestavon {

/// The Processes screen: the applications that run, by memory, and asking one to quit. Rows are
/// from 0; one that does not exist is blank. Main thread.
class ProcessesState final : public QObject {
    Q_OBJECT
    /// How many run, whatever is searched for: "23 apps".
    Q_PROPERTY(QString countText READ countText NOTIFY countChanged)
    /// It was looked, and nothing runs.
    Q_PROPERTY(bool empty READ empty NOTIFY countChanged)
    /// Only those whose names contain it are in the rows.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    /// Rows may show something else when it has changed.
    Q_PROPERTY(int revision READ revision NOTIFY rowsChanged)
    /// A control of a row is being pressed: the rows stay as they are until it was let go.
    Q_PROPERTY(bool held READ held WRITE setHeld NOTIFY heldChanged)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    explicit ProcessesState(AppModel& model);

    QString countText() const;
    bool empty() const { return m_hasLooked && m_model.processes().empty(); }
    const QString& filter() const { return m_filter; }
    void setFilter(const QString& filter);
    int rowCount() const { return static_cast<int>(m_rows.size()); }
    int revision() const { return m_revision; }
    bool held() const { return m_held; }
    void setHeld(bool held);
    Confirmation* confirmation() { return &m_confirmation; }

    Q_INVOKABLE QString nameText(int row) const;
    Q_INVOKABLE QString processText(int row) const; ///< "PID 4211"
    Q_INVOKABLE QString memoryText(int row) const;
    Q_INVOKABLE QString icon(int row) const; ///< for an AppIcon
    Q_INVOKABLE bool isLarge(int row) const;
    Q_INVOKABLE bool isProtected(int row) const;

    /// Reads memory and processes anew; the screen does so every three seconds.
    Q_INVOKABLE void refresh();
    /// The screen is opened anew.
    Q_INVOKABLE void begin();
    /// Asks, and asks the process to quit when the answer is yes. Nothing for a protected one.
    Q_INVOKABLE void askForceQuit(int row);

Q_SIGNALS:
    void countChanged();
    void filterChanged();
    void rowsChanged();
    void heldChanged();

private:
    const AppProcessInfo* at(int row) const;
    void updateRows();
    void quit(const AppProcessInfo& process);

    AppModel& m_model;
    Confirmation m_confirmation;
    QString m_filter;
    std::vector<AppProcessInfo> m_rows;
    int m_revision = 0;
    bool m_hasLooked = false;
    bool m_held = false;
};

} // namespace kestavon
