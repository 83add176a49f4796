#include "core/model/duplicate_merge.h"

#include "core/domain/removal_guard.h"

#include <algorithm>
#include <functional>
#include <span>
#include <utility>

namespace kestavon {

DuplicateMerge::DuplicateMerge(std::shared_ptr<const DuplicateList> duplicates, CopyProof proof)
    : m_duplicates(std::move(duplicates))
    , m_proof(proof)
{
    const auto& records = *m_duplicates->records();
    for (std::uint32_t group = 0; group < m_duplicates->size(); ++group) {
        const auto inGroup = m_duplicates->members(group);
        std::vector<DuplicateList::Member> members(inGroup.begin(), inGroup.end());
        // An absent date sorts before every other.
        std::ranges::stable_sort(members, std::greater(),
            [&records](const auto& member) { return records.modifiedAt(member.position); });
        for (std::size_t i = 1; i < members.size(); ++i) {
            const auto position = members[i].position;
            auto path = records.path(position);
            m_requests.push_back({.path = path, .bytes = records.fileSize(position)});
            m_copies.emplace(std::move(path),
                Copy{.group = group,
                    .position = position,
                    .kept = members.front(),
                    .identity = members[i].identity});
        }
    }
}

std::vector<std::uint32_t> DuplicateMerge::positions() const
{
    std::vector<std::uint32_t> positions;
    positions.reserve(m_copies.size());
    for (const auto& [path, copy] : m_copies)
        positions.push_back(copy.position);
    std::ranges::sort(positions);
    return positions;
}

RemovalWorker::Remove DuplicateMerge::afterLooking(RemovalWorker::Remove remove) const
{
    return [this, remove = std::move(remove)](std::span<const std::string> paths) {
        // What goes to the Trash goes together: it waits for the disk, and can be put back.
        const auto together = m_proof == CopyProof::content ? std::size_t{1} : paths.size();
        std::vector<FileResult<std::string>> results;
        while (!paths.empty()) {
            std::vector<std::optional<FileError>> objections;
            std::vector<std::string> spare;
            for (const auto& path : paths.first(together)) {
                objections.push_back(objection(path));
                if (!objections.back())
                    spare.push_back(path);
            }
            paths = paths.subspan(together);
            auto removed = remove(spare);
            auto next = removed.begin();
            for (auto& refusal : objections) {
                if (refusal)
                    results.emplace_back(*std::move(refusal));
                else
                    results.push_back(std::move(*next++));
            }
        }
        return results;
    };
}

std::optional<FileError> DuplicateMerge::objection(const std::string& path) const
{
    const auto found = m_copies.find(path);
    if (found == m_copies.end())
        return removalError(FileError::Kind::other, lastComponent(path));
    const auto& copy = found->second;
    const auto checked = checkCopyIsSpare(
        {.path = m_duplicates->records()->path(copy.kept.position), .identity = copy.kept.identity},
        {.path = path, .identity = copy.identity}, m_duplicates->digest(copy.group), m_proof);
    return checked ? std::nullopt : std::optional(checked.error());
}

} // namespace kestavon
