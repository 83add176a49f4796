#include "platform/linux/path_lists.h"

#include "platform/host_layout.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <unistd.h>

namespace kestavon {

std::vector<std::string> foldersInList(const std::string& list)
{
    std::vector<std::string> folders;
    std::istringstream elements(list);
    for (std::string folder; std::getline(elements, folder, ':');) {
        if (folder.starts_with('/'))
            folders.push_back(normalisedPath(folder));
    }
    return folders;
}

bool isProgramThere(const std::string& name)
{
    const auto isRunnable
        = [](const std::string& path) { return ::access(path.c_str(), X_OK) == 0; };
    if (name.find('/') != name.npos)
        return isRunnable(name);
    const auto* const path = std::getenv("PATH");
    return std::ranges::any_of(foldersInList(path ? path : "/usr/local/bin:/usr/bin:/bin"),
        [&](const std::string& folder) { return isRunnable(folder + '/' + name); });
}

} // namespace kestavon
