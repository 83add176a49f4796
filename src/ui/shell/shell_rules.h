#pragma once

#include "core/domain/app_section.h"
#include "core/domain/installed_app.h"
#include "core/domain/junk_group.h"
#include "core/domain/security_finding.h"
#include "core/domain/system_state.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

class AppModel;

/// How a section shows itself.
struct SectionLook {
    AppSection section;
    std::string_view symbol;
    std::string_view badgeColor; ///< a colour's name
    std::string_view screen; ///< its QML file, relative to the module's folder
};

/// The look of `section`.
const SectionLook& lookOf(AppSection section);

/// One titled group of the sidebar, top to bottom.
struct SidebarGroup {
    std::string_view title;
    std::span<const AppSection> sections;
};

/// The sidebar's groups in their order; their sections are not in the enumeration's order.
std::span<const SidebarGroup> sidebarGroups();

/// The number beside a section in the sidebar; 0 shows nothing.
std::size_t sidebarBadge(const AppModel& model, AppSection section);

/// Scanned categories in which something was found.
std::size_t smartCleanBadge(const std::vector<JunkGroup>& groups);
/// Applications that left something behind.
std::size_t uninstallerBadge(const std::vector<InstalledApp>& apps);
/// Findings that are suspicious or worse.
std::size_t securityBadge(const std::vector<SecurityFinding>& findings);

/// What the capsule says: empty for 0, the number below 100, "99+" from there on.
std::string badgeText(std::size_t badge);

/// The share of the disk in use, as the counters give it: outside 0…1 when they disagree, 0 for a
/// disk without a size.
double diskUsedFraction(std::int64_t total, std::int64_t free);
std::string_view statusSymbol(double usedFraction);
std::string_view statusSymbolColor(double usedFraction);
std::string_view statusDiskColor(double usedFraction);

/// The share of memory that programs hold and will not give up; 0 without a snapshot.
double memoryPressure(const std::optional<MemorySnapshot>& memory);
std::string_view statusMemoryColor(double pressure);

/// Whether the sheet that asks for Full Disk Access is shown: at most once for each user, and never
/// to somebody who has granted it.
bool offersOnboarding(bool hasFullDiskAccess, bool wasShown);

} // namespace kestavon
