#include "platform/file_remover.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/remove_file.h"
#include "platform/linux/removal/remove_tree.h"

namespace kestavon {

FileResult<Done> SystemFileRemover::remove(const std::string& path, const RemoveOptions& options)
{
    const auto place = openItemPlace(path, options.noLinksBelow);
    if (!place)
        return removalError(fileErrorKind(place.error()), lastComponent(path));
    const auto failure = removeTree(place->folder.get(), place->name, {.stop = options.stop});
    if (failure.error != 0)
        return removalError(fileErrorKind(failure.error), failure.name);
    return Done{};
}

FileResult<Done> SystemFileRemover::removeFileIf(const std::string& path,
    const FileIdentity& expected, const std::function<bool()>& mayGo, const RemoveOptions& options)
{
    const auto place = openItemPlace(path, options.noLinksBelow);
    const int error = place
        ? kestavon::removeFileIf(place->folder.get(), place->name, expected, mayGo)
        : place.error();
    if (error != 0)
        return removalError(fileErrorKind(error), lastComponent(path));
    return Done{};
}

} // namespace kestavon
