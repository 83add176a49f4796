#include "ui/widgets/notice_state.h"

#include <utility>

namespace kestavon {

NoticeState::NoticeState(std::chrono::milliseconds time)
{
    m_timer.setInterval(time);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &NoticeState::dismiss);
}

void NoticeState::setHeld(bool held)
{
    if (held == m_held)
        return;
    m_held = held;
    if (m_held)
        m_timer.stop();
    else if (m_shown)
        m_timer.start();
    Q_EMIT heldChanged();
}

void NoticeState::show(const QString& text, const QString& action, std::function<void()> act)
{
    ++m_number;
    m_text = text;
    m_action = action;
    m_act = std::move(act);
    if (!m_held)
        m_timer.start();
    Q_EMIT textChanged();
    if (!std::exchange(m_shown, true))
        Q_EMIT shownChanged();
}

void NoticeState::act()
{
    if (!m_shown || !m_act)
        return;
    const auto number = m_number;
    std::exchange(m_act, {})();
    if (number == m_number)
        dismiss();
}

void NoticeState::dismiss()
{
    m_timer.stop();
    m_act = {};
    if (std::exchange(m_shown, false))
        Q_EMIT shownChanged();
}

} // namespace kestavon
