#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/memory_bar_rules.h"

#include <QObject>

#include <array>

namespace kestavon {

/// The memory bar of the machine and its legend. Main thread.
class MemoryBarState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(double wiredShare READ wiredShare NOTIFY changed)
    Q_PROPERTY(double activeShare READ activeShare NOTIFY changed)
    Q_PROPERTY(double inactiveShare READ inactiveShare NOTIFY changed)
    Q_PROPERTY(QString wired READ wired NOTIFY changed)
    Q_PROPERTY(QString active READ active NOTIFY changed)
    Q_PROPERTY(QString inactive READ inactive NOTIFY changed)
    Q_PROPERTY(QString free READ free NOTIFY changed)
    /// The whole legend as one text for a screen reader.
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY changed)
public:
    explicit MemoryBarState(AppModel& model, QObject* parent = nullptr);

    double wiredShare() const { return m_shares[0].share; }
    double activeShare() const { return m_shares[1].share; }
    double inactiveShare() const { return m_shares[2].share; }
    const QString& wired() const { return m_shares[0].label; }
    const QString& active() const { return m_shares[1].label; }
    const QString& inactive() const { return m_shares[2].label; }
    const QString& free() const { return m_shares[3].label; }
    QString spokenText() const;

Q_SIGNALS:
    void changed();

private:
    void update();

    AppModel& m_model;
    std::array<MemoryShare, 4> m_shares;
};

} // namespace kestavon
