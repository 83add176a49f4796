#include "platform/linux/application_index.h"

#include "core/domain/ascii.h"
#include "platform/letter_case.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kestavon {

namespace {

/// Programs whose entries start them under another name.
constexpr std::array<std::pair<std::string_view, std::string_view>, 11> identifiersOfPrograms{{
    {"brave", "brave-browser"},
    {"chrome", "google-chrome"},
    {"firefox-bin", "firefox"},
    {"gnome-terminal-server", "org.gnome.Terminal"},
    {"kgx", "org.gnome.Console"},
    {"msedge", "microsoft-edge"},
    {"oosplash", "libreoffice-startcenter"},
    {"soffice.bin", "libreoffice-startcenter"},
    {"telegram-desktop", "org.telegram.desktop"},
    {"thunderbird-bin", "thunderbird"},
    {"vivaldi-bin", "vivaldi-stable"},
}};

/// The compositors, display servers, buses and sound servers of the desktops that Debian has. With
/// "*" at the end: and what begins like that.
constexpr std::array<std::string_view, 29> sessionPrograms{
    "Hyprland",
    "Xorg",
    "Xwayland",
    "budgie-panel",
    "budgie-wm",
    "cinnamon*",
    "dbus-*",
    "gdm*",
    "gnome-session*",
    "gnome-shell",
    "kwin_*",
    "labwc",
    "lightdm",
    "lxqt-session",
    "lxsession",
    "marco",
    "mate-session",
    "mutter",
    "openbox",
    "pipewire*",
    "plasmashell",
    "pulseaudio",
    "sddm*",
    "startplasma-*",
    "sway",
    "systemd*",
    "weston",
    "wireplumber",
    "xfce4-session",
};

/// Also those that run a program of another language or system.
constexpr std::array<std::string_view, 24> interpreters{
    "ash",
    "bash",
    "bwrap",
    "csh",
    "dash",
    "electron*",
    "env",
    "fish",
    "flatpak",
    "gjs*",
    "java",
    "ksh",
    "lua*",
    "mono*",
    "node",
    "perl*",
    "php*",
    "python*",
    "ruby*",
    "sh",
    "snap",
    "tclsh*",
    "wine*",
    "zsh",
};

template <std::size_t size>
bool isAmong(const std::array<std::string_view, size>& names, std::string_view name)
{
    return std::ranges::any_of(names, [name](std::string_view pattern) {
        return pattern.ends_with('*') ? name.starts_with(pattern.substr(0, pattern.size() - 1))
                                      : name == pattern;
    });
}

std::string_view baseName(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

bool isSameInAnyCase(std::string_view a, std::string_view b)
{
    return std::ranges::equal(a, b, [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

template <class Entries> const DesktopEntry* onlyOne(const Entries& entries, std::string_view key)
{
    const auto found = entries.find(key);
    return found == entries.end() ? nullptr : found->second.front();
}

} // namespace

ApplicationIndex::ApplicationIndex(std::vector<DesktopEntry> entries)
    : m_entries(std::move(entries))
{
    for (const auto& entry : m_entries) {
        m_byIdentifier[entry.identifier].push_back(&entry);
        m_byFile[entry.path].push_back(&entry);
        if (!entry.isApplication || entry.isHidden)
            continue;
        if (entry.flatpak && *entry.flatpak != entry.identifier)
            m_byIdentifier[*entry.flatpak].push_back(&entry);
        if (entry.snap)
            m_bySnap[*entry.snap].push_back(&entry);
        if (!entry.isNotDisplayed && !entry.runsInTerminal)
            m_byWindowClass[lowerCased(entry.windowClass.value_or(entry.identifier))].push_back(
                &entry);
        const auto& command = entry.command;
        const auto program = baseName(command.target);
        const bool isOfMenus = !entry.isNotDisplayed && !entry.runsInTerminal;
        if (command.kind == DesktopCommand::Kind::program && !program.empty()
            && !isInterpreter(program) && (isOfMenus || isOfDesktopSession(program)))
            m_byProgram[std::string(program)].push_back(&entry);
    }
}

const DesktopEntry* ApplicationIndex::withIdentifier(std::string_view identifier) const
{
    const auto* const entry = onlyOne(m_byIdentifier, identifier);
    return entry ? entry : onlyOne(m_bySnap, identifier);
}

const DesktopEntry* ApplicationIndex::inFile(std::string_view path) const
{
    return onlyOne(m_byFile, path);
}

const DesktopEntry* ApplicationIndex::startingProgram(std::string_view name) const
{
    if (name.empty() || isInterpreter(name))
        return nullptr;
    const auto alias
        = std::ranges::find(identifiersOfPrograms, name, [](const auto& row) { return row.first; });
    if (alias != identifiersOfPrograms.end()) {
        if (const auto* const entry = withIdentifier(alias->second))
            return entry;
    }
    const auto found = m_byProgram.find(name);
    if (found == m_byProgram.end())
        return nullptr;
    const auto& candidates = found->second;
    if (candidates.size() == 1)
        return candidates.front();
    const auto isCalledLikeIt = [name](const DesktopEntry* entry) {
        const std::string_view identifier = entry->identifier;
        return isSameInAnyCase(identifier, name)
            || isSameInAnyCase(identifier.substr(identifier.rfind('.') + 1), name);
    };
    const auto called = std::ranges::find_if(candidates, isCalledLikeIt);
    return called == candidates.end() ? nullptr : *called;
}

const DesktopEntry* ApplicationIndex::withWindowClass(std::string_view name) const
{
    const auto found = m_byWindowClass.find(lowerCased(name));
    return found == m_byWindowClass.end() || found->second.size() > 1 ? nullptr
                                                                      : found->second.front();
}

bool isOfDesktopSession(std::string_view program)
{
    return isAmong(sessionPrograms, program);
}

bool isInterpreter(std::string_view program)
{
    return isAmong(interpreters, program);
}

} // namespace kestavon
