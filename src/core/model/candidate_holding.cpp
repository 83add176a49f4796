#include "core/model/candidate_holding.h"

#include <utility>

namespace kestavon {

Holding holdCandidates(QuarantineStore& store, std::span<const CleanupCandidate> candidates,
    const std::string& walkedFolder, const std::shared_ptr<WorkMeter>& work)
{
    work->begin(candidates.size());
    const auto watch = watchOf(work);
    std::size_t begun = 0;
    auto items = store.quarantine(candidates,
        {.noLinksBelow = walkedFolder,
            .stop = watch.stop,
            .begins =
                [&](std::size_t position) {
                    begun = position + 1;
                    watch.begins(candidates[position].record.path);
                },
            .progress = watch.copied});
    if (!work->isStopped() || !items || begun == 0)
        return {.items = std::move(items), .tried = work->isStopped() ? 0 : candidates.size()};
    const bool isLastHeld
        = !items->empty() && items->back().originalPath == candidates[begun - 1].record.path;
    return {.items = std::move(items), .tried = isLastHeld ? begun : begun - 1};
}

} // namespace kestavon
