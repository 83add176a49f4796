#include "platform/linux/removal/remove_tree.h"

#include "platform/linux/removal/deed_journal.h"
#include "platform/linux/removal/folder_listing.h"
#include "platform/linux/removal/metadata.h"
#include "platform/linux/removal/retry.h"
#include "platform/linux/removal/tree_cursor.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace kestavon {

namespace {

constexpr std::size_t openFolders = 8; ///< at a time; those above are found again through ".."
constexpr std::size_t deepestFolder = 50'000; ///< a file system without an end
constexpr std::size_t sortedFrom = 1000; ///< entries from which on the order on the disk matters

/// So many folders side by side are worth another thread.
constexpr std::size_t sharedFrom = 16;
constexpr unsigned mostThreads = 4;

/// What the threads that delete one tree have in common.
struct Deletion {
    const RemoveTreeOptions& options;
    EntryStatus top = {};
    std::atomic<std::int64_t> removedEntries = 0;
};

/// Deletes a tree depth first, with a stack of its own. Where many folders lie side by side, the
/// first remover shares them with helpers.
class TreeRemover {
public:
    enum class Role {
        first, ///< may call helpers, tells how far it is
        besideHelpers, ///< on the same thread
        helper,
    };

    TreeRemover(int folder, const std::string& name, Deletion& deletion, Role role)
        : m_base(folder)
        , m_top(name)
        , m_deletion(deletion)
        , m_options(deletion.options)
        , m_role(role)
    {
    }
    /// Folders that stay get their permissions back, whatever ended the work.
    ~TreeRemover() { restorePermissions(); }
    TreeRemover(const TreeRemover&) = delete;
    TreeRemover& operator=(const TreeRemover&) = delete;

    TreeFailure run()
    {
        const auto status = statusOf(m_base, m_top.c_str());
        if (!status)
            return {status.error(), m_top};
        if (status->isMountPoint)
            return {EBUSY, m_top};
        if (status->isFolder() && m_options.refusesFolders)
            return {ESTALE, m_top};
        m_deletion.top = *status;
        if (!status->isFolder()) {
            note(remove(m_base, m_top.c_str()), m_top);
            return m_failure;
        }
        return runInFolder();
    }

    /// The same for what is known to be a folder of the tree.
    TreeFailure runInFolder()
    {
        enter(m_base, m_top.c_str());
        while (!m_steps.empty()) {
            if (m_options.stop.stop_requested()) {
                m_failure = {ECANCELED, m_top};
                break;
            }
            auto& step = m_steps.back();
            if (!std::exchange(step.isShared, true)) {
                shareFolders(step);
                continue; // It may have been stopped.
            }
            if (step.next < step.listing.entries().size())
                removeNext(step);
            else
                leave();
        }
        return m_failure;
    }

private:
    struct Step {
        FileDescriptor descriptor; ///< none for most folders far above
        FolderListing listing;
        std::size_t next = 0;
        std::string name;
        Identity identity;
        mode_t permissions = 0;
        bool isMadeWritable = false;
        bool holdsSomething = false; ///< an entry that stays
        bool isShared = false; ///< helpers were asked to delete the folders in it
    };

    /// 0, or the error number.
    int remove(int folder, const char* name)
    {
        const int error = removeEntry(folder, name, 0);
        if (error == 0)
            countRemoved();
        return error;
    }

    void countRemoved()
    {
        const auto removed = ++m_deletion.removedEntries;
        if (m_role != Role::helper && m_options.progress)
            m_options.progress(removed);
    }

    /// Deletes the folders in one folder on several threads, if there are many. Each goes as it
    /// would on this thread alone.
    void shareFolders(Step& step)
    {
        if (m_role != Role::first)
            return;
        std::vector<const FolderListing::Entry*> folders;
        for (const auto& entry : step.listing.entries()) {
            if (entry.type == DT_DIR)
                folders.push_back(&entry);
        }
        const auto threads = std::min(std::thread::hardware_concurrency(), mostThreads);
        if (folders.size() < sharedFrom || threads < 2)
            return;
        std::atomic<std::size_t> next = 0;
        std::mutex mutex;
        TreeFailure failure; // guarded by mutex
        const auto removeSome = [&](Role role) {
            for (auto i = next++; i < folders.size() && !m_options.stop.stop_requested();
                 i = next++) {
                auto failed = removeFolderIn(step, *folders[i], role);
                const std::lock_guard lock(mutex);
                if (failure.error == 0)
                    failure = std::move(failed);
            }
        };
        runBesideHelpers(threads - 1, removeSome);
        note(failure.error, failure.name);
        step.listing.dropFolders();
    }

