#pragma once

#include "core/domain/app_section.h"

#include <optional>
#include <string>

namespace kestavon {

/// What a start of the program wants of its window.
struct StartWish {
    std::string folder = {}; ///< to look at, an absolute path; empty: as it is
    std::optional<AppSection> section = {}; ///< to show; nothing: as it is
    bool scansAtOnce = false; ///< begin with a storage scan

    friend bool operator==(const StartWish&, const StartWish&) = default;
};

} // namespace kestavon
