#include "platform/linux/removal/tree_copy.h"

#include "platform/linux/removal/file_copy.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/retry.h"
#include "platform/linux/removal/tree_cursor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// Up to so many entries are waited for one by one, more of them all at once.
constexpr std::size_t singlyWritten = 16;
/// Files from this size on start on their way to the disk while the next ones are read.
constexpr std::int64_t earlyWrittenBytes = 256 * 1024;

/// File systems on which syncfs(2) waits for everything and tells what could not be written; on
/// others, such as those served by another program, it may do nothing.
bool writesOutAsAWhole(int folder)
{
    constexpr std::array<long, 6> known{EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,
        F2FS_SUPER_MAGIC, TMPFS_MAGIC, OVERLAYFS_SUPER_MAGIC};
    struct statfs volume { };
    return ::fstatfs(folder, &volume) == 0
        && std::ranges::find(known, static_cast<long>(volume.f_type)) != known.end();
}

class TreeCopier {
public:
    explicit TreeCopier(const TreeCopyJob& job)
        : m_job(job)
        , m_survey(job.survey)
        , m_writesSingly(
              job.survey.entries().size() <= singlyWritten || !writesOutAsAWhole(job.targetFolder))
        , m_copier([this](std::int64_t bytes) { return advance(bytes); })
    {
    }

    Result<Done, TreeFailure> run()
    {
        const auto& top = m_survey.entries().front();
        m_failedName = m_job.sourceName;
        int error = top.status.isFolder() ? copyTopFolder() : copyTopEntry(top);
        if (error == 0)
            error = waitForFiles();
        if (error == 0 && !m_writesSingly
            && retrying([this] { return ::syncfs(m_job.targetFolder); }) != 0)
            error = errno;
        if (error != 0)
            return TreeFailure{error, m_failedName};
        return Done{};
    }

private:
    using Entry = TreeSurvey::Entry;
    using Folder = TreeSurvey::Folder;

    bool advance(std::int64_t bytes)
    {
        m_copiedBytes += bytes;
        if (m_job.options.progress)
            m_job.options.progress(m_copiedBytes, m_survey.contentBytes());
        return !m_job.options.stop.stop_requested();
    }

    int copyTopEntry(const Entry& top)
    {
        const auto* target = m_job.targetName.c_str();
        if (const int error = copyEntry(
                m_job.sourceFolder, m_job.sourceName.c_str(), m_job.targetFolder, target, top))
            return error;
        if (top.status.isFile()) // Welcome, not required; waited for with the rest.
            setMarks(m_job.targetFolder, target, m_job.marks);
        return 0;
    }

    int copyTopFolder()
    {
        const auto& top = m_survey.entries().front();
        const auto* name = m_job.targetName.c_str();
        auto source = openFolderIn(m_job.sourceFolder, m_job.sourceName.c_str());
        if (!source)
            return source.error();
        if (retrying([&] { return ::mkdirat(m_job.targetFolder, name, 0700); }) != 0)
            return errno;
        auto target = openFolderIn(m_job.targetFolder, name);
        if (!target)
            return target.error();
        const auto targetStatus = statusOf(target->get(), "");
        auto sourceAgain = openFolderIn(m_job.sourceFolder, m_job.sourceName.c_str());
        auto targetAgain = openFolderIn(m_job.targetFolder, name);
        if (!targetStatus || !sourceAgain || !targetAgain)
            return !targetStatus ? targetStatus.error()
                : !sourceAgain   ? sourceAgain.error()
                                 : targetAgain.error();

        m_sourceIdentities = folderIdentities(m_survey);
        m_targetIdentities.resize(m_survey.folders().size());
        m_targetIdentities[0] = targetStatus->identity;
        if (const auto status = statusOf(source->get(), "");
            !status || status->identity != m_sourceIdentities[0])
            return ESTALE;

        TreeCursor sourceCursor(m_survey, m_sourceIdentities, std::move(*sourceAgain));
        TreeCursor targetCursor(m_survey, m_targetIdentities, std::move(*targetAgain));
        auto linkTop = openFolderIn(m_job.targetFolder, name);
        if (!linkTop)
            return linkTop.error();
        TreeCursor linkCursor(m_survey, m_targetIdentities, std::move(*linkTop));
        m_linkCursor = &linkCursor;

        const auto folders = static_cast<std::uint32_t>(m_survey.folders().size());
        for (std::uint32_t number = 0; number < folders; ++number) {
            if (const int error = fillFolder(sourceCursor, targetCursor, number))
                return error;
        }
        for (auto number = folders; number-- > 0;) {
            if (const int error = finishFoldersIn(sourceCursor, targetCursor, number))
                return error;
        }
        m_failedName = m_job.sourceName;
        if (const int error = finishFolder(source->get(), target->get(), top.status))
            return error;
        setMarks(m_job.targetFolder, name, m_job.marks);
        return waitForDisk(target->get());
    }

