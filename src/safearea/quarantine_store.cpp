#include "safearea/quarantine_store.h"

#include "core/domain/removal_guard.h"
#include "platform/put_back.h"
#include "safearea/held_name.h"

#include <algorithm>
#include <charconv>
#include <set>
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

/// The identifier under which the item is held; its own for one with a name of another kind.
Uuid heldIdOf(const QuarantineItem& item)
{
    return idOfHeldName(lastComponent(item.quarantinedPath)).value_or(item.id);
}

} // namespace

QuarantineStore::QuarantineStore(const HostLayout& layout, QuarantineTools tools)
    : m_root(layout.applicationSupport + "/Kestavon/Quarantine")
    , m_home(layout.home)
    , m_tools(std::move(tools))
    , m_notes(layout.applicationSupport + "/Kestavon/Origins", m_tools.places)
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
    m_longestName = m_tools.places->longestNameIn(m_root);

    std::vector<QuarantineItem> held;
    for (std::size_t position = 0; position < candidates.size(); ++position) {
        if (options.stop.stop_requested())
            break;
        if (options.begins)
            options.begins(position);
        if (auto item = hold(candidates[position], options))
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
    item.quarantinedPath = m_root + '/' + heldName(item.id, lastComponent(path), m_longestName);
    item.reason = candidate.reason;
    item.date = m_tools.clock->now();
    MoveOptions move;
    move.marks = {{originMark, path}, {dateMark, textOf(item.date)}, {reasonMark, item.reason}};
    bool isNoted = false;
    move.whenUnmarkable = [&] {
        m_notes.write(item.id, move.marks);
        isNoted = true;
    };
    move.noLinksBelow = options.noLinksBelow;
    move.refusesFolders = !candidate.record.isDirectory;
    move.stop = options.stop;
    move.progress = options.progress;
    if (m_tools.trash)
        m_tools.trash->keepRecordOf(path);
    if (!m_tools.mover->move(path, item.quarantinedPath, move)) {
        if (isNoted)
            m_notes.remove(item.id);
        return std::nullopt;
    }
    return item;
}

FileResult<Done> QuarantineStore::restore(const QuarantineItem& item, const RestoreOptions& options)
{
    clearUnfinishedMoves();
    MoveOptions move;
    move.stop = options.stop;
    move.progress = options.progress;
    // With a note, marks on it are those of another name of the same file.
    const bool isNoted = !m_notes.read(heldIdOf(item)).empty();
    if (!isNoted)
        move.unmarkPrefix = markPrefix;
    auto restored
        = putBack(item.quarantinedPath, item.originalPath, *m_tools.mover, *m_tools.places, move);
    if (restored && isNoted)
        forget(item);
    return restored;
}

void QuarantineStore::forget(const QuarantineItem& item)
{
    m_notes.remove(heldIdOf(item));
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
        auto marks = m_notes.read(*id);
        if (marks.empty())
            marks = m_tools.places->marksOf(item.quarantinedPath, markPrefix);
        for (auto& mark : marks) {
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
    if (m_hasCleared)
        return;
    m_hasCleared = true;
    m_tools.mover->clearUnfinishedMoves(m_root);
    dropNotesOfWhatLeft();
}

/// Items may have left while the program was not there to forget them.
void QuarantineStore::dropNotesOfWhatLeft()
{
    // A note is written before its item comes: another start of the program may be at it.
    constexpr auto mayBeUnderWay = std::chrono::hours(24);
    const auto noted = m_notes.noted();
    std::set<Uuid> held;
    for (const auto& name : m_tools.places->namesIn(m_root)) {
        if (const auto id = idOfHeldName(name))
            held.insert(*id);
    }
    if (held.empty()) // The disk that holds them may just not be there.
        return;
    for (const auto& id : noted) {
        const auto marks = m_notes.read(id);
        const auto date = std::ranges::find(marks, dateMark, &FileMark::name);
        const bool isOld = date == marks.end()
            || std::chrono::abs(m_tools.clock->now() - momentOf(date->value)) > mayBeUnderWay;
        if (isOld && !held.contains(id))
            m_notes.remove(id);
    }
}

} // namespace kestavon
