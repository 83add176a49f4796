#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/notice_state.h"

#include <QObject>
#include <QString>

namespace kestavon {

/// "Moving “Photos” to the Safe Area…"
QString workText(const FileWork& work);
/// How far it is, as far as that is known: "1.2 GB of 3.4 GB · item 3 of 12".
QString workDetail(const FileWork& work);
/// The same as a share of the whole, 0 to 1; negative when it cannot be told.
double workShare(const FileWork& work);

/// What is told of a folder in which a deletion was stopped.
QString partlyDeletedText(const PartlyDeleted& part);

/// The bar at the foot of the window while files are being worked on for long. Main thread.
class WorkState final : public QObject {
    Q_OBJECT
    /// The texts stay as they are while the bar slides out.
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(double share READ share NOTIFY changed)
    /// It is shown and was not asked to stop yet.
    Q_PROPERTY(bool canStop READ canStop NOTIFY changed)
public:
    /// Both must outlive this. `notice` tells what a stop has left.
    WorkState(AppModel& model, NoticeState& notice);

    bool shown() const { return m_model.fileWork().has_value(); }
    QString text() const { return workText(m_last); }
    QString detail() const { return workDetail(m_last); }
    double share() const { return workShare(m_last); }
    bool canStop() const { return shown() && !m_last.isStopping; }

    Q_INVOKABLE void stop() { m_model.stopFileWork(); }

Q_SIGNALS:
    void changed();

private:
    AppModel& m_model;
    FileWork m_last;
};

} // namespace kestavon
