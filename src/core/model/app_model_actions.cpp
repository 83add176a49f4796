#include "core/model/app_model.h"
#include "core/model/background.h"
#include "core/model/removal_worker.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <iterator>

namespace kestavon {

namespace {

/// The worker that the action stands for; it uses `platform` while it lives.
RemovalWorker workerFor(
    const Platform& platform, ActionKind action, const std::string& walkedFolder)
{
    RemovalWorker::Remove remove;
    if (action == ActionKind::trash) {
        remove = [trash = platform.trash, walkedFolder](std::span<const std::string> paths) {
            return trash->trashItems(paths, {.noLinksBelow = walkedFolder, .stop = {}});
        };
    } else {
        remove = [remover = platform.remover, trash = platform.trash, walkedFolder](
                     std::span<const std::string> paths) {
            std::vector<FileResult<Done>> results;
            for (const auto& path : paths) {
                auto removed = remover->remove(path, {.noLinksBelow = walkedFolder, .stop = {}});
                if (removed)
                    trash->forgetItem(path); // when it was an item of the Trash
                results.push_back(std::move(removed));
            }
            return results;
        };
    }
    return {*platform.protectedPlaces, *platform.places, std::move(remove)};
}

/// The positions in `list` of the pick's records, ascending; records that are not in it are left
/// out.
std::vector<std::uint32_t> positionsIn(const RecordList& list, const RecordPick& pick)
{
    std::vector<std::uint32_t> positions;
    positions.reserve(pick.positions.size());
    for (const auto position : pick.positions) {
        if (const auto found = list.positionOf(pick.records->id(position)))
            positions.push_back(static_cast<std::uint32_t>(*found));
    }
    return positions;
}

std::vector<std::uint32_t> positionsIn(
    const CandidateList& list, const CandidateList& from, std::span<const std::uint32_t> picked)
{
    std::vector<std::uint32_t> positions;
    positions.reserve(picked.size());
    for (const auto position : picked) {
        if (const auto found = list.positionOf(from.id(position)))
            positions.push_back(static_cast<std::uint32_t>(*found));
    }
    return positions;
}

} // namespace

void AppModel::trashRecords(RecordPick pick, Finished finished)
{
    removeRecords(std::move(pick), ActionKind::trash, "Files moved to Trash", std::move(finished));
}

void AppModel::deleteRecordsPermanently(RecordPick pick, Finished finished)
{
    removeRecords(
        std::move(pick), ActionKind::permanent, "Files permanently deleted", std::move(finished));
}

void AppModel::removeRecords(
    RecordPick pick, ActionKind action, const std::string& title, Finished finished)
{
    const auto picked = std::make_shared<const RecordPick>(std::move(pick));
    auto remove = [picked, action, platform = m_platform] {
        std::vector<RemovalRequest> requests;
        requests.reserve(picked->positions.size());
        for (const auto position : picked->positions) {
            requests.push_back({.path = picked->records->path(position),
                .bytes = picked->records->fileSize(position),
                .isDirectory = picked->records->isDirectory(position)});
        }
        return workerFor(platform, action, picked->records->root()).run(requests);
    };
    runInBackground(m_removalQueue, this, std::move(remove),
        [this, picked, title, finished = std::move(finished)](
            const Outcome<RemovalTally>& outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            // The whole selection leaves the list, what was skipped too.
            dropRecords(picked, [this, title, finished, tally = *outcome.value] {
                refreshDiskSpace();
                recordEvent(
                    title, std::to_string(tally.count) + " files · " + fileByteCount(tally.bytes));
                report(finished, {});
            });
        });
}

void AppModel::dropRecords(std::shared_ptr<const RecordPick> pick, std::function<void()> then)
{
    auto cut = [pick, current = m_records] {
        const auto positions = positionsIn(*current, *pick);
        return std::pair(current, positions.empty() ? current : current->without(positions));
    };
    using Lists = std::invoke_result_t<decltype(cut)>;
    runInBackground(m_removalQueue, this, std::move(cut),
        [this, pick, then = std::move(then)](Outcome<Lists> outcome) {
            if (outcome.value && outcome.value->first != m_records)
                return dropRecords(pick, then); // another list took its place meanwhile
            if (outcome.value)
                disposeInBackground(
                    publish(Field::records, m_records, std::move(outcome.value->second)));
            then();
        });
}

void AppModel::moveSelectedCleanupToSafeArea(Finished finished)
{
    struct Moved {
        std::shared_ptr<const std::vector<std::uint32_t>> picked;
        FileResult<std::vector<QuarantineItem>> items;
    };
    auto move = [store = m_quarantineStore, candidates = m_cleanupCandidates,
                    selection = m_selectedCleanupIDs] {
        auto picked = std::make_shared<std::vector<std::uint32_t>>();
        std::vector<CleanupCandidate> selected;
        for (std::size_t i = 0; i < candidates->size(); ++i) {
            if (!selection.contains(candidates->id(i)))
                continue;
            picked->push_back(static_cast<std::uint32_t>(i));
            selected.push_back((*candidates)[i]);
        }
        const auto root = candidates->records() ? candidates->records()->root() : std::string();
        auto items
            = store->quarantine(selected, {.noLinksBelow = root, .stop = {}, .progress = {}});
        return Moved{.picked = std::move(picked), .items = std::move(items)};
    };
    runInBackground(m_quarantineQueue, this, std::move(move),
        [this, from = m_cleanupCandidates, finished = std::move(finished)](Outcome<Moved> outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& moved = *outcome.value;
            if (!moved.items)
                return report(finished, moved.items.error().message);
            const auto count = moved.items->size();
            addToQuarantine(std::move(*moved.items));
            dropCandidates(from, moved.picked, [this, count, finished] {
                recordEvent("Items quarantined", std::to_string(count) + " items moved safely");
                report(finished, {});
            });
        });
}

void AppModel::dropCandidates(std::shared_ptr<const CandidateList> from,
    std::shared_ptr<const std::vector<std::uint32_t>> positions, std::function<void()> then)
{
    struct Cut {
        std::shared_ptr<const CandidateList> of;
        std::shared_ptr<const CandidateList> remaining;
    };
    auto cut = [from, positions, current = m_cleanupCandidates] {
        const auto found = positionsIn(*current, *from, *positions);
        return Cut{.of = current, .remaining = found.empty() ? current : current->without(found)};
    };
    runInBackground(m_quarantineQueue, this, std::move(cut),
        [this, from, positions, then = std::move(then)](Outcome<Cut> outcome) {
            if (outcome.value && outcome.value->of != m_cleanupCandidates)
                return dropCandidates(from, positions, then);
            if (outcome.value) {
                disposeInBackground(publish(Field::cleanupCandidates, m_cleanupCandidates,
                    std::move(outcome.value->remaining)));
                auto selection = m_selectedCleanupIDs;
                for (const auto position : *positions)
                    selection.erase(from->id(position));
                publish(Field::selectedCleanupIDs, m_selectedCleanupIDs, std::move(selection));
            }
            then();
        });
}

void AppModel::cleanJunkItems(const JunkGroup& group, const std::unordered_set<Uuid>& ids,
    ActionKind action, std::function<void(std::size_t, std::size_t)> moved, Finished finished)
{
    struct Cleaned {
        RemovalTally tally;
        FileResult<std::vector<QuarantineItem>> items = std::vector<QuarantineItem>();
    };
    std::vector<CleanupCandidate> selected;
    std::int64_t selectedBytes = 0;
    for (const auto& item : group.items) {
        if (!ids.contains(item.id))
            continue;
        selected.push_back(item);
        selectedBytes = saturatingSum(selectedBytes, item.estimatedBytes);
    }
    const auto requested = selected.size();

    auto clean = [store = m_quarantineStore, platform = m_platform, action, selected] {
        Cleaned cleaned;
        if (action == ActionKind::safeArea) {
            cleaned.items = store->quarantine(selected);
            return cleaned;
        }
        std::vector<RemovalRequest> requests;
        requests.reserve(selected.size());
        for (const auto& item : selected) {
            requests.push_back({.path = item.record.path,
                .bytes = item.estimatedBytes,
                .isDirectory = item.record.isDirectory});
        }
        cleaned.tally = workerFor(platform, action, {}).run(requests);
        return cleaned;
    };
    auto& queue = action == ActionKind::safeArea ? m_quarantineQueue : m_removalQueue;
    runInBackground(queue, this, std::move(clean),
        [this, groupId = group.id, category = group.category, ids, action, requested, selectedBytes,
            moved = std::move(moved), finished = std::move(finished)](Outcome<Cleaned> outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& cleaned = *outcome.value;
            if (!cleaned.items)
                return report(finished, cleaned.items.error().message);
            const auto movedCount = cleaned.items->size();
            if (action == ActionKind::safeArea)
                addToQuarantine(std::move(*cleaned.items));

            auto groups = m_junkGroups;
            const auto shown = std::ranges::find(groups, groupId, &JunkGroup::id);
            if (shown != groups.end()) {
                std::erase_if(shown->items,
                    [&ids](const CleanupCandidate& item) { return ids.contains(item.id); });
                publish(Field::junkGroups, m_junkGroups, std::move(groups));
            }

            const auto tallied = std::to_string(cleaned.tally.count) + " items ("
                + fileByteCount(cleaned.tally.bytes) + ")";
            switch (action) {
            case ActionKind::safeArea:
                recordEvent(std::string(rawValue(category)) + " moved to Safe Area",
                    std::to_string(movedCount) + " of " + std::to_string(requested) + " items ("
                        + fileByteCount(selectedBytes) + ")");
                if (moved)
                    moved(movedCount, requested);
                break;
            case ActionKind::trash: recordEvent("Items moved to Trash", tallied); break;
            case ActionKind::permanent: recordEvent("Items permanently deleted", tallied); break;
            }
            report(finished, {});
        });
}

void AppModel::setCleanupSelected(const Uuid& id, bool selected)
{
    auto selection = m_selectedCleanupIDs;
    if (selected)
        selection.insert(id);
    else
        selection.erase(id);
    publish(Field::selectedCleanupIDs, m_selectedCleanupIDs, std::move(selection));
}

void AppModel::selectAllCleanup()
{
    publish(Field::selectedCleanupIDs, m_selectedCleanupIDs,
        CandidateSelection::all(*m_cleanupCandidates));
}

void AppModel::deselectAllCleanup()
{
    publish(Field::selectedCleanupIDs, m_selectedCleanupIDs,
        CandidateSelection::none(*m_cleanupCandidates));
}

void AppModel::clearHistory()
{
    publish(Field::history, m_history, {});
}

} // namespace kestavon
