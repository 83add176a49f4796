#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/linux/removal/entry_status.h"
#include "platform/linux/removal/unfinished_moves.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestavon {

/// A copy that is being made at a place where nobody looks for one, or that cannot carry a mark.
struct NotedMove {
    std::string targetFolder;
    std::string targetName;
    std::string partialCopy; ///< its name in the target folder until it is whole
    RemovedSource source;
};

/// A file that has another name for a moment.
struct NotedFile {
    std::string folder;
    std::string name;
    std::string aside; ///< the other name, in the same folder
    std::uint64_t inode = 0;
    std::string target; ///< path of a further name that it is to have; empty: it is to be deleted
};

/// Permissions that were changed for a while.
struct NotedPermissions {
    std::string path;
    std::uint64_t inode = 0;
    mode_t former = 0;
    mode_t borrowed = 0;
};

/// Marks on an item that are not to be there, if it still lies there or lies there already.
struct NotedMarks {
    std::string path;
    std::uint64_t inode = 0;
    std::string prefix; ///< of their names
};

using Note = std::variant<NotedMove, NotedFile, NotedPermissions, NotedMarks>;

/// The notes of one deed, in a file that is there from the first note until the deed has ended. As
/// long as this lives the file is locked: other starts of the program leave it alone.
class JournalEntry {
public:
    /// With an empty path nothing is ever written.
    explicit JournalEntry(std::string path);
    /// Removes the file, unless something is left to be done.
    ~JournalEntry();
    JournalEntry(const JournalEntry&) = delete;
    JournalEntry& operator=(const JournalEntry&) = delete;

    /// Adds a note before what it tells of is done, so that a kill cannot come in between. Any
    /// thread. False when there is no journal, or the disk refuses.
    bool add(const Note& note);
    bool add(const std::vector<Note>& notes);
    /// Waits until the notes are on the disk, where a power cut leaves them.
    bool writeOut();
    /// Leaves the file for the next start: something could not be done now.
    void leave() { m_isLeft = true; }

private:
    bool open();

    const std::string m_path;
    std::mutex m_mutex;
    FileDescriptor m_file; // guarded by m_mutex
    bool m_isRefused = false; // guarded by m_mutex
    bool m_isLeft = false;
};

/// What the program is in the middle of, written down where the things themselves cannot tell: a
/// kill must leave nothing under a name that nobody knows, and no permissions that are not theirs.
///
/// One small file for each deed, in a folder of the program's own. Losing one loses no item: no
/// more than what is left of the deed stays where it is.
class DeedJournal {
public:
    /// The folder is made when the first note comes. Without one, no notes are kept.
    explicit DeedJournal(std::string folder = {});

    const std::string& folder() const { return m_folder; }
    JournalEntry begin() const;

private:
    std::string m_folder;
};

/// The notes in the text of an entry, up to one that is not whole.
std::vector<Note> notesIn(std::string_view text);
std::string textOf(const Note& note);

/// Notes that the permissions of an opened folder, or of the entry called `name` in it, are about
/// to become `borrowed`.
void noteLoan(JournalEntry& journal, int folder, const std::string& name, const EntryStatus& status,
    mode_t borrowed);

/// Ends the deeds in the journal's folder that nobody is at work on any more, those on servers
/// last. A file that cannot be dealt with now stays for the next time, but not for ever.
void finishDeeds(const std::string& journalFolder);

} // namespace kestavon
