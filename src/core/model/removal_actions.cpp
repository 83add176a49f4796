#include "core/model/removal_actions.h"

#include <span>
#include <vector>

namespace kestavon {

RemovalWorker::Remove removalFor(const Platform& platform, ActionKind action,
    const std::string& walkedFolder, bool refusesFolders)
{
    if (action == ActionKind::trash) {
        return [trash = platform.trash, walkedFolder, refusesFolders](
                   std::span<const std::string> paths) {
            return trash->trashItems(
                paths, {.noLinksBelow = walkedFolder, .refusesFolders = refusesFolders});
        };
    }
    return [remover = platform.remover, trash = platform.trash, walkedFolder, refusesFolders](
               std::span<const std::string> paths) {
        std::vector<FileResult<std::string>> results;
        for (const auto& path : paths) {
            const auto removed = remover->remove(
                path, {.noLinksBelow = walkedFolder, .refusesFolders = refusesFolders});
            if (!removed) {
                results.emplace_back(removed.error());
                continue;
            }
            trash->forgetItem(path); // when it was an item of the Trash
            results.emplace_back(std::string());
        }
        return results;
    };
}

RemovalWorker workerFor(
    const Platform& platform, ActionKind action, const std::string& walkedFolder)
{
    return {*platform.protectedPlaces, *platform.places, removalFor(platform, action, walkedFolder),
        removalFor(platform, action, walkedFolder, true)};
}

} // namespace kestavon
