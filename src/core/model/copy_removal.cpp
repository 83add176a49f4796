#include "core/model/copy_removal.h"

#include "concurrency/cancelled.h"
#include "concurrency/thread_crew.h"
#include "core/domain/removal_guard.h"
#include "duplicates/file_reading.h"
#include "platform/put_back.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <iterator>
#include <memory>
#include <unordered_map>
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

/// What `work` gives, which may ask a disk that does not answer and must own what it uses; nothing
/// once a stop is requested, or for want of memory.
template <class Work> auto answerOf(Work work, const std::stop_token& stop) -> decltype(work())
{
    const auto answer = std::make_shared<decltype(work())>();
    try {
        runOnThreads(
            1, [answer, work = std::move(work)] { *answer = work(); }, stop);
    } catch (const Cancelled&) {
        return {};
    } catch (const std::exception&) {
        return {};
    }
    return std::move(*answer);
}

/// Looks whether copies are spare, one after the other. A file that stays for several and is not
/// what the search saw is read once for all of them.
class SpareCheck {
public:
    SpareCheck(CopyProof proof, std::stop_token stop,
        std::shared_ptr<const FilesOnDisk> onDisk = std::make_shared<FilesOnDisk>())
        : m_proof(proof)
        , m_stop(std::move(stop))
        , m_onDisk(std::move(onDisk))
    {
    }

    /// See `checkCopyIsSpare`; nothing also when a stop was requested or memory is short.
    std::optional<SpareCopy> operator()(const UnwantedCopy& unwanted)
    {
        struct Found {
            std::optional<KnownFile> kept;
            std::optional<SpareCopy> spare;
        };
        const auto known = m_kept.find(unwanted.kept.path);
        const bool isKnown = known != m_kept.end();
        if (isKnown && !known->second)
            return std::nullopt;
        auto found = answerOf(
            [unwanted, kept = isKnown ? known->second : std::nullopt, proof = m_proof,
                stop = m_stop, onDisk = m_onDisk] {
                Found result;
                result.kept = kept ? kept : presentState(unwanted.kept, unwanted.digest, stop);
                if (!result.kept)
                    return result;
                auto spare = checkCopyIsSpare(
                    *result.kept, unwanted.copy, unwanted.digest, proof, stop, *onDisk);
                if (spare)
                    result.spare = std::move(*spare);
                return result;
            },
            m_stop);
        if (!isKnown)
            m_kept.emplace(unwanted.kept.path, std::move(found.kept));
        return std::move(found.spare);
    }

private:
    const CopyProof m_proof;
    const std::stop_token m_stop;
    const std::shared_ptr<const FilesOnDisk> m_onDisk;
    std::unordered_map<std::string, std::optional<KnownFile>> m_kept; ///< by path; empty: gone
};

/// Which of them can still go: those before may have had to be read for hours.
std::vector<bool> stillSpare(
    const std::vector<std::optional<SpareCopy>>& spares, const std::stop_token& stop)
{
    auto untouched = answerOf(
        [spares] {
            std::vector<bool> answers;
            for (const auto& spare : spares)
                answers.push_back(spare && isUntouched(spare->kept) && isUntouched(spare->copy));
            return answers;
        },
        stop);
    untouched.resize(spares.size());
    return untouched;
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
    SpareCheck check(CopyProof::identity, m_watch.stop);
    for (const auto& copy : copies)
        spares.push_back(check(copy));
    std::vector<std::string> paths;
    const auto mayGo = stillSpare(spares, m_watch.stop);
    for (std::size_t i = 0; i < spares.size(); ++i) {
        if (mayGo[i])
            paths.push_back(spares[i]->copy.path);
        else
            spares[i].reset();
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
    SpareCheck check(
        CopyProof::content, m_watch.stop, std::make_shared<const FilesOnDisk>(kept, m_watch.stop));
    std::vector<FileResult<std::string>> results;
    results.reserve(copies.size());
    for (const auto& copy : copies)
        results.push_back(deleteForGood(copy, [&check, &copy] { return check(copy); }));
    return results;
}

FileResult<std::string> CopyRemoval::deleteForGood(
    const UnwantedCopy& unwanted, const std::function<std::optional<SpareCopy>()>& check) const
{
    if (m_watch.begins)
        m_watch.begins(unwanted.copy.path);
    const auto spare = check();
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
