#include "core/model/duplicate_merge.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <new>
#include <unordered_map>
#include <utility>

namespace kestavon {

DuplicateMerge::DuplicateMerge(std::shared_ptr<const DuplicateList> duplicates)
    : m_duplicates(std::move(duplicates))
{
    const auto& records = *m_duplicates->records();
    std::vector<std::uint32_t> order;
    for (std::uint32_t group = 0; group < m_duplicates->size(); ++group) {
        const auto members = m_duplicates->members(group);
        const auto kept = static_cast<std::uint32_t>(m_duplicates->keptMember(group));
        order.clear();
        for (std::uint32_t i = 0; i < members.size(); ++i) {
            if (i != kept)
                order.push_back(i);
        }
        // Newest first; an absent date comes last.
        std::ranges::stable_sort(order, std::greater(),
            [&](std::uint32_t i) { return records.modifiedAt(members[i].position); });
        for (const auto copy : order)
            m_copies.push_back({.group = group, .kept = kept, .copy = copy});
    }
}

std::vector<std::uint32_t> DuplicateMerge::positions(std::size_t count) const
{
    const auto copies = std::span(m_copies).first(std::min(count, m_copies.size()));
    std::vector<std::uint32_t> positions;
    positions.reserve(copies.size());
    for (const auto& [group, kept, copy] : copies)
        positions.push_back(m_duplicates->members(group)[copy].position);
    std::ranges::sort(positions);
    return positions;
}

DuplicateMerge::Report DuplicateMerge::run(
    const Platform& platform, ActionKind action, const WorkWatch& watch) const
{
    constexpr std::size_t together = 256; // Paths take far more memory than what they are made of.
    Report report;
    try {
        auto copies = std::span(m_copies);
        while (!copies.empty() && !watch.stop.stop_requested()) {
            const auto next = copies.first(std::min(together, copies.size()));
            report.removed += remove(next, platform, action, watch);
            copies = copies.subspan(next.size());
        }
    } catch (const std::bad_alloc&) {
        report.error = "There isn't enough memory.";
    } catch (const std::exception& failure) {
        report.error = failure.what();
    }
    return report;
}

RemovalReport DuplicateMerge::remove(std::span<const Copy> copies, const Platform& platform,
    ActionKind action, const WorkWatch& watch) const
{
    const auto& records = *m_duplicates->records();
    std::vector<RemovalRequest> requests;
    std::unordered_map<std::string, UnwantedCopy> byPath;
    for (const auto& [group, kept, copy] : copies) {
        const auto members = m_duplicates->members(group);
        UnwantedCopy unwanted{.kept = fileOf(members[kept]),
            .copy = fileOf(members[copy]),
            .digest = m_duplicates->digest(group)};
        requests.push_back(
            {.path = unwanted.copy.path, .bytes = records.fileSize(members[copy].position)});
        byPath.emplace(unwanted.copy.path, std::move(unwanted));
    }
    const CopyRemoval removal(platform, records.root(), watch);
    const auto removeCopies = [&](std::span<const std::string> paths) {
        std::vector<UnwantedCopy> unwanted;
        for (const auto& path : paths)
            unwanted.push_back(byPath.at(path));
        return action == ActionKind::trash ? removal.trash(unwanted)
                                           : removal.deleteForGood(unwanted);
    };
    return RemovalWorker(*platform.protectedPlaces, *platform.places, removeCopies)
        .run(requests, watch.stop);
}

KnownFile DuplicateMerge::fileOf(const DuplicateList::Member& member) const
{
    return {.path = m_duplicates->records()->path(member.position), .identity = member.identity};
}

} // namespace kestavon
