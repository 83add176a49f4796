#include "ui/startup/startup_state.h"

#include "ui/widgets/display_text.h"

#include <QPointer>

namespace kestavon {

StartupState::StartupState(AppModel& model)
    : m_model(model)
    , m_rows([&model]() -> const std::vector<StartupItem>& { return model.startupItems(); },
          [this](const Uuid& id) { return m_busy.contains(id); })
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field == AppModel::Field::startupItems)
            m_rows.reload();
        else if (field == AppModel::Field::isLoadingStartupItems)
            Q_EMIT loadingChanged();
    });
}

void StartupState::remove(int row)
{
    const auto* item = m_rows.itemAt(row);
    if (!item || item->isSystem || !m_busy.insert(item->id).second)
        return;
    m_rows.refresh();
    m_model.removeStartupItem(
        *item, [self = QPointer<StartupState>(this), id = item->id](const std::string& error) {
            if (!self)
                return;
            self->m_busy.erase(id);
            self->m_rows.refresh();
            if (!error.empty())
                self->m_confirmation.setErrorMessage(displayText(error));
        });
}

} // namespace kestavon
