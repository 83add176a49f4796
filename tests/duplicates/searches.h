#pragma once

#include "duplicates/duplicate_finder.h"
#include "support/records.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace kestavon::test {

/// A group as a test compares it.
struct FoundGroup {
    std::string hash;
    std::vector<std::string> paths;

    friend bool operator==(const FoundGroup&, const FoundGroup&) = default;
    friend std::ostream& operator<<(std::ostream& out, const FoundGroup& group)
    {
        out << group.hash.substr(0, 8);
        for (const auto& path : group.paths)
            out << ' ' << path.substr(path.rfind('/') + 1);
        return out;
    }
};

inline std::vector<FoundGroup> groupsIn(const DuplicateList& list)
{
    std::vector<FoundGroup> groups;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto group = list[i];
        groups.push_back({.hash = group.hash, .paths = {}});
        std::ranges::transform(
            group.files, std::back_inserter(groups.back().paths), &FileRecord::path);
    }
    return groups;
}

/// The record that a scan would make of the file now.
inline FileRecord recordOf(const std::string& path)
{
    struct stat status { };
    ::lstat(path.c_str(), &status);
    auto record = file(path, S_ISDIR(status.st_mode) ? 0 : status.st_size);
    record.isDirectory = S_ISDIR(status.st_mode);
    return record;
}

inline std::vector<FileRecord> recordsOf(const std::vector<std::string>& paths)
{
    std::vector<FileRecord> records;
    std::ranges::transform(paths, std::back_inserter(records), recordOf);
    return records;
}

inline std::shared_ptr<const DuplicateList> search(const std::string& root,
    const std::vector<FileRecord>& records, const DuplicateSearchOptions& options = {})
{
    return findDuplicates(RecordList::fromRecords(root, records), options, {});
}

inline std::vector<FoundGroup> groupsAmong(
    const std::string& root, const std::vector<std::string>& paths)
{
    return groupsIn(*search(root, recordsOf(paths)));
}

} // namespace kestavon::test
