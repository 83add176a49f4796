#include "platform/linux/trash/directory_sizes.h"

#include "platform/linux/descriptor_io.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/trash/trash_info.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <memory>
#include <set>
#include <string_view>
#include <thread>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace kestavon {

namespace {

constexpr auto fileName = "directorysizes";
/// One fixed name, so that what a crash leaves is used up by the next write.
constexpr auto newFileName = "directorysizes.kestavon-new";
constexpr std::size_t largestFile = 16 * 1024 * 1024;

class DiskUse {
public:
    bool add(int parent, const char* name, int depth)
    {
        struct stat status { };
        if (::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return false;
        const bool isFolder = S_ISDIR(status.st_mode);
        if (isFolder || status.st_nlink == 1
            || m_counted.emplace(status.st_dev, status.st_ino).second)
            m_bytes += std::int64_t{status.st_blocks} * 512;
        return !isFolder || (depth < 200 && addEntries(parent, name, depth + 1));
    }

    std::int64_t bytes() const { return m_bytes; }

private:
    struct Close {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };

    bool addEntries(int parent, const char* name, int depth)
    {
        const int descriptor
            = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0)
            return false;
        const std::unique_ptr<DIR, Close> folder(::fdopendir(descriptor));
        if (!folder) {
            ::close(descriptor);
            return false;
        }
        errno = 0;
        while (const auto* entry = ::readdir(folder.get())) {
            const std::string_view entryName(entry->d_name);
            if (entryName != "." && entryName != ".." && !add(descriptor, entry->d_name, depth))
                return false;
            errno = 0;
        }
        return errno == 0;
    }

    std::set<std::pair<dev_t, ino_t>> m_counted; // files with several names
    std::int64_t m_bytes = 0;
};

/// The lines of `text` that are not about these names; a last line without its end gets one.
std::string withoutLinesOf(std::string_view text, const std::set<std::string>& names)
{
    std::string kept;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = text.substr(0, end);
        const auto lastSpace = line.rfind(' ');
        const auto lineName = lastSpace == std::string_view::npos
            ? std::nullopt
            : percentDecoded(line.substr(lastSpace + 1));
        if (!lineName || !names.contains(*lineName))
            kept.append(line).append("\n");
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return kept;
}

/// The file's text, empty when there is none yet; nothing when it is there and cannot be read.
std::optional<std::string> currentText(int trashFolder)
{
    const FileDescriptor file(
        ::openat(trashFolder, fileName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file)
        return errno == ENOENT ? std::optional<std::string>("") : std::nullopt;
    struct stat status { };
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return readAll(file.get(), largestFile);
}

/// Waits three seconds at most: another copy of the program that hangs must not take this one with
/// it.
bool lockForChange(int folder)
{
    for (int tries = 0; tries < 300; ++tries) {
        if (::flock(folder, LOCK_EX | LOCK_NB) == 0)
            return true;
        if (errno != EWOULDBLOCK && errno != EINTR)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

/// Takes the lines of these names away and adds `lines`.
void replaceLines(int trashFolder, const std::set<std::string>& names, const std::string& lines)
{
    // Opened anew: the lock belongs to the opening, and other threads share the caller's.
    const FileDescriptor lock(::openat(trashFolder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!lock || !lockForChange(lock.get()))
        return;
    const auto text = currentText(trashFolder);
    if (!text)
        return;
    const auto newText = withoutLinesOf(*text, names) + lines;
    if (newText == *text)
        return;
    ::unlinkat(trashFolder, newFileName, 0);
    const FileDescriptor file(::openat(
        trashFolder, newFileName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return;
    // Not waited for: others find out the sizes themselves when the file is missing.
    if (!writeAll(file.get(), newText)
        || ::renameat(trashFolder, newFileName, trashFolder, fileName) != 0)
        ::unlinkat(trashFolder, newFileName, 0);
}

} // namespace

std::optional<std::int64_t> bytesOnDisk(int parent, const std::string& name)
{
    DiskUse use;
    if (!use.add(parent, name.c_str(), 0))
        return std::nullopt;
    return use.bytes();
}

void recordDirectorySizes(int trashFolder, std::span<const DirectorySize> sizes)
{
    std::set<std::string> names;
    std::string lines;
    for (const auto& size : sizes) {
        names.insert(size.name);
        lines += std::to_string(size.bytes) + ' ' + std::to_string(size.trashInfoTime) + ' '
            + percentEncoded(size.name) + '\n';
    }
    if (!sizes.empty())
        replaceLines(trashFolder, names, lines);
}

void forgetDirectorySize(int trashFolder, const std::string& name)
{
    replaceLines(trashFolder, {name}, "");
}

} // namespace kestavon
