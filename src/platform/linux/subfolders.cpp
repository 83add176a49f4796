#include "platform/subfolders.h"

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <sys/stat.h>

namespace kestavon {

FileResult<Subfolders> subfoldersOf(const std::string& folder)
{
    struct Close {
        void operator()(DIR* listing) const { ::closedir(listing); }
    };
    const auto failed = [&folder] {
        const auto error = fileErrorKind(errno);
        const auto slash = folder.rfind('/');
        return folderError(error,
            folder.size() > 1 && slash != std::string::npos ? folder.substr(slash + 1) : folder);
    };
    const std::unique_ptr<DIR, Close> listing(::opendir(folder.c_str()));
    if (!listing)
        return failed();
    Subfolders found;
    for (;;) {
        errno = 0;
        const auto* entry = ::readdir(listing.get());
        if (!entry) {
            if (errno != 0)
                return failed();
            return found;
        }
        const std::string name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        if (entry->d_type == DT_DIR)
            found.folders.push_back(name);
        else if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN)
            found.unknown.push_back(name);
    }
}

bool leadsToFolder(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace kestavon
