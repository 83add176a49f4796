#include "platform/linux/removal/move_across_devices.h"

#include "platform/linux/removal/copy_verification.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/remove_surveyed.h"
#include "platform/linux/removal/remove_tree.h"
#include "platform/linux/removal/rename_item.h"
#include "platform/linux/removal/retry.h"
#include "platform/linux/removal/tree_copy.h"
#include "platform/linux/removal/unfinished_moves.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <time.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// Whether the opened folder is the source or lies below it.
bool liesInside(int folder, const Identity& source)
{
    FileDescriptor above;
    auto status = statusOf(folder, "");
    for (int current = folder; status;) {
        if (status->identity == source)
            return true;
        FileDescriptor next(
            retrying([&] { return ::openat(current, "..", O_PATH | O_DIRECTORY | O_CLOEXEC); }));
        if (!next)
            return false;
        const auto parent = statusOf(next.get(), "");
        if (!parent || parent->identity == status->identity)
            return false; // "/" is its own parent.
        status = parent;
        above = std::move(next);
        current = above.get();
    }
    return false;
}

/// Whether a volume reports less room than the copy needs. One that reports nothing has enough.
bool lacksRoom(int folder, const TreeSurvey& survey)
{
    struct statvfs volume { };
    if (::fstatvfs(folder, &volume) != 0 || volume.f_blocks == 0 || volume.f_frsize == 0)
        return false;
    const auto neededBlocks = static_cast<std::uint64_t>(survey.allocatedBytes()) / volume.f_frsize;
    return neededBlocks > volume.f_bavail;
}

/// Waits until a change of a surveyed file would give it another time of change. Clocks of file
/// systems stand still between two ticks, and a file written again within the tick in which it was
/// looked at would look the same.
void waitUntilChangesShow(const TreeSurvey& survey)
{
    using namespace std::chrono;
    using namespace std::chrono_literals;
    const auto nanosecondsOf = [](const struct timespec& time) {
        return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
    };
    nanoseconds newest{};
    for (const auto& entry : survey.entries()) {
        if (!entry.status.isFolder())
            newest = std::max(newest, nanosecondsOf(entry.status.changed));
    }
    if (newest % 1s == 0ns) // More than a coincidence: a file system that counts by seconds.
        newest += 2s;
    for (int attempt = 0; attempt < 1200; ++attempt) {
        struct timespec now { };
        ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
        const auto left = newest - nanosecondsOf(now);
        if (left < 0ns || left > 3s) // Set by another clock, it will not be reached.
            return;
        std::this_thread::sleep_for(2ms);
    }
}

/// The steps are in the order that keeps the item whole at one place at every moment: survey, copy,
/// write out, look again, put in place, write out, look at the copy, take the source away. Up to
/// the last step everything can be undone.
class MoveAcrossDevices {
public:
    MoveAcrossDevices(const ItemPlace& source, const ItemPlace& target, const MoveOptions& options,
        JournalEntry& journal)
        : m_source(source)
        , m_target(target)
        , m_options(options)
        , m_journal(journal)
    {
    }

