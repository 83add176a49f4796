#pragma once

#include "applications/program_evidence.h"
#include "platform/host_layout.h"
#include "smartclean/junk_findings.h"
#include "smartclean/orphan_rule.h"
#include "smartclean/smart_scanner.h"
#include "walk/folder_names.h"
#include "walk/folder_sizes.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// What the scans of a category learn of the machine, each when it is first needed: whoever needs
/// it too waits for who is at it. Any thread.
class ScanKnowledge {
public:
    const OrphanRule& orphanRule(const std::function<OrphanRule()>& make);
    const ProgramEvidence& programEvidence(const std::function<ProgramEvidence()>& make);

private:
    std::once_flag m_hasOrphanRule;
    std::optional<OrphanRule> m_orphanRule;
    std::once_flag m_hasProgramEvidence;
    std::optional<ProgramEvidence> m_programEvidence;
};

/// Looks through locations, one after the other, and picks the entries that their rules call junk.
/// One thread.
class LocationScan {
public:
    /// `noteMove` is called, on any thread, whenever something came of the work; it must own what
    /// it uses.
    LocationScan(std::shared_ptr<const HostLayout> layout, SmartScannerTools tools,
        std::shared_ptr<ScanKnowledge> knowledge, std::stop_token stop,
        std::function<void()> noteMove);

    /// The folders in which the location's items lie; none when a stop cuts it short.
    std::vector<std::string> foldersOf(const JunkLocation& location) const;

    /// Adds what is junk among a folder's entries: each file as it is met, a folder with the sum of
    /// its files soon after. A stop that comes in between makes those sums too small, and lets the
    /// rest be listed; one that came before makes it look at nothing, where the rule hears stops.
    void lookIn(const JunkLocation& location, const std::string& folder, JunkFindings& findings);

private:
    struct FoldersFound {
        std::vector<std::size_t> positions; ///< among the findings
        std::vector<FolderToMeasure> folders;
    };

    void lookAtEntry(const JunkLocation& location, const std::string& folder,
        const NamedEntries& entries, const std::string& name, JunkFindings& findings);
    bool mayBeJunk(const JunkLocation& location, const std::string& name);
    bool isLeftAlone(const JunkLocation& location, const std::string& path) const;
    bool yieldsTo(const JunkLocation& location, const JunkLocation& other) const;
    bool isCutShort(JunkRule rule) const;
    bool isJunk(JunkRule rule, const EntryFacts& facts);
    bool isOrphan(std::string_view name);
    bool isAbandoned(const JunkLocation& location, const std::string& name);
    bool isLeftBehind(
        const JunkLocation& location, const std::string& folder, const std::string& name) const;
    OrphanRule makeOrphanRule() const;
    ProgramEvidence makeProgramEvidence() const;
    void measure(JunkFindings& findings);

    const std::shared_ptr<const HostLayout> m_layout;
    const SmartScannerTools m_tools;
    const std::shared_ptr<ScanKnowledge> m_knowledge;
    const std::stop_token m_stop;
    const std::function<void()> m_noteMove;

    std::optional<Timestamp> m_cutOff; // worked out when it is first needed
    FoldersFound m_notMeasured;
};

} // namespace kestavon
