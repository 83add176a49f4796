#include "walk/folder_names.h"

#include <algorithm>
#include <array>

namespace kestavon {

std::optional<NamedEntries> namedEntriesOf(const std::string& folder)
{
    auto opened = openRootFolder(folder);
    if (!opened.file)
        return std::nullopt;
    NamedEntries entries;
    entries.folder = std::make_shared<const FileDescriptor>(std::move(opened.file));
    std::array<char, 32 * 1024> block;
    std::vector<ListedName> listed;
    for (Listing listing; !listing.atEnd;) {
        listing = listFolder(entries.folder->get(), block);
        if (listing.error != 0)
            return std::nullopt;
        listed.clear();
        collectNames({block.data(), listing.bytes}, listed);
        for (const auto& name : listed)
            entries.names.emplace_back(name.view());
    }
    std::ranges::sort(entries.names);
    return entries;
}

} // namespace kestavon
