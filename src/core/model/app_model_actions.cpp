#include "core/model/app_model.h"
#include "core/model/background.h"
#include "core/model/removal_actions.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <iterator>

namespace kestavon {

namespace {

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

std::string filesText(const RemovalTally& tally)
{
    return std::to_string(tally.count) + " files · " + fileByteCount(tally.bytes);
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
        [this, picked, action, title, finished = std::move(finished)](
            Outcome<RemovalReport> outcome) {
            if (!outcome.value)
                return report(finished, outcome.error);
            // The whole selection leaves the list, what was skipped too.
            dropRecords(picked,
                [this, action, title, finished, removed = std::move(*outcome.value)](
                    const std::shared_ptr<const RecordPick>& cut) {
                    refreshDiskSpace();
                    recordEvent(title, filesText(removed.tally));
                    offerUndoOfRecords(action, removed, cut, filesText);
                    report(finished, {});
                });
        });
}

void AppModel::dropRecords(std::shared_ptr<const RecordPick> pick, RecordsCut then)
{
    struct Cut {
        std::shared_ptr<const RecordPick> cut;
        std::shared_ptr<const RecordList> remaining;
    };
    auto cut = [pick, current = m_records] {
        auto gone = std::make_shared<const RecordPick>(
            RecordPick{.records = current, .positions = positionsIn(*current, *pick)});
        auto remaining = gone->positions.empty() ? current : current->without(gone->positions);
        return Cut{.cut = std::move(gone), .remaining = std::move(remaining)};
    };
    runInBackground(m_removalQueue, this, std::move(cut),
        [this, pick, then = std::move(then)](Outcome<Cut> outcome) {
            if (!outcome.value)
                return then(nullptr);
            if (outcome.value->cut->records != m_records)
                return dropRecords(pick, then); // another list took its place meanwhile
            disposeInBackground(
                publish(Field::records, m_records, std::move(outcome.value->remaining)));
            then(outcome.value->cut);
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
            const auto held = *moved.items;
            addToQuarantine(std::move(*moved.items));
            dropCandidates(from, moved.picked,
                [this, held, finished](const std::shared_ptr<const CandidateCut>& cut) {
                    recordEvent(
                        "Items quarantined", std::to_string(held.size()) + " items moved safely");
                    offerUndo({.action = ActionKind::safeArea,
                        .count = static_cast<std::int64_t>(held.size()),
                        .held = held,
                        .relist =
                            [this, cut](const Missing& missing, Relisted then) {
                                cut ? relistCandidates(cut, missing, std::move(then)) : then(false);
                            },
                        .isOfStorageScan = true});
                    report(finished, {});
                });
        });
}

void AppModel::dropCandidates(std::shared_ptr<const CandidateList> from,
    std::shared_ptr<const std::vector<std::uint32_t>> positions, CandidatesCut then)
{
    struct Cut {
        std::shared_ptr<const CandidateCut> cut;
        std::shared_ptr<const CandidateList> remaining;
    };
    auto cut = [from, positions, current = m_cleanupCandidates] {
        auto gone = std::make_shared<const CandidateCut>(CandidateCut{
            .candidates = current, .positions = positionsIn(*current, *from, *positions)});
        auto remaining = gone->positions.empty() ? current : current->without(gone->positions);
        return Cut{.cut = std::move(gone), .remaining = std::move(remaining)};
    };
    runInBackground(m_quarantineQueue, this, std::move(cut),
        [this, from, positions, then = std::move(then)](Outcome<Cut> outcome) {
            if (!outcome.value)
                return then(nullptr);
            if (outcome.value->cut->candidates != m_cleanupCandidates)
                return dropCandidates(from, positions, then);
            disposeInBackground(publish(Field::cleanupCandidates, m_cleanupCandidates,
                std::move(outcome.value->remaining)));
            auto selection = m_selectedCleanupIDs;
            for (const auto position : *positions)
                selection.erase(from->id(position));
            publish(Field::selectedCleanupIDs, m_selectedCleanupIDs, std::move(selection));
            then(outcome.value->cut);
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
