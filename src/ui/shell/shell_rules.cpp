#include "ui/shell/shell_rules.h"

#include "core/model/app_model.h"

#include <algorithm>

namespace kestavon {

namespace {

using enum AppSection;

constexpr std::array<SectionLook, 14> looks{{
    {dashboard, "square.grid.2x2", "accent", "dashboard/DashboardView.qml"},
    {smartClean, "wand.and.sparkles", "purple", "smartclean/SmartCleanView.qml"},
    {storage, "internaldrive", "accent", "storage/StorageView.qml"},
    {largeFiles, "arrow.up.left.and.arrow.down.right", "accent", "largefiles/LargeFilesView.qml"},
    {duplicates, "doc.on.doc", "purple", "duplicates/DuplicatesView.qml"},
    {cleaner, "sparkles", "blue", "cleaner/CleanerView.qml"},
    {appUninstaller, "trash.circle", "accent", "uninstaller/AppUninstallerView.qml"},
    {performance, "gauge.with.dots.needle.67percent", "accent", "performance/PerformanceView.qml"},
    {processes, "terminal", "accent", "processes/ProcessesView.qml"},
    {startup, "power", "accent", "startup/StartupView.qml"},
    {security, "shield.lefthalf.filled", "red", "security/SecurityView.qml"},
    {quarantine, "archivebox", "orange", "safearea/QuarantineView.qml"},
    {history, "clock.arrow.circlepath", "accent", "history/HistoryView.qml"},
    {settings, "gearshape", "accent", "shell/SettingsView.qml"},
}};

constexpr std::array analyze{dashboard, storage, largeFiles, duplicates};
constexpr std::array clean{smartClean, cleaner, appUninstaller, quarantine};
constexpr std::array monitor{performance, processes, startup, security};
constexpr std::array manage{history, settings};

constexpr std::array<SidebarGroup, 4> groups{{
    {"Analyze", analyze},
    {"Clean", clean},
    {"Monitor", monitor},
    {"Manage", manage},
}};

template <class Range, class Condition> std::size_t count(const Range& range, Condition condition)
{
    return static_cast<std::size_t>(std::ranges::count_if(range, condition));
}

} // namespace

const SectionLook& lookOf(AppSection section)
{
    return looks[static_cast<std::size_t>(section)];
}

std::span<const SidebarGroup> sidebarGroups()
{
    return groups;
}

std::size_t sidebarBadge(const AppModel& model, AppSection section)
{
    switch (section) {
    case smartClean: return smartCleanBadge(model.junkGroups());
    case duplicates: return model.duplicates()->size();
    case cleaner: return model.cleanupCandidates()->size();
    case appUninstaller: return uninstallerBadge(model.installedApps());
    case security: return securityBadge(model.findings());
    case quarantine: return model.quarantine().size();
    default: return 0;
    }
}

std::size_t smartCleanBadge(const std::vector<JunkGroup>& junkGroups)
{
    return count(junkGroups,
        [](const JunkGroup& group) { return group.isScanned && group.items.bytes() > 0; });
}

std::size_t uninstallerBadge(const std::vector<InstalledApp>& apps)
{
    return count(apps, [](const InstalledApp& app) {
        return std::ranges::any_of(
            app.leftovers, [](const auto& leftover) { return leftover.size > 0; });
    });
}

std::size_t securityBadge(const std::vector<SecurityFinding>& findings)
{
    return count(findings,
        [](const SecurityFinding& finding) { return finding.level >= ThreatLevel::suspicious; });
}

std::string badgeText(std::size_t badge)
{
    if (badge == 0)
        return {};
    return badge < 100 ? std::to_string(badge) : "99+";
}

double diskUsedFraction(std::int64_t total, std::int64_t free)
{
    return total >= 1 ? static_cast<double>(total - free) / static_cast<double>(total) : 0.0;
}

std::string_view statusSymbol(double usedFraction)
{
    return usedFraction > 0.9 ? "internaldrive.fill" : "internaldrive";
}

std::string_view statusSymbolColor(double usedFraction)
{
    return usedFraction > 0.9 ? "red" : usedFraction > 0.75 ? "orange" : "primary";
}

std::string_view statusDiskColor(double usedFraction)
{
    return usedFraction > 0.9 ? "red" : usedFraction > 0.75 ? "orange" : "blue";
}

double memoryPressure(const std::optional<MemorySnapshot>& memory)
{
    if (!memory)
        return 0;
    const auto held = memory->activeBytes + memory->wiredBytes;
    const auto total = memory->freeBytes + memory->inactiveBytes + held;
    return total == 0 ? 0.0 : static_cast<double>(held) / static_cast<double>(total);
}

std::string_view statusMemoryColor(double pressure)
{
    return pressure > 0.85 ? "red" : pressure > 0.65 ? "orange" : "green";
}

bool offersOnboarding(bool hasFullDiskAccess, bool wasShown)
{
    return !hasFullDiskAccess && !wasShown;
}

} // namespace kestavon
