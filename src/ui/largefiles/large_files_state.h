#pragma once

#include "ui/widgets/file_table_state.h"

namespace kestavon {

/// The Large Files screen: the hundred largest files. Main thread.
class LargeFilesState final : public kestavon::FileTableState { // in full, for the QML tools
    Q_OBJECT
public:
    explicit LargeFilesState(AppModel& model);
};

} // namespace kestavon
