#include "platform/host_layout.h"

#include "platform/linux/application_places.h"
#include "platform/linux/junk_locations.h"
#include "platform/linux/kept_places.h"
#include "platform/linux/path_lists.h"
#include "platform/linux/small_file.h"
#include "platform/linux/user_folders.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// Folders below a home that a Mac keeps from programs without Full Disk Access.
constexpr std::array<std::string_view, 5> macProbes{
    "Library/Mail",
    "Library/Messages",
    "Library/Safari",
    "Library/Calendars",
    "Library/AddressBook",
};

/// Folders below a home that a sandboxed program cannot list, the telling ones first.
constexpr std::array<std::string_view, 6> nativeProbes{
    ".thunderbird",
    ".config/mozilla",
    ".mozilla",
    ".local/share/evolution",
    ".config",
    ".cache",
};

/// A Mac's sealed system volume, its databases and its swap files.
constexpr std::array<const char*, 3> excludedFromScans{
    "/System",
    "/private/var/db",
    "/private/var/vm",
};

std::string below(const std::string& folder, std::string_view path)
{
    auto joined = folder;
    if (!joined.ends_with('/'))
        joined += '/';
    return joined.append(path);
}

bool isFolder(const std::string& path)
{
    struct stat status { };
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string baseFolder(const std::string& given, const std::string& home, std::string_view standard)
{
    return given.starts_with('/') ? normalisedPath(given) : below(home, standard);
}

std::vector<std::string> dataFoldersOf(const HostLayout& layout, const std::string& named)
{
    const auto of = [&layout](const char* path) {
        // An attached Mac's disk has none of them: this machine's are meant.
        return layout.kind == HomeKind::mac ? path : layout.belowSystemRoot(path);
    };
    std::vector<std::string> folders;
    const auto add = [&folders](const std::string& folder) {
        if (std::ranges::find(folders, folder) == folders.end())
            folders.push_back(folder);
    };
    add(layout.dataHome);
    for (const auto& folder : foldersInList(named))
        add(folder);
    if (folders.size() == 1) {
        add(of("/usr/local/share"));
        add(of("/usr/share"));
    }
    // A session that began before they were installed does not name them.
    add(below(layout.dataHome, "flatpak/exports/share"));
    add(of("/var/lib/flatpak/exports/share"));
    add(of("/var/lib/snapd/desktop"));
    return folders;
}

std::vector<std::string> downloadFoldersOf(const HostLayout& layout)
{
    std::vector<std::string> folders{below(layout.home, "Downloads")};
    if (layout.kind == HomeKind::mac)
        return folders;
    const auto file = readSmallFile(below(layout.configHome, "user-dirs.dirs"));
    const auto named = downloadFolderNamedIn(file.bytes, layout.home);
    if (named && *named != folders.front())
        folders.push_back(*named);
    return folders;
}

/// XDG_CACHE_HOME, and what stands for it in a sandbox. A cache folder that holds other things too
/// proves nothing.
std::vector<PlacePattern> cachePlacesOf(const HostLayout& layout)
{
    if (layout.kind != HomeKind::native)
        return {};
    std::vector<PlacePattern> places{{.folder = layout.home, .below = ".var/app/*/cache"},
        {.folder = layout.home, .below = "snap/*/common/.cache"}};
    for (const auto& location : layout.junkLocations) {
        if (location.folder == layout.cacheHome && location.yields)
            places.push_back({.folder = layout.cacheHome});
    }
    return places;
}

std::string environmentValue(const char* name)
{
    const auto* value = std::getenv(name);
    return value ? value : "";
}

std::string homeOfPasswordEntry()
{
    std::vector<char> buffer(16 * 1024);
    struct passwd entry { };
    struct passwd* found = nullptr;
    while (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE)
        buffer.resize(2 * buffer.size());
    return found && found->pw_dir ? found->pw_dir : "";
}

} // namespace

std::string HostLayout::belowSystemRoot(const std::string& path) const
{
    if (systemRoot == "/" || systemRoot.empty())
        return path;
    return path == "/" ? systemRoot : systemRoot + path;
}

std::string systemRootOf(const std::string& home)
{
    const auto users = std::filesystem::path(home).parent_path();
    const auto root = users.parent_path().native();
    return users.filename() == "Users" && isFolder(below(root, "System/Library")) ? root : "/";
}

