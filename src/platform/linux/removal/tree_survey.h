#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/linux/removal/entry_status.h"

#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// The picture of one item at one moment: every entry with its status. Entry 0 is the item itself;
/// when it is a folder, it is folder 0. Folders stand in depth-first order, parents first, and the
/// entries of a folder side by side in the order of their names.
class TreeSurvey {
public:
    static constexpr std::uint32_t none = UINT32_MAX;

    struct Entry {
        EntryStatus status;
        std::uint32_t nameOffset = 0;
        std::uint32_t parent = none; ///< the folder that holds it
        std::uint32_t folder = none; ///< its own number, when it is a folder
    };
    struct Folder {
        std::uint32_t entry = 0;
        std::uint32_t parent = none;
        std::uint32_t depth = 0;
        std::uint32_t first = 0; ///< its entries are first, first + 1 …
        std::uint32_t count = 0;
    };

    const std::vector<Entry>& entries() const { return m_entries; }
    const std::vector<Folder>& folders() const { return m_folders; }
    std::span<const Entry> entriesOf(const Folder& folder) const
    {
        return std::span(m_entries).subspan(folder.first, folder.count);
    }
    const char* name(const Entry& entry) const { return m_names.c_str() + entry.nameOffset; }
    /// The entry called `name` in the folder; null when there is none.
    const Entry* find(const Folder& folder, std::string_view name) const;

    /// Bytes of the files' contents; those of a file with several names count once.
    std::int64_t contentBytes() const { return m_contentBytes; }
    /// Bytes that a copy takes up at the least.
    std::int64_t allocatedBytes() const { return m_allocatedBytes; }

private:
    friend class Surveyor;
    std::string m_names;
    std::vector<Entry> m_entries;
    std::vector<Folder> m_folders;
    std::int64_t m_contentBytes = 0;
    std::int64_t m_allocatedBytes = 0;
};

/// Why a tree could not be surveyed.
struct TreeFailure {
    int error = 0;
    std::string name; ///< the entry it is about
};

/// Looks at the item `name` in `folder` and all that is in it, following no link. Fails over
/// anything that could be copied but not removed again - a mounted volume, an immutable file, a
/// folder that may not be written to - so that a move never gets stuck half-way.
Result<TreeSurvey, TreeFailure> surveyTree(
    int folder, const std::string& name, const std::stop_token& stop);

/// Whether the item called `name` in `folder` still is what the survey saw. ESTALE when it is not.
Result<Done, TreeFailure> checkUnchanged(
    const TreeSurvey& survey, int folder, const std::string& name, const std::stop_token& stop);

/// Whether every entry that the survey saw still lies where it lay, below the item now called
/// `name` in `folder`; what is in the files, and what else there is, does not count.
bool holdsAllOf(const TreeSurvey& survey, int folder, const std::string& name);

} // namespace kestavon
