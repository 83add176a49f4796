#pragma once

#include "core/domain/hashing.h"
#include "core/domain/timestamp.h"
#include "core/domain/uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kestavon {

/// One file or folder found by a storage scan. A plain value.
struct FileRecord {
    Uuid id = {};
    std::string path; ///< absolute; the bytes the file system gave, in no particular encoding
    std::int64_t size = 0; ///< bytes, logical; 0 for a folder
    std::optional<Timestamp> modifiedAt = {}; ///< absent when the file system reported none
    bool isDirectory = false;
    bool isHidden = false;

    friend bool operator==(const FileRecord&, const FileRecord&) = default;
    std::size_t hashValue() const
    {
        return hashFields(id, path, size, modifiedAt, isDirectory, isHidden);
    }
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::FileRecord);