    /// Copies what lies in one folder; the folders in it are made, and stay empty for now.
    int fillFolder(TreeCursor& sourceCursor, TreeCursor& targetCursor, std::uint32_t number)
    {
        const auto& folder = m_survey.folders()[number];
        if (folder.count == 0)
            return 0;
        m_failedName = m_survey.name(m_survey.entries()[folder.entry]);
        const int source = sourceCursor.go(number);
        const int target = source < 0 ? -1 : targetCursor.go(number);
        if (target < 0)
            return errno;
        for (const auto& entry : m_survey.entriesOf(folder)) {
            if (m_job.options.stop.stop_requested())
                return ECANCELED;
            const auto* name = m_survey.name(entry);
            m_failedName = name;
            int error = 0;
            if (entry.status.isFolder())
                error = makeFolder(target, name, entry);
            else
                error = copyEntry(source, name, target, name, entry);
            if (error != 0)
                return error;
        }
        return 0;
    }

    int makeFolder(int target, const char* name, const Entry& entry)
    {
        if (retrying([&] { return ::mkdirat(target, name, 0700); }) != 0)
            return errno;
        const auto made = statusOf(target, name);
        if (!made)
            return made.error();
        m_targetIdentities[entry.folder] = made->identity;
        return 0;
    }

    /// Gives the folders that lie in one folder what the originals have. Theirs were done before,
    /// so nobody needs to go there again, whatever their permissions are now.
    int finishFoldersIn(TreeCursor& sourceCursor, TreeCursor& targetCursor, std::uint32_t number)
    {
        const auto& folder = m_survey.folders()[number];
        const auto isFolder = [](const Entry& entry) { return entry.status.isFolder(); };
        if (std::ranges::none_of(m_survey.entriesOf(folder), isFolder))
            return 0;
        const int source = sourceCursor.go(number);
        const int target = source < 0 ? -1 : targetCursor.go(number);
        if (target < 0)
            return errno;
        for (const auto& entry : m_survey.entriesOf(folder)) {
            if (!entry.status.isFolder())
                continue;
            m_failedName = m_survey.name(entry);
            const auto original = openFolderIn(source, m_survey.name(entry));
            const auto copy = openFolderIn(target, m_survey.name(entry));
            if (!original || !copy)
                return original ? copy.error() : original.error();
            if (const int error = finishFolder(original->get(), copy->get(), entry.status))
                return error;
        }
        return 0;
    }

    int finishFolder(int source, int target, const EntryStatus& original)
    {
        const auto now = statusOf(source, "");
        if (!now || now->identity != original.identity)
            return ESTALE;
        if (const int error = copyMetadata(source, target, original, m_job.options.unmarkPrefix))
            return error;
        return m_writesSingly ? waitForDisk(target) : 0;
    }

