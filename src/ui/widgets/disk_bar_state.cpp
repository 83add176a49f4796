#include "ui/widgets/disk_bar_state.h"

namespace kestavon {

DiskBarState::DiskBarState(AppModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::diskTotal || field == AppModel::Field::diskFree)
            update();
    });
    update();
}

void DiskBarState::update()
{
    m_bar = diskBarOfVolume(m_model.diskTotal(), m_model.diskFree());
    Q_EMIT changed();
}

} // namespace kestavon
