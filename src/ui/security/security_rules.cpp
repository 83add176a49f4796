#include "ui/security/security_rules.h"

#include "core/domain/removal_guard.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <algorithm>

namespace kestavon {

SecuritySummary securitySummary(
    const std::vector<SecurityFinding>& findings, const ScanPhase& phase)
{
    const auto highRisk = std::ranges::count_if(findings,
        [](const SecurityFinding& finding) { return finding.level >= ThreatLevel::highRisk; });
    if (highRisk > 0) {
        return {.text = u"%1 high-risk"_s.arg(highRisk),
            .symbol = "exclamationmark.octagon.fill",
            .color = "red",
            .colorsText = true};
    }
    if (phase != ScanPhase::finished())
        return {};
    return {.text = findings.empty() ? u"No threats found"_s : u"No confirmed threats"_s,
        .symbol = "checkmark.shield.fill",
        .color = "green"};
}

bool mayRemoveFinding(const SecurityFinding& finding, std::string_view home)
{
    return finding.path.starts_with(home);
}

ConfirmationTexts removeFindingQuestion(const SecurityFinding& finding)
{
    return {
        .title = u"Remove \"%1\"?"_s.arg(fileNameText(lastComponent(finding.path))),
        .message = u"The file will be moved to the Trash. This disables the persistence entry."_s,
        .action = u"Move to Trash"_s,
        .destructive = true,
    };
}

} // namespace kestavon
