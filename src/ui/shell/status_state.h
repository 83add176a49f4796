#pragma once

#include "core/model/app_model.h"

#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

namespace kestavon {

/// Where a menu of this size opens for a point of the desktop: below it and in its middle, or above
/// it where there is no room, on the screen that has the point or comes nearest to it.
QPoint statusMenuPlace(QPoint point, QSize size, const QList<QRect>& screens);

/// Disk and memory at a glance: the status item and its menu. Main thread.
class StatusState final : public QObject {
    Q_OBJECT
    /// The item's symbol and the name of its colour.
    Q_PROPERTY(QString symbol READ symbol NOTIFY diskChanged)
    Q_PROPERTY(QString symbolColor READ symbolColor NOTIFY diskChanged)
    Q_PROPERTY(QString diskFree READ diskFree NOTIFY diskChanged)
    Q_PROPERTY(QString diskColor READ diskColor NOTIFY diskChanged)
    /// How far the bars are filled, 0 to 1.
    Q_PROPERTY(double diskBar READ diskBar NOTIFY diskChanged)
    Q_PROPERTY(bool hasMemory READ hasMemory NOTIFY memoryChanged)
    Q_PROPERTY(QString memoryFree READ memoryFree NOTIFY memoryChanged)
    Q_PROPERTY(QString memoryColor READ memoryColor NOTIFY memoryChanged)
    Q_PROPERTY(double memoryBar READ memoryBar NOTIFY memoryChanged)
public:
    explicit StatusState(AppModel& model);

    QString symbol() const;
    QString symbolColor() const;
    QString diskFree() const;
    QString diskColor() const;
    double diskBar() const;
    bool hasMemory() const { return m_model.memory().has_value(); }
    QString memoryFree() const;
    QString memoryColor() const;
    double memoryBar() const;

    /// Reads everything anew; call it when the menu opens.
    Q_INVOKABLE void refresh();
    /// `statusMenuPlace` on this desktop.
    Q_INVOKABLE QPoint menuPlace(QPoint point, QSize size) const;

Q_SIGNALS:
    void diskChanged();
    void memoryChanged();
    /// Show the menu near this point of the desktop.
    void menuRequested(int x, int y);

private:
    double diskFraction() const;

    AppModel& m_model;
};

} // namespace kestavon
