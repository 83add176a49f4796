#pragma once

#include "core/domain/system_state.h"

#include <QString>

#include <array>
#include <optional>

namespace kestavon {

/// One kind of memory in the memory bar and its legend.
struct MemoryShare {
    QString label; ///< "Wired 4.29 GB"
    QString color; ///< name of the kind's colour
    double share = 0; ///< of all memory, 0 to 1
};

/// Wired, active and inactive memory, which are the bar's segments, and then free memory, which is
/// only in the legend. Without a snapshot, or with one that counts nothing, all shares are 0.
std::array<MemoryShare, 4> memoryShares(const std::optional<MemorySnapshot>& snapshot);

} // namespace kestavon
