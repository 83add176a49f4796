#include "duplicates/left_out_folders.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/entry_status.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestavon {

namespace {

bool isVolumeTrashName(std::string_view name)
{
    constexpr std::string_view ofOneUser = ".Trash-";
    return name == ".Trash" || name == ".Trashes"
        || (name.starts_with(ofOneUser) && name.size() > ofOneUser.size()
            && std::ranges::all_of(
                name.substr(ofOneUser.size()), [](char c) { return c >= '0' && c <= '9'; }));
}

/// The path without links; as it is when it leads nowhere.
std::string resolved(const std::string& path)
{
    char text[PATH_MAX];
    return ::realpath(path.c_str(), text) ? std::string(text) : path;
}

bool areOneFolder(const std::string& a, const std::string& b)
{
    struct stat ofA {
    }, ofB{};
    return ::stat(a.c_str(), &ofA) == 0 && ::stat(b.c_str(), &ofB) == 0 && ofA.st_dev == ofB.st_dev
        && ofA.st_ino == ofB.st_ino;
}

/// A folder to be left out.
struct Place {
    Place(std::string folder, bool isUnseen)
        : path(std::move(folder))
        , name(lastComponent(path))
        , target(isUnseen ? std::string() : resolved(path))
        , targetName(lastComponent(target))
    {
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    bool holdsRoot(const std::string& root, const std::string& resolvedRoot) const
    {
        return isAtOrBelow(root, path) || isAtOrBelow(resolvedRoot, path)
            || (!target.empty() && isAtOrBelow(resolvedRoot, target));
    }

    bool is(const RecordList& records, std::uint32_t folder) const
    {
        const auto folderName = records.folderName(folder);
        if (folderName != name && (target.empty() || folderName != targetName))
            return false;
        const auto folderPath = records.folderPath(folder);
        return folderPath == path || (!target.empty() && areOneFolder(folderPath, target));
    }

    const std::string path;
    const std::string_view name;
    const std::string target; ///< where it really lies; empty when nobody has looked
    const std::string_view targetName;
};

bool isTrashOfAVolume(const RecordList& records, std::uint32_t folder)
{
    if (!isVolumeTrashName(records.folderName(folder)))
        return false;
    const auto above = statusOf(AT_FDCWD, records.folderPath(records.folderParent(folder)).c_str());
    return above && above->isMountPoint;
}

/// Marks the folders that hold one of this name.
std::vector<bool> holdersOf(std::string_view name, const RecordList& records)
{
    std::vector<bool> isHolder(records.folderCount());
    for (std::uint32_t folder = 1; folder < isHolder.size(); ++folder) {
        if (records.folderName(folder) == name)
            isHolder[records.folderParent(folder)] = true;
    }
    return isHolder;
}

} // namespace

std::vector<bool> foldersLeftOut(const RecordList& records, const DuplicateSearchOptions& options)
{
    std::vector<bool> isLeftOut(records.folderCount());
    if (isLeftOut.empty())
        return isLeftOut;
    std::vector<std::unique_ptr<Place>> places;
    for (const auto& folder : options.leaveOut)
        places.push_back(std::make_unique<Place>(folder, false));
    for (const auto& folder : options.leaveOutUnseen)
        places.push_back(std::make_unique<Place>(folder, true));
    const auto root = resolved(records.root());
    isLeftOut[0] = std::ranges::any_of(
        places, [&](const auto& place) { return place->holdsRoot(records.root(), root); });
    const auto isMacHome = holdersOf("Library", records);
    // A folder's number is greater than its parent's.
    for (std::uint32_t folder = 1; folder < isLeftOut.size(); ++folder) {
        isLeftOut[folder] = isLeftOut[records.folderParent(folder)]
            || std::ranges::any_of(
                places, [&](const auto& place) { return place->is(records, folder); })
            || isTrashOfAVolume(records, folder)
            || (records.folderName(folder) == ".Trash" && isMacHome[records.folderParent(folder)]);
    }
    return isLeftOut;
}

} // namespace kestavon
