#pragma once

#include "cli/json_writer.h"
#include "core/domain/activity_event.h"
#include "core/domain/candidate_list.h"
#include "core/domain/duplicate_list.h"
#include "core/domain/installed_app.h"
#include "core/domain/junk_group.h"
#include "core/domain/quarantine_item.h"
#include "core/domain/record_list.h"
#include "core/domain/scan_phase.h"
#include "core/domain/security_finding.h"
#include "core/domain/startup_item.h"
#include "core/domain/system_state.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kestavon {

/// A list as one JSON array, in its order, one element after the other. Records are written as
/// `to_json` writes them, with their paths' bytes where text cannot hold them.
void writeJson(JsonWriter& json, const RecordList& records);
/// The records at these positions only.
void writeJson(
    JsonWriter& json, const RecordList& records, std::span<const std::uint32_t> positions);
void writeJson(JsonWriter& json, const CandidateList& candidates);
void writeJson(JsonWriter& json, const DuplicateList& duplicates);
void writeJson(JsonWriter& json, const std::vector<JunkGroup>& groups);
void writeJson(JsonWriter& json, const std::vector<InstalledApp>& apps);
void writeJson(JsonWriter& json, const std::vector<StartupItem>& items);
void writeJson(JsonWriter& json, const std::vector<SecurityFinding>& findings);
void writeJson(JsonWriter& json, const std::vector<AppProcessInfo>& processes);
void writeJson(JsonWriter& json, const std::vector<QuarantineItem>& items);
void writeJson(JsonWriter& json, const std::vector<ActivityEvent>& events);
void writeJson(JsonWriter& json, const StorageSummary& summary);
/// Null when there is none.
void writeJson(JsonWriter& json, const std::optional<MemorySnapshot>& memory);

/// The members of an object that tell a phase: its case, and its text under the name with "Text"
/// where it has one.
void writePhase(JsonWriter& json, std::string_view name, const ScanPhase& phase);

} // namespace kestavon
