#pragma once

#include "core/domain/file_record.h"

#include <string>
#include <vector>

namespace kestavon {

/// Files whose contents are identical.
struct DuplicateGroup {
    Uuid id;
    std::string hash; ///< SHA-256 that all members share: 64 lower-case hexadecimal characters
    std::vector<FileRecord> files; ///< the members, two or more

    friend bool operator==(const DuplicateGroup&, const DuplicateGroup&) = default;
    std::size_t hashValue() const { return hashFields(id, hash, files); }
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::DuplicateGroup);
