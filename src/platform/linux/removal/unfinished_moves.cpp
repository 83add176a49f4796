#include "platform/linux/removal/unfinished_moves.h"

#include "core/domain/uuid.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/remove_tree.h"

#include <charconv>
#include <chrono>
#include <thread>

#include <sys/file.h>

namespace kestavon {

namespace {

constexpr std::string_view partialPrefix = ".kestavon-partial-";
constexpr std::string_view removedPrefix = ".kestavon-removed-";
constexpr std::size_t uuidLength = 36;

/// Clocks of file systems stand still between two ticks, and those of servers differ from ours.
constexpr std::int64_t clockTolerance = 2; // seconds

} // namespace

std::string partialCopyName()
{
    return std::string(partialPrefix) + Uuid::random().text();
}

std::string removedSourceName(const struct timespec& surveyed)
{
    return std::string(removedPrefix) + Uuid::random().text() + "-"
        + std::to_string(surveyed.tv_sec);
}

bool isPartialCopyName(std::string_view name)
{
    return name.starts_with(partialPrefix)
        && Uuid::fromText(name.substr(partialPrefix.size())).has_value();
}

std::optional<struct timespec> surveyTimeOf(std::string_view name)
{
    if (!name.starts_with(removedPrefix))
        return std::nullopt;
    name.remove_prefix(removedPrefix.size());
    if (name.size() < uuidLength + 2 || !Uuid::fromText(name.substr(0, uuidLength))
        || name[uuidLength] != '-')
        return std::nullopt;
    name.remove_prefix(uuidLength + 1);
    struct timespec surveyed { };
    const auto* end = name.data() + name.size();
    const auto read = std::from_chars(name.data(), end, surveyed.tv_sec);
    if (read.ec != std::errc() || read.ptr != end)
        return std::nullopt;
    return surveyed;
}

void lockForMove(int folder)
{
    using namespace std::chrono_literals;
    for (int attempt = 0; attempt < 50; ++attempt) {
        if (::flock(folder, LOCK_SH | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            return;
        std::this_thread::sleep_for(20ms);
    }
}

void clearUnfinishedMovesIn(int folder)
{
    if (::flock(folder, LOCK_EX | LOCK_NB) != 0)
        return;
    if (const auto listing = listFolder(folder)) {
        for (const auto& entry : listing->entries()) {
            const auto name = listing->name(entry);
            RemoveTreeOptions options;
            if (const auto surveyed = surveyTimeOf(name)) {
                options.touchedBefore = surveyed;
                options.touchedBefore->tv_sec -= clockTolerance;
            } else if (!isPartialCopyName(name)) {
                continue;
            }
            removeTree(folder, std::string(name), options);
        }
    }
    ::flock(folder, LOCK_UN);
}

} // namespace kestavon
