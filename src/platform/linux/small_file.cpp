#include "platform/linux/small_file.h"

#include "platform/linux/descriptor_io.h"
#include "platform/linux/file_descriptor.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestavon {

namespace {

std::string folderOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

bool makeFolders(const std::string& path)
{
    if (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST)
        return true;
    return errno == ENOENT && path != "/" && makeFolders(folderOf(path))
        && ::mkdir(path.c_str(), 0700) == 0;
}

/// Where `path` leads when it is a link to something that exists; else `path`.
std::string followed(const std::string& path)
{
    std::error_code error;
    const auto target = std::filesystem::canonical(path, error);
    return error ? path : target.native();
}

} // namespace

SmallFile readSmallFile(const std::string& path, std::size_t limit)
{
    SmallFile file;
    const FileDescriptor descriptor(
        ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status { };
    if (!descriptor || ::fstat(descriptor.get(), &status) != 0) {
        file.error = errno;
        return file;
    }
    if (!S_ISREG(status.st_mode)) {
        file.error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return file;
    }
    // One that grows, or tells no size, is found out while it is read.
    if (std::cmp_greater(status.st_size, limit)) {
        file.error = EFBIG;
        return file;
    }
    if (auto bytes = readAll(descriptor.get(), limit))
        file.bytes = std::move(*bytes);
    else
        file.error = errno;
    return file;
}

bool replaceSmallFile(const std::string& path, const std::string& bytes)
{
    const auto target = followed(path);
    const auto folder = folderOf(target);
    if (!makeFolders(folder))
        return false;
    auto temporary = target + ".XXXXXX";
    FileDescriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC)); // mode 0600
    if (!descriptor)
        return false;
    // The bytes must be on the disk before the name is, or a power cut leaves an empty file.
    const bool replaced = writeAll(descriptor.get(), bytes) && ::fsync(descriptor.get()) == 0
        && ::rename(temporary.c_str(), target.c_str()) == 0;
    if (!replaced) {
        ::unlink(temporary.c_str());
        return false;
    }
    const FileDescriptor folderDescriptor(
        ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folderDescriptor)
        ::fsync(folderDescriptor.get());
    return true;
}

} // namespace kestavon
