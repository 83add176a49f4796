#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/disk_bar_rules.h"

#include <QObject>

namespace kestavon {

/// The disk bar of the volume that holds the scan's folder. Main thread.
class DiskBarState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(double fill READ fill NOTIFY changed)
    Q_PROPERTY(QString color READ color NOTIFY changed)
    Q_PROPERTY(QString used READ used NOTIFY changed)
    Q_PROPERTY(QString free READ free NOTIFY changed)
public:
    explicit DiskBarState(AppModel& model, QObject* parent = nullptr);

    double fill() const { return m_bar.fill; }
    const QString& color() const { return m_bar.color; }
    const QString& used() const { return m_bar.used; }
    const QString& free() const { return m_bar.free; }

Q_SIGNALS:
    void changed();

private:
    void update();

    AppModel& m_model;
    DiskBar m_bar;
};

} // namespace kestavon
