#include "ui/shell/status_state.h"

#include "platform/byte_count.h"
#include "ui/shell/shell_rules.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <functional>

namespace kestavon {

namespace {

QString text(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace

QPoint statusMenuPlace(QPoint point, QSize size, const QList<QRect>& screens)
{
    const auto distance = [&](const QRect& screen) {
        const QPoint inside(std::clamp(point.x(), screen.left(), screen.right()),
            std::clamp(point.y(), screen.top(), screen.bottom()));
        return (point - inside).manhattanLength();
    };
    const auto screen = std::ranges::min_element(screens, std::ranges::less(), distance);
    if (screen == screens.end())
        return point;
    const int rightmost = screen->right() + 1 - size.width();
    const bool fitsBelow = point.y() + size.height() <= screen->bottom() + 1;
    return {std::max(screen->left(), std::min(rightmost, point.x() - size.width() / 2)),
        fitsBelow ? point.y() : std::max(screen->top(), point.y() - size.height())};
}

StatusState::StatusState(AppModel& model)
    : m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::diskTotal || field == AppModel::Field::diskFree)
            Q_EMIT diskChanged();
        else if (field == AppModel::Field::memory)
            Q_EMIT memoryChanged();
    });
}

double StatusState::diskFraction() const
{
    return diskUsedFraction(m_model.diskTotal(), m_model.diskFree());
}

QString StatusState::symbol() const
{
    return text(statusSymbol(diskFraction()));
}

QString StatusState::symbolColor() const
{
    return text(statusSymbolColor(diskFraction()));
}

QString StatusState::diskFree() const
{
    return text(fileByteCount(m_model.diskFree()));
}

QString StatusState::diskColor() const
{
    return text(statusDiskColor(diskFraction()));
}

double StatusState::diskBar() const
{
    return std::clamp(diskFraction(), 0.0, 1.0);
}

QString StatusState::memoryFree() const
{
    const auto& memory = m_model.memory();
    return memory ? text(fileByteCount(static_cast<std::int64_t>(memory->freeBytes))) : QString();
}

QString StatusState::memoryColor() const
{
    return text(statusMemoryColor(memoryPressure(m_model.memory())));
}

double StatusState::memoryBar() const
{
    return memoryPressure(m_model.memory());
}

QPoint StatusState::menuPlace(QPoint point, QSize size) const
{
    QList<QRect> screens;
    for (const auto* screen : QGuiApplication::screens())
        screens.append(screen->geometry());
    return statusMenuPlace(point, size, screens);
}

void StatusState::refresh()
{
    m_model.refreshMemory();
    m_model.refreshProcesses();
    m_model.refreshDiskSpace();
}

} // namespace kestavon
