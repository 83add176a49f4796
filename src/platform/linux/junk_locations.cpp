#include "platform/linux/junk_locations.h"

#include <array>
#include <span>
#include <string_view>

namespace kestavon {

namespace {

using enum JunkCategory;
using enum JunkRule;

/// What a row's folder is relative to.
enum class Base {
    home,
    systemRoot,
    dataHome,
};

struct Row {
    JunkCategory category;
    Base base;
    std::string_view folder;
    std::string_view label;
    JunkRule rule = everyEntry;
};

// Every row of a category in the order in which its items are listed.
// clang-format off
constexpr std::array macRows{
    Row{appCaches, Base::home, "Library/Caches", "Application cache"},

    Row{systemLogs, Base::home, "Library/Logs", "System log"},

    Row{crashReports, Base::home, "Library/Logs/DiagnosticReports", "Crash report"},
    Row{crashReports, Base::systemRoot, "Library/Logs/DiagnosticReports", "Crash report"},

    Row{trash, Base::home, ".Trash", "Trash item"},

    Row{devTools, Base::home, ".npm/_cacache", "npm cache"},
    Row{devTools, Base::home, ".npm-cache", "npm cache"},
    Row{devTools, Base::home, "Library/Caches/Yarn", "Yarn cache"},
    Row{devTools, Base::home, ".yarn/cache", "Yarn v2 cache"},
    Row{devTools, Base::home, "Library/Caches/pip", "pip cache"},
    Row{devTools, Base::home, "Library/Caches/Homebrew", "Homebrew download cache"},
    Row{devTools, Base::home, "Library/pnpm/store", "pnpm content store"},
    Row{devTools, Base::home, ".pnpm-store", "pnpm store"},
    Row{devTools, Base::home, ".cargo/registry/cache", "Cargo registry cache"},
    Row{devTools, Base::home, ".cargo/registry/src", "Cargo registry source"},
    Row{devTools, Base::home, ".gradle/caches", "Gradle cache"},
    Row{devTools, Base::home, ".m2/repository", "Maven local repository"},
    Row{devTools, Base::home, "Library/Caches/CocoaPods", "CocoaPods download cache"},
    Row{devTools, Base::home, ".gem/ruby", "Ruby gem cache"},
    Row{devTools, Base::home, "Library/Containers/com.docker.docker/Data/vms", "Docker VM images"},
    Row{devTools, Base::home, ".cache/bazel", "Bazel build cache"},
    Row{devTools, Base::home, ".terraform.d/plugins", "Terraform plugins"},
    Row{devTools, Base::home, "go/pkg/mod/cache", "Go module cache"},
    Row{devTools, Base::systemRoot, "opt/homebrew/var/cache", "Homebrew cache"},

    Row{orphanedApps, Base::home, "Library/Application Support", "Orphaned app support data", orphanedEntries},
    Row{orphanedApps, Base::home, "Library/Containers", "Orphaned app container", orphanedEntries},
    Row{orphanedApps, Base::home, "Library/Group Containers", "Orphaned group container", orphanedEntries},
    Row{orphanedApps, Base::home, "Library/Preferences", "Orphaned preference file", orphanedPreferences},

    Row{oldDownloads, Base::home, "Downloads", "Old download (90+ days)", oldEntries},

    Row{xcodeArtifacts, Base::home, "Library/Developer/Xcode/DerivedData", "Xcode Derived Data"},
    Row{xcodeArtifacts, Base::home, "Library/Developer/Xcode/iOS DeviceSupport", "Xcode iOS Device Support"},
    Row{xcodeArtifacts, Base::home, "Library/Developer/Xcode/watchOS DeviceSupport", "Xcode watchOS Device Support"},
    Row{xcodeArtifacts, Base::home, "Library/Developer/Xcode/Archives", "Xcode Archive"},
    Row{xcodeArtifacts, Base::home, "Library/Developer/CoreSimulator/Devices", "iOS Simulator device data"},
    Row{xcodeArtifacts, Base::home, "Library/Developer/Xcode/UserData/IB Support/Simulator Devices", "IB Simulator data"},

    Row{iosBackups, Base::home, "Library/Application Support/MobileSync/Backup", "iOS/iPadOS backup"},

    Row{browserCaches, Base::home, "Library/Caches/com.apple.Safari", "Safari cache"},
    Row{browserCaches, Base::home, "Library/Safari/LocalStorage", "Safari local storage"},
    Row{browserCaches, Base::home, "Library/Application Support/Google/Chrome/Default/Cache", "Chrome cache"},
    Row{browserCaches, Base::home, "Library/Caches/Google/Chrome", "Chrome system cache"},
    Row{browserCaches, Base::home, "Library/Application Support/Firefox/Profiles", "Firefox profile cache"},
    Row{browserCaches, Base::home, "Library/Application Support/BraveSoftware/Brave-Browser/Default/Cache", "Brave cache"},
    Row{browserCaches, Base::home, "Library/Application Support/BraveSoftware/Brave-Browser/Default/Code Cache", "Brave code cache"},
    Row{browserCaches, Base::home, "Library/Application Support/Microsoft Edge/Default/Cache", "Edge cache"},
    Row{browserCaches, Base::home, "Library/Application Support/Microsoft Edge/Default/Code Cache", "Edge code cache"},
    Row{browserCaches, Base::home, "Library/Application Support/Arc/User Data/Default/Cache", "Arc cache"},
    Row{browserCaches, Base::home, "Library/Application Support/com.operasoftware.Opera/Default/Cache", "Opera cache"},
    Row{browserCaches, Base::home, "Library/Application Support/Vivaldi/Default/Cache", "Vivaldi cache"},

    Row{mailAttachments, Base::home, "Library/Containers/com.apple.mail/Data/Library/Mail Downloads", "Mail downloads"},
    Row{mailAttachments, Base::home, "Library/Containers/com.apple.mail/Data/Library/Caches", "Mail cache"},
    Row{mailAttachments, Base::home, "Library/Mail", "Mail message data"},
    Row{mailAttachments, Base::home, "Library/Containers/com.apple.iChat/Data/Library/Caches", "Messages cache"},
    Row{mailAttachments, Base::home, "Library/Messages/Attachments", "Messages attachments"},
};

// Where the desktop's own Trash keeps its items.
constexpr std::array nativeRows{
    Row{trash, Base::dataHome, "Trash/files", "Trash item"},
};
// clang-format on

std::span<const Row> rowsFor(HomeKind kind)
{
    if (kind == HomeKind::mac)
        return macRows;
    return nativeRows;
}

std::string folderOf(const Row& row, const HostLayout& layout)
{
    const auto path = '/' + std::string(row.folder);
    switch (row.base) {
    case Base::home: return layout.home == "/" ? path : layout.home + path;
    case Base::dataHome: return layout.dataHome + path;
    case Base::systemRoot: break;
    }
    return layout.belowSystemRoot(path);
}

} // namespace

std::vector<JunkLocation> junkLocationsOf(const HostLayout& layout)
{
    std::vector<JunkLocation> locations;
    for (const auto& row : rowsFor(layout.kind)) {
        locations.push_back({.category = row.category,
            .folder = folderOf(row, layout),
            .label = std::string(row.label),
            .rule = row.rule});
    }
    return locations;
}

std::vector<std::string> applicationFoldersOf(const HostLayout& layout)
{
    if (layout.kind != HomeKind::mac)
        return {};
    return {layout.belowSystemRoot("/Applications"), layout.belowSystemRoot("/System/Applications"),
        layout.home + "/Applications"};
}

} // namespace kestavon