    TreeFailure removeFolderIn(const Step& step, const FolderListing::Entry& entry, Role role)
    {
        const int folder = step.descriptor.get();
        try {
            const std::string name(step.listing.name(entry));
            return TreeRemover(folder, name, m_deletion, role).runInFolder();
        } catch (const std::bad_alloc&) { // Nobody above a helper would catch it.
            return {.error = ENOMEM, .name = m_top};
        }
    }

    /// Runs `work` here and, as far as there are threads to be had, on so many more.
    static void runBesideHelpers(unsigned helpers, const std::function<void(Role)>& work)
    {
        std::vector<std::jthread> threads; // waited for at the end, whatever happens
        try {
            for (unsigned i = 0; i < helpers; ++i)
                threads.emplace_back(work, Role::helper);
        } catch (const std::system_error&) { // Then with fewer.
        }
        work(Role::besideHelpers);
    }

    void note(int error, std::string_view name)
    {
        if (error == 0)
            return;
        if (!m_steps.empty())
            m_steps.back().holdsSomething = true;
        if (m_failure.error == 0)
            m_failure = {error, std::string(name)};
    }

    void removeNext(Step& step)
    {
        const auto& entry = step.listing.entries()[step.next++];
        const auto* name = step.listing.nameText(entry);
        const int folder = step.descriptor.get();
        if (entry.type == DT_DIR) {
            enter(folder, name);
            return;
        }
        const int error = remove(folder, name);
        if (error == EISDIR || error == EPERM) {
            const auto status = statusOf(folder, name);
            if (status && status->isFolder()) {
                enter(folder, name);
                return;
            }
        }
        note(error, name);
    }

    /// Steps down into a folder; or, when a link or file has taken its place, deletes that.
    void enter(int parent, const char* name)
    {
        Step step;
        step.name = name; // The listing that holds it moves when the steps grow.
        auto opened = openFolderIn(parent, name);
        if (!opened && opened.error() == EACCES && makeReadable(parent, name, step))
            opened = openFolderIn(parent, name);
        if (!opened) {
            const int error = opened.error();
            if (error == ENOTDIR || error == ELOOP)
                note(remove(parent, name), step.name);
            else if (error != ENOENT)
                note(error, step.name);
            if (step.isMadeWritable)
                changePermissions(parent, name, step.permissions);
            return;
        }
        const auto refuse = [&](int error) {
            note(error, step.name);
            if (step.isMadeWritable)
                std::ignore = ::fchmod(opened->get(), step.permissions);
        };
        const auto status = statusOf(opened->get(), "");
        if (!status)
            return refuse(status.error());
        if (status->isMountPoint || !isOfVolume(*status))
            return refuse(EBUSY);
        if (m_steps.size() >= deepestFolder)
            return refuse(ELOOP);
        step.identity = status->identity;
        makeWritable(opened->get(), *status, step);
        auto listing = listFolder(opened->get());
        if (!listing)
            return refuse(listing.error());
        step.listing = std::move(*listing);
        if (step.listing.entries().size() >= sortedFrom)
            step.listing.sortByInode();
        step.descriptor = std::move(*opened);
        m_steps.push_back(std::move(step));
        if (m_steps.size() > openFolders)
            m_steps[m_steps.size() - openFolders - 1].descriptor.reset();
    }

    /// Whether a folder lies on the volume of the item. Where the system does not number mounts,
    /// the device tells; it may refuse a part of the same volume, and enters no other.
    bool isOfVolume(const EntryStatus& folder) const
    {
        const auto& top = m_deletion.top;
        return top.mount != 0 && folder.mount != 0 ? folder.mount == top.mount
                                                   : folder.identity.device == top.identity.device;
    }

    bool makeReadable(int parent, const char* name, Step& step)
    {
        const auto status = statusOf(parent, name);
        if (!status || !status->isFolder() || status->owner != ::geteuid())
            return false;
        step.permissions = status->permissions();
        const auto borrowed = step.permissions | S_IRWXU;
        if (m_options.journal)
            noteLoan(*m_options.journal, parent, name, *status, borrowed);
        step.isMadeWritable = changePermissions(parent, name, borrowed);
        return step.isMadeWritable;
    }

