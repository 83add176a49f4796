#pragma once

#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/trash/trashable_item.h"
#include "platform/trash.h"

#include <mutex>

namespace kestavon {

/// The Trash of a Mac's home: the folder `.Trash`, in which items lie under their own names, or,
/// where one is taken, with a number before the extension. Items of other volumes are copied to it.
class MacTrash final : public Trash {
public:
    MacTrash(const HostLayout& layout, ProtectedPlaces protectedPlaces);

    FileResult<std::string> trashItem(
        const std::string& path, const TrashOptions& options) override;
    void forgetItem(const std::string& path) override; ///< this Trash writes nothing down
    void clearUnfinishedMoves() override;
    std::vector<TrashPlace> trashPlaces() const override;

private:
    FileResult<FileDescriptor> openTrash() const;

    const std::string m_folder;
    const ProtectedPlaces m_protectedPlaces;
    const DeedJournal m_journal;
    std::once_flag m_cleared;
};

} // namespace kestavon
