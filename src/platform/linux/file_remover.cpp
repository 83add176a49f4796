#include "platform/file_remover.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/remove_file.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/rename_item.h"
#include "platform/linux/removal/unfinished_moves.h"

#include <utility>

namespace kestavon {

namespace {

/// The other name that the item has now, if it is a folder; empty when it keeps its own.
std::string hide(int folder, const std::string& name)
{
    const auto status = statusOf(folder, name.c_str());
    if (!status || !status->isFolder())
        return {};
    auto hidden = MoveNames::random().deleted;
    return renameWithoutReplacing(folder, name.c_str(), folder, hidden.c_str()) == 0
        ? hidden
        : std::string();
}

} // namespace

SystemFileRemover::SystemFileRemover(std::string journalFolder)
    : m_journalFolder(std::move(journalFolder))
{
}

FileResult<Done> SystemFileRemover::remove(const std::string& path, const RemoveOptions& options)
{
    const auto place = openItemPlace(path, options.noLinksBelow);
    if (!place)
        return removalError(fileErrorKind(place.error()), lastComponent(path));
    const int folder = place->folder.get();
    auto journal = DeedJournal(m_journalFolder).begin();
    const RemoveTreeOptions treeOptions{.refusesFolders = options.refusesFolders,
        .stop = options.stop,
        .progress = options.progress,
        .journal = &journal};
    const auto hidden = options.hidesFolders ? hide(folder, place->name) : std::string();
    auto failure = removeTree(folder, hidden.empty() ? place->name : hidden, treeOptions);
    if (failure.error != 0 && !hidden.empty()) {
        renameWithoutReplacing(folder, hidden.c_str(), folder, place->name.c_str());
        if (failure.name == hidden)
            failure.name = place->name;
    }
    if (failure.error != 0)
        return removalError(fileErrorKind(failure.error), failure.name);
    return Done{};
}

FileResult<Done> SystemFileRemover::removeFileIf(const std::string& path,
    const FileIdentity& expected, const std::function<bool()>& mayGo, const RemoveOptions& options)
{
    const auto place = openItemPlace(path, options.noLinksBelow);
    auto journal = DeedJournal(m_journalFolder).begin();
    const int error = place
        ? kestavon::removeFileIf(place->folder.get(), place->name, expected, mayGo, journal)
        : place.error();
    if (error != 0)
        return removalError(fileErrorKind(error), lastComponent(path));
    return Done{};
}

} // namespace kestavon
