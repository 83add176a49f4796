#pragma once

#include "core/domain/installed_app.h"
#include "core/domain/junk_category.h"

#include <string>
#include <vector>

namespace kestavon {

/// How a home is laid out.
enum class HomeKind {
    mac, ///< has a folder named Library: a Mac's disk or backup attached here
    native, ///< follows the XDG base directories
};

/// Which entries of a junk location are junk.
enum class JunkRule {
    everyEntry,
    oldEntries, ///< unchanged for more than 90 days
    orphanedEntries, ///< called like the data of an application, and of none that is there
    orphanedPreferences, ///< the same for property lists
};

/// A folder in which Smart Clean looks for junk.
struct JunkLocation {
    JunkCategory category = JunkCategory::appCaches;
    std::string folder;
    std::string label; ///< why an entry is junk, for the user
    JunkRule rule = JunkRule::everyEntry;

    friend bool operator==(const JunkLocation&, const JunkLocation&) = default;
};

/// A folder of property lists that define jobs which start by themselves.
struct StartupFolder {
    std::string folder;
    bool isSystem = false; ///< everybody's, and not the user's to change
};

/// How the entries of a folder are told to be an application's.
enum class LeftoverRule {
    anyEntry, ///< by all of its name, which may also hold an application's between two dots
    propertyList, ///< property lists only, by their names without the extension
    savedState, ///< by the name without its extension; only folders count
};

/// A folder in which applications leave data of their own.
struct LeftoverLocation {
    std::string folder;
    LeftoverFile::LeftoverKind kind = LeftoverFile::LeftoverKind::other;
    LeftoverRule rule = LeftoverRule::anyEntry;
};

/// Where everything is, decided once at start. Engines walk its tables and never ask which kind of
/// home it is. Paths are absolute, without a trailing slash (the root "/" excepted).
struct HostLayout {
    std::string home;
    std::string
        systemRoot; ///< the folder that stands for "/" when a Mac's disk is attached; normally "/"
    HomeKind kind = HomeKind::native;

    std::string
        applicationSupport; ///< the folder that holds programs' own data, the Safe Area among it
    std::string cacheHome; ///< XDG_CACHE_HOME
    std::string configHome; ///< XDG_CONFIG_HOME
    std::string dataHome; ///< XDG_DATA_HOME
    std::string stateHome; ///< XDG_STATE_HOME
    /// Where this machine's applications tell of themselves, in "applications" and "icons" below:
    /// the user's folder first, then XDG_DATA_DIRS, then what Flatpak and Snap export. Each once.
    std::vector<std::string> dataFolders;

    /// Where this program keeps its own settings; in a sandbox that is not the user's `configHome`.
    std::string settingsFolder;

    /// Folders of which one that can be listed proves that protected data can be read.
    std::vector<std::string> fullDiskAccessProbes;
    /// Paths with one of these texts anywhere lie in a cache.
    std::vector<std::string> cacheMarkers;
    /// Files below these folders are downloads.
    std::vector<std::string> downloadFolders;

    /// Places below the system root that a scan leaves out: the system's own, sealed or changing
    /// under its feet.
    std::vector<std::string> scanExclusions;

    /// Where Smart Clean looks, each category's locations in the order of the search.
    std::vector<JunkLocation> junkLocations;
    /// Folders in which applications are installed, in the order of the search.
    std::vector<std::string> applicationFolders;
    /// Those of them from which the user may take applications away.
    std::vector<std::string> uninstallFolders;
    /// Where applications leave data, in the order of the search.
    std::vector<LeftoverLocation> leftoverLocations;

    /// Where jobs that start by themselves are defined, in the order of the search.
    std::vector<StartupFolder> startupFolders;
    /// Files with one of these texts anywhere in their paths can make software start by itself.
    /// Each ends with a slash.
    std::vector<std::string> persistenceMarkers;

    /// `path` below the system root: "/Library" is "/mnt/mac/Library" when a Mac's disk is there.
    std::string belowSystemRoot(const std::string& path) const;
};

/// What the layout is decided from.
struct HostEnvironment {
    std::string home; ///< the user's home folder
    std::string systemRoot = "/";
    std::string xdgCacheHome = {}; ///< as in the environment; empty or relative counts as unset
    std::string xdgConfigHome = {};
    std::string xdgDataHome = {};
    std::string xdgStateHome = {};
    std::string xdgDataDirs = {}; ///< XDG_DATA_DIRS; folders that are relative do not count
    /// XDG_CONFIG_HOME of a process that lives in a sandbox, and so does not see the user's own;
    /// empty for a process that does.
    std::string sandboxConfigHome = {};
};

/// Where "/" of the disk is that this home lies on: the folder above Users/NAME when it holds a
/// Mac's system, else "/". Looks at the disk.
std::string systemRootOf(const std::string& home);

/// This process's environment. The home is $HOME; when that is unset, empty or relative, the
/// password database's entry for the user, and at the very last "/".
HostEnvironment currentHostEnvironment();

/// The layout of `environment`: looks once whether the home holds a folder named Library.
HostLayout makeHostLayout(const HostEnvironment& environment);

/// `path` absolute and without trailing slashes ("/" stays); components are neither resolved nor
/// collapsed. A relative path is taken from the working folder.
std::string normalisedPath(std::string path);

/// A path as somebody types it, for the same place: absolute, without ".", empty components and
/// trailing slashes, so that it begins as every other path there does. ".." is followed on the
/// disk, where links may lead elsewhere than the text says; what does not exist stays as the text
/// says. Looks at the disk only for "..".
std::string typedPath(const std::string& path);

} // namespace kestavon
