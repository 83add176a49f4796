#pragma once

#include "platform/file_error.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// An extended attribute of a file or folder.
struct FileMark {
    std::string name; ///< with its namespace: "user.kestavon.reason"
    std::string value;
};

/// How an item is moved. The defaults just move it.
struct MoveOptions {
    /// Put on the item itself. Where the item or its file system cannot hold them, it moves
    /// without.
    std::vector<FileMark> marks = {};
    /// Called before the item is at its new place when it cannot carry the marks: a link or pipe, a
    /// file with further names, which would share them, a disk without attributes.
    std::function<void()> whenUnmarkable = {};
    /// Marks whose names begin with this are taken off; empty: none.
    std::string unmarkPrefix = {};
    /// Folders above the source, other than the parts of this path, must not be links; empty: links
    /// are followed. Give the folder that was walked, so that a folder exchanged for a link since
    /// then cannot lead the move astray.
    std::string noLinksBelow = {};
    /// Folders are not moved (`Kind::changed`): the item was none when it was chosen, and nobody
    /// saw what is in one that has taken its place.
    bool refusesFolders = false;
    /// The item goes to a folder that is not the program's own, where nobody would look for what a
    /// crash leaves of a copy: it is noted in the mover's journal.
    bool remembersTarget = false;
    /// Checked while an item is copied to another device: the copy is dropped and nothing moves.
    std::stop_token stop = {};
    /// Called with the bytes copied so far and those expected; never for a plain rename.
    std::function<void(std::int64_t done, std::int64_t total)> progress = {};
};

/// What became of an item that did move.
struct MoveReport {
    bool copied = false; ///< it lay on another device
    /// Something of the source stayed at its place: entries that appeared or changed at the very
    /// last moment, or that the disk refused to remove. The moved item is whole.
    bool remainsAtSource = false;
};

/// Moves files, folders and links. Any thread.
///
/// Whatever happens - an error, a full disk, a crash, somebody else at work in the same folders -
/// every byte of the item is at one of its two places. Nothing is ever replaced, no link followed.
class FileMover {
public:
    virtual ~FileMover() = default;

    /// Moves the item at `source` to the path `destination`, whose folder must exist and where
    /// nothing may lie. On another device the item is copied under a name of the mover's own beside
    /// the destination, with everything that can be kept, and the source goes only when the copy is
    /// complete, on the disk and in its place. After a failure the source is as it was.
    virtual FileResult<MoveReport> move(
        const std::string& source, const std::string& destination, const MoveOptions& options = {})
        = 0;

    /// Ends what a crash cut short: moves to `folder`, and all else that the journal tells of. Half
    /// copies go, and of a source that was being removed all that its copy holds byte for byte;
    /// what had another name for a moment gets its own back, and so do permissions. What a running
    /// move is working on stays. Nothing is reported: the next call tries again.
    ///
    /// Returns after a while even if a server that something lies on does not answer.
    virtual void clearUnfinishedMoves(const std::string& folder) = 0;
};

/// Moves on this machine's file systems.
class SystemFileMover final : public FileMover {
public:
    /// `journalFolder` is the program's own, and shared with `SystemFileRemover` and the Trash;
    /// without one, nothing is noted. `patience` is for clearing up.
    explicit SystemFileMover(std::string journalFolder = {},
        std::chrono::milliseconds patience = std::chrono::seconds(2));

    FileResult<MoveReport> move(const std::string& source, const std::string& destination,
        const MoveOptions& options = {}) override;
    void clearUnfinishedMoves(const std::string& folder) override;

private:
    const std::string m_journalFolder;
    const std::chrono::milliseconds m_patience;
};

} // namespace kestavon
