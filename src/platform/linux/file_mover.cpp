#include "platform/file_mover.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/move_item.h"
#include "platform/linux/removal/retry.h"
#include "platform/linux/removal/unfinished_moves.h"

#include <fcntl.h>

namespace kestavon {

FileResult<MoveReport> SystemFileMover::move(
    const std::string& source, const std::string& destination, const MoveOptions& options)
{
    const auto fail = [&](int error) {
        auto folder = std::string_view(destination);
        folder.remove_suffix(lastComponent(folder).size());
        return moveError(fileErrorKind(error), lastComponent(source), lastComponent(folder));
    };
    const auto from = openItemPlace(source, options.noLinksBelow);
    if (!from)
        return fail(from.error());
    const auto to = openItemPlace(destination);
    if (!to)
        return fail(to.error());
    return moveItem(*from, *to, options);
}

void SystemFileMover::clearUnfinishedMoves(const std::string& folder)
{
    const auto place = openFolder(folder);
    if (!place)
        return;
    const FileDescriptor opened(
        retrying([&] { return ::openat(place->get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (opened)
        clearUnfinishedMovesIn(opened.get());
}

} // namespace kestavon
