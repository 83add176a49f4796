#pragma once

#include "core/domain/record_list.h"
#include "core/domain/security_finding.h"

#include <stop_token>
#include <string>
#include <unordered_set>
#include <vector>

namespace kestavon {

/// Reviews the files of a storage scan, offline: whether one is known to be malicious, and whether
/// it lies where it can make software start by itself. Keeps nothing between reviews. Plain and
/// synchronous: off the main thread.
class SecurityScanner {
public:
    /// `persistenceMarkers` are `HostLayout::persistenceMarkers`.
    explicit SecurityScanner(std::vector<std::string> persistenceMarkers);

    /// What there is to say of the files among `records`, the most serious first and otherwise in
    /// their order; folders have nothing of their own to say. `signatures` holds SHA-256 digests of
    /// malicious files, in lower-case hexadecimal. Without any no file is read; with some all are,
    /// and one that cannot be read is passed over for its content. After a stop is requested what
    /// was found so far comes back.
    std::vector<SecurityFinding> scan(const RecordList& records,
        const std::unordered_set<std::string>& signatures = {},
        const std::stop_token& stop = {}) const;

private:
    std::vector<bool> persistenceFoldersIn(const RecordList& records) const;
    bool isPersistenceFile(const RecordList& records, std::size_t record) const;
    bool holdsMarker(const std::string& folder) const;

    std::vector<std::string> m_persistenceMarkers;
};

} // namespace kestavon
