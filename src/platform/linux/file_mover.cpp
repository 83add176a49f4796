#include "platform/file_mover.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/move_item.h"
#include "platform/linux/removal/unfinished_moves.h"

#include <utility>

namespace kestavon {

SystemFileMover::SystemFileMover(std::string journalFolder, std::chrono::milliseconds patience)
    : m_journalFolder(std::move(journalFolder))
    , m_patience(patience)
{
}

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
    return moveItem(*from, *to, options, DeedJournal(m_journalFolder));
}

void SystemFileMover::clearUnfinishedMoves(const std::string& folder)
{
    const auto place = openFolder(folder);
    kestavon::clearUnfinishedMoves(
        place ? openForLock(place->get()) : FileDescriptor(), m_journalFolder, m_patience);
}

} // namespace kestavon
