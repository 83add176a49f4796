#pragma once

#include "core/domain/hashing.h"
#include "core/domain/uuid.h"

#include <string>

namespace kestavon {

/// One item held in the Safe Area.
struct QuarantineItem {
    Uuid id;
    std::string originalPath; ///< where restoring puts it back
    std::string quarantinedPath; ///< where it lies now
    std::string reason; ///< why it was moved
    Timestamp date; ///< when it was moved

    friend bool operator==(const QuarantineItem&, const QuarantineItem&) = default;
    std::size_t hashValue() const
    {
        return hashFields(id, originalPath, quarantinedPath, reason, date);
    }
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::QuarantineItem);
