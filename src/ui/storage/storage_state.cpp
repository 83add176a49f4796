#include "ui/storage/storage_state.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

StorageState::StorageState(AppModel& model)
    : FileTableState(model, false)
{
    connect(rows(), &RecordTableModel::filterChanged, this, &StorageState::searchTextChanged);
}

QString StorageState::subtitle() const
{
    return u"%1 items, sorted by size"_s.arg(model().records()->size());
}

} // namespace kestavon
