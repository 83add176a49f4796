#pragma once

#include <cstdint>
#include <string>

namespace kestavon {

/// Work on files that takes a while, as far as it has come.
struct FileWork {
    enum class Deed { hold, restore, trash, remove };

    Deed deed = Deed::hold;
    std::string path = {}; ///< of the item in hand
    std::int64_t item = 0; ///< its number, from 1; 0 before the first
    std::int64_t items = 0; ///< how many there are
    /// Of the item in hand, while it is copied to another device; else both 0.
    std::int64_t copiedBytes = 0;
    std::int64_t bytesToCopy = 0;
    std::int64_t removedEntries = 0; ///< deleted since the beginning
    bool isStopping = false; ///< it was asked to, and ends as soon as it can

    friend bool operator==(const FileWork&, const FileWork&) = default;
};

/// A folder in the middle of which a deletion was stopped.
struct PartlyDeleted {
    std::string path; ///< where it lies, or of a held one, where it came from
    std::int64_t entries = 0; ///< that are gone

    friend bool operator==(const PartlyDeleted&, const PartlyDeleted&) = default;
};

} // namespace kestavon
