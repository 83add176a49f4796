#pragma once

#include "core/domain/hashing.h"
#include "core/domain/uuid.h"

#include <string>

namespace kestavon {

/// One entry of the activity history.
struct ActivityEvent {
    Uuid id;
    Timestamp date; ///< when the action completed
    std::string title; ///< short headline
    std::string detail; ///< one line of counts and sizes

    friend bool operator==(const ActivityEvent&, const ActivityEvent&) = default;
    std::size_t hashValue() const { return hashFields(id, date, title, detail); }
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::ActivityEvent);
