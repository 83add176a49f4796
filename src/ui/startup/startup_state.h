#pragma once

#include "core/model/app_model.h"
#include "ui/startup/startup_rows.h"
#include "ui/widgets/confirmation.h"

#include <QObject>

#include <unordered_set>

namespace kestavon {

/// The Startup Items screen: what starts by itself, and the removal of the user's own. Main thread.
class StartupState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool loading READ loading NOTIFY loadingChanged)
    Q_PROPERTY(kestavon::StartupRows* rows READ rows CONSTANT)
    /// Tells why an item could not be removed; it asks nothing.
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
public:
    explicit StartupState(AppModel& model);

    bool loading() const { return m_model.isLoadingStartupItems(); }
    StartupRows* rows() { return &m_rows; }
    Confirmation* confirmation() { return &m_confirmation; }

    Q_INVOKABLE void load() { m_model.loadStartupItems(); }
    /// Moves the item's file to the Trash, without asking; nothing while that is being done.
    Q_INVOKABLE void remove(int row);

Q_SIGNALS:
    void loadingChanged();

private:
    AppModel& m_model;
    std::unordered_set<Uuid> m_busy; // items that are being removed
    StartupRows m_rows;
    Confirmation m_confirmation;
};

} // namespace kestavon
