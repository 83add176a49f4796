#include "platform/linux/trash/freedesktop_trash.h"
#include "platform/linux/trash/mac_trash.h"

namespace kestavon {

std::vector<FileResult<std::string>> Trash::trashItems(
    std::span<const std::string> paths, const TrashOptions& options)
{
    std::vector<FileResult<std::string>> results;
    results.reserve(paths.size());
    for (const auto& path : paths) {
        if (options.stop.stop_requested()) {
            results.emplace_back(stoppedBefore(path));
            continue;
        }
        if (options.begins)
            options.begins(path);
        results.push_back(trashItem(path, options));
    }
    return results;
}

std::shared_ptr<Trash> makeSystemTrash(
    const HostLayout& layout, ProtectedPlaces protectedPlaces, std::shared_ptr<const Clock> clock)
{
    if (layout.kind == HomeKind::mac)
        return std::make_shared<MacTrash>(layout, std::move(protectedPlaces));
    return std::make_shared<FreedesktopTrash>(layout, std::move(protectedPlaces), std::move(clock),
        std::make_shared<SystemMountedVolumes>());
}

} // namespace kestavon
