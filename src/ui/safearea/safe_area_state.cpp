#include "ui/safearea/safe_area_state.h"

#include "ui/safearea/safe_area_rules.h"
#include "ui/widgets/display_text.h"

#include <QPointer>

namespace kestavon {

SafeAreaState::SafeAreaState(AppModel& model)
    : m_model(model)
    , m_items([&model]() -> const std::vector<QuarantineItem>& { return model.quarantine(); },
          model.platform().calendar)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        if (field != AppModel::Field::quarantine)
            return;
        m_confirmation.cancel();
        m_items.reload();
    });
}

void SafeAreaState::restore(int row)
{
    workOnItem(row, &AppModel::restoreFromSafeArea);
}

void SafeAreaState::deleteForever(int row)
{
    workOnItem(row, &AppModel::deleteFromSafeArea);
}

void SafeAreaState::workOnItem(int row, ItemOperation operation)
{
    const auto item = m_items.itemAt(row);
    if (!item || m_working || m_items.isBusy(row))
        return;
    m_items.setBusy(item->id, true);
    (m_model.*operation)(
        *item, [self = QPointer<SafeAreaState>(this), id = item->id](const std::string& error) {
            if (!self)
                return;
            self->m_items.setBusy(id, false);
            if (!error.empty())
                self->m_confirmation.setErrorMessage(displayText(error));
        });
}

void SafeAreaState::askRestoreAll()
{
    askForAll(restoreAllQuestion(m_model.quarantine().size()), &AppModel::restoreAllFromSafeArea);
}

void SafeAreaState::askDeleteAll()
{
    askForAll(deleteAllQuestion(m_model.quarantine().size()), &AppModel::emptySafeArea);
}

void SafeAreaState::askForAll(ConfirmationTexts question, ListOperation operation)
{
    if (m_working || m_model.quarantine().empty())
        return;
    m_confirmation.ask(std::move(question), [this, operation] {
        setWorking(true);
        (m_model.*operation)([self = QPointer<SafeAreaState>(this)](const std::string& error) {
            if (!self)
                return;
            self->setWorking(false);
            if (!error.empty())
                self->m_confirmation.setErrorMessage(displayText(error));
        });
    });
}

void SafeAreaState::setWorking(bool working)
{
    m_working = working;
    Q_EMIT workingChanged();
}

} // namespace kestavon
