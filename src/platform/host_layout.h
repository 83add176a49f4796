#pragma once

#include "core/domain/installed_app.h"
#include "core/domain/junk_category.h"
#include "platform/place_pattern.h"

#include <optional>
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
    trashedEntries, ///< what lies in any Trash that there is now, and not only in this one
    abandonedEntries, ///< left by a program that was here, as there is evidence, and is gone
    abandonedContainers, ///< the same, by the identifier of a program that lived in a sandbox
};

/// Which entries of a folder are meant.
enum class EntryKinds { any, files, folders };

/// A folder in which Smart Clean looks for junk. Its entries may be; itself it stays.
struct JunkLocation {
    JunkCategory category = JunkCategory::appCaches;
    std::string folder;
    std::string label; ///< why an entry is junk, for the user
    JunkRule rule = JunkRule::everyEntry;
    /// When it is not the folder itself whose entries are meant but folders below it: their paths
    /// from there, as in `PlacePattern`.
    std::string below = {};
    /// Patterns of the entries' names, as in `namePatternMatches`; none: whatever they are called.
    std::vector<std::string> names = {};
    EntryKinds kinds = EntryKinds::any;
    /// Leaves out what this user may not take out of its folder anyway: in a folder that is not
    /// writable, somebody else's in a sticky one, mount points, protected places.
    bool onlyRemovable = false;
    /// Leaves out what lies at, above or below another location (of those that yield too, a deeper
    /// one), so that nothing counts twice, and the base directories.
    bool yields = false;

    friend bool operator==(const JunkLocation&, const JunkLocation&) = default;
};

/// How jobs that start by themselves are defined.
enum class StartupForm {
    propertyLists, ///< launchd's
    desktopEntries, ///< the desktop's, run at login
    unitLinks, ///< systemd's: links to units, in folders called *.wants and *.requires
};

/// A folder of files that define jobs which start by themselves.
struct StartupFolder {
    std::string folder;
    bool isSystem = false; ///< everybody's, and not the user's to change
    StartupForm form = StartupForm::propertyLists;
};

/// How the entries of a folder are told to be an application's.
enum class LeftoverRule {
    anyEntry, ///< by all of its name, which may also hold an application's between two dots
    propertyList, ///< property lists only, by their names without the extension
    savedState, ///< by the name without its extension; only folders count
    word, ///< by the name's beginning, up to its end or to what separates words
    setting, ///< the same without the endings that files of settings have
    wholeName, ///< by all of its name
    dottedName, ///< by all of its name behind a leading dot
    autostartEntry, ///< by all of its name before ".desktop"
};

/// A folder in which applications leave data of their own.
struct LeftoverLocation {
    std::string folder;
    LeftoverFile::LeftoverKind kind = LeftoverFile::LeftoverKind::other;
    LeftoverRule rule = LeftoverRule::anyEntry;
    EntryKinds kinds = EntryKinds::any;
    /// An entry that several applications claim is listed with none of them.
    bool ofOneOnly = false;
};

/// How installed applications are told.
enum class ApplicationForm {
    desktopEntries, ///< files as the Desktop Entry Specification has them
    flatpaks, ///< folders called by the identifiers of Flatpaks
    appImages, ///< programs in one file each
};

/// A folder that tells of installed applications.
struct ApplicationSource {
    std::string folder;
    ApplicationForm form = ApplicationForm::desktopEntries;
    bool isManaged = false; ///< a package manager put them there, and it alone can take them away
};

/// What tells which programs are installed, and which were or could be.
struct ProgramRecords {
    std::vector<std::string> programFolders; ///< of executable files
    std::vector<std::string> serviceFolders; ///< of D-Bus service files, called by bus names
    std::string packageStatus; ///< dpkg's file of what is and was installed
    std::vector<std::string> packageLogs; ///< dpkg's logs of what was done with packages
    std::string packageLists; ///< APT's folder of lists of what can be installed

    /// Names, patterns as in `namePatternMatches`, of what belongs to the desktop and to libraries
    /// rather than to one program.
    std::vector<std::string> sharedNames;
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
    /// What lies below these folders lies in a cache too; no pattern ends in a wildcard.
    std::vector<PlacePattern> cachePlaces;
    /// What looks like junk, by where it lies or what it is called, and must stay: neither these
    /// places, nor what lies in them, nor what they lie in, is ever an item of Smart Clean or a
    /// suggestion for being in `cachePlaces`.
    std::vector<PlacePattern> keptPlaces;
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
    /// What tells of applications that do not lie in bundles, the first to name one decides.
    std::vector<ApplicationSource> applicationSources;
    ProgramRecords programRecords;
    /// Where applications leave data, in the order of the search.
    std::vector<LeftoverLocation> leftoverLocations;

    /// Where jobs that start by themselves are defined, in the order of the search.
    std::vector<StartupFolder> startupFolders;
    /// Files with one of these texts anywhere in their paths can make software start by itself. One
    /// that does not end with a slash is the end of such a path.
    std::vector<std::string> persistenceMarkers;

    /// `path` below the system root: "/Library" is "/mnt/mac/Library" when a Mac's disk is there.
    std::string belowSystemRoot(const std::string& path) const;
};

/// What the layout is decided from.
struct HostEnvironment {
    std::string home; ///< the user's home folder
    bool isHomeKnown = true; ///< false: neither HOME nor the user database tells, `home` is "/"
    std::string systemRoot = "/";
    std::string xdgCacheHome = {}; ///< as in the environment; empty or relative counts as unset
    std::string xdgConfigHome = {};
    std::string xdgDataHome = {};
    std::string xdgStateHome = {};
    std::string xdgDataDirs = {}; ///< XDG_DATA_DIRS; folders that are relative do not count
    std::string xdgConfigDirs = {}; ///< XDG_CONFIG_DIRS; the same
    std::string path = {}; ///< PATH; the same
    std::optional<HomeKind> kind = {}; ///< nothing: as the home looks
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

/// The layout of `environment`: looks once whether the home holds a folder named Library, unless
/// its kind is given.
HostLayout makeHostLayout(const HostEnvironment& environment);

/// The folder in which the program notes what it is in the middle of; empty when there is no home
/// to have one.
std::string journalFolder(const HostLayout& layout);

/// `path` absolute and without trailing slashes ("/" stays); components are neither resolved nor
/// collapsed. A relative path is taken from the working folder.
std::string normalisedPath(std::string path);

/// A path as somebody types it, for the same place: absolute, without ".", empty components and
/// trailing slashes, so that it begins as every other path there does. ".." is followed on the
/// disk, where links may lead elsewhere than the text says; what does not exist stays as the text
/// says. Looks at the disk only for "..".
std::string typedPath(const std::string& path);

} // namespace kestavon
