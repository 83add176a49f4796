#pragma once

#include "core/domain/uuid.h"
#include "platform/file_places.h"

#include <memory>
#include <string>
#include <vector>

namespace kestavon {

/// The marks of held items that cannot carry them: of links, pipes, names of files with several of
/// them, and on disks without attributes.
///
/// One small file for each such item, called by its identifier, in a folder beside the holding
/// folder. Only a memory aid: an item whose note is lost is held as safely, and the user says where
/// it goes. Plain and synchronous, like the store that uses it.
class OriginNotes {
public:
    OriginNotes(std::string folder, std::shared_ptr<FilePlaces> places);

    /// No value may hold a NUL. Where the disk refuses, nothing is noted.
    void write(const Uuid& id, const std::vector<FileMark>& marks);
    /// None when there is no note of the item.
    std::vector<FileMark> read(const Uuid& id) const;
    void remove(const Uuid& id);
    /// The items that there are notes of, in no order.
    std::vector<Uuid> noted() const;

private:
    std::string pathFor(const Uuid& id) const;

    std::string m_folder;
    std::shared_ptr<FilePlaces> m_places;
};

} // namespace kestavon
