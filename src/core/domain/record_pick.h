#pragma once

#include "core/domain/record_list.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace kestavon {

/// Some records of a list.
struct RecordPick {
    std::shared_ptr<const RecordList> records;
    std::vector<std::uint32_t> positions; ///< ascending

    friend bool operator==(const RecordPick&, const RecordPick&) = default;
};

} // namespace kestavon
