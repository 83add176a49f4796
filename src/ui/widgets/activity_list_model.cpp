#include "ui/widgets/activity_list_model.h"

#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <algorithm>
#include <chrono>

namespace kestavon {

std::int64_t millisecondsToNextAge(Timestamp moment, Timestamp now)
{
    using namespace std::chrono;
    const auto age = duration_cast<milliseconds>(now - moment);
    if (age < 0ms)
        return std::min<std::int64_t>((1s - age) / 1ms, 60'000);
    const milliseconds step = age < 1min ? milliseconds(1s) : milliseconds(1min);
    return (step - age % step).count();
}

namespace {

constexpr auto reloadPause = std::chrono::milliseconds(100);

} // namespace

FilePath pathOf(const ActivityEvent& event)
{
    // Only restored items are told by their whole path.
    return {event.detail.starts_with('/') ? event.detail : std::string()};
}

ActivityListModel::ActivityListModel(AppModel& model, int limit, QObject* parent)
    : QAbstractListModel(parent)
    , m_model(model)
    , m_limit(limit)
{
    m_timer.setSingleShot(true);
    m_reloadPause.setSingleShot(true);
    m_reloadPause.setInterval(reloadPause);
    connect(&m_reloadPause, &QTimer::timeout, this, [this] {
        if (m_isStale)
            reloadSoon();
    });
    connect(&m_timer, &QTimer::timeout, this, &ActivityListModel::tick);
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::history)
            reloadSoon();
    });
    reload();
}

int ActivityListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_count;
}

QVariant ActivityListModel::data(const QModelIndex& index, int role) const
{
    const auto& events = m_model.history();
    if (!index.isValid() || static_cast<std::size_t>(index.row()) >= events.size())
        return {};
    const auto& event = events[static_cast<std::size_t>(index.row())];
    switch (role) {
    case TitleRole: return fileNameText(event.title); // it may begin with an application's name
    case DetailRole: return fileNameText(event.detail); // it may be a path
    case AgeRole: return displayText(relativeDateText(event.date, m_model.platform().clock->now()));
    case PathRole: return QVariant::fromValue(pathOf(event));
    default: return {};
    }
}

FilePath ActivityListModel::filePath(int row) const
{
    return data(index(row), PathRole).value<FilePath>();
}

QHash<int, QByteArray> ActivityListModel::roleNames() const
{
    return {{TitleRole, "title"}, {DetailRole, "detail"}, {AgeRole, "age"}, {PathRole, "path"}};
}

void ActivityListModel::setTicking(bool ticking)
{
    if (ticking == m_ticking)
        return;
    m_ticking = ticking;
    if (m_ticking)
        tick();
    else
        m_timer.stop();
    Q_EMIT tickingChanged();
}

void ActivityListModel::reloadSoon()
{
    // Rows that are gone must not stay to be asked for.
    const bool hasShrunk = m_model.history().size() < static_cast<std::size_t>(m_count);
    m_isStale = m_reloadPause.isActive() && !hasShrunk;
    if (m_isStale)
        return;
    reload();
    hasShrunk ? m_reloadPause.stop() : m_reloadPause.start();
}

void ActivityListModel::reload()
{
    const bool wasEmpty = empty();
    beginResetModel();
    m_count
        = static_cast<int>(std::min(m_model.history().size(), static_cast<std::size_t>(m_limit)));
    endResetModel();
    ++m_revision;
    Q_EMIT contentChanged();
    scheduleTick();
    if (wasEmpty != empty())
        Q_EMIT emptyChanged();
}

void ActivityListModel::scheduleTick()
{
    m_timer.stop();
    if (!m_ticking || m_count == 0)
        return;
    const auto now = m_model.platform().clock->now();
    auto wait = std::int64_t{60'000};
    for (int row = 0; row < m_count; ++row) {
        const auto& event = m_model.history()[static_cast<std::size_t>(row)];
        wait = std::min(wait, millisecondsToNextAge(event.date, now));
    }
    // A long history has an age that changes at every moment: once a second is often enough.
    m_timer.start(std::chrono::milliseconds(std::max<std::int64_t>(wait, 1000)));
}

void ActivityListModel::tick()
{
    if (m_count > 0)
        Q_EMIT dataChanged(index(0), index(m_count - 1), {AgeRole});
    ++m_revision;
    Q_EMIT contentChanged();
    scheduleTick();
}

} // namespace kestavon
