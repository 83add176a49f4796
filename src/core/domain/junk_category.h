#pragma once

#include "core/domain/named_enum.h"

namespace kestavon {

/// The categories of Smart Clean.
enum class JunkCategory {
    appCaches,
    systemLogs,
    crashReports,
    trash,
    devTools,
    orphanedApps,
    oldDownloads,
    xcodeArtifacts,
    iosBackups,
    browserCaches,
    mailAttachments,
};

template <> struct NamedCases<JunkCategory> {
    static constexpr std::array<NamedCase<JunkCategory>, 11> table{{
        {JunkCategory::appCaches, "App Caches"},
        {JunkCategory::systemLogs, "System Logs"},
        {JunkCategory::crashReports, "Crash Reports"},
        {JunkCategory::trash, "Trash"},
        {JunkCategory::devTools, "Developer Tools"},
        {JunkCategory::orphanedApps, "Orphaned Apps"},
        {JunkCategory::oldDownloads, "Old Downloads"},
        {JunkCategory::xcodeArtifacts, "Xcode Artifacts"},
        {JunkCategory::iosBackups, "iOS Backups"},
        {JunkCategory::browserCaches, "Browser Caches"},
        {JunkCategory::mailAttachments, "Mail & Messages"},
    }};
};

} // namespace kestavon
