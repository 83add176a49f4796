#include "ui/widgets/live_count.h"

#include <algorithm>
#include <chrono>

namespace kestavon {

LiveCount::LiveCount(AppModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_shown(model.liveFileCount())
{
    m_frames.setInterval(std::chrono::milliseconds(33));
    connect(&m_frames, &QTimer::timeout, this, &LiveCount::step);
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::liveFileCount || field == AppModel::Field::scanPhase)
            follow();
    });
}

void LiveCount::follow()
{
    const auto count = m_model.liveFileCount();
    if (!m_model.scanPhase().isScanning() || count < m_shown) {
        m_frames.stop();
        show(count);
        return;
    }
    if (count == m_to && m_frames.isActive())
        return;
    m_from = m_shown;
    m_to = count;
    m_sinceValue.start();
    if (m_from != m_to)
        m_frames.start();
}

void LiveCount::step()
{
    const auto elapsed = m_animated
        ? std::min<std::int64_t>(m_sinceValue.elapsed(), tweenMilliseconds)
        : std::int64_t{tweenMilliseconds};
    if (elapsed == tweenMilliseconds)
        m_frames.stop();
    show(m_from + (m_to - m_from) * elapsed / tweenMilliseconds);
}

void LiveCount::show(std::int64_t count)
{
    if (count == m_shown)
        return;
    m_shown = count;
    Q_EMIT changed();
}

} // namespace kestavon
