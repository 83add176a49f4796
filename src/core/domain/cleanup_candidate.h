#pragma once

#include "core/domain/file_record.h"

#include <cstdint>
#include <string>

namespace kestavon {

/// An item proposed for removal, with the reason shown to the user.
struct CleanupCandidate {
    Uuid id;
    FileRecord record;
    std::string reason; ///< shown to the user unchanged
    std::int64_t estimatedBytes = 0; ///< bytes that removal is expected to free

    friend bool operator==(const CleanupCandidate&, const CleanupCandidate&) = default;
    std::size_t hashValue() const { return hashFields(id, record, reason, estimatedBytes); }
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::CleanupCandidate);
