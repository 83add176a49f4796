#include "core/domain/app_section.h"
#include "core/domain/installed_app.h"
#include "core/domain/junk_group.h"
#include "core/domain/preview_sort_order.h"
#include "core/domain/scan_phase.h"
#include "core/domain/security_finding.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using ::testing::ElementsAre;

template <class Enum> std::vector<std::string_view> rawValues()
{
    std::vector<std::string_view> values;
    for (const auto& entry : allCases<Enum>())
        values.push_back(entry.raw);
    return values;
}

template <class Enum> void expectEveryCaseToBeFoundByItsOwnText()
{
    std::size_t ordinal = 0;
    for (const auto& entry : allCases<Enum>()) {
        EXPECT_EQ(static_cast<std::size_t>(entry.value), ordinal) << entry.raw;
        EXPECT_EQ(rawValue(entry.value), entry.raw);
        EXPECT_EQ(fromRawValue<Enum>(entry.raw), entry.value) << entry.raw;
        ++ordinal;
    }
}

TEST(Enumerations, ListTheirTextsInOrder)
{
    EXPECT_THAT(rawValues<ThreatLevel>(),
        ElementsAre("Safe", "Unknown", "Suspicious", "High Risk", "Confirmed Signature"));
    EXPECT_THAT(rawValues<JunkCategory>(),
        ElementsAre("App Caches", "System Logs", "Crash Reports", "Trash", "Developer Tools",
            "Orphaned Apps", "Old Downloads", "Xcode Artifacts", "iOS Backups", "Browser Caches",
            "Mail & Messages"));
    EXPECT_THAT(rawValues<LeftoverFile::LeftoverKind>(),
        ElementsAre(
            "Preferences", "Cache", "App Support", "Container", "Logs", "Saved State", "Other"));
    EXPECT_THAT(rawValues<AppSection>(),
        ElementsAre("Dashboard", "Smart Clean", "Storage", "Large Files", "Duplicates", "Cleaner",
            "App Uninstaller", "Performance", "Processes", "Startup Items", "Security", "Safe Area",
            "History", "Settings"));
    EXPECT_THAT(rawValues<PreviewSortOrder>(),
        ElementsAre(
            "Largest First", "Smallest First", "Name A\u2013Z", "Newest First", "Oldest First"));
}

TEST(Enumerations, FindEachCaseByItsOwnText)
{
    expectEveryCaseToBeFoundByItsOwnText<ThreatLevel>();
    expectEveryCaseToBeFoundByItsOwnText<JunkCategory>();
    expectEveryCaseToBeFoundByItsOwnText<LeftoverFile::LeftoverKind>();
    expectEveryCaseToBeFoundByItsOwnText<AppSection>();
    expectEveryCaseToBeFoundByItsOwnText<PreviewSortOrder>();
}

TEST(Enumerations, KnowNoOtherText)
{
    EXPECT_EQ(fromRawValue<ThreatLevel>("High Risk"), ThreatLevel::highRisk);
    for (const auto* text : {"high risk", "High Risk ", " High Risk", "HighRisk", "highRisk", ""})
        EXPECT_EQ(fromRawValue<ThreatLevel>(text), std::nullopt) << text;
    EXPECT_EQ(fromRawValue<PreviewSortOrder>("Name A-Z"), std::nullopt);
    EXPECT_EQ(fromRawValue<JunkCategory>("Mail &amp; Messages"), std::nullopt);
}

TEST(ScanPhase, IsEqualByCaseAndText)
{
    EXPECT_EQ(ScanPhase::partial("a"), ScanPhase::partial("a"));
    EXPECT_NE(ScanPhase::partial("a"), ScanPhase::partial("b"));
    EXPECT_NE(ScanPhase::partial("a"), ScanPhase::failed("a"));
    EXPECT_NE(ScanPhase::scanning(""), ScanPhase::idle());
    EXPECT_NE(ScanPhase::finished(), ScanPhase::idle());
    EXPECT_EQ(ScanPhase(), ScanPhase::idle());
    EXPECT_TRUE(ScanPhase::scanning("x").isScanning());
    EXPECT_FALSE(ScanPhase::partial("x").isScanning());
    EXPECT_EQ(ScanPhase::failed("why").text(), "why");
}

} // namespace
} // namespace kestavon
