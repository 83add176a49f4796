#pragma once

#include "core/domain/app_section.h"

#include <optional>
#include <string>

namespace kestavon {

/// The variable that the desktop gives a program `StartWish::activationToken` in.
inline constexpr auto activationTokenVariable = "XDG_ACTIVATION_TOKEN";

/// What a start of the program wants of its window.
struct StartWish {
    std::string folder = {}; ///< to look at, an absolute path; empty: as it is
    std::optional<AppSection> section = {}; ///< to show; nothing: as it is
    bool scansAtOnce = false; ///< begin with a storage scan
    /// What the desktop gave that start for its window to come to the front with; see the protocol
    /// xdg-activation. Empty: nothing.
    std::string activationToken = {};

    friend bool operator==(const StartWish&, const StartWish&) = default;
};

} // namespace kestavon
