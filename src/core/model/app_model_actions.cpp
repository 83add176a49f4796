#include "core/domain/removal_guard.h"
#include "core/model/app_model.h"
#include "core/model/background.h"
#include "core/model/candidate_holding.h"
#include "core/model/removal_actions.h"
#include "platform/byte_count.h"

#include <algorithm>
#include <iterator>
#include <span>

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

/// The part of a pick that was worked on: `tried` of it, and what lay in the folder that was just
/// being deleted when the work was stopped and is gone.
std::shared_ptr<const RecordPick> triedPart(
    const std::shared_ptr<const RecordPick>& pick, std::size_t tried, const FilePlaces& places)
{
    if (tried >= pick->positions.size())
        return pick;
    auto part = std::make_shared<RecordPick>(*pick);
    part->positions.resize(tried);
    const auto inHand = pick->records->path(pick->positions[tried]);
    for (const auto position : std::span(pick->positions).subspan(tried + 1)) {
        const auto path = pick->records->path(position);
        if (isAtOrBelow(path, inHand) && !places.kindOf(path))
            part->positions.push_back(position);
    }
    return part;
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
    struct Removed {
        RemovalReport report;
        std::shared_ptr<const RecordPick> tried;
    };
    const auto work = m_works.start(deedOf(action));
    auto remove = [picked, action, work, platform = m_platform] {
        work->begin(picked->positions.size());
        std::vector<RemovalRequest> requests;
        requests.reserve(picked->positions.size());
        for (const auto position : picked->positions) {
            requests.push_back({.path = picked->records->path(position),
                .bytes = picked->records->fileSize(position),
                .isDirectory = picked->records->isDirectory(position)});
        }
        const auto& root = picked->records->root();
        Removed removed;
        removed.report
            = workerFor(platform, action, root, watchOf(work)).run(requests, work->stopToken());
        removed.tried = triedPart(picked, removed.report.tried, *platform.places);
        return removed;
    };
    runInBackground(m_removalQueue, this, std::move(remove),
        [this, action, title, work, finished = std::move(finished)](Outcome<Removed> outcome) {
            m_works.end(work);
            if (!outcome.value)
                return report(finished, outcome.error);
            // The whole selection leaves the list, what was skipped too.
            dropRecords(outcome.value->tried,
                [this, action, title, work, finished, removed = std::move(outcome.value->report)](
                    const std::shared_ptr<const RecordPick>& cut) {
                    refreshDiskSpace();
                    tellOfPart(*work);
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

void AppModel::moveRecordsToSafeArea(RecordPick pick, Finished finished)
{
    const auto picked = std::make_shared<const RecordPick>(std::move(pick));
    struct Moved {
        FileResult<std::vector<QuarantineItem>> items;
        std::shared_ptr<const RecordPick> tried;
    };
    const auto work = m_works.start(FileWork::Deed::hold);
    auto move = [store = m_quarantineStore, picked, work, places = m_platform.places] {
        std::vector<CleanupCandidate> candidates;
        candidates.reserve(picked->positions.size());
        for (const auto position : picked->positions) {
            auto record = (*picked->records)[position];
            const auto bytes = record.size;
            candidates.push_back({.id = Uuid::random(),
                .record = std::move(record),
                .reason = "Selected file",
                .estimatedBytes = bytes});
        }
        auto holding = holdCandidates(*store, candidates, picked->records->root(), work);
        return Moved{
            .items = std::move(holding.items), .tried = triedPart(picked, holding.tried, *places)};
    };
    runInBackground(m_quarantineQueue, this, std::move(move),
        [this, work, finished = std::move(finished)](Outcome<Moved> outcome) {
            m_works.end(work);
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& moved = outcome.value->items;
            if (!moved)
                return report(finished, moved.error().message);
            const auto held = *moved;
            addToQuarantine(std::move(*moved));
            dropRecords(outcome.value->tried,
                [this, held, finished](const std::shared_ptr<const RecordPick>& cut) {
                    refreshDiskSpace();
                    recordEvent(
                        "Items quarantined", std::to_string(held.size()) + " items moved safely");
                    offerUndo({.action = ActionKind::safeArea,
                        .count = static_cast<std::int64_t>(held.size()),
                        .held = held,
                        .relist =
                            [this, cut](const Missing& missing, Relisted then) {
                                cut ? relistRecords(cut, missing, std::move(then)) : then(false);
                            },
                        .isOfStorageScan = true});
                    report(finished, {});
                });
        });
}

void AppModel::moveSelectedCleanupToSafeArea(Finished finished)
{
    struct Moved {
        std::shared_ptr<const std::vector<std::uint32_t>> tried;
        FileResult<std::vector<QuarantineItem>> items;
    };
    const auto work = m_works.start(FileWork::Deed::hold);
    auto move = [store = m_quarantineStore, candidates = m_cleanupCandidates,
                    selection = m_selectedCleanupIDs, work] {
        auto picked = std::make_shared<std::vector<std::uint32_t>>();
        std::vector<CleanupCandidate> selected;
        for (std::size_t i = 0; i < candidates->size(); ++i) {
            if (!selection.contains(candidates->id(i)))
                continue;
            picked->push_back(static_cast<std::uint32_t>(i));
            selected.push_back((*candidates)[i]);
        }
        const auto root = candidates->records() ? candidates->records()->root() : std::string();
        auto holding = holdCandidates(*store, selected, root, work);
        picked->resize(holding.tried);
        return Moved{.tried = std::move(picked), .items = std::move(holding.items)};
    };
    runInBackground(m_quarantineQueue, this, std::move(move),
        [this, from = m_cleanupCandidates, work, finished = std::move(finished)](
            Outcome<Moved> outcome) {
            m_works.end(work);
            if (!outcome.value)
                return report(finished, outcome.error);
            auto& moved = *outcome.value;
            if (!moved.items)
                return report(finished, moved.items.error().message);
            const auto held = *moved.items;
            addToQuarantine(std::move(*moved.items));
            dropCandidates(from, moved.tried,
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
