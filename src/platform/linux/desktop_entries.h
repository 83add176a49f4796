#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// What the command line of a desktop entry starts in the end.
struct DesktopCommand {
    enum class Kind {
        program, ///< `target` is a program's path, or its name in the search path
        flatpak, ///< an application's identifier, such as "org.mozilla.firefox"
        snap, ///< an application's name, such as "firefox" or "lxd.lxc"
    };
    Kind kind = Kind::program;
    std::string target = {}; ///< empty when the line names nothing

    friend bool operator==(const DesktopCommand&, const DesktopCommand&) = default;
};

/// What the file of an application, or of something that starts with the session, says of it:
/// the group "Desktop Entry" of the Desktop Entry Specification 1.5. Texts are valid UTF-8 and at
/// most 4 KiB long: others count as missing. The program shown is not necessarily there.
struct DesktopEntry {
    /// The path below its folder, with "-" for "/" and without ".desktop", such as
    /// "org.gnome.Terminal"; the identifier by which the desktop knows an application.
    std::string identifier = {};
    std::string path = {}; ///< of the file, as bytes

    std::optional<std::string> name = {}; ///< in the user's language where it has one
    std::optional<std::string> icon
        = {}; ///< a name in the desktop's icon theme, or an absolute path
    DesktopCommand command = {}; ///< from Exec
    std::optional<std::string> tryExec = {}; ///< it counts as installed while this program is there
    std::optional<std::string> windowClass = {}; ///< StartupWMClass
    std::optional<std::string> flatpak = {}; ///< X-Flatpak: the application's identifier
    std::optional<std::string> snap = {}; ///< X-SnapInstanceName
    std::vector<std::string> onlyShownIn = {}; ///< desktops, such as "GNOME"; empty for all
    std::vector<std::string> notShownIn = {};

    bool isApplication = false; ///< Type=Application
    bool isNotDisplayed = false; ///< NoDisplay: it is there, but in no menu
    bool isHidden = false; ///< Hidden: as if it, and all of its name below it, were not there
    bool runsInTerminal = false; ///< Terminal: it has no window of its own
    bool startsWithSession = true; ///< unless X-GNOME-Autostart-enabled=false

    friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

/// The entry in the bytes of a file, with neither identifier nor path. `languages` are the
/// suffixes of translated keys, the best first, as from `languagesOf`. Nothing for what is no
/// desktop entry; a line that makes no sense counts as missing.
std::optional<DesktopEntry> parseDesktopEntry(
    std::string_view bytes, std::span<const std::string> languages);

/// The entry in the file at `path`, which must be a regular file (or lead to one) of at most
/// 256 KiB; nothing when it cannot be read or is none. Its identifier is its name without
/// ".desktop". Not on the main thread.
std::optional<DesktopEntry> readDesktopEntry(
    const std::string& path, std::span<const std::string> languages);

/// The entries directly in `folder`, in the order of their names' bytes, whatever they say of
/// themselves. Nothing is said of files that cannot be read. Not on the main thread.
std::vector<DesktopEntry> readDesktopEntriesIn(
    const std::string& folder, std::span<const std::string> languages);

/// The entries in and below the `folders` (those of applications), an identifier's first one only,
/// even when that one is hidden or no application: it hides those after it. In the order of the
/// folders, then of the names' bytes, a folder's entries where its name stands. Not on the main
/// thread.
std::vector<DesktopEntry> readDesktopEntries(
    std::span<const std::string> folders, std::span<const std::string> languages);

/// What an Exec line starts: quotes resolved, field codes left out, `env NAME=VALUE` and programs
/// that only start another one skipped, `flatpak run` and `snap run` seen through. A shell's
/// script is not: "sh" it is.
DesktopCommand desktopCommandOf(std::string_view exec);

/// The suffixes under which an entry may hold its texts for the locale "de_AT.UTF-8@euro":
/// "de_AT@euro", "de_AT", "de@euro", "de". None for "C" and "POSIX".
std::vector<std::string> languagesOf(std::string_view locale);

/// The same for what this process's environment asks for, by LANGUAGE, LC_ALL, LC_MESSAGES and
/// LANG as gettext has them.
std::vector<std::string> userLanguages();

/// Whether an entry is meant for a session of these desktops, as XDG_CURRENT_DESKTOP names them.
bool isShownIn(const DesktopEntry& entry, std::span<const std::string> desktops);

/// XDG_CURRENT_DESKTOP of this process's environment, the most special first.
std::vector<std::string> currentDesktops();

} // namespace kestavon
