#include "ui/performance/memory_sparkline.h"

#include <QPainter>
#include <QPolygonF>

namespace kestavon {

namespace {

constexpr double dotRadius = 2.5;

} // namespace

MemorySparkline::MemorySparkline(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &MemorySparkline::lookChanged, this, [this] { update(); });
}

void MemorySparkline::setPerformance(PerformanceState* performance)
{
    if (m_performance)
        m_performance->disconnect(this);
    m_performance = performance;
    if (performance)
        connect(performance, &PerformanceState::memoryChanged, this, [this] { update(); });
    Q_EMIT performanceChanged();
    update();
}

void MemorySparkline::paint(QPainter* painter)
{
    if (!m_performance)
        return;
    // Room for the dot, and for half of the line.
    const QRectF area(0, dotRadius, width() - dotRadius, height() - 2 * dotRadius);
    const auto figure = static_cast<MemoryHistory::Figure>(m_figure);
    const auto heights = MemoryHistory::heightsOf(
        m_performance->history().points(std::chrono::steady_clock::now()), figure);
    std::vector<QPolygonF> lines;
    for (const auto& [place, height, beginsAnew] : heights) {
        if (lines.empty() || beginsAnew)
            lines.emplace_back();
        lines.back() << QPointF(
            area.left() + place * area.width(), area.bottom() - height * area.height());
    }
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setClipRect(QRectF(0, 0, width(), this->height()));
    auto pale = m_color;
    pale.setAlphaF(0.12F);
    for (const auto& line : lines) {
        auto below = line;
        below << QPointF(line.last().x(), this->height())
              << QPointF(line.first().x(), this->height());
        painter->setPen(Qt::NoPen);
        painter->setBrush(pale);
        painter->drawPolygon(below);
        painter->setPen(QPen(m_color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        painter->drawPolyline(line);
    }
    if (lines.empty())
        return;
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_color);
    painter->drawEllipse(lines.back().last(), dotRadius, dotRadius);
}

} // namespace kestavon
