#pragma once

#include "core/domain/installed_app.h"
#include "platform/host_layout.h"
#include "platform/protected_places.h"

#include <memory>
#include <stop_token>
#include <vector>

namespace kestavon {

/// Finds the installed applications and what they have left in the home. It only reads. Plain and
/// synchronous: calls come one at a time, off the main thread.
class AppUninstaller {
public:
    /// Touches nothing. What may not be removed from this machine is nobody's leftover.
    explicit AppUninstaller(
        const HostLayout& layout, std::shared_ptr<const ProtectedPlaces> protectedPlaces = nullptr);

    /// The applications with their leftovers, those that leave most first, and otherwise in the
    /// order of the folders and of the names' bytes. Everything has a new id. A leftover's size is
    /// that of all files in it, in bytes, packages left out, and never 0. What a package manager
    /// put there cannot be moved, only its leftovers can. Each folder is listed, and each leftover
    /// summed up, once, to whomever it belongs. What cannot be read is left out without a word.
    /// Soon after a stop is requested what was found so far comes back.
    std::vector<InstalledApp> scanInstalledApps(const std::stop_token& stop = {}) const;

private:
    std::vector<InstalledApp> bundledApps(const std::stop_token& stop) const;

    HostLayout m_layout;
    std::shared_ptr<const ProtectedPlaces> m_protectedPlaces;
};

} // namespace kestavon
