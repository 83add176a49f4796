#include "ui/largefiles/large_files_state.h"

namespace kestavon {

LargeFilesState::LargeFilesState(AppModel& model)
    : FileTableState(model, true)
{
}

} // namespace kestavon
