#include "support/qt_printing.h"
#include "ui/security/security_rules.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

SecurityFinding finding(ThreatLevel level, std::string path = "/home/alice/x")
{
    return {.id = Uuid::random(), .path = std::move(path), .level = level, .reason = "r"};
}

TEST(SecuritySummary, CountsFromHighRiskOnAndElseSpeaksAfterAReviewOnly)
{
    using enum ThreatLevel;
    const auto idle = ScanPhase::idle();
    const auto finished = ScanPhase::finished();
    const struct {
        std::vector<SecurityFinding> findings;
        ScanPhase phase;
        QString text;
        std::string_view color;
    } cases[] = {
        {{}, idle, "", ""},
        {{}, ScanPhase::scanning("x"), "", ""},
        {{}, finished, "No threats found", "green"},
        {{finding(suspicious), finding(unknown)}, finished, "No confirmed threats", "green"},
        {{finding(suspicious)}, idle, "", ""},
        {{finding(confirmed), finding(highRisk), finding(safe)}, finished, "2 high-risk", "red"},
        {{finding(highRisk)}, idle, "1 high-risk", "red"},
        {{finding(highRisk)}, ScanPhase::scanning("x"), "1 high-risk", "red"},
    };
    for (const auto& row : cases) {
        const auto summary = securitySummary(row.findings, row.phase);
        EXPECT_EQ(summary.text, row.text);
        EXPECT_EQ(summary.color, row.color);
        EXPECT_EQ(summary.colorsText, row.color == "red");
    }
}

TEST(SecurityRules, MayRemoveWhatBeginsAsTheHomeDoes)
{
    const auto mayRemove = [](const char* path) {
        return mayRemoveFinding(finding(ThreatLevel::unknown, path), "/Users/alice");
    };
    EXPECT_TRUE(mayRemove("/Users/alice/Library/LaunchAgents/x.plist"));
    EXPECT_TRUE(mayRemove("/Users/alice2/Library/LaunchAgents/x.plist"));
    EXPECT_FALSE(mayRemove("/Library/LaunchDaemons/x.plist"));
    EXPECT_FALSE(mayRemove("/mnt/Users/alice/x.plist"));
}

TEST(SecurityRules, AsksByTheFilesName)
{
    const auto question
        = removeFindingQuestion(finding(ThreatLevel::unknown, "/home/alice/a\xff.plist"));
    EXPECT_EQ(question.title, "Remove \"a\uFFFD.plist\"?");
    EXPECT_EQ(question.message,
        "The file will be moved to the Trash. This disables the persistence entry.");
    EXPECT_EQ(question.action, "Move to Trash");
    EXPECT_TRUE(question.destructive);
}

} // namespace
} // namespace kestavon
