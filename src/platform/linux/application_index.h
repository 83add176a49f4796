#pragma once

#include "platform/linux/desktop_entries.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// Finds the desktop entry of what runs. Plain; the entries found live as long as the index.
class ApplicationIndex {
public:
    /// From the entries as `readDesktopEntries` gives them.
    explicit ApplicationIndex(std::vector<DesktopEntry> entries = {});
    ~ApplicationIndex() = default;
    ApplicationIndex(const ApplicationIndex&) = delete;
    ApplicationIndex& operator=(const ApplicationIndex&) = delete;
    ApplicationIndex(ApplicationIndex&&) = default;
    ApplicationIndex& operator=(ApplicationIndex&&) = default;

    /// The entry of an application that is known by this identifier (or name, for a Snap).
    const DesktopEntry* withIdentifier(std::string_view identifier) const;
    /// The entry in this file.
    const DesktopEntry* inFile(std::string_view path) const;
    /// The entry that starts the program of this name (its path's last part): of several, the one
    /// that is called like it; nothing when it could be more than one. Entries of no menu are for
    /// parts of the desktop, and count only for those.
    const DesktopEntry* startingProgram(std::string_view name) const;
    /// The entry whose windows have this class: it says so, or is called like it. Nothing when it
    /// could be more than one.
    const DesktopEntry* withWindowClass(std::string_view name) const;

private:
    using Entries = std::map<std::string, std::vector<const DesktopEntry*>, std::less<>>;

    std::vector<DesktopEntry> m_entries;
    Entries m_byIdentifier;
    Entries m_bySnap;
    Entries m_byFile;
    Entries m_byProgram;
    Entries m_byWindowClass; // in lower case
};

/// Whether a program of this name is the desktop itself, or what it cannot do without: ending it
/// ends the session.
bool isOfDesktopSession(std::string_view program);

/// Whether a program of this name runs what others wrote, so that its own name tells nothing.
bool isInterpreter(std::string_view program);

} // namespace kestavon
