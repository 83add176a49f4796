#include "ui/widgets/threat_badge_rules.h"

#include "ui/widgets/display_text.h"

namespace kestavon {

ThreatBadge threatBadge(ThreatLevel level)
{
    const auto label = displayText(rawValue(level));
    switch (level) {
    case ThreatLevel::safe: return {label, u"checkmark.shield.fill"_s, u"green"_s};
    case ThreatLevel::unknown: break;
    case ThreatLevel::suspicious: return {label, u"exclamationmark.triangle"_s, u"orange"_s};
    case ThreatLevel::highRisk: return {label, u"exclamationmark.octagon"_s, u"red"_s};
    case ThreatLevel::confirmed: return {label, u"exclamationmark.octagon.fill"_s, u"red"_s};
    }
    return {label, u"questionmark.circle"_s, u"secondary"_s};
}

} // namespace kestavon
