#pragma once

#include "core/domain/file_identity.h"
#include "platform/file_error.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>

namespace kestavon {

struct RemoveOptions {
    /// See `MoveOptions::noLinksBelow`.
    std::string noLinksBelow = {};
    /// See `MoveOptions::refusesFolders`.
    bool refusesFolders = false;
    /// A folder gets another name before the first entry goes, `.kestavon-deleted-…`, so that none
    /// that is half deleted is taken for a whole one. What cannot be deleted gets its name back;
    /// after a crash, `FileMover::clearUnfinishedMoves` of its folder deletes the rest.
    bool hidesFolders = false;
    /// Checked at every entry; what was removed by then stays removed.
    std::stop_token stop = {};
    /// Called, on the caller's thread, with the number of entries deleted so far.
    std::function<void(std::int64_t entries)> progress = {};
};

/// Deletes files, folders and links for good. Any thread.
class FileRemover {
public:
    virtual ~FileRemover() = default;

    /// Deletes the item at `path`; a folder with all that is in it. Links are deleted, not
    /// followed, and volumes mounted inside are not entered. An entry that cannot be deleted does
    /// not stop the others: the first such failure is what comes back in the end.
    virtual FileResult<Done> remove(const std::string& path, const RemoveOptions& options = {}) = 0;

    /// Deletes the regular file at `path`, but only the very one that `expected` describes: neither
    /// what has taken its place nor what it has become. `mayGo` is asked at the last moment, when
    /// the file already lies under a name of its own beside its place and can still come back. When
    /// either says no, the file stays and the error is `Kind::changed`.
    virtual FileResult<Done> removeFileIf(const std::string& path, const FileIdentity& expected,
        const std::function<bool()>& mayGo, const RemoveOptions& options = {})
        = 0;
};

/// Deletes on this machine's file systems.
class SystemFileRemover final : public FileRemover {
public:
    /// See `SystemFileMover`: what a crash leaves is ended by its `clearUnfinishedMoves`.
    explicit SystemFileRemover(std::string journalFolder = {});

    FileResult<Done> remove(const std::string& path, const RemoveOptions& options = {}) override;
    FileResult<Done> removeFileIf(const std::string& path, const FileIdentity& expected,
        const std::function<bool()>& mayGo, const RemoveOptions& options = {}) override;

private:
    const std::string m_journalFolder;
};

} // namespace kestavon
