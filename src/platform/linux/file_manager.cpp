#include "platform/file_manager.h"

#include <cerrno>
#include <memory>

#include <dirent.h>

namespace kestavon {

bool SystemFileManager::canListFolder(const std::string& path) const
{
    struct Close {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    const std::unique_ptr<DIR, Close> folder(::opendir(path.c_str()));
    if (!folder)
        return false;
    // Some file systems let a folder be opened and refuse only its entries.
    errno = 0;
    return ::readdir(folder.get()) != nullptr || errno == 0;
}

} // namespace kestavon
