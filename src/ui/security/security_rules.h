#pragma once

#include "core/domain/scan_phase.h"
#include "core/domain/security_finding.h"
#include "ui/widgets/confirmation.h"

#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// What the findings come to, beside the button that looks for them.
struct SecuritySummary {
    QString text; ///< empty: there is nothing to say
    std::string_view symbol;
    std::string_view color; ///< a colour's name, of the symbol
    bool colorsText = false; ///< the text has that colour too

    friend bool operator==(const SecuritySummary&, const SecuritySummary&) = default;
};

SecuritySummary securitySummary(
    const std::vector<SecurityFinding>& findings, const ScanPhase& phase);

/// Whether the user may remove the file: its path begins as that of the home does.
bool mayRemoveFinding(const SecurityFinding& finding, std::string_view home);

/// The question before the finding's file goes to the Trash.
ConfirmationTexts removeFindingQuestion(const SecurityFinding& finding);

} // namespace kestavon
