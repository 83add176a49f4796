#pragma once

#include "concurrency/work_stealing_queues.h"
#include "platform/linux/file_descriptor.h"
#include "walk/exclusions.h"
#include "walk/folder_reader.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// How many threads a walk does best with here: more than there are cores, because while one waits
/// for the disk, others go on. Warm they cost nothing.
unsigned threadsForWalks();

/// A walk through folder trees by several threads. Each takes a folder, lists it and shows its
/// names to a visitor of its own, which says which of them are folders to be read; those are the
/// next tasks. A folder too large for one reading is cut into slices that other threads look at
/// while it is still being listed.
///
/// No link is followed, and file systems that the kernel makes up are not entered, nor is an
/// AppDir, unless the walk starts there.
///
/// The threads own the walk together with whoever started it: a read from a dead network share may
/// never return, and then a stopped walk is left behind with the thread that is stuck in it.
class FolderWalk : public std::enable_shared_from_this<FolderWalk> {
public:
    using FilePointer = std::shared_ptr<const FileDescriptor>;

    /// A folder as its subfolders and slices see it.
    struct Folder {
        std::uint32_t number = 0; ///< what the visitors call it by
        bool isStart = false; ///< the walk starts here: it is entered whatever it is
        std::uint64_t device = 0;
        /// Paths are opened from here. Deep in a tree it is a folder on the way, since no path
        /// longer than PATH_MAX can be opened; else the one that the walk came in by.
        FilePointer base;
        std::string path; ///< below `base`; empty for itself
        Exclusions exclusions;
        std::atomic<bool> isUnreadable = false;
    };
    using FolderPointer = std::shared_ptr<Folder>;

    /// A folder that is to be read, as the folder around it knows it.
    struct Subfolder {
        std::shared_ptr<const char> name = {}; ///< ended by a NUL; owns it, or it outlives the walk
        /// As `lookAt` told; nothing when nobody looked, which `needsFacts` must allow.
        std::optional<std::uint64_t> device = {};
        std::uint32_t number = 0;
        bool isStart = false;
    };

    /// A subfolder's name that lies where the walk keeps it to its end.
    static std::shared_ptr<const char> nameThatOutlives(const char* name)
    {
        return {std::shared_ptr<const char>(), name};
    }

    /// What one thread does with the folders that it reads.
    class Visitor {
    public:
        virtual ~Visitor() = default;
        /// Looks at the entries `names` of a folder, which may be some of them only, and adds those
        /// that are to be read to `subfolders`. `file` is the open folder.
        virtual void visit(Folder& folder, int file, std::vector<ListedName>& names,
            std::vector<Subfolder>& subfolders)
            = 0;
    };

    FolderWalk(const FolderWalk&) = delete;
    FolderWalk& operator=(const FolderWalk&) = delete;
    virtual ~FolderWalk() = default;

    /// Sets the threads going; `wait` must follow.
    void start();

    /// Waits for the walk's end. False soon after a stop was requested, when the walk was cut short
    /// by it; some thread may still be stuck somewhere then.
    bool wait();

    std::uint64_t unreadableFolders() const { return m_unreadableFolders; }

protected:
    class Worker;

    struct Options {
        unsigned threads = 1;
        std::stop_token stop;
        /// How long after a stop some thread must have met an entry, since a walk without any ends
        /// as if there had been no stop.
        std::chrono::milliseconds patienceForAnEntry = {};
    };
    explicit FolderWalk(Options options);

    /// The visitor of one thread, made and used there.
    virtual std::unique_ptr<Visitor> makeVisitor(unsigned worker) = 0;
    /// The first task, on one of the threads: tells `worker` where the walk starts.
    virtual void begin(Worker& worker) = 0;
    /// There is no memory for more; the walk ends with what it has.
    virtual void noteExhaustion() { }

    /// Whether a folder must be looked at before it is read, because reading it might mount
    /// something, or because its device could not be told otherwise.
    bool needsFacts() const { return m_needsFacts; }
    /// Whether a stop was requested; then the walk is cut short.
    bool isStopped();
    /// Lets the walk end with what it has.
    void close() { m_queues.close(); }
    void noteUnreadable(Folder& folder);

private:
    /// A part of a large folder's listing.
    struct Slice {
        FilePointer file;
        std::unique_ptr<char[]> block;
        std::size_t bytes = 0;
    };

    /// What a worker does next: look at a slice of `folder`, or read a subfolder of it, or, when
    /// there is no folder yet, begin.
    struct Task {
        FolderPointer folder;
        Subfolder subfolder;
        std::unique_ptr<Slice> slice;
    };

    void work(unsigned number);
    void cutShort();

    const Options m_options;
    const FolderOpener m_opener;
    const bool m_needsFacts;
    WorkStealingQueues<Task> m_queues;
    std::atomic<std::uint64_t> m_unreadableFolders = 0;
    std::atomic<unsigned> m_waitingSlices = 0;

    std::mutex m_leaveMutex;
    std::condition_variable_any m_left;
    unsigned m_working = 0; // guarded by m_leaveMutex
    bool m_isCutShort = false; // guarded by m_leaveMutex
};

/// One thread of a walk, with the buffers that it uses for one folder after the other.
class FolderWalk::Worker {
public:
    Worker(FolderWalk& walk, unsigned number);

    /// Reads a folder that is open as `file`.
    void read(const FolderPointer& folder, const FilePointer& file);
    /// Lets the subfolders of `parent` be read, the first of them next.
    void add(const FolderPointer& parent, std::span<Subfolder> subfolders);

private:
    friend class FolderWalk;

    void run(const Task& task);
    void readSlice(const Task& task);
    void readSubfolder(const Task& task);
    OpenedFolder open(Folder& folder, const Folder& parent, std::optional<std::uint64_t> device);
    void readLargeFolder(const FolderPointer& folder, const FilePointer& file, Listing listing);
    bool isLargeAppDir(int file);
    void handOn(const FolderPointer& folder, const FilePointer& file, std::size_t bytes);
    void visitNames(const FolderPointer& folder, int file);

    std::span<char> block();

    FolderWalk& m_walk;
    const unsigned m_number;
    const std::unique_ptr<Visitor> m_visitor;
    const std::unique_ptr<char[]> m_block;
    std::vector<ListedName> m_names;
    std::vector<Subfolder> m_subfolders;
    std::vector<Task> m_tasks;
};

} // namespace kestavon
