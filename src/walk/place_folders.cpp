#include "walk/place_folders.h"

#include "walk/folder_names.h"
#include "walk/folder_reader.h"

#include <algorithm>
#include <string_view>

namespace kestavon {

namespace {

void addFolders(
    const std::string& folder, std::string_view pattern, std::vector<std::string>& found)
{
    if (pattern.empty()) {
        found.push_back(folder);
        return;
    }
    const auto component = pattern.substr(0, pattern.find('/'));
    const auto rest = pattern.substr(std::min(component.size() + 1, pattern.size()));
    const auto below = (folder == "/" ? "" : folder) + '/';
    if (component.find_first_of("*#") == component.npos)
        return addFolders(below + std::string(component), rest, found);
    const auto entries = namedEntriesOf(folder);
    if (!entries)
        return;
    for (const auto& name : entries->names) {
        if (!namePatternMatches(component, name))
            continue;
        const auto facts = lookAt(entries->folder->get(), name.c_str());
        if (facts && facts->isDirectory)
            addFolders(below + name, rest, found);
    }
}

} // namespace

std::vector<std::string> foldersNamedBy(const PlacePattern& place)
{
    std::vector<std::string> found;
    addFolders(place.folder, place.below, found);
    return found;
}

} // namespace kestavon
