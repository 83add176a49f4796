#include "platform/file_places.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/removal/entry_status.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/retry.h"
#include "platform/linux/removal/tree_copy.h"
#include "platform/linux/small_file.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

FileDescriptor openForListing(const std::string& path)
{
    const auto folder = openFolder(path);
    if (!folder)
        return FileDescriptor();
    return FileDescriptor(
        retrying([&] { return ::openat(folder->get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
}

/// Waits until the names in the folder are on the disk: what comes to lie in a new folder may soon
/// exist nowhere else.
void writeOut(int folder)
{
    const FileDescriptor opened(
        retrying([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (opened)
        waitForDisk(opened.get());
}

} // namespace

std::optional<EntryKind> SystemFilePlaces::kindOf(const std::string& path) const
{
    const auto place = openItemPlace(path);
    if (!place)
        return std::nullopt;
    const auto status = statusOf(place->folder.get(), place->name.c_str());
    if (!status)
        return std::nullopt;
    return status->isFolder() ? EntryKind::folder
        : status->isFile()    ? EntryKind::file
        : status->isLink()    ? EntryKind::link
                              : EntryKind::other;
}

FileResult<std::vector<std::string>> SystemFilePlaces::makeFolder(
    const std::string& path, unsigned permissions)
{
    // From the folder up to the first one that is there, and back down.
    std::vector<std::string> missing;
    auto existing = path;
    for (;;) {
        const auto opened = openFolder(existing);
        if (opened)
            break;
        if (opened.error() != ENOENT || existing.size() <= 1)
            return folderError(opened.error() == ENOTDIR ? FileError::Kind::fileExists
                                                         : fileErrorKind(opened.error()),
                lastComponent(path));
        missing.push_back(existing);
        existing.resize(std::max<std::size_t>(existing.rfind('/'), 1));
    }
    std::vector<std::string> made;
    for (auto folder = missing.rbegin(); folder != missing.rend(); ++folder) {
        int error = 0;
        if (const auto place = openItemPlace(*folder)) {
            const auto make
                = [&] { return ::mkdirat(place->folder.get(), place->name.c_str(), permissions); };
            if (retrying(make) == 0) {
                made.push_back(*folder);
                writeOut(place->folder.get());
            } else
                error = errno;
        } else {
            error = place.error();
        }
        // Somebody else may have made it just now; but a link that leads nowhere is in the way.
        if (error == EEXIST && openFolder(*folder))
            error = 0;
        if (error != 0) {
            removeMadeFolders(made);
            return folderError(fileErrorKind(error), lastComponent(path));
        }
    }
    return made;
}

void SystemFilePlaces::removeMadeFolders(const std::vector<std::string>& folders)
{
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        const auto place = openItemPlace(*folder);
        if (!place || ::unlinkat(place->folder.get(), place->name.c_str(), AT_REMOVEDIR) != 0)
            return;
    }
}

std::size_t SystemFilePlaces::longestNameIn(const std::string& folder) const
{
    const auto opened = openFolder(folder);
    return kestavon::longestNameIn(opened ? opened->get() : -1);
}

std::vector<std::string> SystemFilePlaces::namesIn(const std::string& folder) const
{
    std::vector<std::string> names;
    const auto opened = openForListing(folder);
    if (!opened)
        return names;
    if (const auto listing = listFolder(opened.get())) {
        for (const auto& entry : listing->entries())
            names.emplace_back(listing->name(entry));
    }
    return names;
}

bool SystemFilePlaces::writeNote(const std::string& path, const std::string& bytes)
{
    return replaceSmallFile(path, bytes);
}

std::optional<std::string> SystemFilePlaces::readNote(const std::string& path) const
{
    auto file = readSmallFile(path);
    if (file.error != 0)
        return std::nullopt;
    return std::move(file.bytes);
}

void SystemFilePlaces::removeNote(const std::string& path)
{
    ::unlink(path.c_str());
}

std::vector<FileMark> SystemFilePlaces::marksOf(
    const std::string& path, const std::string& prefix) const
{
    const auto place = openItemPlace(path);
    if (!place)
        return {};
    return readMarks(place->folder.get(), place->name.c_str(), prefix);
}

} // namespace kestavon
