#include "platform/linux/junk_locations.h"

#include "core/domain/removal_guard.h"

#include <algorithm>
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
    cacheHome,
    configHome,
    dataHome,
    stateHome,
};

struct Row {
    JunkCategory category;
    Base base;
    std::string_view folder; ///< wildcards as in `PlacePattern`; "{a,b}" stands for two rows
    std::string_view label;
    JunkRule rule = everyEntry;
    std::string_view names = {}; ///< patterns with blanks between; empty: all
    EntryKinds kinds = EntryKinds::any;
    bool yields = false; ///< see `JunkLocation`
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

// Behind each row stands who says so. A row never holds what a person made, or only has here.
constexpr std::array nativeRows{
    // "user-specific non-essential (cached) data": XDG Base Directory Specification
    Row{appCaches, Base::cacheHome, "", "Application cache", everyEntry, "", EntryKinds::any, true},
    // XDG_CACHE_HOME of a Flatpak: docs.flatpak.org, conventions
    Row{appCaches, Base::home, ".var/app/*/cache", "Application cache", everyEntry, "", EntryKinds::any, true},
    // XDG_CACHE_HOME of a desktop snap: the launcher of snapcraft's desktop extensions
    Row{appCaches, Base::home, "snap/*/common/.cache", "Application cache", everyEntry, "", EntryKinds::any, true},
    // Thumbnail Managing Standard, and its place before 2012
    Row{appCaches, Base::cacheHome, "thumbnails", "Application cache"},
    Row{appCaches, Base::home, ".thumbnails", "Application cache"},
    // Chromium's caches below an Electron program's user data: electronjs.org, app.getPath
    Row{appCaches, Base::configHome, "{Code,Code - Insiders,VSCodium,Cursor}/{Cache,CachedData,Code Cache,GPUCache,CachedExtensionVSIXs}", "Application cache"},
    Row{appCaches, Base::configHome, "{discord,Slack}/{Cache,Code Cache,GPUCache}", "Application cache"},
    Row{appCaches, Base::home, ".var/app/com.discordapp.Discord/config/discord/{Cache,Code Cache,GPUCache}", "Application cache"},
    Row{appCaches, Base::home, ".var/app/com.slack.Slack/config/Slack/{Cache,Code Cache,GPUCache}", "Application cache"},
    Row{appCaches, Base::home, "snap/discord/*/.config/discord/{Cache,Code Cache,GPUCache}", "Application cache"},
    Row{appCaches, Base::home, "snap/slack/*/.config/Slack/{Cache,Code Cache,GPUCache}", "Application cache"},

    // Xsession(5); Xorg(1) for a server without root
    Row{systemLogs, Base::home, "", "System log", everyEntry, ".xsession-errors .xsession-errors.old", EntryKinds::files},
    Row{systemLogs, Base::dataHome, "xorg", "System log"},
    Row{systemLogs, Base::home, ".npm/_logs", "System log"}, // docs.npmjs.com, npm help config, logs-dir
    Row{systemLogs, Base::configHome, "{Code,Code - Insiders,VSCodium,Cursor}/logs", "System log"},
    // Seen on Debian 12 (qBittorrent). Files of these names only: chats are kept in such folders too.
    Row{systemLogs, Base::dataHome, "*/logs", "System log", everyEntry, "*.log *.log.# *.log.gz *.log.old *.log.bak*", EntryKinds::files},
    // "actions history (logs, ...)": XDG Base Directory Specification; of the history nothing
    Row{systemLogs, Base::stateHome, "*/{log,logs}", "System log"},
    // What logrotate(8) and savelog(8) leave; as an ordinary user seldom any may go
    Row{systemLogs, Base::systemRoot, "var/log", "System log", everyEntry, "*.gz *.xz *.old *.#", EntryKinds::files},
    Row{systemLogs, Base::systemRoot, "var/log/*", "System log", everyEntry, "*.gz *.xz *.old *.#", EntryKinds::files},

    // Breakpad's folders of Mozilla's programs: firefox-source-docs.mozilla.org, crash reporter
    Row{crashReports, Base::configHome, "mozilla/firefox*/Crash Reports", "Crash report"},
    Row{crashReports, Base::home, ".mozilla/firefox/Crash Reports", "Crash report"},
    Row{crashReports, Base::home, ".thunderbird/Crash Reports", "Crash report"},
    Row{crashReports, Base::configHome, "mozilla/firefox/*/minidumps", "Crash report"},
    Row{crashReports, Base::home, "{.mozilla/firefox,.thunderbird}/*/minidumps", "Crash report"},
    // Crashpad's databases: chromium.googlesource.com/crashpad, overview
    Row{crashReports, Base::configHome, "{chromium,google-chrome,google-chrome-beta,google-chrome-unstable,BraveSoftware/Brave-Browser,microsoft-edge,vivaldi,opera}/Crash Reports", "Crash report"},
    Row{crashReports, Base::configHome, "*/Crashpad", "Crash report"},
    Row{crashReports, Base::systemRoot, "var/crash", "Crash report"}, // apport(1)

    Row{trash, Base::dataHome, "Trash/files", "Trash item", trashedEntries}, // Trash specification 1.0

    Row{devTools, Base::home, ".npm/{_cacache,_npx}", "npm cache"}, // npm help cache
    Row{devTools, Base::cacheHome, "yarn", "Yarn cache"}, // classic.yarnpkg.com, yarn cache
    Row{devTools, Base::home, ".yarn/berry/cache", "Yarn v2 cache"}, // yarnpkg.com, globalFolder
    Row{devTools, Base::cacheHome, "pip", "pip cache"}, // pip.pypa.io, caching
    Row{devTools, Base::cacheHome, "uv", "Python package cache"}, // docs.astral.sh/uv, caching
    Row{devTools, Base::cacheHome, "pypoetry/{cache,artifacts}", "Python package cache"}, // python-poetry.org, cache-dir; virtualenvs beside them stay
    Row{devTools, Base::cacheHome, "Homebrew", "Homebrew download cache"}, // docs.brew.sh, HOMEBREW_CACHE
    Row{devTools, Base::dataHome, "pnpm/store", "pnpm content store"}, // pnpm.io, storeDir
    Row{devTools, Base::home, ".local/share/pnpm/store", "pnpm content store"},
    Row{devTools, Base::home, ".pnpm-store", "pnpm store"},
    Row{devTools, Base::home, ".cargo/registry/cache", "Cargo registry cache"}, // doc.rust-lang.org/cargo, Cargo Home
    Row{devTools, Base::home, ".cargo/registry/src", "Cargo registry source"},
    Row{devTools, Base::home, ".cargo/git/checkouts", "Cargo registry source"},
    Row{devTools, Base::home, ".gradle/caches", "Gradle cache"}, // docs.gradle.org, Gradle User Home
    Row{devTools, Base::home, ".m2/repository", "Maven local repository"}, // maven.apache.org, local repository
    Row{devTools, Base::home, ".gem/ruby/*/cache", "Ruby gem cache"}, // guides.rubygems.org; installed gems lie beside it and stay
    Row{devTools, Base::dataHome, "gem/ruby/*/cache", "Ruby gem cache"},
    Row{devTools, Base::cacheHome, "go-build", "Go module cache"}, // go help cache
    Row{devTools, Base::home, "go/pkg/mod/cache", "Go module cache"}, // go.dev/ref/mod, module cache
    Row{devTools, Base::cacheHome, "bazel", "Bazel build cache"}, // bazel.build, output directories
    Row{devTools, Base::home, ".terraform.d/plugin-cache", "Terraform plugins"}, // developer.hashicorp.com, plugin_cache_dir
    Row{devTools, Base::cacheHome, "{ccache,sccache}", "Compiler cache"}, // ccache.dev, cache_dir; sccache's README
    Row{devTools, Base::home, ".ccache", "Compiler cache", everyEntry, "# a b c d e f tmp", EntryKinds::folders}, // its settings lie beside them
    Row{devTools, Base::cacheHome, "composer", "Composer cache"}, // getcomposer.org, cache-dir
    Row{devTools, Base::home, ".composer/cache", "Composer cache"},
    Row{devTools, Base::cacheHome, "{deno,node-gyp,electron,electron-builder,Cypress,ms-playwright,puppeteer}", "Tool download cache"}, // each tool's own documentation
    Row{devTools, Base::home, ".bun/install/cache", "Tool download cache"}, // bun.sh, global cache
    Row{devTools, Base::home, ".nuget/packages", "NuGet cache"}, // learn.microsoft.com, nuget locals
    Row{devTools, Base::dataHome, "NuGet/http-cache", "NuGet cache"},
    Row{devTools, Base::home, ".pub-cache/hosted", "Dart package cache"}, // dart.dev, PUB_CACHE; activated tools lie beside it and stay
    Row{devTools, Base::systemRoot, "home/linuxbrew/.linuxbrew/var/cache", "Homebrew cache"},

    // Left by programs that are gone: what the caches hold of them is listed with the caches.
    Row{orphanedApps, Base::dataHome, "", "Orphaned app support data", abandonedEntries, "", EntryKinds::folders},
    Row{orphanedApps, Base::configHome, "", "Orphaned app support data", abandonedEntries, "", EntryKinds::folders},
    Row{orphanedApps, Base::stateHome, "", "Orphaned app support data", abandonedEntries, "", EntryKinds::folders},
    Row{orphanedApps, Base::home, ".var/app", "Orphaned app container", abandonedContainers, "", EntryKinds::folders},
    Row{orphanedApps, Base::configHome, "", "Orphaned preference file", abandonedEntries, "", EntryKinds::files},

    // What is made again from projects and servers. JetBrains keeps the history of files beside it.
    Row{xcodeArtifacts, Base::cacheHome, "JetBrains/*/{caches,index}", "IDE cache"}, // jetbrains.com/help, directories of the IDE
    Row{xcodeArtifacts, Base::home, ".android/{cache,build-cache}", "IDE cache"}, // developer.android.com, build cache

    Row{browserCaches, Base::cacheHome, "mozilla/firefox", "Firefox profile cache"}, // support.mozilla.org, profiles
    Row{browserCaches, Base::cacheHome, "librewolf", "Firefox profile cache"},
    Row{browserCaches, Base::home, "snap/firefox/common/.cache", "Firefox profile cache"},
    Row{browserCaches, Base::home, ".var/app/org.mozilla.firefox/cache/mozilla", "Firefox profile cache"},
    // chromium.googlesource.com, user_data_dir: the cache directory of a profile
    Row{browserCaches, Base::cacheHome, "chromium", "Chromium cache"},
    Row{browserCaches, Base::home, "snap/chromium/common/.cache", "Chromium cache"},
    Row{browserCaches, Base::home, ".var/app/org.chromium.Chromium/cache", "Chromium cache"},
    Row{browserCaches, Base::cacheHome, "{google-chrome,google-chrome-beta,google-chrome-unstable}", "Chrome cache"},
    Row{browserCaches, Base::home, ".var/app/com.google.Chrome/cache", "Chrome cache"},
    Row{browserCaches, Base::configHome, "{chromium,google-chrome,google-chrome-beta,google-chrome-unstable,BraveSoftware/Brave-Browser,microsoft-edge,vivaldi,opera}/{GPUPersistentCache,GrShaderCache,ShaderCache,component_crx_cache,extensions_crx_cache}", "Chrome system cache"},
    Row{browserCaches, Base::cacheHome, "BraveSoftware/Brave-Browser", "Brave cache"},
    Row{browserCaches, Base::home, "snap/brave/common/.cache", "Brave cache"},
    Row{browserCaches, Base::cacheHome, "microsoft-edge*", "Edge cache"},
    Row{browserCaches, Base::cacheHome, "opera", "Opera cache"},
    Row{browserCaches, Base::home, "snap/opera/common/.cache", "Opera cache"},
    Row{browserCaches, Base::cacheHome, "vivaldi", "Vivaldi cache"},
    Row{browserCaches, Base::cacheHome, "{epiphany,epiphany-browser}", "Web cache"}, // seen on Debian 12

    Row{mailAttachments, Base::cacheHome, "thunderbird", "Mail cache"}, // support.mozilla.org, profiles
    Row{mailAttachments, Base::home, ".var/app/org.mozilla.Thunderbird/cache/thunderbird", "Mail cache"},
    Row{mailAttachments, Base::cacheHome, "{evolution,geary}", "Mail cache"},
    Row{mailAttachments, Base::home, ".var/app/org.gnome.Geary/cache", "Mail cache"},
    Row{mailAttachments, Base::dataHome, "geary/*/attachments", "Mail downloads"},
};
// clang-format on

/// Every choice of the texts in braces: "a{b,c}" is "ab" and "ac".
std::vector<std::string> expanded(std::string_view text)
{
    const auto open = text.find('{');
    if (open == text.npos)
        return {std::string(text)};
    const auto close = text.find('}', open);
    std::vector<std::string> all;
    for (auto choices = text.substr(open + 1, close - open - 1);;) {
        const auto choice = choices.substr(0, choices.find(','));
        for (const auto& rest : expanded(text.substr(close + 1)))
            all.push_back(std::string(text.substr(0, open)).append(choice).append(rest));
        if (choice.size() == choices.size())
            return all;
        choices.remove_prefix(choice.size() + 1);
    }
}

std::vector<std::string> words(std::string_view text)
{
    std::vector<std::string> all;
    while (!text.empty()) {
        const auto word = text.substr(0, text.find(' '));
        all.emplace_back(word);
        text.remove_prefix(std::min(word.size() + 1, text.size()));
    }
    return all;
}

std::string folderOf(Base base, const HostLayout& layout)
{
    switch (base) {
    case Base::home: return layout.home;
    case Base::cacheHome: return layout.cacheHome;
    case Base::configHome: return layout.configHome;
    case Base::dataHome: return layout.dataHome;
    case Base::stateHome: return layout.stateHome;
    case Base::systemRoot: break;
    }
    return layout.belowSystemRoot("/");
}

/// Whether the base directory holds only what its name says. Somebody may have named the home
/// itself, or one folder for several of them: then an entry can be anything.
bool isOfItsOwn(Base base, const HostLayout& layout)
{
    const auto folder = folderOf(base, layout);
    const auto holdsAnother
        = [&](Base other) { return other != base && isAtOrBelow(folderOf(other, layout), folder); };
    const auto isDownload = [&folder](const std::string& download) {
        return isAtOrBelow(download, folder) || isAtOrBelow(folder, download);
    };
    return std::ranges::none_of(std::array{Base::home, Base::cacheHome, Base::configHome,
                                    Base::dataHome, Base::stateHome},
               holdsAnother)
        && std::ranges::none_of(layout.downloadFolders, isDownload);
}

bool hasWildcard(std::string_view component)
{
    return component.find_first_of("*#") != component.npos;
}

/// The place of a row: the path as far as it is plain, and the pattern from there.
PlacePattern placeOf(std::string folder, std::string_view path)
{
    while (!path.empty()) {
        const auto component = path.substr(0, path.find('/'));
        if (hasWildcard(component))
            break;
        folder.append(folder == "/" ? "" : "/").append(component);
        path.remove_prefix(std::min(component.size() + 1, path.size()));
    }
    return {.folder = std::move(folder), .below = std::string(path)};
}

void addLocations(
    const Row& row, bool isNative, const HostLayout& layout, std::vector<JunkLocation>& locations)
{
    const auto beginsAnywhere = row.names.empty() && hasWildcard(row.folder.substr(0, 1));
    const auto listsAll = row.names.empty() && row.folder.empty();
    // "ccache" among settings are its settings: only a folder of caches makes a name a cache's.
    const bool needsItsOwn = beginsAnywhere || listsAll || row.base == Base::cacheHome;
    if (needsItsOwn && !isOfItsOwn(row.base, layout))
        return;
    for (const auto& path : expanded(row.folder)) {
        auto place = placeOf(folderOf(row.base, layout), path);
        JunkLocation location{.category = row.category,
            .folder = std::move(place.folder),
            .label = std::string(row.label),
            .rule = row.rule,
            .below = std::move(place.below),
            .names = words(row.names),
            .kinds = row.kinds,
            .onlyRemovable = isNative,
            .yields = row.yields};
        if (std::ranges::find(locations, location) == locations.end())
            locations.push_back(std::move(location));
    }
}

} // namespace

std::vector<JunkLocation> junkLocationsOf(const HostLayout& layout)
{
    std::vector<JunkLocation> locations;
    if (layout.kind == HomeKind::mac) {
        for (const auto& row : macRows)
            addLocations(row, false, layout, locations);
        return locations;
    }
    for (const auto& row : nativeRows)
        addLocations(row, true, layout, locations);
    for (const auto& folder : layout.downloadFolders)
        locations.push_back({.category = oldDownloads,
            .folder = folder,
            .label = "Old download (90+ days)",
            .rule = oldEntries,
            .onlyRemovable = true,
            .yields = true});
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
