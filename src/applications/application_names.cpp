#include "applications/application_names.h"

#include "platform/letter_case.h"

#include <algorithm>
#include <array>

namespace kestavon {

namespace {

constexpr std::size_t shortestTerm = 3;

/// What tells builds of one program apart, and not programs.
constexpr std::array<std::string_view, 9> buildEndings{
    "-gtk", "-qt", "-gui", "-esr", "-bin", "-stable", "-browser", "-desktop", "-x11"};

/// Words that many applications are called by, or by which desktops call them all.
constexpr std::array<std::string_view, 129> genericWords{"about", "activities", "app",
    "application", "applications", "apps", "archive manager", "audio", "autostart", "bin",
    "browser", "cache", "calculator", "calendar", "camera", "chat", "clock", "clocks", "config",
    "connections", "console", "contacts", "daemon", "data", "default", "desktop", "dev",
    "dictionary", "disks", "documents", "editor", "email", "file manager", "files", "flatpak",
    "folder", "font", "fonts", "game", "games", "git", "gnome", "gtk", "help", "home", "icons",
    "image viewer", "images", "java", "kde", "keyrings", "launcher", "lib", "linux", "local", "log",
    "logs", "mail", "main", "manager", "maps", "messages", "mime", "monitor", "movies", "music",
    "network", "notes", "open", "opt", "package", "perl", "phone", "photos", "pictures", "player",
    "plugin", "plugins", "preferences", "printers", "program", "projects", "python", "python3",
    "qt", "recorder", "run", "screenshot", "search", "server", "service", "session", "settings",
    "share", "snap", "software", "sound", "sounds", "src", "start", "state", "system",
    "system monitor", "systemd", "tasks", "terminal", "test", "text editor", "themes", "tmp",
    "tool", "tools", "trash", "user", "users", "usr", "utilities", "utility", "var", "video",
    "videos", "viewer", "weather", "web", "web browser", "welcome", "window", "work", "xfce"};

/// Names that the icon theme specification gives to kinds of programs.
constexpr std::array<std::string_view, 8> genericBeginnings{"accessories-", "applications-",
    "internet-", "multimedia-", "preferences-", "system-", "utilities-", "x-office-"};

constexpr std::array<std::string_view, 24> launchers{"bash", "dash", "dbus-launch", "dbus-send",
    "electron", "env", "exo-open", "flatpak", "gapplication", "gdbus", "gjs", "gtk-launch", "java",
    "kcmshell5", "node", "perl", "pkexec", "python", "python3", "sh", "snap", "wine",
    "x-www-browser", "xdg-open"};

/// What an application's data is called by custom, where its own names do not tell.
struct Alias {
    std::string_view term;
    std::string_view name;
};
constexpr std::array aliases{
    Alias{"brave", "bravesoftware"},
    Alias{"calibre-gui", "calibre"},
    Alias{"code", "vscode"},
    Alias{"discord", "discordcanary"},
    Alias{"dupeguru", "hardcoded software"},
    Alias{"empathy", "telepathy"},
    Alias{"evolution", "camel"},
    Alias{"filezilla", "filezilla3"},
    Alias{"firefox", "mozilla"},
    Alias{"gimp", "babl"},
    Alias{"gimp", "gegl-0.4"},
    Alias{"google-chrome", "google-chrome-stable"},
    Alias{"intellij-idea", "jetbrains"},
    Alias{"kate", "katevirc"},
    Alias{"keepassxc", "keepassx"},
    Alias{"krita", "kritadisplayrc"},
    Alias{"libreoffice", "libreofficedev"},
    Alias{"microsoft-edge", "microsoft-edge-dev"},
    Alias{"pcmanfm", "libfm"},
    Alias{"pidgin", "purple"},
    Alias{"pycharm", "jetbrains"},
    Alias{"signal", "signal beta"},
    Alias{"spotify", "spotify-launcher"},
    Alias{"steam", "valve"},
    Alias{"system-config-printer", "cups-pk-helper"},
    Alias{"telegram", "telegramdesktop"},
    Alias{"telegram-desktop", "telegramdesktop"},
    Alias{"virtualbox", "virtualbox vms"},
    Alias{"vlc", "vlc-qt-interface"},
    Alias{"zoom", "zoomus"},
};

constexpr std::array<std::string_view, 8> settingEndings{
    ".conf", ".ini", ".json", ".toml", ".yaml", ".yml", ".cfg", ".xml"};

bool saysNothing(std::string_view term)
{
    return term.size() < shortestTerm || std::ranges::find(genericWords, term) != genericWords.end()
        || std::ranges::any_of(genericBeginnings,
            [term](std::string_view beginning) { return term.starts_with(beginning); });
}

void addTerm(std::string_view term, std::vector<std::string>& terms)
{
    if (!saysNothing(term) && std::ranges::find(terms, term) == terms.end())
        terms.emplace_back(term);
}

std::string withoutBlanks(std::string_view text, std::string_view instead)
{
    std::string result;
    for (const char c : text) {
        if (c == ' ')
            result += instead;
        else
            result += c;
    }
    return result;
}

} // namespace

void addTermsOf(std::string_view name, std::vector<std::string>& terms)
{
    const auto lower = lowerCased(name);
    for (const auto& spelling :
        {lower, withoutBlanks(lower, "-"), withoutBlanks(lower, "_"), withoutBlanks(lower, "")}) {
        // "text editor" says nothing, and neither does "text-editor".
        if (!saysNothing(lower))
            addTerm(spelling, terms);
        for (const auto ending : buildEndings) {
            if (spelling.ends_with(ending))
                addTerm(
                    std::string_view(spelling).substr(0, spelling.size() - ending.size()), terms);
        }
    }
}

void addTermsOfIdentifier(std::string_view identifier, std::vector<std::string>& terms)
{
    addTermsOf(identifier, terms);
    const auto first = identifier.find('.');
    const auto last = identifier.rfind('.');
    if (first == last)
        return;
    addTermsOf(identifier.substr(first + 1), terms);
    addTermsOf(identifier.substr(last + 1), terms);
}

void addKnownAliases(std::vector<std::string>& terms)
{
    const auto own = terms;
    for (const auto& [term, name] : aliases) {
        if (std::ranges::find(own, term) != own.end())
            addTerm(name, terms);
    }
}

bool isLauncher(std::string_view program)
{
    return std::ranges::find(launchers, program) != launchers.end();
}

std::string withoutSettingEnding(std::string_view name)
{
    auto lower = lowerCased(name);
    for (const auto ending : settingEndings) {
        if (lower.size() > ending.size() && lower.ends_with(ending)) {
            lower.resize(lower.size() - ending.size());
            return lower;
        }
    }
    constexpr std::string_view runCommands = "rc";
    if (lower.size() >= shortestTerm + runCommands.size() && lower.ends_with(runCommands))
        lower.resize(lower.size() - runCommands.size());
    if (lower.ends_with('.'))
        lower.pop_back();
    return lower;
}

} // namespace kestavon
