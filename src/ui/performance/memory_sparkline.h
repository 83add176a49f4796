#pragma once

#include "ui/performance/performance_state.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQml/qqml.h>

namespace kestavon {

/// Draws how one figure of memory changed during the last minute, between its least and its most,
/// with a dot where it is now. Painted anew whenever the figures change.
/// (Not final: QML derives from it.)
class MemorySparkline : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kestavon::PerformanceState* performance READ performance WRITE setPerformance NOTIFY
            performanceChanged)
    Q_PROPERTY(Figure figure MEMBER m_figure NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY lookChanged)
public:
    enum Figure { Wired, Active, Inactive, Free };
    Q_ENUM(Figure)

    explicit MemorySparkline(QQuickItem* parent = nullptr);

    PerformanceState* performance() const { return m_performance; }
    void setPerformance(PerformanceState* performance);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void performanceChanged();
    void lookChanged();

private:
    QPointer<PerformanceState> m_performance;
    QColor m_color;
    Figure m_figure = Free;
};

} // namespace kestavon
