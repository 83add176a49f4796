#pragma once

#include <QString>

#include <cstdint>

namespace kestavon {

/// A bar that shows how full a volume is, with its texts.
struct DiskBar {
    double fill = 0; ///< share of the track that is filled, 0 to 1
    QString color; ///< name of the bar's colour
    QString used; ///< the used bytes, "353.49 GB"
    QString free; ///< "158.62 GB free of 512.11 GB"
};

/// The bar of a volume of `total` bytes of which `used` are taken; a total below 1 is unknown and
/// gives an empty bar. `used` may exceed `total` or be negative: the fill stays within the track.
DiskBar diskBar(std::int64_t used, std::int64_t total);

/// The bar of a volume by its total and free bytes, as the model publishes them: unknown totals
/// show as zero used of zero.
DiskBar diskBarOfVolume(std::int64_t total, std::int64_t free);

} // namespace kestavon