    /// 0, or the error number; then the source is as it was.
    int run(MoveReport& report)
    {
        m_targetFolder.reset(retrying([this] {
            return ::openat(m_target.folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        }));
        if (!m_targetFolder)
            return errno;
        if (statusOf(m_targetFolder.get(), m_target.name.c_str()))
            return EEXIST;
        lockForMove(m_targetFolder.get());
        return copyAndExchange(report);
    }

private:
    /// What became of the source.
    enum class Source {
        isGone,
        isWhole, ///< at its place, or where somebody else took it: the copy is not needed
        isPartlyThere, ///< at its place
        isAside, ///< under the other name, or that cannot be told
    };

    int copyAndExchange(MoveReport& report)
    {
        const auto survey = surveyTree(m_source.folder.get(), m_source.name, m_options.stop);
        if (!survey)
            return survey.error().error;
        const auto& top = survey->entries().front().status;
        if (top.isFolder() && m_options.refusesFolders)
            return ESTALE;
        if (top.isFolder() && liesInside(m_targetFolder.get(), top.identity))
            return EINVAL;
        if (::faccessat(m_source.folder.get(), "", W_OK | X_OK, AT_EACCESS | AT_EMPTY_PATH) != 0
            && (errno == EACCES || errno == EROFS))
            return errno;
        if (lacksRoom(m_targetFolder.get(), *survey))
            return ENOSPC;
        waitUntilChangesShow(*survey);
        if (m_options.remembersTarget || !(top.isFolder() || top.isFile()))
            noteMove(top);
        if (const int error = makeCopy(*survey)) {
            removeTree(m_targetFolder.get(), m_names.partialCopy, {});
            return error;
        }
        if (const int error = placeCopy(*survey)) {
            removeCopy();
            return error;
        }
        return takeSourceAway(*survey, report);
    }

    /// Where the source will lie while it is deleted; nothing when it has no path.
    std::optional<RemovedSource> removedSource(const EntryStatus& top) const
    {
        const auto folder = pathOfFolder(m_source.folder.get());
        if (!folder)
            return std::nullopt;
        return RemovedSource{.path = *folder + '/' + m_names.removedSource,
            .formerName = m_source.name,
            .inode = top.identity.inode};
    }

    void noteMove(const EntryStatus& top)
    {
        const auto source = removedSource(top);
        const auto folder = pathOfFolder(m_targetFolder.get());
        m_isNoted = source && folder
            && m_journal.add(NotedMove{.targetFolder = *folder,
                .targetName = m_target.name,
                .partialCopy = m_names.partialCopy,
                .source = *source})
            && m_journal.writeOut();
    }

    int makeCopy(const TreeSurvey& survey)
    {
        const auto& top = survey.entries().front().status;
        auto marks = m_options.marks;
        const auto sourceMark = m_isNoted ? std::nullopt : removedSource(top);
        if (sourceMark)
            marks.push_back({.name = std::string(removedSourceMark), .value = sourceMark->text()});
        const auto copied = copyTree({.survey = survey,
            .sourceFolder = m_source.folder.get(),
            .sourceName = m_source.name,
            .targetFolder = m_targetFolder.get(),
            .targetName = m_names.partialCopy,
            .marks = marks,
            .options = m_options});
        if (!copied) {
            switch (const int error = copied.error().error) {
            case ENOENT:
                return ESTALE; // An entry that was surveyed is no longer there.
            // Names that differ in case only are one name there: no other name for the whole helps.
            case EEXIST: return EIO;
            default: return error;
            }
        }
        const auto checked
            = checkUnchanged(survey, m_source.folder.get(), m_source.name, m_options.stop);
        if (!checked)
            return checked.error().error;
        const auto copy = statusOf(m_targetFolder.get(), m_names.partialCopy.c_str());
        if (!copy)
            return copy.error();
        m_copy = copy->identity;
        const auto isOnCopy = [this](const FileMark& mark) {
            return readMark(m_targetFolder.get(), m_names.partialCopy.c_str(), mark.name)
                == mark.value;
        };
        if (m_options.whenUnmarkable && !std::ranges::all_of(m_options.marks, isOnCopy))
            m_options.whenUnmarkable();
        if (sourceMark && !isOnCopy(marks.back()))
            noteMove(top);
        return 0;
    }

    /// Looked at under the name that it keeps, because somebody may clear away what has another.
    int placeCopy(const TreeSurvey& survey)
    {
        const int folder = m_targetFolder.get();
        int error = renameWithoutReplacing(
            folder, m_names.partialCopy.c_str(), folder, m_target.name.c_str());
        if (error == 0)
            error = waitForDisk(folder);
        if (error == 0)
            error = verifyCopy(survey, folder, m_target.name, m_options.stop);
        return error;
    }

    int takeSourceAway(const TreeSurvey& survey, MoveReport& report)
    {
        lockSourceFolder();
        int error = 0;
        const auto source = removeSource(survey, error);
        if (source == Source::isWhole) {
            removeCopy();
            return error;
        }
        report.remainsAtSource = source != Source::isGone;
        if (source != Source::isAside)
            unmarkCopy();
        else if (m_isNoted) // What lies aside is for the next start to try again.
            m_journal.leave();
        return 0;
    }

    void unmarkCopy()
    {
        const auto* name = m_target.name.c_str();
        const auto copy = statusOf(m_targetFolder.get(), name);
        if (m_isNoted || !copy)
            return;
        if (copy->owner == ::geteuid() && copy->owner != 0 && (copy->mode & S_IWUSR) == 0)
            noteLoan(m_journal, m_targetFolder.get(), m_target.name, *copy,
                copy->permissions() | S_IWUSR);
        removeMarks(m_targetFolder.get(), name, std::string(removedSourceMark));
    }

    /// The source leaves its place in one step, under another name beside it, so that it is never
    /// seen half deleted; and only what then still is as it was copied gets deleted. `error` says
    /// why it is whole.
    Source removeSource(const TreeSurvey& survey, int& error)
    {
        const int folder = m_source.folder.get();
        const auto& aside = m_names.removedSource;
        error = renameWithoutReplacing(folder, m_source.name.c_str(), folder, aside.c_str());
        const auto& top = survey.entries().front().status;
        if (error == EXDEV && top.isFolder())
            return removeInPlace(survey, error);
        const auto now = statusOf(folder, aside.c_str());
        if (!now && error != 0 && now.error() == ENOENT) {
            // What is not seen there may have been taken by who holds it for a remnant of a move
            // that has made its copy: then that is the only one.
            const auto left = statusOf(folder, m_source.name.c_str());
            return left && left->identity == top.identity ? Source::isWhole : Source::isAside;
        }
        if (!now)
            return Source::isAside;
        // Being renamed counts as a change of the item itself, so its time of change says nothing.
        const bool isSame = now->identity == top.identity && now->size == top.size
            && now->mode == top.mode && now->modified.tv_sec == top.modified.tv_sec
            && now->modified.tv_nsec == top.modified.tv_nsec;
        error = ESTALE;
        if (!isSame)
            return putBack(now->identity) ? Source::isWhole : Source::isAside;
        const auto removal = removeSurveyed(survey, folder, aside, m_journal);
        if (removal.isGone)
            return Source::isGone;
        if (removal.error != 0)
            error = removal.error;
        // What is new there belongs to whoever made it.
        if ((removal.removedSomething && !removal.keptSomething) || !putBack(top.identity))
            return Source::isAside;
        return isUndamaged(survey, removal) ? Source::isWhole : Source::isPartlyThere;
    }

    /// A folder that its file system cannot rename, as one of a lower layer, is deleted where it
    /// lies.
    Source removeInPlace(const TreeSurvey& survey, int& error)
    {
        const auto removal
            = removeSurveyed(survey, m_source.folder.get(), m_source.name, m_journal);
        if (removal.isGone)
            return Source::isGone;
        error = removal.error != 0 ? removal.error : ESTALE;
        return isUndamaged(survey, removal) ? Source::isWhole : Source::isPartlyThere;
    }

    /// Whether all that was surveyed still lies at the source's place. Looked at, because a disk
    /// may refuse in words what it has done.
    bool isUndamaged(const TreeSurvey& survey, const SurveyedRemoval& removal) const
    {
        return !removal.removedSomething
            && holdsAllOf(survey, m_source.folder.get(), m_source.name);
    }

    bool putBack(const Identity& item)
    {
        const int folder = m_source.folder.get();
        for (int attempt = 0; attempt < 3; ++attempt) {
            const int error = renameWithoutReplacing(
                folder, m_names.removedSource.c_str(), folder, m_source.name.c_str());
            if (error == EEXIST)
                return false;
            const auto back = statusOf(folder, m_source.name.c_str());
            if (back && back->identity == item)
                return true;
        }
        return false;
    }

    /// Keeps a program that starts just now from taking the source under its other name for what a
    /// crash left.
    void lockSourceFolder()
    {
        m_sourceFolder.reset(retrying([this] {
            return ::openat(m_source.folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        }));
        if (m_sourceFolder)
            lockForMove(m_sourceFolder.get());
    }

    /// Deletes the copy at its place or still under its own name, and nothing else.
    void removeCopy()
    {
        const int folder = m_targetFolder.get();
        const auto placed = statusOf(folder, m_target.name.c_str());
        if (!placed || placed->identity != m_copy) {
            removeTree(folder, m_names.partialCopy, {});
            return;
        }
        // Under its own name again, a crash in the middle of this is cleared away later.
        const int error = renameWithoutReplacing(
            folder, m_target.name.c_str(), folder, m_names.partialCopy.c_str());
        removeTree(folder, error == 0 ? m_names.partialCopy : m_target.name, {});
    }

    const ItemPlace& m_source;
    const ItemPlace& m_target;
    MoveOptions m_options;
    MoveNames m_names = MoveNames::random();
    FileDescriptor m_targetFolder;
    FileDescriptor m_sourceFolder;
    Identity m_copy;
    JournalEntry& m_journal;
    bool m_isNoted = false; ///< the journal tells of the move, and no mark on the copy
};

} // namespace

int moveAcrossDevices(const ItemPlace& source, const ItemPlace& target, const MoveOptions& options,
    MoveReport& report, JournalEntry& journal)
{
    return MoveAcrossDevices(source, target, options, journal).run(report);
}

} // namespace kestavon
