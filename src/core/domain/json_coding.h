#pragma once

#include "core/domain/activity_event.h"
#include "core/domain/cleanup_candidate.h"
#include "core/domain/quarantine_item.h"
#include "core/domain/security_finding.h"

#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace kestavon {

/// Records as JSON objects, one key a field, named and ordered as the fields are. Identifiers are
/// written as `Uuid::text`, dates as `dateToText`, levels as raw values, and texts as `pathToText`
/// makes them, so that any reader accepts what any disk holds. Reading is as strict as writing,
/// but looks at the known keys only.
using OrderedJson = nlohmann::ordered_json;

/// Says which value of a document is not what was expected there: "record.size: expected a whole
/// number of 64 bits, found \"12\"".
class DecodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

void to_json(OrderedJson& json, const FileRecord& record);
void to_json(OrderedJson& json, const CleanupCandidate& candidate);
void to_json(OrderedJson& json, const SecurityFinding& finding);
void to_json(OrderedJson& json, const QuarantineItem& item);
void to_json(OrderedJson& json, const ActivityEvent& event);
void to_json(OrderedJson& json, const ThreatLevel& level);
void to_json(OrderedJson& json, const Uuid& id);

/// All throw `DecodingError` and then leave the record as it was.
void from_json(const OrderedJson& json, FileRecord& record);
void from_json(const OrderedJson& json, CleanupCandidate& candidate);
void from_json(const OrderedJson& json, SecurityFinding& finding);
void from_json(const OrderedJson& json, QuarantineItem& item);
void from_json(const OrderedJson& json, ActivityEvent& event);
void from_json(const OrderedJson& json, ThreatLevel& level);
void from_json(const OrderedJson& json, Uuid& id);

/// ISO 8601 in UTC, with as many decimals as the moment needs: "2026-11-16T13:05:00Z",
/// "2026-11-16T13:05:00.25Z".
std::string dateToText(Timestamp date);

/// Reads what `dateToText` writes, with up to nine decimals. Throws `DecodingError` for any other
/// text, for days that no month has, and for moments out of a `Timestamp`'s reach.
Timestamp dateFromText(std::string_view text);

} // namespace kestavon
