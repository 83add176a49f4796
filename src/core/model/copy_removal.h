#pragma once

#include "core/model/removal_worker.h"
#include "core/model/work_meter.h"
#include "duplicates/copy_check.h"
#include "platform/platform.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kestavon {

/// A copy that is to go, and the file of the same content that stays for it.
struct UnwantedCopy {
    KnownFile kept;
    KnownFile copy;
    Sha256Digest digest{};
};

/// Removes copies without ever taking the last one: each is looked at just before, and so is the
/// file that stays when the copy is away but can still come back. A copy stays when one of the two
/// is gone or holds something else by now, and when both are the same file, however it is reached.
/// Any thread but the main one.
class CopyRemoval {
public:
    /// Links below `walkedFolder` are not followed. A requested stop ends what reads long.
    CopyRemoval(Platform platform, std::string walkedFolder, WorkWatch watch);

    /// Moves the copies to the Trash, together: it waits for the disk. Gives of each where it lies
    /// now.
    std::vector<FileResult<std::string>> trash(std::span<const UnwantedCopy> copies) const;

    /// Deletes the copies, one after the other; both files are read before, and those that stay
    /// are on the disk. Gives empty paths.
    std::vector<FileResult<std::string>> deleteForGood(std::span<const UnwantedCopy> copies) const;

private:
    /// Throws nothing, so that what went before it stays counted.
    FileResult<std::string> deleteForGood(
        const UnwantedCopy& unwanted, const std::function<std::optional<SpareCopy>()>& check) const;
    /// Whether the copy lies in the Trash and the kept file is still there. If not, what lies there
    /// is put back; it stays only where that cannot be done.
    bool isRight(const SpareCopy& spare, const std::string& trashedPath) const;

    Platform m_platform;
    std::string m_walkedFolder;
    WorkWatch m_watch;
};

} // namespace kestavon
