#pragma once

#include "ui/performance/performance_state.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQml/qqml.h>

namespace kestavon {

/// Draws what memory was used for during the last minute: wired, active and inactive, one upon the
/// other, each an area below a line. Painted anew whenever the figures change.
/// (Not final: QML derives from it.)
class MemoryChart : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kestavon::PerformanceState* performance READ performance WRITE setPerformance NOTIFY
            performanceChanged)
    Q_PROPERTY(QColor wiredColor MEMBER m_wired NOTIFY lookChanged)
    Q_PROPERTY(QColor activeColor MEMBER m_active NOTIFY lookChanged)
    Q_PROPERTY(QColor inactiveColor MEMBER m_inactive NOTIFY lookChanged)
    Q_PROPERTY(QColor trackColor MEMBER m_track NOTIFY lookChanged)
public:
    explicit MemoryChart(QQuickItem* parent = nullptr);

    PerformanceState* performance() const { return m_performance; }
    void setPerformance(PerformanceState* performance);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void performanceChanged();
    void lookChanged();

private:
    QPointer<PerformanceState> m_performance;
    QColor m_wired;
    QColor m_active;
    QColor m_inactive;
    QColor m_track;
};

} // namespace kestavon
