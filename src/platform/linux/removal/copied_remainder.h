#pragma once

#include <string>

namespace kestavon {

/// What is left of an item that was to be deleted because there is a copy of it.
enum class Remainder {
    none,
    notCopied, ///< it may exist nowhere else
    notRemovable, ///< now; another time it may
};

/// Deletes from the item called `name` in `folder`, the remainder of a source that was copied,
/// every entry that the copy holds too: files with the same bytes, links with the same text, and
/// folders that are empty then.
Remainder removeCopiedRemainder(
    int folder, const std::string& name, int copyFolder, const std::string& copyName);

/// Whether the copy holds all that `removeCopiedRemainder` would have to find in it to delete the
/// whole item. Nothing is touched.
bool isCopied(int folder, const std::string& name, int copyFolder, const std::string& copyName);

} // namespace kestavon