    int copyEntry(
        int source, const char* sourceName, int target, const char* targetName, const Entry& entry)
    {
        const auto& status = entry.status;
        if (!status.isFolder() && status.links > 1) {
            const auto [first, isNew] = m_firstNames.try_emplace(status.identity, &entry);
            if (!isNew)
                return linkToFirst(*first->second, target, targetName);
        }
        if (status.isFile())
            return copyFile(source, sourceName, target, targetName, status);
        int error = 0;
        if (status.isLink())
            error = copyLink(source, sourceName, target, targetName);
        else if (retrying([&] {
                     return ::mknodat(
                         target, targetName, (status.mode & S_IFMT) | 0600, status.deviceNumber);
                 })
            != 0)
            error = errno;
        return error != 0 ? error
                          : copyMetadataOfSpecial(source, sourceName, target, targetName, status);
    }

    /// A further name of a file that was copied already.
    int linkToFirst(const Entry& first, int target, const char* targetName)
    {
        const int folder = m_linkCursor->go(first.parent);
        if (folder < 0)
            return errno;
        const auto link
            = [&] { return ::linkat(folder, m_survey.name(first), target, targetName, 0); };
        return retrying(link) == 0 ? 0 : errno;
    }

    FileDescriptor openSource(int folder, const char* name)
    {
        constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        if (m_leavesAccessTimes) {
            FileDescriptor opened(
                retrying([&] { return ::openat(folder, name, flags | O_NOATIME); }));
            if (opened || errno != EPERM)
                return opened;
            m_leavesAccessTimes = false; // Only owners may ask for that.
        }
        return FileDescriptor(retrying([&] { return ::openat(folder, name, flags); }));
    }

    int copyFile(int sourceFolder, const char* sourceName, int targetFolder, const char* targetName,
        const EntryStatus& status)
    {
        const auto source = openSource(sourceFolder, sourceName);
        if (!source)
            return errno;
        const auto opened = statusOf(source.get(), "");
        if (!opened || !isUntouched(status, *opened))
            return ESTALE;
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        FileDescriptor target(
            retrying([&] { return ::openat(targetFolder, targetName, flags, 0600); }));
        if (!target)
            return errno;
        if (const int error = m_copier.copy(source.get(), target.get(), status))
            return error;
        // All are looked at again in the end. Of a large one it is worth knowing sooner.
        if (status.size >= earlyWrittenBytes) {
            const auto after = statusOf(source.get(), "");
            if (!after || !isUntouched(status, *after))
                return ESTALE;
        }
        if (const int error
            = copyMetadata(source.get(), target.get(), status, m_job.options.unmarkPrefix))
            return error;
        if (status.size >= earlyWrittenBytes)
            ::sync_file_range(target.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
        if (m_writesSingly)
            m_unwritten.push_back(std::move(target));
        return m_unwritten.size() < singlyWritten ? 0 : waitForFiles();
    }

    /// Waits for the files that were copied last: the disk had time for them meanwhile.
    int waitForFiles()
    {
        for (const auto& file : std::exchange(m_unwritten, {})) {
            if (const int error = waitForDisk(file.get()))
                return error;
        }
        return 0;
    }

    static int copyLink(int source, const char* sourceName, int target, const char* targetName)
    {
        const auto text = linkText(source, sourceName);
        if (!text)
            return errno;
        const auto link = [&] { return ::symlinkat(text->c_str(), target, targetName); };
        return retrying(link) == 0 ? 0 : errno;
    }

    const TreeCopyJob& m_job;
    const TreeSurvey& m_survey;
    bool m_writesSingly;
    bool m_leavesAccessTimes = true;
    std::vector<FileDescriptor> m_unwritten; ///< copies, still open, to be waited for
    ContentCopier m_copier;
    std::int64_t m_copiedBytes = 0;
    std::vector<Identity> m_sourceIdentities;
    std::vector<Identity> m_targetIdentities;
    std::map<Identity, const Entry*> m_firstNames; ///< of files with several names
    TreeCursor* m_linkCursor = nullptr;
    std::string m_failedName;
};

} // namespace

Result<Done, TreeFailure> copyTree(const TreeCopyJob& job)
{
    return TreeCopier(job).run();
}

int waitForDisk(int descriptor)
{
    if (retrying([&] { return ::fsync(descriptor); }) == 0)
        return 0;
    return errno == EINVAL || errno == ENOTSUP || errno == ENOSYS ? 0 : errno;
}

} // namespace kestavon
