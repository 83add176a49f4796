#pragma once

#include "core/domain/action_kind.h"
#include "core/domain/app_section.h"
#include "core/domain/junk_category.h"
#include "platform/host_layout.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// What the program was asked to do.
enum class Verb {
    window,
    scan,
    large,
    suggestions,
    duplicates,
    junk,
    apps,
    startup,
    security,
    processes,
    memory,
    disk,
    clean,
    remove,
    merge,
    uninstall,
    safeAreaList,
    safeAreaRestore,
    safeAreaDelete,
    safeAreaEmpty,
};

/// How a command writes what it found.
enum class OutputForm {
    table, ///< for people
    json, ///< one document
    nulls, ///< paths, each ended by a NUL
};

/// What the program was started with. Folders and paths are bytes as the shell gave them.
struct CommandLine {
    Verb verb = Verb::window;
    std::string folder; ///< the folder to look at; empty for the home folder
    std::vector<std::string> paths; ///< of `remove`
    std::vector<std::string> items; ///< of `safe-area restore` and `delete`
    std::string name; ///< the application of `uninstall`
    std::vector<JunkCategory> categories; ///< in the order given; empty for all
    bool allCategories = false; ///< "all" was said
    bool cleansJunk = false; ///< `clean` is about junk and not about a folder
    std::optional<ActionKind> action; ///< of commands that remove; given whenever they need it
    bool appOnly = false;
    bool all = false; ///< every held item
    std::string into; ///< where `safe-area restore` puts items back; empty for where they were

    OutputForm form = OutputForm::table;
    bool yes = false;
    bool dryRun = false;

    std::string systemRoot; ///< where "/" of an attached disk is; empty unless it was given
    std::optional<HomeKind> layout; ///< nothing: as the home looks
    std::uint64_t memoryLimit = 0; ///< bytes that a scan may take; 0 for the usual ones

    std::string theme; ///< of the window: "light", "dark", or empty to follow the desktop
    std::optional<AppSection> section; ///< that the window opens with
    bool scansAtOnce = false; ///< the window starts with a storage scan

    std::string answer; ///< the text of --help or --version, and nothing else is to be done
    std::string error; ///< what is wrong with it, one sentence; empty when nothing is
};

/// Reads `arguments`, the program's name not among them. Options that the window's toolkit takes
/// for itself are passed over where there is no command; a command knows none of them.
CommandLine readCommandLine(const std::vector<std::string>& arguments);

/// Why the command cannot begin on this machine as it stands, in one sentence; empty when it can.
/// A path that starts at a working folder which is gone would mean another place altogether, and
/// so would a home that is not known.
std::string missingPlaceOf(const CommandLine& line, bool isHomeKnown);

/// What is wrong with the folder that the window is to open with, one sentence; empty when nothing
/// is. A mistyped command reads as such a folder.
std::string folderFaultOf(const CommandLine& line);

/// Whether `text` may stand for a held item's identifier: its first 8 characters or more.
bool isIdentifierStart(std::string_view text);

/// The category that somebody means by a raw value ("App Caches") or by its words in any letter
/// case and joined in any way ("app-caches", "appCaches"); nothing for any other text.
std::optional<JunkCategory> categoryNamed(std::string_view text);
/// The category's raw value in lower case, its words joined by hyphens: "mail-messages".
std::string categoryWord(JunkCategory category);

/// `arguments` without the options that the window's toolkit takes for itself ("-platform
/// offscreen"), in any order.
std::vector<std::string> withoutToolkitOptions(const std::vector<std::string>& arguments);

} // namespace kestavon
