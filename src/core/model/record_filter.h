#pragma once

#include "core/domain/record_list.h"
#include "core/model/record_set.h"
#include "core/model/text_finder.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// The records that one needle matched.
struct FilterMatches {
    std::string needle; ///< in its folded form
    RecordSet records;
    std::size_t count = 0;
};

/// Finds the records of one list whose name or full path contains a text, compared as `foldedText`
/// says; nothing is trimmed and no character is special. Full paths start with the scanned folder's
/// own path, "/" parts their components, and a needle may reach over several.
///
/// Made once a list: it folds the names of all folders and of the records whose names are not
/// ASCII. Immutable afterwards: any thread.
class RecordFilter {
public:
    /// Throws `Cancelled` once `stop` is requested, as all functions here do.
    explicit RecordFilter(
        std::shared_ptr<const RecordList> records, const std::stop_token& stop = {});

    /// The records that match; an empty needle matches every one. `previous`, a result of this
    /// filter, saves work when `needle` extends its needle.
    FilterMatches matches(std::string_view needle, const FilterMatches* previous = nullptr,
        const std::stop_token& stop = {}) const;

private:
    /// Texts one after the other, each ended by a NUL, in ascending order of their owners.
    struct Texts {
        std::vector<char> bytes;
        std::vector<std::uint32_t> offsets;

        void append(std::string_view text);
        std::string_view operator[](std::size_t i) const { return bytes.data() + offsets[i]; }
    };
    struct FolderMatches;

    bool extends(const std::string& needle, const FilterMatches* previous) const;
    FolderMatches matchFolders(const std::string& needle, const std::stop_token& stop) const;
    bool pathEndsWith(std::uint32_t folder, std::string_view ending) const;
    void matchNames(
        const std::string& needle, RecordSet& matched, const std::stop_token& stop) const;
    void matchBeginnings(const FolderMatches& folders, std::string_view beginning,
        RecordSet& matched, const std::stop_token& stop) const;
    void addContents(const FolderMatches& folders, RecordSet& matched) const;
    void matchAmong(const RecordSet& candidates, const std::string& needle,
        const FolderMatches& folders, RecordSet& matched, const std::stop_token& stop) const;

    std::shared_ptr<const RecordList> m_records;
    bool m_namesAscend = false; ///< the names lie in the order of the records
    bool m_namesTouch = false; ///< and no other names lie between them
    std::string m_root; ///< folded, without a "/" at its end
    Texts m_folderNames; ///< folded, by folder; the root's is empty
    Texts m_foldedNames; ///< of the records whose names are not ASCII
    std::vector<std::uint32_t> m_foldedRecords; ///< which records those are
};

} // namespace kestavon
