#include "core/model/app_model.h"
#include "core/model/background.h"
#include "core/model/duplicate_merge.h"
#include "platform/byte_count.h"

namespace kestavon {

namespace {

std::string copiesText(const RemovalTally& tally)
{
    return std::to_string(tally.count) + " copies · " + fileByteCount(tally.bytes);
}

} // namespace

void AppModel::startDuplicateAnalysis()
{
    cancelDuplicateAnalysis();
    forgetDuplicates();
    publish(Field::duplicateProgress, m_duplicateProgress, {});
    publish(
        Field::duplicatePhase, m_duplicatePhase, ScanPhase::scanning("Computing SHA-256 hashes…"));

    m_duplicateTask.emplace();
    m_analysisWaits = m_merges > 0;
    if (!m_analysisWaits)
        searchForDuplicates();
}

void AppModel::searchForDuplicates()
{
    const auto run = m_duplicateRun;
    const auto isCurrent
        = [run](const AppModel* model) { return model && model->m_duplicateRun == run; };
    const auto postProgress
        = [isCurrent, self = QPointer<AppModel>(this)](const DuplicateProgress& progress) {
              MainQueue::instance().post([isCurrent, self, progress] {
                  // A thread may have been held up with an older figure.
                  if (isCurrent(self) && progress.bytesDone > self->m_duplicateProgress.bytesDone)
                      self->publish(Field::duplicateProgress, self->m_duplicateProgress, progress);
              });
          };

    // What lies in the Trash or the Safe Area is about to go: it must not be the copy that stays.
    auto search = [find = m_findDuplicates, records = m_records, trash = m_platform.trash,
                      safeArea = m_quarantineStore->root(), postProgress,
                      stop = m_duplicateTask->get_token()] {
        DuplicateSearchOptions options{.leaveOut = {safeArea}, .progress = postProgress};
        for (auto& place : trash->trashPlaces())
            (place.isOnVolume ? options.leaveOutUnseen : options.leaveOut)
                .push_back(std::move(place.folder));
        return find(records, options, stop);
    };
    runInBackground(m_duplicateQueue, this, std::move(search),
        [this, isCurrent](Outcome<std::shared_ptr<const DuplicateList>> outcome) {
            if (!isCurrent(this))
                return; // stopped, or overtaken by a newer analysis or scan
            m_duplicateTask.reset();
            ++m_duplicateRun;
            if (!outcome.value) {
                publish(Field::duplicatePhase, m_duplicatePhase,
                    outcome.cancelled() ? ScanPhase::idle() : ScanPhase::failed(outcome.error));
                return;
            }
            const auto count = (*outcome.value)->size();
            publish(Field::duplicates, m_duplicates, std::move(*outcome.value));
            publish(Field::duplicatePhase, m_duplicatePhase, ScanPhase::finished());
            recordEvent(
                "Duplicate analysis complete", std::to_string(count) + " duplicate groups found");
        });
}

void AppModel::stopDuplicateAnalysis()
{
    cancelDuplicateAnalysis();
    publish(Field::duplicatePhase, m_duplicatePhase, ScanPhase::idle());
}

void AppModel::cancelDuplicateAnalysis()
{
    if (m_duplicateTask)
        m_duplicateTask->request_stop();
    m_duplicateTask.reset();
    m_analysisWaits = false;
    ++m_duplicateRun;
}

void AppModel::forgetDuplicates()
{
    disposeInBackground(
        publish(Field::duplicates, m_duplicates, std::make_shared<const DuplicateList>()));
}

void AppModel::mergeDuplicates(bool toTrash, Finished finished)
{
    struct Merged {
        DuplicateMerge::Report report;
        std::shared_ptr<const RecordPick> copies;
    };
    const auto action = toTrash ? ActionKind::trash : ActionKind::permanent;
    const auto work = m_works.start(deedOf(action));
    auto removeCopies = [duplicates = m_duplicates, action, platform = m_platform, work] {
        const DuplicateMerge merge(duplicates);
        work->begin(merge.positions().size());
        Merged merged;
        merged.report = merge.run(platform, action, watchOf(work));
        auto positions
            = work->isStopped() ? merge.positions(merged.report.removed.tried) : merge.positions();
        merged.copies = std::make_shared<const RecordPick>(
            RecordPick{.records = duplicates->records(), .positions = std::move(positions)});
        return merged;
    };
    ++m_merges;
    runInBackground(m_removalQueue, this, std::move(removeCopies),
        [this, from = m_duplicates, action, work, finished = std::move(finished)](
            Outcome<Merged> outcome) {
            m_works.end(work);
            // One that could not even begin has removed nothing; its groups go all the same.
            auto merged
                = std::move(outcome.value)
                      .value_or(Merged{{.removed = {}, .error = outcome.error},
                          std::make_shared<const RecordPick>(RecordPick{from->records(), {}})});
            // Every copy that had its turn leaves the list, what was skipped too.
            dropRecords(merged.copies,
                [this, from, action, finished, report = std::move(merged.report)](
                    const std::shared_ptr<const RecordPick>& cut) {
                    // A scan or an analysis that began meanwhile has put its own list there.
                    if (m_duplicates == from && !m_duplicateTask) {
                        forgetDuplicates();
                        publish(Field::duplicatePhase, m_duplicatePhase, ScanPhase::idle());
                    }
                    refreshDiskSpace();
                    const auto& tally = report.removed.tally;
                    recordEvent("Duplicates merged",
                        std::to_string(tally.count) + " copies "
                            + (action == ActionKind::trash ? "moved to Trash"
                                                           : "permanently deleted")
                            + " · " + fileByteCount(tally.bytes) + " freed");
                    offerUndoOfRecords(action, report.removed, cut, copiesText);
                    // An analysis that was asked for meanwhile waits: it would find what goes.
                    if (--m_merges == 0 && std::exchange(m_analysisWaits, false))
                        searchForDuplicates();
                    AppModel::report(finished, report.error);
                });
        });
}

} // namespace kestavon
