#pragma once

#include "platform/file_mover.h"
#include "platform/linux/removal/tree_survey.h"

#include <string>
#include <vector>

namespace kestavon {

/// One copy to be made.
struct TreeCopyJob {
    const TreeSurvey& survey;
    int sourceFolder;
    const std::string& sourceName;
    int targetFolder; ///< opened for reading
    const std::string& targetName; ///< free
    const std::vector<FileMark>& marks; ///< put on the copy, where it can have any
    const MoveOptions& options;
};

/// Makes a copy of a surveyed item that is as durable as it is complete: contents, holes, links,
/// hard links, pipes, sockets, owners where allowed, attributes, permissions and times, all on the
/// disk when this returns without a failure. Nobody but the owner can look into the copy before it
/// is complete. After a failure a part of the copy may lie at the target.
Result<Done, TreeFailure> copyTree(const TreeCopyJob& job);

/// Waits until what was done to the opened file or folder is on the disk. 0, or the error number;
/// file systems without such a promise do not count as failures.
int waitForDisk(int descriptor);

} // namespace kestavon
