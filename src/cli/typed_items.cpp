#include "cli/typed_items.h"

#include "core/domain/removal_guard.h"
#include "platform/host_layout.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <numeric>
#include <optional>
#include <system_error>

#include <sys/stat.h>

namespace kestavon {

namespace {

/// Where the item really lies; empty, with the error, when the folder above it cannot be found.
std::string placeOf(const std::string& path, std::error_code& error)
{
    const auto absolute = normalisedPath(path);
    const auto name = lastComponent(absolute);
    if (name == "." || name == ".." || absolute == "/") {
        return std::filesystem::canonical(absolute, error).native();
    }
    const auto above = absolute.substr(0, absolute.size() - name.size());
    const auto folder = std::filesystem::canonical(above, error);
    return error ? std::string() : (folder / name).native();
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

} // namespace

TypedItems typedItems(const std::vector<std::string>& paths, const ProtectedPlaces& places)
{
    TypedItems items;
    std::vector<FileRecord> records;
    for (const auto& path : paths) {
        std::error_code error;
        const auto place = placeOf(path, error);
        const auto record = recordOf(place, error);
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
    items.pick.records = RecordList::fromRecords("/", records);
    items.pick.positions.resize(records.size());
    std::iota(items.pick.positions.begin(), items.pick.positions.end(), 0U);
    return items;
}

} // namespace kestavon
