#include "platform/linux/trash/trash_record.h"

#include "platform/linux/descriptor_io.h"
#include "platform/linux/removal/tree_copy.h"
#include "platform/linux/trash/trash_info.h"
#include "platform/linux/trash/trashable_item.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <memory>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>

namespace kestavon {

namespace {

/// Paths have no upper limit on Linux, and percent signs treble them.
constexpr std::size_t longestRecord = 1024 * 1024;
constexpr time_t secondsPerDay = 24 * 60 * 60;

/// The entries of an opened folder that end in `ending`.
std::vector<std::string> entriesEndingIn(int folder, std::string_view ending)
{
    struct Close {
        void operator()(DIR* opened) const { ::closedir(opened); }
    };
    std::vector<std::string> names;
    // Opened anew: reading moves the position that all holders of a descriptor share.
    const int descriptor = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, Close> entries(descriptor < 0 ? nullptr : ::fdopendir(descriptor));
    if (!entries)
        return names;
    while (const auto* entry = ::readdir(entries.get())) {
        const std::string_view name(entry->d_name);
        if (name.size() > ending.size() && name.ends_with(ending))
            names.emplace_back(name);
    }
    return names;
}

/// Whether the record, opened and locked, can be of no use to anybody.
bool isAbandoned(int file)
{
    struct stat status { };
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != ::geteuid()
        || (status.st_mode & S_IWUSR) == 0)
        return false;
    if (status.st_size == 0)
        return ::time(nullptr) - status.st_mtime > secondsPerDay;
    const auto text = readAll(file, longestRecord);
    return text && isOurTrashInfo(*text);
}

bool isStillNamed(int folder, const std::string& name, int file)
{
    struct stat opened {
    }, named{};
    return ::fstat(file, &opened) == 0
        && ::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0
        && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

Result<TrashRecord, int> TrashRecord::write(
    const TrashFolder& trash, const std::string& name, std::string_view text)
{
    auto fileName = name + std::string(trashInfoEnding);
    FileDescriptor file(::openat(trash.info.get(), fileName.c_str(),
        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return errno;
    TrashRecord record(trash.info.get(), std::move(fileName), std::move(file), text);
    // An item without a record, left by somebody, holds the name too.
    if (mayExist(trash.files.get(), name))
        return EEXIST;
    // Some network file systems know no locks: there the record is only never cleared away.
    const int descriptor = record.m_file.get();
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return EEXIST; // another copy took it for abandoned and is about to remove it
    if (!writeAll(descriptor, text))
        return errno;
    if (!isStillNamed(trash.info.get(), record.m_fileName, descriptor))
        return EEXIST;
    return record;
}

TrashRecord::TrashRecord(int info, std::string fileName, FileDescriptor file, std::string_view text)
    : m_info(info)
    , m_fileName(std::move(fileName))
    , m_file(std::move(file))
    , m_text(text)
{
}

TrashRecord::~TrashRecord()
{
    if (m_file && !m_kept && isStillNamed(m_info, m_fileName, m_file.get()))
        ::unlinkat(m_info, m_fileName.c_str(), 0);
}

bool TrashRecord::writeOut() const
{
    // The folder's entry too; where folders cannot be written out by themselves, it goes along.
    return waitForDisk(m_file.get()) == 0 && waitForDisk(m_info) == 0;
}

std::vector<bool> TrashRecord::writeOut(std::span<const TrashRecord* const> records)
{
    // A disk takes as long for one file as for all those that are waited for at the same time.
    constexpr std::size_t atTheSameTime = 32;
    std::vector<char> written(records.size(), 0);
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (auto i = next++; i < records.size(); i = next++)
            written[i] = waitForDisk(records[i]->m_file.get()) == 0 ? 1 : 0;
    };
    {
        std::vector<std::jthread> others;
        try {
            while (others.size() + 1 < std::min(records.size(), atTheSameTime))
                others.emplace_back(work);
        } catch (const std::system_error&) { // As many as there may be.
        }
        work();
    }
    const bool folderIsWritten = records.empty() || waitForDisk(records.front()->m_info) == 0;
    std::vector<bool> results;
    for (const char one : written)
        results.push_back(one != 0 && folderIsWritten);
    return results;
}

bool TrashRecord::isInPlace() const
{
    return isStillNamed(m_info, m_fileName, m_file.get());
}

bool TrashRecord::writeAgain()
{
    m_file.reset(::openat(
        m_info, m_fileName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    return m_file && writeAll(m_file.get(), m_text) && writeOut();
}

std::int64_t TrashRecord::time() const
{
    struct stat status { };
    return ::fstat(m_file.get(), &status) == 0 ? status.st_mtime : 0;
}

bool removeRecord(const TrashFolder& trash, const std::string& name)
{
    const auto fileName = name + std::string(trashInfoEnding);
    const FileDescriptor file(::openat(
        trash.info.get(), fileName.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return file && (::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        && !mayExist(trash.files.get(), name)
        && ::unlinkat(trash.info.get(), fileName.c_str(), 0) == 0;
}

void keepRecord(const TrashFolder& trash, const std::string& name)
{
    const auto fileName = name + std::string(trashInfoEnding);
    const FileDescriptor file(::openat(
        trash.info.get(), fileName.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (file)
        std::ignore = ::fchmod(file.get(), 0400);
}

void clearAbandonedRecords(const TrashFolder& trash)
{
    for (const auto& fileName : entriesEndingIn(trash.info.get(), trashInfoEnding)) {
        const auto name = fileName.substr(0, fileName.size() - trashInfoEnding.size());
        if (mayExist(trash.files.get(), name))
            continue;
        const FileDescriptor file(::openat(
            trash.info.get(), fileName.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        if (!file || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0 || !isAbandoned(file.get()))
            continue;
        // Its owner may have finished before it could be locked: look again.
        if (!mayExist(trash.files.get(), name)
            && isStillNamed(trash.info.get(), fileName, file.get()))
            ::unlinkat(trash.info.get(), fileName.c_str(), 0);
    }
}

} // namespace kestavon
