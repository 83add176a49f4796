#include "core/model/app_model.h"
#include "core/model/background.h"
#include "platform/put_back.h"

#include <algorithm>
#include <utility>

namespace kestavon {

namespace {

using PathSet = std::unordered_set<std::string>;

/// What came back from the Trash, and what did not.
struct Return {
    RemovalTally tally;
    std::int64_t failed = 0;
    std::int64_t left = 0; ///< when it was stopped
    std::string error; ///< the first
    PathSet missing;

    void leave(const TrashedItem& item)
    {
        left += item.tally.count;
        missing.insert(item.originalPath);
    }
};

Return returnFromTrash(
    const Platform& platform, const std::vector<TrashedItem>& items, const WorkWatch& watch)
{
    Return result;
    MoveOptions options;
    options.stop = watch.stop;
    options.progress = watch.copied;
    for (const auto& item : items) {
        if (watch.stop.stop_requested()) {
            result.leave(item);
            continue;
        }
        watch.begins(item.originalPath);
        const auto back = putBack(
            item.trashedPath, item.originalPath, *platform.mover, *platform.places, options);
        if (back) {
            platform.trash->forgetItem(item.trashedPath);
            result.tally += item.tally;
            continue;
        }
        if (back.error().kind == FileError::Kind::cancelled) {
            result.leave(item);
            continue;
        }
        result.missing.insert(item.originalPath);
        result.failed += item.tally.count;
        if (result.error.empty())
            result.error = back.error().message;
    }
    return result;
}

} // namespace

bool AppModel::isBack(const std::string& path, const PathSet& missing, const FilePlaces& places)
{
    for (auto end = missing.empty() ? 0 : path.size(); end != 0 && end != std::string::npos;
         end = path.rfind('/', end - 1)) {
        if (missing.contains(path.substr(0, end)))
            return false;
    }
    return places.kindOf(path).has_value();
}

void AppModel::offerUndo(UndoableMove move)
{
    if (move.count == 0) // nothing has moved, and what did before can still be taken back
        return disposeInBackground(std::move(move));
    if (move.action == ActionKind::permanent) // That cannot; what moved before still can.
        return disposeInBackground(std::move(move));
    const UndoOffer offer{.action = move.action, .count = move.count};
    disposeInBackground(std::exchange(m_undoableMove, std::move(move)));
    publish<std::optional<UndoOffer>>(Field::undoOffer, m_undoOffer, offer);
}

void AppModel::offerUndoOfRecords(ActionKind action, const RemovalReport& removed,
    const std::shared_ptr<const RecordPick>& cut, Describe describe)
{
    UndoableMove move{.action = action,
        .count = removed.tally.count,
        .describe = std::move(describe),
        .isOfStorageScan = true};
    if (action == ActionKind::trash) {
        move.trashed = removed.trashed;
        move.relist = [this, cut](const Missing& missing, Relisted then) {
            cut ? relistRecords(cut, missing, std::move(then)) : then(false);
        };
    }
    offerUndo(std::move(move));
}

void AppModel::withdrawUndo()
{
    disposeInBackground(std::exchange(m_undoableMove, {}));
    if (m_undoOffer)
        publish(Field::undoOffer, m_undoOffer, {});
}

void AppModel::narrowUndo(const std::vector<QuarantineItem>& deleted)
{
    if (!m_undoOffer || m_undoOffer->action != ActionKind::safeArea)
        return;
    std::unordered_set<Uuid> ids;
    for (const auto& item : deleted)
        ids.insert(item.id);
    const auto narrowed = std::erase_if(
        m_undoableMove.held, [&ids](const QuarantineItem& item) { return ids.contains(item.id); });
    if (narrowed == 0)
        return;
    if (m_undoableMove.held.empty())
        return withdrawUndo();
    m_undoableMove.count = static_cast<std::int64_t>(m_undoableMove.held.size());
    publish<std::optional<UndoOffer>>(Field::undoOffer, m_undoOffer,
        UndoOffer{.action = ActionKind::safeArea, .count = m_undoableMove.count});
}

void AppModel::undoLastMove(Undone finished)
{
    if (!m_undoOffer)
        return;
    const auto move = std::make_shared<const UndoableMove>(std::exchange(m_undoableMove, {}));
    withdrawUndo();
    // The list comes last: only what lies at its place by then is listed.
    auto relist
        = [this, move, finished = std::move(finished)](UndoReport report, const PathSet& missing) {
              auto listedAgain = [this, finished, report = std::move(report)](bool listed) mutable {
                  report.listed = listed;
                  refreshDiskSpace();
                  if (finished)
                      finished(report);
              };
              move->relist(std::make_shared<const PathSet>(missing), std::move(listedAgain));
          };
    if (move->action == ActionKind::safeArea) {
        auto held = std::make_shared<std::vector<QuarantineItem>>();
        std::unordered_set<Uuid> listed;
        for (const auto& item : m_quarantine)
            listed.insert(item.id);
        for (const auto& item : move->held) { // without those that were restored meanwhile
            if (listed.contains(item.id))
                held->push_back(item);
        }
        return restoreHeld({.items = held}, std::move(relist));
    }
    const auto work = m_works.start(FileWork::Deed::restore);
    runInBackground(
        m_removalQueue, this,
        [platform = m_platform, move, work] {
            work->begin(move->trashed.size());
            return returnFromTrash(platform, move->trashed, watchOf(work));
        },
        [this, move, work, relist = std::move(relist)](const Outcome<Return>& outcome) {
            m_works.end(work);
            if (!outcome.value)
                return relist({.failed = move->count, .error = outcome.error}, {});
            const auto& back = *outcome.value;
            if (back.tally.count > 0)
                recordEvent("Move to Trash undone", move->describe(back.tally));
            relist({.restored = back.tally.count,
                       .failed = back.failed,
                       .left = back.left,
                       .error = back.error},
                back.missing);
        });
}

void AppModel::relistRecords(
    const std::shared_ptr<const RecordPick>& cut, const Missing& missing, Relisted then)
{
    struct Lists {
        std::shared_ptr<const RecordList> of;
        std::shared_ptr<const RecordList> joined; ///< null: the list is of another scan
    };
    auto join = [cut, current = m_records, missing, places = m_platform.places] {
        std::vector<std::uint32_t> present;
        for (const auto position : cut->positions) {
            if (isBack(cut->records->path(position), *missing, *places))
                present.push_back(position);
        }
        return Lists{.of = current, .joined = current->joinedWith(*cut->records, present)};
    };
    runInBackground(m_removalQueue, this, std::move(join),
        [this, cut, missing, then = std::move(then)](Outcome<Lists> outcome) {
            if (outcome.value && outcome.value->of != m_records)
                return relistRecords(cut, missing, then); // another list took its place meanwhile
            const bool listed = outcome.value && outcome.value->joined;
            if (listed) {
                disposeInBackground(
                    publish(Field::records, m_records, std::move(outcome.value->joined)));
            }
            then(listed);
        });
}

void AppModel::relistCandidates(
    const std::shared_ptr<const CandidateCut>& cut, const Missing& missing, Relisted then)
{
    struct Lists {
        std::shared_ptr<const CandidateList> of;
        std::shared_ptr<const CandidateList> joined; ///< null: the list is of another scan
        std::vector<Uuid> ids; ///< that came back
    };
    auto join = [cut, current = m_cleanupCandidates, missing, places = m_platform.places] {
        std::vector<std::uint32_t> present;
        std::vector<Uuid> ids;
        for (const auto position : cut->positions) {
            const auto& candidates = *cut->candidates;
            const auto path = candidates.records()->path(candidates.recordPosition(position));
            if (!isBack(path, *missing, *places))
                continue;
            present.push_back(position);
            ids.push_back(candidates.id(position));
        }
        return Lists{.of = current,
            .joined = current->joinedWith(*cut->candidates, present),
            .ids = std::move(ids)};
    };
    runInBackground(m_quarantineQueue, this, std::move(join),
        [this, cut, missing, then = std::move(then)](Outcome<Lists> outcome) {
            if (outcome.value && outcome.value->of != m_cleanupCandidates)
                return relistCandidates(cut, missing, then);
            const bool listed = outcome.value && outcome.value->joined;
            if (listed) {
                disposeInBackground(publish(Field::cleanupCandidates, m_cleanupCandidates,
                    std::move(outcome.value->joined)));
                auto selection = m_selectedCleanupIDs; // ticked as they were
                for (const auto& id : outcome.value->ids)
                    selection.insert(id);
                publish(Field::selectedCleanupIDs, m_selectedCleanupIDs, std::move(selection));
            }
            then(listed);
        });
}

} // namespace kestavon
