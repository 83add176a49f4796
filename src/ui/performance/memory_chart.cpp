#include "ui/performance/memory_chart.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <array>

namespace kestavon {

namespace {

using Points = std::vector<MemoryHistory::Point>;

/// The lines without gaps that the tops of one kind of memory make.
std::vector<QPolygonF> linesOf(const Points& points, std::size_t kind, const QRectF& area)
{
    std::vector<QPolygonF> lines;
    for (const auto& point : points) {
        if (lines.empty() || point.beginsAnew)
            lines.emplace_back();
        const auto height = std::clamp(point.tops[kind], 0.0, 1.0) * area.height();
        lines.back() << QPointF(area.left() + point.place * area.width(), area.bottom() - height);
    }
    return lines;
}

} // namespace

MemoryChart::MemoryChart(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &MemoryChart::lookChanged, this, [this] { update(); });
}

void MemoryChart::setPerformance(PerformanceState* performance)
{
    if (m_performance)
        m_performance->disconnect(this);
    m_performance = performance;
    if (performance)
        connect(performance, &PerformanceState::memoryChanged, this, [this] { update(); });
    Q_EMIT performanceChanged();
    update();
}

void MemoryChart::paint(QPainter* painter)
{
    const QRectF area(0, 0, width(), height());
    painter->setRenderHint(QPainter::Antialiasing);
    QPainterPath frame;
    frame.addRoundedRect(area, 4, 4);
    painter->setClipPath(frame);
    painter->fillRect(area, m_track);
    if (!m_performance)
        return;
    const auto points = m_performance->history().points(std::chrono::steady_clock::now());
    // The highest first: each lower one covers what it stands for.
    const std::array<std::pair<std::size_t, QColor>, 3> kinds{
        {{2, m_inactive}, {1, m_active}, {0, m_wired}}};
    for (const auto& [kind, color] : kinds) {
        for (const auto& line : linesOf(points, kind, area)) {
            auto below = line;
            below << QPointF(line.last().x(), area.bottom())
                  << QPointF(line.first().x(), area.bottom());
            painter->setPen(Qt::NoPen);
            painter->setBrush(m_track);
            painter->drawPolygon(below);
            auto pale = color;
            pale.setAlphaF(0.26F);
            painter->setBrush(pale);
            painter->drawPolygon(below);
            painter->setPen(QPen(color, 1.5));
            painter->setBrush(Qt::NoBrush);
            painter->drawPolyline(line);
        }
    }
}

} // namespace kestavon
