#pragma once

#include "core/domain/security_finding.h"

#include <QString>

namespace kestavon {

/// How a threat level is drawn.
struct ThreatBadge {
    QString label;
    QString symbol;
    QString color; ///< name of the level's colour
};

ThreatBadge threatBadge(ThreatLevel level);

} // namespace kestavon
