#pragma once

#include "platform/host_layout.h"

#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// An application that this machine has, put together from all that tells of it.
struct KnownApplication {
    std::string name; ///< as it is shown
    std::optional<std::string> identifier = {}; ///< such as "org.example.Editor"
    /// The file or folder that is the application, or, when that is a package manager's, a file
    /// that tells of it.
    std::string path;
    bool isManaged = false; ///< a package manager put it there, and it alone can take it away
    bool isShown = false; ///< the desktop's menus show it
    std::vector<std::string> terms = {}; ///< see `addTermsOf`
    std::optional<std::string> icon = {}; ///< see `DesktopEntry::icon`
};

/// The applications that the layout's sources tell of, in their order; what several files tell of
/// one program, such as an entry for each of its parts, is one application. Not on the main thread.
std::vector<KnownApplication> knownApplications(
    const HostLayout& layout, const std::stop_token& stop = {});

} // namespace kestavon
