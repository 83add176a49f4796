#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/activity_list_model.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// The History screen: every event, newest first. Main thread.
class HistoryState final : public QObject {
    Q_OBJECT
    /// "12 events"
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(kestavon::ActivityListModel* events READ events CONSTANT)
public:
    explicit HistoryState(AppModel& model);

    QString countText() const;
    ActivityListModel* events() { return &m_events; }
    Q_INVOKABLE void clear() { m_model.clearHistory(); }

Q_SIGNALS:
    void changed();

private:
    AppModel& m_model;
    ActivityListModel m_events;
};

} // namespace kestavon
