#include "ui/safearea/safe_area_state.h"

#include "ui/safearea/safe_area_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QPointer>

#include <algorithm>

namespace kestavon {

SafeAreaState::SafeAreaState(AppModel& model, FolderPicker& picker)
    : m_model(model)
    , m_picker(picker)
    , m_items([&model]() -> const std::vector<QuarantineItem>& { return model.quarantine(); },
          [&model](const Uuid& id) { return model.isHeldItemBusy(id); }, model.platform().calendar)
    , m_earlierItems(
          [&model]() -> const std::vector<QuarantineItem>& { return model.earlierQuarantine(); },
          [&model](const Uuid& id) { return model.isHeldItemBusy(id); }, model.platform().calendar)
{
    connect(&model, &AppModel::fieldChanged, this, [this](AppModel::Field field) {
        switch (field) {
        case AppModel::Field::quarantine:
            m_confirmation.cancel();
            m_items.reload();
            break;
        case AppModel::Field::earlierQuarantine:
            m_confirmation.cancel();
            m_earlierItems.reload();
            Q_EMIT earlierChanged();
            break;
        case AppModel::Field::busyHeldItems:
            m_items.refresh();
            m_earlierItems.refresh();
            break;
        default: break;
        }
    });
}

void SafeAreaState::restore(int row)
{
    workOnItem(m_items, row, &AppModel::restoreFromSafeArea);
}

void SafeAreaState::deleteForever(int row)
{
    workOnItem(m_items, row, &AppModel::deleteFromSafeArea);
}

void SafeAreaState::workOnItem(HeldItems& list, int row, ItemOperation operation)
{
    if (const auto item = list.itemAt(row))
        workOn(list, *item, operation);
}

void SafeAreaState::workOn(HeldItems& list, const QuarantineItem& item, ItemOperation operation)
{
    if (m_working || list.isBusy(item.id))
        return;
    (m_model.*operation)(item, [self = QPointer<SafeAreaState>(this)](const std::string& error) {
        if (self && !error.empty())
            self->m_confirmation.setErrorMessage(fileNameText(error));
    });
}

void SafeAreaState::askRestoreAll()
{
    askForAll(m_items, restoreAllQuestion(m_model.quarantine().size()),
        &AppModel::restoreAllFromSafeArea);
}

void SafeAreaState::askDeleteAll()
{
    askForAll(m_items, deleteAllQuestion(m_model.quarantine().size()), &AppModel::emptySafeArea);
}

void SafeAreaState::askForAll(HeldItems& list, ConfirmationTexts question, ListOperation operation)
{
    if (m_working || list.rowCount() == 0)
        return;
    m_confirmation.ask(std::move(question), [this, operation] {
        setWorking(true);
        (m_model.*operation)([self = QPointer<SafeAreaState>(this)](const std::string& error) {
            if (!self)
                return;
            self->setWorking(false);
            if (!error.empty())
                self->m_confirmation.setErrorMessage(fileNameText(error));
            // What could not be deleted has left the list, but not the disk.
            self->lookForEarlier();
        });
    });
}

QString SafeAreaState::earlierText() const
{
    return kestavon::earlierText(m_model.earlierQuarantine().size());
}

std::size_t SafeAreaState::restorableEarlier() const
{
    const auto hasPlace = [](const QuarantineItem& item) { return !item.originalPath.empty(); };
    return static_cast<std::size_t>(std::ranges::count_if(m_model.earlierQuarantine(), hasPlace));
}

void SafeAreaState::setWantsEarlier(bool wanted)
{
    m_wantsEarlier = wanted;
    Q_EMIT earlierChanged();
}

void SafeAreaState::restoreEarlier(int row)
{
    auto item = m_earlierItems.itemAt(row);
    if (!item)
        return;
    if (!item->originalPath.empty())
        return workOn(m_earlierItems, *item, &AppModel::restoreFromSafeArea);
    m_picker.pickFolder(m_model.platform().layout.home,
        [self = QPointer<SafeAreaState>(this), item = *item](
            const std::optional<std::string>& folder) mutable {
            if (!self || !folder)
                return;
            item.originalPath = pathIn(*folder, originalName(item));
            self->workOn(self->m_earlierItems, item, &AppModel::restoreFromSafeArea);
        });
}

void SafeAreaState::askDeleteEarlier(int row)
{
    auto item = m_earlierItems.itemAt(row);
    if (!item || m_working || m_earlierItems.isBusy(row))
        return;
    m_confirmation.ask(
        deleteEarlierQuestion(m_earlierItems.nameText(row)), [this, item = *item]() mutable {
            item.originalPath = originalName(item); // the history tells it by its name
            workOn(m_earlierItems, item, &AppModel::deleteFromSafeArea);
        });
}

void SafeAreaState::askRestoreAllEarlier()
{
    askForAll(m_earlierItems, restoreAllQuestion(restorableEarlier()),
        &AppModel::restoreAllEarlierHeldItems);
}

void SafeAreaState::askDeleteAllEarlier()
{
    askForAll(m_earlierItems, deleteAllQuestion(m_model.earlierQuarantine().size()),
        &AppModel::deleteAllEarlierHeldItems);
}

void SafeAreaState::setWorking(bool working)
{
    m_working = working;
    Q_EMIT workingChanged();
}

} // namespace kestavon
