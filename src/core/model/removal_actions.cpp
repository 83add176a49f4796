#include "core/model/removal_actions.h"

#include "core/domain/removal_guard.h"

#include <span>
#include <vector>

namespace kestavon {

namespace {

FileResult<std::string> deleteForGood(
    const Platform& platform, const std::string& path, const RemoveOptions& options)
{
    const auto removed = platform.remover->remove(path, options);
    if (!removed)
        return removed.error();
    platform.trash->forgetItem(path); // when it was an item of the Trash
    return std::string();
}

} // namespace

RemovalWorker::Remove removalFor(const Platform& platform, ActionKind action,
    const std::string& walkedFolder, bool refusesFolders, const WorkWatch& watch)
{
    if (action == ActionKind::trash) {
        const TrashOptions options{.noLinksBelow = walkedFolder,
            .refusesFolders = refusesFolders,
            .stop = watch.stop,
            .begins = watch.begins,
            .progress = watch.copied};
        return [trash = platform.trash, options](std::span<const std::string> paths) {
            return trash->trashItems(paths, options);
        };
    }
    const RemoveOptions options{.noLinksBelow = walkedFolder,
        .refusesFolders = refusesFolders,
        .stop = watch.stop,
        .progress = watch.removed};
    return [platform, options, begins = watch.begins, removedWhole = watch.removedWhole](
               std::span<const std::string> paths) {
        std::vector<FileResult<std::string>> results;
        for (const auto& path : paths) {
            if (options.stop.stop_requested()) {
                results.emplace_back(removalError(FileError::Kind::cancelled, lastComponent(path)));
                continue;
            }
            if (begins)
                begins(path);
            results.push_back(deleteForGood(platform, path, options));
            if (results.back() && removedWhole)
                removedWhole();
        }
        return results;
    };
}

RemovalWorker workerFor(const Platform& platform, ActionKind action,
    const std::string& walkedFolder, const WorkWatch& watch)
{
    return {*platform.protectedPlaces, *platform.places,
        removalFor(platform, action, walkedFolder, false, watch),
        removalFor(platform, action, walkedFolder, true, watch)};
}

} // namespace kestavon
