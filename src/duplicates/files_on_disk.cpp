#include "duplicates/files_on_disk.h"

#include "concurrency/cancelled.h"
#include "concurrency/thread_crew.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <system_error>
#include <tuple>
#include <vector>

#include <unistd.h>

namespace kestavon {

namespace {

std::string folderOf(const std::string& path)
{
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

/// Whether what was last done to the file has reached the disk without being asked for.
bool isLongThere(const FileIdentity& file)
{
    // Changes reach the disk within a minute or so; asking for it takes a disk longer than all else
    // that a small file needs.
    constexpr auto certainly = std::chrono::hours(1);
    const auto age = std::chrono::system_clock::now().time_since_epoch()
        - std::chrono::nanoseconds(file.changedAt);
    return age > certainly;
}

/// The folder may be new too. One that cannot be opened holds the name all the same.
void writeOutFolder(const std::string& path)
{
    if (const auto folder = openFolderToWriteOut(path))
        std::ignore = ::fsync(folder.get());
}

bool writeOutFile(const OpenedFile& opened)
{
    return ::fsync(opened.file.get()) == 0 || errno == EINVAL || errno == EROFS;
}

/// What several threads wait for: each takes the next.
struct Waiting {
    std::vector<std::string> files;
    std::vector<std::string> folders;
    std::vector<std::optional<FileIdentity>> written; ///< by file
    std::atomic<std::size_t> next = 0;

    void run(const std::stop_token& stop)
    {
        for (auto i = next++; i < folders.size() + files.size() && !stop.stop_requested();
             i = next++) {
            if (i < folders.size())
                writeOutFolder(folders[i]);
            else if (const auto opened = openRegularFile(files[i - folders.size()]);
                     opened && (isLongThere(opened->identity) || writeOutFile(*opened)))
                written[i - folders.size()] = opened->identity;
        }
    }
};

} // namespace

FilesOnDisk::FilesOnDisk(std::span<const std::string> paths, const std::stop_token& stop)
{
    constexpr std::size_t atTheSameTime = 32;
    const auto waiting = std::make_shared<Waiting>();
    std::set<std::string> folders;
    for (const std::set<std::string> distinct(paths.begin(), paths.end());
         const auto& path : distinct) {
        waiting->files.push_back(path);
        const auto opened = openRegularFile(path);
        if (opened && !isLongThere(opened->identity))
            folders.insert(folderOf(path));
    }
    waiting->folders.assign(folders.begin(), folders.end());
    waiting->written.resize(waiting->files.size());
    const auto threads
        = std::min((waiting->files.size() + waiting->folders.size() + 3) / 4, atTheSameTime);
    try {
        runOnThreads(
            static_cast<unsigned>(threads), [waiting, stop] { waiting->run(stop); }, stop);
    } catch (const Cancelled&) { // They may still be at it.
        return;
    } catch (const std::system_error&) { // Then each when its turn comes.
        return;
    }
    for (std::size_t i = 0; i < waiting->files.size(); ++i) {
        if (waiting->written[i])
            m_files.emplace(waiting->files[i], *waiting->written[i]);
    }
}

bool FilesOnDisk::hold(const std::string& path, const OpenedFile& opened) const
{
    const auto known = m_files.find(path);
    if ((known != m_files.end() && known->second == opened.identity)
        || isLongThere(opened.identity))
        return true;
    writeOutFolder(folderOf(path));
    return writeOutFile(opened);
}

} // namespace kestavon
