#pragma once

#include "platform/file_error.h"

#include <stop_token>
#include <string>

namespace kestavon {

struct RemoveOptions {
    /// See `MoveOptions::noLinksBelow`.
    std::string noLinksBelow = {};
    /// Checked at every entry; what was removed by then stays removed.
    std::stop_token stop = {};
};

/// Deletes files, folders and links for good. Any thread.
class FileRemover {
public:
    virtual ~FileRemover() = default;

    /// Deletes the item at `path`; a folder with all that is in it. Links are deleted, not
    /// followed, and volumes mounted inside are not entered. An entry that cannot be deleted does
    /// not stop the others: the first such failure is what comes back in the end.
    virtual FileResult<Done> remove(const std::string& path, const RemoveOptions& options = {}) = 0;
};

/// Deletes on this machine's file systems.
class SystemFileRemover final : public FileRemover {
public:
    FileResult<Done> remove(const std::string& path, const RemoveOptions& options = {}) override;
};

} // namespace kestavon
