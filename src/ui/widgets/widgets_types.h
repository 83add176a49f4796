#pragma once

#include "ui/widgets/activity_list_model.h"
#include "ui/widgets/confirmation.h"
#include "ui/widgets/disk_bar_state.h"
#include "ui/widgets/file_path.h"
#include "ui/widgets/file_table_state.h"
#include "ui/widgets/memory_bar_state.h"
#include "ui/widgets/notice_state.h"
#include "ui/widgets/path_actions.h"
#include "ui/widgets/record_removal.h"
#include "ui/widgets/record_table_model.h"
#include "ui/widgets/scan_panel_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct ActivityListModelType {
    Q_GADGET
    QML_FOREIGN(kestavon::ActivityListModel)
    QML_NAMED_ELEMENT(ActivityListModel)
    QML_UNCREATABLE("made by C++")
};

struct ConfirmationType {
    Q_GADGET
    QML_FOREIGN(kestavon::Confirmation)
    QML_NAMED_ELEMENT(Confirmation)
    QML_UNCREATABLE("made by C++")
};

struct DiskBarStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::DiskBarState)
    QML_NAMED_ELEMENT(DiskBarState)
    QML_UNCREATABLE("made by C++")
};

struct FilePathType {
    Q_GADGET
    QML_FOREIGN(kestavon::FilePath)
    QML_VALUE_TYPE(filePath)
};

struct FileTableStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::FileTableState)
    QML_NAMED_ELEMENT(FileTableState)
    QML_UNCREATABLE("made by C++")
};

struct MemoryBarStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::MemoryBarState)
    QML_NAMED_ELEMENT(MemoryBarState)
    QML_UNCREATABLE("made by C++")
};

struct NoticeStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::NoticeState)
    QML_NAMED_ELEMENT(NoticeState)
    QML_UNCREATABLE("made by C++")
};

struct PathActionsType {
    Q_GADGET
    QML_FOREIGN(kestavon::PathActions)
    QML_NAMED_ELEMENT(PathActions)
    QML_UNCREATABLE("made by C++")
};

struct RecordRemovalType {
    Q_GADGET
    QML_FOREIGN(kestavon::RecordRemoval)
    QML_NAMED_ELEMENT(RecordRemoval)
    QML_UNCREATABLE("made by C++")
};

struct RecordTableModelType {
    Q_GADGET
    QML_FOREIGN(kestavon::RecordTableModel)
    QML_NAMED_ELEMENT(RecordTableModel)
    QML_UNCREATABLE("made by C++")
};

struct ScanPanelStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::ScanPanelState)
    QML_NAMED_ELEMENT(ScanPanelState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
