#include "core/model/copy_removal.h"

#include "core/domain/removal_guard.h"
#include "duplicates/file_reading.h"
#include "platform/put_back.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <iterator>
#include <optional>
#include <utility>

namespace kestavon {

namespace {

FileError changed(const UnwantedCopy& unwanted)
{
    return removalError(FileError::Kind::changed, lastComponent(unwanted.copy.path));
}

/// Why the copy stays that was not found spare: it is not, or it was not looked at to the end.
FileError notSpare(const UnwantedCopy& unwanted, bool isStopped)
{
    return isStopped ? removalError(FileError::Kind::cancelled, lastComponent(unwanted.copy.path))
                     : changed(unwanted);
}

/// What `checkCopyIsSpare` says; what it throws, for want of memory, leaves the copy where it is.
std::optional<SpareCopy> checked(const UnwantedCopy& unwanted, CopyProof proof,
    const std::stop_token& stop, const FilesOnDisk& onDisk = {})
{
    try {
        auto spare
            = checkCopyIsSpare(unwanted.kept, unwanted.copy, unwanted.digest, proof, stop, onDisk);
        return spare ? std::optional(std::move(*spare)) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

CopyRemoval::CopyRemoval(Platform platform, std::string walkedFolder, WorkWatch watch)
    : m_platform(std::move(platform))
    , m_walkedFolder(std::move(walkedFolder))
    , m_watch(std::move(watch))
{
}

std::vector<FileResult<std::string>> CopyRemoval::trash(std::span<const UnwantedCopy> copies) const
{
    std::vector<std::optional<SpareCopy>> spares;
    std::ranges::transform(copies, std::back_inserter(spares), [this](const UnwantedCopy& copy) {
        return checked(copy, CopyProof::identity, m_watch.stop);
    });
    std::vector<std::string> paths;
    for (auto& spare : spares) {
        // Those before may have had to be read for hours.
        if (spare && (!isUntouched(spare->kept) || !isUntouched(spare->copy)))
            spare.reset();
        if (spare)
            paths.push_back(spare->copy.path);
    }
    const bool isStopped = m_watch.stop.stop_requested();
    auto trashed = m_platform.trash->trashItems(paths,
        {.noLinksBelow = m_walkedFolder,
            .refusesFolders = true,
            .stop = m_watch.stop,
            .begins = m_watch.begins,
            .progress = m_watch.copied});
    std::vector<FileResult<std::string>> results;
    auto next = trashed.begin();
    for (std::size_t i = 0; i < copies.size(); ++i) {
        if (!spares[i])
            results.emplace_back(notSpare(copies[i], isStopped));
        else if (auto result = std::move(*next++); result && !isRight(*spares[i], *result))
            results.emplace_back(changed(copies[i]));
        else
            results.push_back(std::move(result));
    }
    return results;
}

bool CopyRemoval::isRight(const SpareCopy& spare, const std::string& trashedPath) const
{
    // Where it lies it may be another file on another device, with the same size and date.
    const auto lies = openRegularFile(trashedPath);
    const bool isTheCopy = lies ? lies->identity.size == spare.copy.identity.size
            && lies->identity.modifiedAt == spare.copy.identity.modifiedAt
                                : lies.error() == EACCES || lies.error() == EPERM;
    if (isTheCopy && isUntouched(spare.kept))
        return true;
    // What cannot be put back has been moved all the same, and the user can.
    if (!putBack(trashedPath, spare.copy.path, *m_platform.mover, *m_platform.places))
        return true;
    m_platform.trash->forgetItem(trashedPath);
    return false;
}

std::vector<FileResult<std::string>> CopyRemoval::deleteForGood(
    std::span<const UnwantedCopy> copies) const
{
    std::vector<std::string> kept;
    std::ranges::transform(
        copies, std::back_inserter(kept), [](const UnwantedCopy& copy) { return copy.kept.path; });
    const FilesOnDisk onDisk(kept, m_watch.stop);
    std::vector<FileResult<std::string>> results;
    results.reserve(copies.size());
    for (const auto& copy : copies)
        results.push_back(deleteForGood(copy, onDisk));
    return results;
}

FileResult<std::string> CopyRemoval::deleteForGood(
    const UnwantedCopy& unwanted, const FilesOnDisk& onDisk) const
{
    if (m_watch.begins)
        m_watch.begins(unwanted.copy.path);
    const auto spare = checked(unwanted, CopyProof::content, m_watch.stop, onDisk);
    if (!spare)
        return notSpare(unwanted, m_watch.stop.stop_requested());
    try {
        const auto removed = m_platform.remover->removeFileIf(spare->copy.path,
            spare->copy.identity, [&spare] { return isUntouched(spare->kept); },
            {.noLinksBelow = m_walkedFolder, .stop = m_watch.stop});
        if (!removed)
            return removed.error();
        return std::string();
    } catch (const std::exception&) {
        return removalError(FileError::Kind::other, lastComponent(unwanted.copy.path));
    }
}

} // namespace kestavon
