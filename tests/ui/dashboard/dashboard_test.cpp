#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/dashboard/dashboard_state.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEventsUntil;

const StorageSummary summary{.count = 12345, .bytes = 2'500'000'000, .hiddenBytes = 999};

TEST(DashboardMetrics, KnowOnlyTheLiveCountWhileTheScanRuns)
{
    EXPECT_EQ(dashboardMetrics(ScanPhase::scanning("x"), 12000, summary),
        (DashboardMetrics{"12000…", "Scanning…", "—"}));
    const DashboardMetrics totals{"12345", "2.5 GB", "999 bytes"};
    for (const auto& phase :
        {ScanPhase::idle(), ScanPhase::finished(), ScanPhase::partial("p"), ScanPhase::failed("f")})
        EXPECT_EQ(dashboardMetrics(phase, 12000, summary), totals);
}

TEST(AnalysisButtons, NeedRecordsAndNoScanAndNoAnalysisUnderWay)
{
    const auto idle = ScanPhase::idle();
    const auto running = ScanPhase::scanning("x");
    EXPECT_TRUE(analysisCanStart(true, idle, idle));
    EXPECT_TRUE(analysisCanStart(true, ScanPhase::partial("p"), ScanPhase::finished()));
    EXPECT_FALSE(analysisCanStart(false, ScanPhase::finished(), idle));
    EXPECT_FALSE(analysisCanStart(true, running, idle));
    EXPECT_FALSE(analysisCanStart(true, ScanPhase::finished(), running));
}

class DashboardStateTest : public testing::Test {
protected:
    void scan(const std::vector<FileRecord>& records)
    {
        m_model.startStorageScan();
        m_scanner->finishWith("/home/alice", records);
        ASSERT_TRUE(processEventsUntil([&] { return !m_model.scanPhase().isScanning(); }));
    }

    test::FakeMachine m_machine;
    std::shared_ptr<test::FakeScanner> m_scanner = std::make_shared<test::FakeScanner>();
    AppModel m_model{m_scanner, m_machine.platform()};
    LiveCount m_liveCount{m_model};
    DashboardState m_dashboard{m_model, m_liveCount};
};

TEST_F(DashboardStateTest, FollowsAScanFromStartToEnd)
{
    EXPECT_EQ(m_dashboard.folder(), "/home/alice");
    EXPECT_EQ(m_dashboard.itemsScanned(), "0");
    EXPECT_EQ(m_dashboard.totalStorage(), "Zero KB");
    EXPECT_FALSE(m_dashboard.canFindDuplicates());

    m_model.startStorageScan();
    EXPECT_EQ(m_dashboard.itemsScanned(), "0…");
    EXPECT_EQ(m_dashboard.hiddenFiles(), "—");

    m_scanner->finishWith(
        "/home/alice", {test::file("/home/alice/a", 3000), test::file("/home/alice/.b", 1000)});
    ASSERT_TRUE(processEventsUntil([&] { return !m_model.scanPhase().isScanning(); }));
    EXPECT_EQ(m_dashboard.itemsScanned(), "2");
    EXPECT_EQ(m_dashboard.totalStorage(), "4 KB");
    EXPECT_EQ(m_dashboard.hiddenFiles(), "1 KB");
    EXPECT_TRUE(m_dashboard.canFindDuplicates());
    EXPECT_TRUE(m_dashboard.canReviewSecurity());

    m_model.startStorageScan();
    EXPECT_FALSE(m_dashboard.canFindDuplicates()) << "a new scan has no records yet";
    m_model.stopStorageScan();
}

TEST_F(DashboardStateTest, ShowsTheNewestThreeEventsWithTheirAge)
{
    auto& recent = *m_dashboard.recentActivity();
    EXPECT_TRUE(recent.empty());
    scan({});
    EXPECT_FALSE(recent.empty());
    EXPECT_EQ(recent.rowCount(), 1);

    m_machine.clock->time += std::chrono::minutes(5);
    for (int i = 1; i <= 3; ++i)
        scan(std::vector<FileRecord>(static_cast<std::size_t>(i), test::file("/home/alice/a", 1)));
    // Those that came at once are shown together.
    ASSERT_TRUE(processEventsUntil([&] { return recent.rowCount() == 3; }));
    const auto cell
        = [&](int row, int role) { return recent.data(recent.index(row), role).toString(); };
    EXPECT_EQ(cell(0, ActivityListModel::TitleRole), "Storage scan complete");
    EXPECT_EQ(cell(0, ActivityListModel::DetailRole), "3 items scanned");
    EXPECT_EQ(cell(2, ActivityListModel::DetailRole), "1 items scanned");
    EXPECT_EQ(cell(0, ActivityListModel::AgeRole), "now");
    m_machine.clock->time += std::chrono::minutes(5);
    EXPECT_EQ(cell(0, ActivityListModel::AgeRole), "5 minutes ago");
}

TEST_F(DashboardStateTest, KeepsTheAgeCurrentWhileShown)
{
    scan({});
    auto& recent = *m_dashboard.recentActivity();
    int ticks = 0;
    QObject::connect(&recent, &QAbstractItemModel::dataChanged, [&] { ++ticks; });
    recent.setTicking(true);
    EXPECT_EQ(ticks, 1) << "a view that comes back is brought up to date";
    ASSERT_TRUE(processEventsUntil([&] { return ticks >= 2; })) << "the age changes every second";
}

TEST(ActivityAge, ChangesWithTheNextSecondAndLaterWithTheNextMinute)
{
    using namespace std::chrono_literals;
    const auto moment = Timestamp{1'795'000'000s};
    EXPECT_EQ(millisecondsToNextAge(moment, moment), 1000);
    EXPECT_EQ(millisecondsToNextAge(moment, moment + 59s + 400ms), 600);
    EXPECT_EQ(millisecondsToNextAge(moment, moment + 60s), 60'000);
    EXPECT_EQ(millisecondsToNextAge(moment, moment + 3h + 59s), 1000);
    EXPECT_EQ(millisecondsToNextAge(moment + 2s, moment), 3000) << "the clock was set back";
    EXPECT_EQ(millisecondsToNextAge(moment + 1h, moment), 60'000);
}

} // namespace
} // namespace kestavon
