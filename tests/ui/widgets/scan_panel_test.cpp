#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/widgets/scan_panel_rules.h"
#include "ui/widgets/scan_panel_state.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEventsUntil;

TEST(ScanPanel, HasOneLayoutForEachPhase)
{
    struct Case {
        ScanPhase phase;
        QString symbol;
        QString color;
        QString title;
        QString count;
        QString detail;
    };
    const Case cases[] = {
        {ScanPhase::scanning("Starting scan…"), "", "accent", "Scanning", "12345 files",
            "Running in background — browse other sections freely"},
        {ScanPhase::partial("Stopped at 1 GB; results are partial"),
            "exclamationmark.triangle.fill", "orange", "Stopped at 1 GB; results are partial", "",
            "Browse and use the results found before the scan stopped."},
        {ScanPhase::failed("The disk is gone."), "exclamationmark.triangle.fill", "red",
            "The disk is gone.", "", ""},
        {ScanPhase::finished(), "checkmark.circle.fill", "green", "Scan complete — 12345 files", "",
            "1.5 MB total · 512 bytes hidden"},
        {ScanPhase::idle(), "checkmark.circle", "secondary", "Ready to scan", "", ""},
    };
    const StorageSummary summary{.count = 7, .bytes = 1'500'000, .hiddenBytes = 512};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title.toStdString());
        const auto texts = scanPanelTexts(c.phase, 12345, summary);
        EXPECT_EQ(texts.symbol, c.symbol);
        EXPECT_EQ(texts.color, c.color);
        EXPECT_EQ(texts.title, c.title);
        EXPECT_EQ(texts.count, c.count);
        EXPECT_EQ(texts.detail, c.detail);
    }
}

class ScanPanelStateTest : public testing::Test {
protected:
    test::FakeMachine m_machine;
    std::shared_ptr<test::FakeScanner> m_scanner = std::make_shared<test::FakeScanner>();
    AppModel m_model{m_scanner, m_machine.platform()};
    LiveCount m_liveCount{m_model};
    ScanPanelState m_panel{m_model, m_liveCount};
};

TEST_F(ScanPanelStateTest, CountsUpWithARunningScanAndSaysHowItEnded)
{
    EXPECT_EQ(m_panel.title(), "Ready to scan");
    m_panel.startScan();
    EXPECT_TRUE(m_panel.scanning());
    EXPECT_EQ(m_panel.count(), "0 files");

    m_scanner->waitForScans(1);
    m_scanner->reportLiveCount(2000);
    ASSERT_TRUE(processEventsUntil([&] { return m_liveCount.shown() > 0; }));
    EXPECT_LT(m_liveCount.shown(), 2000) << "the count runs up to the value";
    ASSERT_TRUE(
        processEventsUntil([&] { return m_panel.foundSoFar() == "2000 files found so far"; }));
    EXPECT_EQ(m_panel.count(), "2000 files");

    m_scanner->finishWith("/home/alice", {test::file("/home/alice/a", 1000)});
    ASSERT_TRUE(processEventsUntil([&] { return !m_panel.scanning(); }));
    EXPECT_EQ(m_panel.title(), "Scan complete — 1 files");
    EXPECT_EQ(m_panel.detail(), "1 KB total · Zero KB hidden");

    // The next scan starts from nothing, at once.
    m_panel.startScan();
    EXPECT_EQ(m_panel.count(), "0 files");
    m_panel.stopScan();
    EXPECT_EQ(m_panel.title(), "Ready to scan");
}

TEST_F(ScanPanelStateTest, SpeaksOfEachPhaseOnceAndOfTheCountNowAndThen)
{
    int spoken = 0;
    QObject::connect(&m_panel, &ScanPanelState::spokenTextChanged, [&] { ++spoken; });
    m_panel.startScan();
    EXPECT_EQ(spoken, 1);
    EXPECT_EQ(m_panel.spokenText(), "Scanning, 0 files found so far");

    m_scanner->waitForScans(1);
    m_scanner->reportLiveCount(1000);
    ASSERT_TRUE(processEventsUntil([&] { return m_liveCount.shown() == 1000; }));
    EXPECT_EQ(spoken, 1) << "not for every step of the count";

    m_panel.stopScan();
    EXPECT_EQ(m_panel.spokenText(), "Ready to scan");
    EXPECT_EQ(spoken, 2);
}

TEST_F(ScanPanelStateTest, PassesOnWhatCouldNotBeRead)
{
    EXPECT_EQ(m_panel.notice(), "");
    m_panel.startScan();
    m_scanner->finishWith(ScanOutcome{.records = std::make_shared<const RecordList>(),
        .hitMemoryLimit = false,
        .rootProblem = {},
        .unreadableFolders = 3});
    ASSERT_TRUE(processEventsUntil([&] { return !m_panel.scanning(); }));
    EXPECT_TRUE(m_panel.notice().startsWith("3 folders could not be read"));
    m_panel.startScan();
    EXPECT_EQ(m_panel.notice(), "") << "a new scan has nothing to tell yet";
}

} // namespace
} // namespace kestavon
