#include "core/model/work_board.h"

#include <utility>

namespace kestavon {

WorkBoard::WorkBoard(std::function<void(const std::optional<FileWork>&)> show)
    : m_show(std::move(show))
{
    m_timer.setInterval(std::chrono::milliseconds(100));
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
}

WorkBoard::~WorkBoard()
{
    stopAll();
}

std::shared_ptr<WorkMeter> WorkBoard::start(FileWork::Deed deed)
{
    auto meter = std::make_shared<WorkMeter>(deed);
    m_meters.push_back(meter);
    m_timer.start();
    return meter;
}

void WorkBoard::end(const std::shared_ptr<WorkMeter>& meter)
{
    std::erase(m_meters, meter);
    if (m_meters.empty())
        m_timer.stop();
    if (m_shownMeter == meter)
        look();
}

void WorkBoard::stopShown()
{
    if (!m_shownMeter)
        return;
    m_shownMeter->requestStop();
    look();
}

bool WorkBoard::stopAll()
{
    for (const auto& meter : m_meters)
        meter->requestStop();
    return !m_meters.empty();
}

void WorkBoard::look()
{
    m_shownMeter.reset();
    std::optional<FileWork> shown;
    for (const auto& meter : m_meters) {
        shown = meter->reading();
        if (shown) {
            m_shownMeter = meter;
            break;
        }
    }
    if (shown == m_shown)
        return;
    m_shown = shown;
    m_show(m_shown);
}

} // namespace kestavon
