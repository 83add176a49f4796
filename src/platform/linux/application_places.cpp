#include "platform/linux/application_places.h"

#include "platform/linux/path_lists.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kestavon {

namespace {

struct LeftoverRow {
    std::string_view folder; ///< below the home
    LeftoverFile::LeftoverKind kind;
    LeftoverRule rule = LeftoverRule::anyEntry;
};

using enum LeftoverFile::LeftoverKind;

constexpr std::array macLeftovers{
    LeftoverRow{"Library/Application Support", appSupport},
    LeftoverRow{"Library/Caches", cache},
    LeftoverRow{"Library/Logs", logs},
    LeftoverRow{"Library/Containers", container},
    LeftoverRow{"Library/Application Scripts", appSupport},
    LeftoverRow{"Library/HTTPStorages", cache},
    LeftoverRow{"Library/Preferences", preferences, LeftoverRule::propertyList},
    LeftoverRow{"Library/Saved Application State", savedState, LeftoverRule::savedState},
};

/// What a row's folder is relative to.
enum class Base { home, cacheHome, configHome, dataHome, stateHome };

struct NativeLeftoverRow {
    Base base;
    std::string_view folder;
    LeftoverFile::LeftoverKind kind;
    LeftoverRule rule;
    EntryKinds kinds = EntryKinds::any;
};

// XDG Base Directory Specification, but for the last four: docs.flatpak.org (sandbox data,
// flatpak-override), snapcraft.io (SNAP_USER_COMMON), Autostart specification, and the home itself,
// where programs kept their data before there were base directories.
constexpr std::array nativeLeftovers{
    NativeLeftoverRow{Base::configHome, "", preferences, LeftoverRule::setting, EntryKinds::files},
    NativeLeftoverRow{Base::configHome, "", appSupport, LeftoverRule::setting, EntryKinds::folders},
    NativeLeftoverRow{Base::cacheHome, "", cache, LeftoverRule::word},
    NativeLeftoverRow{Base::dataHome, "", appSupport, LeftoverRule::word},
    NativeLeftoverRow{Base::stateHome, "", other, LeftoverRule::word},
    NativeLeftoverRow{Base::home, ".var/app", container, LeftoverRule::wholeName},
    NativeLeftoverRow{Base::home, "snap", container, LeftoverRule::wholeName},
    NativeLeftoverRow{Base::dataHome, "flatpak/overrides", preferences, LeftoverRule::wholeName},
    NativeLeftoverRow{Base::configHome, "autostart", other, LeftoverRule::autostartEntry},
    NativeLeftoverRow{Base::home, "", appSupport, LeftoverRule::dottedName},
};

/// Names of what all programs share, in lower case; see `ProgramRecords::sharedNames`.
constexpr std::array sharedNames{
    std::string_view("applications*"),
    std::string_view("appstream*"),
    std::string_view("aspell*"),
    std::string_view("at-spi*"),
    std::string_view("autostart*"),
    std::string_view("background*"),
    std::string_view("bash*"),
    std::string_view("baloo*"),
    std::string_view("cni"),
    std::string_view("color*"),
    std::string_view("containers"),
    std::string_view("cups*"),
    std::string_view("dbus*"),
    std::string_view("dconf*"),
    std::string_view("desktop-directories"),
    std::string_view("direnv"),
    std::string_view("enchant*"),
    std::string_view("environment.d"),
    std::string_view("evolution*"),
    std::string_view("file-manager"),
    std::string_view("flatpak*"),
    std::string_view("folks"),
    std::string_view("fontconfig*"),
    std::string_view("fonts*"),
    std::string_view("gconf*"),
    std::string_view("gegl*"),
    std::string_view("git"),
    std::string_view("glib*"),
    std::string_view("gnome*"),
    std::string_view("gnupg*"),
    std::string_view("goa*"),
    std::string_view("gsettings*"),
    std::string_view("gst*"),
    std::string_view("gtk*"),
    std::string_view("gvfs*"),
    std::string_view("hunspell*"),
    std::string_view("ibus*"),
    std::string_view("fcitx*"),
    std::string_view("icc"),
    std::string_view("icons*"),
    std::string_view("info"),
    std::string_view("k*globals"),
    std::string_view("k*globals.*"),
    std::string_view("kde*"),
    std::string_view("keyrings"),
    std::string_view("kwallet*"),
    std::string_view("ksycoca*"),
    std::string_view("kestavon"),
    std::string_view("kio*"),
    std::string_view("libfm*"),
    std::string_view("locale*"),
    std::string_view("lxsession*"),
    std::string_view("man"),
    std::string_view("menus"),
    std::string_view("mesa*"),
    std::string_view("metainfo"),
    std::string_view("mime*"),
    std::string_view("monitors*"),
    std::string_view("nautilus*"),
    std::string_view("nvidia*"),
    std::string_view("openbox*"),
    std::string_view("pango*"),
    std::string_view("pipewire*"),
    std::string_view("pki"),
    std::string_view("plasma*"),
    std::string_view("powerdevil*"),
    std::string_view("procps"),
    std::string_view("profile*"),
    std::string_view("pulse*"),
    std::string_view("qt*"),
    std::string_view("recent*"),
    std::string_view("sddm*"),
    std::string_view("session*"),
    std::string_view("sounds*"),
    std::string_view("ssh*"),
    std::string_view("state"),
    std::string_view("systemd*"),
    std::string_view("templates"),
    std::string_view("themes*"),
    std::string_view("thumbnails*"),
    std::string_view("tracker*"),
    std::string_view("trash*"),
    std::string_view("trolltech*"),
    std::string_view("user-*"),
    std::string_view("vulkan*"),
    std::string_view("wayland*"),
    std::string_view("wireplumber*"),
    std::string_view("x11*"),
    std::string_view("xdg*"),
    std::string_view("xfce*"),
    std::string_view("xorg*"),
    std::string_view("xsettings*"),
    std::string_view("zsh*"),
};

/// Where executable files are, besides what PATH says: programs that one shell knows of are
/// installed, whatever started this one.
constexpr std::array<std::string_view, 9> systemProgramFolders{"/usr/local/sbin", "/usr/local/bin",
    "/usr/sbin", "/usr/bin", "/usr/local/games", "/usr/games", "/snap/bin",
    "/home/linuxbrew/.linuxbrew/bin", "/var/lib/flatpak/exports/bin"};
constexpr std::array<std::string_view, 9> homeProgramFolders{".local/bin", "bin", ".cargo/bin",
    "go/bin", ".npm-global/bin", ".nix-profile/bin", ".local/share/flatpak/exports/bin",
    ".pyenv/shims", "Applications"};

/// Where the desktop and systemd look for what starts by itself, in anybody's home and system.
constexpr std::array<std::string_view, 18> nativePersistenceMarkers{"/.config/autostart/",
    "/.config/systemd/user/", "/.local/share/systemd/user/", "/.config/plasma-workspace/env/",
    "/etc/xdg/autostart/", "/etc/systemd/system/", "/etc/systemd/user/", "/etc/cron.d/",
    "/etc/cron.hourly/", "/etc/cron.daily/", "/etc/cron.weekly/", "/etc/cron.monthly/",
    "/etc/cron.yearly/", "/etc/crontab", "/var/spool/cron/", "/etc/init.d/", "/etc/profile.d/",
    "/etc/ld.so.preload"};

std::string belowHome(const HostLayout& layout, std::string_view path)
{
    return (layout.home == "/" ? "" : layout.home) + '/' + std::string(path);
}

std::string folderOf(Base base, const HostLayout& layout)
{
    switch (base) {
    case Base::home: return layout.home;
    case Base::cacheHome: return layout.cacheHome;
    case Base::configHome: return layout.configHome;
    case Base::dataHome: return layout.dataHome;
    case Base::stateHome: break;
    }
    return layout.stateHome;
}

std::string joined(const std::string& folder, std::string_view path)
{
    return path.empty() ? folder : (folder == "/" ? "" : folder) + '/' + std::string(path);
}

void addNativeApplicationPlaces(HostLayout& layout)
{
    auto& sources = layout.applicationSources;
    for (const auto& folder : layout.dataFolders)
        sources.push_back({.folder = joined(folder, "applications"),
            .form = ApplicationForm::desktopEntries,
            .isManaged = folder != layout.dataHome});
    for (const auto& folder :
        {layout.belowSystemRoot("/var/lib/flatpak/app"), joined(layout.dataHome, "flatpak/app")})
        sources.push_back({.folder = folder, .form = ApplicationForm::flatpaks, .isManaged = true});
    for (const auto* folder : {"Applications", ".local/bin", "bin"})
        sources.push_back(
            {.folder = belowHome(layout, folder), .form = ApplicationForm::appImages});
    for (const auto& [base, folder, kind, rule, kinds] : nativeLeftovers) {
        // A base directory that is the home itself holds everything, and not data of programs.
        if (base != Base::home && folderOf(base, layout) == layout.home)
            continue;
        layout.leftoverLocations.push_back({.folder = joined(folderOf(base, layout), folder),
            .kind = kind,
            .rule = rule,
            .kinds = kinds,
            .ofOneOnly = true});
    }
}

void addProgramRecords(HostLayout& layout, const std::string& path)
{
    auto& records = layout.programRecords;
    const auto addFolder = [&records](std::string folder) {
        if (std::ranges::find(records.programFolders, folder) == records.programFolders.end())
            records.programFolders.push_back(std::move(folder));
    };
    for (auto& folder : foldersInList(path))
        addFolder(std::move(folder));
    for (const auto folder : systemProgramFolders)
        addFolder(layout.belowSystemRoot(std::string(folder)));
    for (const auto folder : homeProgramFolders)
        addFolder(belowHome(layout, folder));
    for (const auto& folder : layout.dataFolders)
        records.serviceFolders.push_back(joined(folder, "dbus-1/services"));
    records.serviceFolders.push_back(layout.belowSystemRoot("/usr/share/dbus-1/system-services"));
    records.packageStatus = layout.belowSystemRoot("/var/lib/dpkg/status");
    records.packageLogs = {
        layout.belowSystemRoot("/var/log/dpkg.log"), layout.belowSystemRoot("/var/log/dpkg.log.1")};
    records.packageLists = layout.belowSystemRoot("/var/lib/apt/lists");
    records.sharedNames.assign(sharedNames.begin(), sharedNames.end());
}

void addNativeStartupPlaces(HostLayout& layout, const std::string& configDirs)
{
    const auto add = [&layout](std::string folder, bool isSystem, StartupForm form) {
        layout.startupFolders.push_back(
            {.folder = std::move(folder), .isSystem = isSystem, .form = form});
    };
    using enum StartupForm;
    add(joined(layout.configHome, "autostart"), false, desktopEntries);
    add(joined(layout.configHome, "systemd/user"), false, unitLinks);
    auto folders = foldersInList(configDirs);
    if (folders.empty())
        folders.push_back(layout.belowSystemRoot("/etc/xdg"));
    for (const auto& folder : folders)
        add(joined(folder, "autostart"), true, desktopEntries);
    add(layout.belowSystemRoot("/etc/systemd/user"), true, unitLinks);
    add(layout.belowSystemRoot("/etc/systemd/system"), true, unitLinks);

    auto& markers = layout.persistenceMarkers;
    markers.insert(markers.end(), nativePersistenceMarkers.begin(), nativePersistenceMarkers.end());
    const auto addMarker = [&markers](const std::string& marker) {
        const auto isCovered
            = [&marker](const std::string& other) { return marker.find(other) != marker.npos; };
        if (std::ranges::none_of(markers, isCovered))
            markers.push_back(marker);
    };
    // Where the base directories are elsewhere.
    for (const auto* place : {"autostart/", "systemd/user/", "plasma-workspace/env/"})
        addMarker(joined(layout.configHome, place));
    addMarker(joined(layout.dataHome, "systemd/user/"));
}

} // namespace

void addApplicationPlaces(HostLayout& layout, const std::string& path)
{
    if (layout.kind != HomeKind::mac) {
        addNativeApplicationPlaces(layout);
        addProgramRecords(layout, path);
        return;
    }
    layout.uninstallFolders
        = {layout.belowSystemRoot("/Applications"), belowHome(layout, "Applications")};
    for (const auto& [folder, kind, rule] : macLeftovers)
        layout.leftoverLocations.push_back(
            {.folder = belowHome(layout, folder), .kind = kind, .rule = rule});
}

void addStartupPlaces(HostLayout& layout, const std::string& configDirs)
{
    // Of any Mac's disk, wherever it is attached.
    layout.persistenceMarkers = {"/Library/LaunchAgents/", "/Library/LaunchDaemons/"};
    if (layout.kind != HomeKind::mac) {
        addNativeStartupPlaces(layout, configDirs);
        return;
    }
    layout.startupFolders = {
        {.folder = belowHome(layout, "Library/LaunchAgents"), .isSystem = false},
        {.folder = layout.belowSystemRoot("/Library/LaunchAgents"), .isSystem = true},
        {.folder = layout.belowSystemRoot("/Library/LaunchDaemons"), .isSystem = true},
    };
}

} // namespace kestavon
