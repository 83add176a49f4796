#include "support/temporary_tree.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon::test {

namespace {

void require(bool done, std::string_view what)
{
    if (!done)
        throw std::system_error(errno, std::generic_category(), std::string(what));
}

struct Entry {
    std::string name;
    bool isFolder;
};

std::vector<Entry> entriesOf(int folder)
{
    std::vector<Entry> entries;
    DIR* listing = ::fdopendir(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!listing)
        return entries;
    while (const auto* entry = ::readdir(listing)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            entries.push_back({name, entry->d_type == DT_DIR});
    }
    ::closedir(listing);
    return entries;
}

/// Empties a folder with two open files however deep it is, by going down and up again; the
/// library's remove_all keeps one open for every level.
void removeContents(const std::string& path)
{
    int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    std::vector<std::string> way; // names of the folders from `path` down to `folder`
    while (folder >= 0) {
        ::fchmod(folder, 0700);
        std::string inner;
        for (const auto& entry : entriesOf(folder)) {
            if (!entry.isFolder)
                ::unlinkat(folder, entry.name.c_str(), 0);
            else if (::unlinkat(folder, entry.name.c_str(), AT_REMOVEDIR) != 0)
                inner = entry.name;
        }
        int next = -1;
        if (!inner.empty()) {
            ::fchmodat(folder, inner.c_str(), 0700, 0);
            next = ::openat(folder, inner.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            way.push_back(inner);
        } else if (!way.empty()) {
            next = ::openat(folder, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            ::unlinkat(next, way.back().c_str(), AT_REMOVEDIR);
            way.pop_back();
        }
        ::close(folder);
        folder = next;
    }
}

} // namespace

TemporaryTree::~TemporaryTree()
{
    removeContents(path());
}

void TemporaryTree::file(std::string_view name, std::int64_t bytes) const
{
    const auto file = writeFile(name);
    require(::truncate(file.c_str(), bytes) == 0, name);
}

void TemporaryTree::link(std::string_view name, std::string_view target) const
{
    require(::symlink(std::string(target).c_str(), (*this / name).c_str()) == 0, name);
}

void TemporaryTree::chain(std::string_view name, int levels) const
{
    const std::string each(name);
    int folder = ::open(path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < levels; ++level) {
        require(::mkdirat(folder, each.c_str(), 0700) == 0, name);
        const int inner = ::openat(folder, each.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        require(inner >= 0, name);
        ::close(folder);
        folder = inner;
    }
    const int bottom = ::openat(folder, "bottom", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    require(bottom >= 0 && ::write(bottom, "b", 1) == 1, "bottom");
    ::close(bottom);
    ::close(folder);
}

void TemporaryTree::setModified(std::string_view name, Timestamp time) const
{
    const auto sinceEpoch = time.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
    const timespec moment{.tv_sec = seconds.count(), .tv_nsec = (sinceEpoch - seconds).count()};
    const timespec times[]{moment, moment};
    require(::utimensat(AT_FDCWD, (*this / name).c_str(), times, AT_SYMLINK_NOFOLLOW) == 0, name);
}

void TemporaryTree::setMode(std::string_view name, unsigned mode) const
{
    require(::chmod((*this / name).c_str(), mode) == 0, name);
}

} // namespace kestavon::test
