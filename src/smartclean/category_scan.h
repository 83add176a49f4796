#pragma once

#include "applications/program_evidence.h"
#include "core/domain/cleanup_candidate.h"
#include "platform/host_layout.h"
#include "smartclean/orphan_rule.h"
#include "smartclean/smart_scanner.h"
#include "walk/folder_names.h"
#include "walk/folder_sizes.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// One run through the locations of a category: lists them, picks the entries that their rules call
/// junk, and sums up the folders among those, all together.
class CategoryScan {
public:
    CategoryScan(std::shared_ptr<const HostLayout> layout, SmartScannerTools tools,
        JunkCategory category, std::stop_token stop);

    /// As `SmartScanner::scanCategory`; once.
    std::vector<CleanupCandidate> run();

private:
    /// An entry whose size is not known while it is a folder.
    struct Found {
        FileRecord record;
        const std::string* label;
        std::optional<std::size_t> folderToMeasure; ///< its position among those
    };

    void look(const JunkLocation& location);
    void lookIn(const JunkLocation& location, const std::string& folder);
    void lookAtEntry(const JunkLocation& location, const std::string& folder,
        const NamedEntries& entries, const std::string& name);
    bool mayBeJunk(const JunkLocation& location, const std::string& name);
    bool isLeftAlone(const JunkLocation& location, const std::string& path) const;
    bool yieldsTo(const JunkLocation& location, const JunkLocation& other) const;
    std::vector<std::string> foldersOf(const JunkLocation& location) const;
    bool isJunk(JunkRule rule, const EntryFacts& facts);
    bool isOrphan(std::string_view name);
    bool isAbandoned(const JunkLocation& location, const std::string& name);
    std::vector<CleanupCandidate> measured();

    const std::shared_ptr<const HostLayout> m_layout;
    const SmartScannerTools m_tools;
    const JunkCategory m_category;
    const std::stop_token m_stop;

    std::optional<OrphanRule> m_orphanRule; // made when it is first needed
    std::optional<ProgramEvidence> m_programEvidence; // the same
    std::optional<Timestamp> m_cutOff; // the same
    std::vector<Found> m_found;
    std::vector<FolderToMeasure> m_foldersToMeasure;
};

} // namespace kestavon
