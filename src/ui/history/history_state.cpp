#include "ui/history/history_state.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

HistoryState::HistoryState(AppModel& model)
    : m_model(model)
    , m_events(model)
{
    connect(&m_events, &ActivityListModel::contentChanged, this, &HistoryState::changed);
}

QString HistoryState::countText() const
{
    return u"%1 events"_s.arg(m_events.rowCount());
}

} // namespace kestavon
