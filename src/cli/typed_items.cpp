#include "cli/typed_items.h"

#include "core/domain/removal_guard.h"
#include "platform/host_layout.h"
#include "platform/linux/file_descriptor.h"
#include "walk/folder_reader.h"
#include "walk/folder_sizes.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <numeric>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestavon {

namespace {

/// Where the item really lies; empty, with the error, when the folder above it cannot be found.
std::string placeOf(const std::string& path, std::error_code& error)
{
    const auto absolute = normalisedPath(path);
    if (absolute == "/")
        return absolute;
    const auto name = lastComponent(absolute);
    const auto above = absolute.substr(0, absolute.size() - name.size());
    const auto folder = std::filesystem::canonical(above, error);
    return error ? std::string() : (folder / name).native();
}

/// "." and ".." are other names of a folder, and of the one that a link leads to: whoever types
/// them may not see what that would remove.
bool endsInDots(const std::string& path)
{
    const auto absolute = normalisedPath(path);
    const auto name = lastComponent(absolute);
    return name == "." || name == "..";
}

std::optional<FileRecord> recordOf(const std::string& path, std::error_code& error)
{
    struct stat status { };
    if (error || ::lstat(path.c_str(), &status) != 0) {
        if (!error)
            error = {errno, std::generic_category()};
        return std::nullopt;
    }
    const auto modified = std::chrono::seconds(status.st_mtim.tv_sec);
    return FileRecord{.path = path,
        .size = S_ISREG(status.st_mode) ? status.st_size : 0,
        .modifiedAt = Timestamp(modified) + std::chrono::nanoseconds(status.st_mtim.tv_nsec),
        .isDirectory = S_ISDIR(status.st_mode),
        .isHidden = lastComponent(path).starts_with('.')};
}

/// What goes with a folder that goes need not be named.
void dropWhatLiesInOthers(std::vector<FileRecord>& records)
{
    std::vector<std::string> folders;
    for (const auto& record : records) {
        if (record.isDirectory)
            folders.push_back(record.path);
    }
    std::erase_if(records, [&folders](const FileRecord& record) {
        return std::ranges::any_of(folders, [&record](const std::string& folder) {
            return record.path != folder && isAtOrBelow(record.path, folder);
        });
    });
}

/// Gives folders the sizes of all that they hold.
void measureFolders(std::vector<FileRecord>& records)
{
    std::vector<FolderToMeasure> folders;
    std::vector<FileRecord*> measured;
    for (auto& record : records) {
        if (!record.isDirectory)
            continue;
        const std::string name(lastComponent(record.path));
        const auto above = record.path.substr(0, record.path.size() - name.size());
        const auto parent = std::make_shared<const FileDescriptor>(
            ::open(above.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        const auto facts
            = *parent ? lookAt(parent->get(), name.c_str()) : std::optional<EntryFacts>();
        if (!facts)
            continue;
        folders.push_back({.parent = parent, .name = name, .device = facts->device});
        measured.push_back(&record);
    }
    const auto sizes = folderSizes(std::move(folders), {});
    for (std::size_t i = 0; i < sizes.size(); ++i)
        measured[i]->size = sizes[i];
}

} // namespace

TypedItems typedItems(const std::vector<std::string>& paths, const ProtectedPlaces& places)
{
    TypedItems items;
    std::vector<FileRecord> records;
    for (const auto& path : paths) {
        if (endsInDots(path)) {
            items.problems.push_back(path + " may be another folder than it seems; name it.");
            continue;
        }
        std::error_code error;
        const auto place = placeOf(path, error);
        auto record = recordOf(place, error);
        if (record && path.ends_with('/') && !std::filesystem::is_directory(place)) {
            error = std::make_error_code(std::errc::not_a_directory);
            record.reset();
        }
        if (!record) {
            items.problems.push_back(path + ": " + error.message() + '.');
            continue;
        }
        const auto isRefused = [&](const std::string& form) {
            if (!isSafeToRemove(form)) {
                items.problems.push_back(path + " belongs to the system and is never removed.");
                return true;
            }
            if (const auto refusal = places.refusal(form)) {
                items.problems.push_back(path + " is refused: " + refusal->message);
                return true;
            }
            return false;
        };
        if (isRefused(normalisedPath(path)) || isRefused(place))
            continue;
        if (std::ranges::find(records, place, &FileRecord::path) == records.end())
            records.push_back(*record);
    }
    dropWhatLiesInOthers(records);
    measureFolders(records);
    for (const auto& record : records)
        items.bytes = saturatingSum(items.bytes, record.size);
    items.pick.records = RecordList::fromRecords("/", records);
    items.pick.positions.resize(records.size());
    std::iota(items.pick.positions.begin(), items.pick.positions.end(), 0U);
    return items;
}

} // namespace kestavon
