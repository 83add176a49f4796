#pragma once

#include "core/domain/hashing.h"
#include "core/domain/named_enum.h"
#include "core/domain/uuid.h"

#include <string>

namespace kestavon {

/// How worrying a finding of the security review is, mildest first.
enum class ThreatLevel { safe, unknown, suspicious, highRisk, confirmed };

template <> struct NamedCases<ThreatLevel> {
    static constexpr std::array<NamedCase<ThreatLevel>, 5> table{{
        {ThreatLevel::safe, "Safe"},
        {ThreatLevel::unknown, "Unknown"},
        {ThreatLevel::suspicious, "Suspicious"},
        {ThreatLevel::highRisk, "High Risk"},
        {ThreatLevel::confirmed, "Confirmed Signature"},
    }};
};

/// One result of the security review.
struct SecurityFinding {
    Uuid id;
    std::string path;
    ThreatLevel level = ThreatLevel::unknown;
    std::string reason; ///< shown to the user unchanged

    friend bool operator==(const SecurityFinding&, const SecurityFinding&) = default;
    std::size_t hashValue() const { return hashFields(id, path, level, reason); }
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::SecurityFinding);
