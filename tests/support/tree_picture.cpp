#include "support/tree_picture.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

#include <sys/stat.h>
#include <sys/xattr.h>

namespace kestavon::test {

namespace {

std::string attributesOf(const std::string& path)
{
    std::vector<char> names(65536);
    const auto length = ::llistxattr(path.c_str(), names.data(), names.size());
    std::vector<std::string> lines;
    for (ssize_t at = 0; at < length;) {
        const std::string name = names.data() + at;
        at += static_cast<ssize_t>(name.size()) + 1;
        std::string value(65536, '\0');
        const auto size = ::lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
        value.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        if (!name.starts_with("user.kestavon.") && !name.starts_with("security."))
            lines.push_back(" " + name + "=" + value);
    }
    std::ranges::sort(lines);
    std::string all;
    for (const auto& line : lines)
        all += line;
    return all;
}

std::string lineFor(const std::string& path)
{
    struct stat status { };
    if (::lstat(path.c_str(), &status) != 0)
        return "missing";
    std::ostringstream line;
    line << std::oct << status.st_mode << std::dec << ' ' << status.st_uid << ':' << status.st_gid
         << ' ' << status.st_mtim.tv_sec << '.' << status.st_mtim.tv_nsec;
    if (!S_ISDIR(status.st_mode))
        line << " names " << status.st_nlink;
    if (S_ISLNK(status.st_mode))
        line << " -> " << std::filesystem::read_symlink(path).native();
    if (S_ISREG(status.st_mode)) {
        std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
        std::ifstream(path, std::ios::binary).read(bytes.data(), status.st_size);
        line << ' ' << bytes.size() << " bytes " << std::hash<std::string>{}(bytes);
    }
    line << attributesOf(path);
    return line.str();
}

} // namespace

std::map<std::string, std::string> pictureOf(const std::string& path)
{
    namespace fs = std::filesystem;
    std::map<std::string, std::string> picture{{"", lineFor(path)}};
    if (fs::symlink_status(path).type() != fs::file_type::directory)
        return picture;
    for (const auto& entry : fs::recursive_directory_iterator(path))
        picture[entry.path().native().substr(path.size())] = lineFor(entry.path().native());
    return picture;
}

OtherDevice::OtherDevice()
{
    std::string path = "/dev/shm/kestavon-test-XXXXXX";
    if (!::mkdtemp(path.data()))
        return;
    struct stat here { };
    struct stat there { };
    const auto usual = std::filesystem::temp_directory_path().native();
    if (::stat(usual.c_str(), &here) == 0 && ::stat(path.c_str(), &there) == 0
        && here.st_dev != there.st_dev)
        m_path = path;
    else
        std::filesystem::remove(path);
}

OtherDevice::~OtherDevice()
{
    std::error_code ignored;
    if (!m_path.empty())
        std::filesystem::remove_all(m_path, ignored);
}

} // namespace kestavon::test
