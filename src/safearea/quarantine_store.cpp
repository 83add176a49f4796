#include "safearea/quarantine_store.h"

#include "core/domain/removal_guard.h"
#include "platform/put_back.h"
#include "safearea/held_name.h"

#include <algorithm>
#include <charconv>
#include <tuple>

namespace kestavon {

namespace {

constexpr unsigned privateFolder = 0700;

const std::string markPrefix = "user.kestavon.";
const std::string originMark = markPrefix + "original-path";
const std::string reasonMark = markPrefix + "reason";
const std::string dateMark = markPrefix + "date"; ///< nanoseconds since 1970, decimal

std::string textOf(Timestamp moment)
{
    return std::to_string(moment.time_since_epoch().count());
}

Timestamp momentOf(const std::string& text)
{
    std::int64_t nanoseconds = 0;
    std::from_chars(text.data(), text.data() + text.size(), nanoseconds);
    return Timestamp(std::chrono::nanoseconds(nanoseconds));
}

} // namespace

QuarantineStore::QuarantineStore(const HostLayout& layout, QuarantineTools tools)
    : m_root(layout.applicationSupport + "/Kestavon/Quarantine")
    , m_home(layout.home)
    , m_tools(std::move(tools))
{
}

FileResult<std::vector<QuarantineItem>> QuarantineStore::quarantine(
    std::span<const CleanupCandidate> candidates, const QuarantineOptions& options)
{
    // A home that is not there is not made up, and "/" is nobody's home.
    const bool lacksHome = isAtOrBelow(m_root, m_home) && !m_tools.places->kindOf(m_home);
    if (m_home == "/" || lacksHome)
        return folderError(FileError::Kind::noSuchFile, lastComponent(m_home));
    if (auto folder = m_tools.places->makeFolder(m_root, privateFolder); !folder)
        return folder.error();
    clearUnfinishedMoves();

    std::vector<QuarantineItem> held;
    for (const auto& candidate : candidates) {
        if (options.stop.stop_requested())
            break;
        if (auto item = hold(candidate, options))
            held.push_back(std::move(*item));
    }
    return held;
}

std::optional<QuarantineItem> QuarantineStore::hold(
    const CleanupCandidate& candidate, const QuarantineOptions& options)
{
    const auto& path = candidate.record.path;
    if (!m_tools.protectedPlaces->mayRemove(path))
        return std::nullopt;
    if (!m_tools.places->kindOf(path))
        return std::nullopt;

    QuarantineItem item;
    item.id = Uuid::random();
    item.originalPath = path;
    item.quarantinedPath = m_root + '/' + heldName(item.id, lastComponent(path));
    item.reason = candidate.reason;
    item.date = m_tools.clock->now();
    MoveOptions move;
    move.marks = {{originMark, path}, {dateMark, textOf(item.date)}, {reasonMark, item.reason}};
    move.noLinksBelow = options.noLinksBelow;
    move.refusesFolders = !candidate.record.isDirectory;
    move.stop = options.stop;
    move.progress = options.progress;
    if (!m_tools.mover->move(path, item.quarantinedPath, move))
        return std::nullopt;
    return item;
}

FileResult<Done> QuarantineStore::restore(const QuarantineItem& item)
{
    clearUnfinishedMoves();
    MoveOptions move;
    move.unmarkPrefix = markPrefix;
    return putBack(item.quarantinedPath, item.originalPath, *m_tools.mover, *m_tools.places, move);
}

std::vector<QuarantineItem> QuarantineStore::heldItems()
{
    clearUnfinishedMoves();
    std::vector<QuarantineItem> items;
    for (const auto& name : m_tools.places->namesIn(m_root)) {
        const auto id = idOfHeldName(name);
        if (!id)
            continue;
        QuarantineItem item;
        item.id = *id;
        item.quarantinedPath = m_root + '/' + name;
        for (auto& mark : m_tools.places->marksOf(item.quarantinedPath, markPrefix)) {
            if (mark.name == originMark && mark.value.starts_with('/'))
                item.originalPath = std::move(mark.value);
            else if (mark.name == reasonMark)
                item.reason = std::move(mark.value);
            else if (mark.name == dateMark)
                item.date = momentOf(mark.value);
        }
        items.push_back(std::move(item));
    }
    std::ranges::sort(items, [](const QuarantineItem& a, const QuarantineItem& b) {
        return std::tie(a.date, a.quarantinedPath) < std::tie(b.date, b.quarantinedPath);
    });
    return items;
}

void QuarantineStore::clearUnfinishedMoves()
{
    if (m_hasCleared || m_tools.places->kindOf(m_root) == std::nullopt)
        return;
    m_hasCleared = true;
    m_tools.mover->clearUnfinishedMoves(m_root);
}

} // namespace kestavon