    void makeWritable(int folder, const EntryStatus& status, Step& step)
    {
        const auto user = ::geteuid();
        if (user == 0 || status.owner != user || (status.mode & S_IRWXU) == S_IRWXU)
            return;
        step.permissions = status.permissions();
        const auto borrowed = step.permissions | S_IRWXU;
        if (m_options.journal)
            noteLoan(*m_options.journal, folder, {}, status, borrowed);
        step.isMadeWritable = ::fchmod(folder, borrowed) == 0;
    }

    /// Steps up, and deletes the folder that was emptied.
    void leave()
    {
        auto left = std::move(m_steps.back());
        m_steps.pop_back();
        int parent = m_base;
        bool isBelowParent = true;
        if (!m_steps.empty()) {
            if (!m_steps.back().descriptor)
                isBelowParent = reopen(left.descriptor.get());
            if (!m_steps.empty())
                parent = m_steps.back().descriptor.get();
        }
        int error = 0;
        if (isBelowParent && !left.holdsSomething)
            error = removeFolder(parent, left);
        if (isBelowParent && !left.holdsSomething && error == 0)
            countRemoved();
        if (!isBelowParent || error != 0 || left.holdsSomething) {
            if (left.isMadeWritable)
                std::ignore = ::fchmod(left.descriptor.get(), left.permissions);
            if (!m_steps.empty())
                m_steps.back().holdsSomething = true;
        }
        note(error, left.name);
    }

    /// A folder that is gone from its name, and not from the disk, was moved away meanwhile: it was
    /// emptied, but lies elsewhere now.
    static int removeFolder(int parent, const Step& step)
    {
        const auto* name = step.name.c_str();
        if (retrying([&] { return ::unlinkat(parent, name, AT_REMOVEDIR); }) == 0)
            return 0;
        if (errno != ENOENT)
            return removeEntry(parent, name, AT_REMOVEDIR);
        const auto status = statusOf(step.descriptor.get(), "");
        return status && status->links > 0 ? ESTALE : 0;
    }

    /// Opens the folder above `below` again. When the tree was rearranged meanwhile, finds the
    /// lowest folder of the way down that still lies where it lay, and gives false.
    bool reopen(int below)
    {
        auto& wanted = m_steps.back();
        if (auto above = openExpected(below, "..", wanted.identity)) {
            wanted.descriptor = std::move(above);
            return true;
        }
        note(ESTALE, wanted.name);
        FileDescriptor folder;
        std::size_t found = 0;
        for (; found < m_steps.size(); ++found) {
            const int parent = found == 0 ? m_base : folder.get();
            auto next = openExpected(parent, m_steps[found].name.c_str(), m_steps[found].identity);
            if (!next)
                break;
            folder = std::move(next);
        }
        m_steps.resize(found);
        if (found > 0) {
            m_steps.back().descriptor = std::move(folder);
            m_steps.back().holdsSomething = true;
        }
        return false;
    }

    static FileDescriptor openExpected(int folder, const char* name, const Identity& identity)
    {
        auto opened = openFolderIn(folder, name);
        if (!opened)
            return FileDescriptor();
        const auto status = statusOf(opened->get(), "");
        return status && status->identity == identity ? std::move(*opened) : FileDescriptor();
    }

    /// From the folder in hand upwards; those far above are found again through "..".
    void restorePermissions()
    {
        while (!m_steps.empty()) {
            auto left = std::move(m_steps.back());
            m_steps.pop_back();
            if (!m_steps.empty() && left.descriptor && !m_steps.back().descriptor)
                m_steps.back().descriptor
                    = openExpected(left.descriptor.get(), "..", m_steps.back().identity);
            if (left.isMadeWritable && left.descriptor)
                std::ignore = ::fchmod(left.descriptor.get(), left.permissions);
        }
    }

    int m_base;
    const std::string& m_top;
    Deletion& m_deletion;
    const RemoveTreeOptions& m_options;
    Role m_role;
    std::vector<Step> m_steps;
    TreeFailure m_failure;
};

} // namespace

int removeEntry(int folder, const char* name, int flags)
{
    for (int attempt = 0;; ++attempt) {
        if (retrying([&] { return ::unlinkat(folder, name, flags); }) == 0 || errno == ENOENT)
            return 0;
        if (attempt == 1 || errno == EISDIR || errno == ENOTEMPTY || errno == EEXIST)
            return errno;
    }
}

TreeFailure removeTree(int folder, const std::string& name, const RemoveTreeOptions& options)
{
    Deletion deletion{.options = options};
    auto failure = TreeRemover(folder, name, deletion, TreeRemover::Role::first).run();
    if (options.progress && failure.error != 0) // The helpers have not told what they did last.
        options.progress(deletion.removedEntries);
    return failure;
}

} // namespace kestavon
