#include "ui/widgets/memory_bar_state.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

MemoryBarState::MemoryBarState(AppModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::memory)
            update();
    });
    update();
}

QString MemoryBarState::spokenText() const
{
    return QStringList{wired(), active(), inactive(), free()}.join(u", "_s);
}

void MemoryBarState::update()
{
    m_shares = memoryShares(m_model.memory());
    Q_EMIT changed();
}

} // namespace kestavon