HostEnvironment currentHostEnvironment()
{
    // In a Flatpak the usual variables lead into the sandbox, and these to the user's own folders.
    const bool isSandboxed = ::access("/.flatpak-info", F_OK) == 0;
    const std::string prefix = isSandboxed ? "HOST_XDG_" : "XDG_";
    const auto baseFolderVariable
        = [&prefix](const char* name) { return environmentValue((prefix + name).c_str()); };

    HostEnvironment environment;
    environment.home = environmentValue("HOME");
    if (!environment.home.starts_with('/'))
        environment.home = homeOfPasswordEntry();
    environment.isHomeKnown = environment.home.starts_with('/');
    if (!environment.isHomeKnown)
        environment.home = std::string("/"); // g++ 12 warns wrongly of a plain assignment here
    environment.systemRoot = systemRootOf(normalisedPath(environment.home));
    environment.xdgCacheHome = baseFolderVariable("CACHE_HOME");
    environment.xdgConfigHome = baseFolderVariable("CONFIG_HOME");
    environment.xdgDataHome = baseFolderVariable("DATA_HOME");
    environment.xdgStateHome = baseFolderVariable("STATE_HOME");
    environment.xdgDataDirs = environmentValue("XDG_DATA_DIRS");
    environment.xdgConfigDirs = environmentValue("XDG_CONFIG_DIRS");
    environment.path = environmentValue("PATH");
    if (isSandboxed)
        environment.sandboxConfigHome
            = baseFolder(environmentValue("XDG_CONFIG_HOME"), environment.home, ".config");
    return environment;
}

HostLayout makeHostLayout(const HostEnvironment& environment)
{
    HostLayout layout;
    layout.home = normalisedPath(environment.home);
    layout.systemRoot
        = environment.systemRoot.empty() ? "/" : normalisedPath(environment.systemRoot);
    const bool looksMac = isFolder(below(layout.home, "Library"));
    layout.kind = environment.kind.value_or(looksMac ? HomeKind::mac : HomeKind::native);

    layout.cacheHome = baseFolder(environment.xdgCacheHome, layout.home, ".cache");
    layout.configHome = baseFolder(environment.xdgConfigHome, layout.home, ".config");
    layout.dataHome = baseFolder(environment.xdgDataHome, layout.home, ".local/share");
    layout.stateHome = baseFolder(environment.xdgStateHome, layout.home, ".local/state");
    layout.dataFolders = dataFoldersOf(layout, environment.xdgDataDirs);
    layout.applicationSupport = layout.kind == HomeKind::mac
        ? below(layout.home, "Library/Application Support")
        : layout.dataHome;

    for (const auto probe : macProbes)
        layout.fullDiskAccessProbes.push_back(below(layout.home, probe));
    if (layout.kind == HomeKind::native) {
        for (const auto probe : nativeProbes)
            layout.fullDiskAccessProbes.push_back(below(layout.home, probe));
    }
    // Outside a sandbox nothing but the files' own modes keeps anyone from reading them, whatever
    // becomes of the home: nobody is asked for anything.
    const bool isSandboxed = !environment.sandboxConfigHome.empty();
    if (layout.kind == HomeKind::native && !isSandboxed)
        layout.fullDiskAccessProbes.emplace_back("/");
    layout.settingsFolder
        = below(isSandboxed ? normalisedPath(environment.sandboxConfigHome) : layout.configHome,
            "Kestavon");
    layout.cacheMarkers = {"/Library/Caches/"};
    layout.keptPlaces = keptPlacesOf(layout);
    layout.downloadFolders = downloadFoldersOf(layout);
    for (const auto* place : excludedFromScans)
        layout.scanExclusions.push_back(layout.belowSystemRoot(place));
    layout.junkLocations = junkLocationsOf(layout);
    layout.cachePlaces = cachePlacesOf(layout);
    layout.applicationFolders = applicationFoldersOf(layout);
    addApplicationPlaces(layout, environment.path);
    addStartupPlaces(layout, environment.xdgConfigDirs);
    return layout;
}

std::string normalisedPath(std::string path)
{
    if (!path.starts_with('/')) {
        std::error_code error;
        const auto workingFolder = std::filesystem::current_path(error);
        path = below(error ? "/" : workingFolder.native(), path);
    }
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

std::string journalFolder(const HostLayout& layout)
{
    if (layout.home == "/" || layout.applicationSupport.empty())
        return {};
    return layout.applicationSupport + "/Kestavon/Unfinished";
}

std::string typedPath(const std::string& path)
{
    const std::filesystem::path typed = normalisedPath(path);
    const bool goesUp = std::ranges::find(typed, "..") != typed.end();
    std::error_code error;
    if (goesUp) {
        const auto onDisk = std::filesystem::weakly_canonical(typed, error);
        if (!error)
            return normalisedPath(onDisk.native());
    }
    return normalisedPath(typed.lexically_normal().native());
}

} // namespace kestavon
