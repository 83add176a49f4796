#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "ui/support/window_test.h"

#include <QAccessible>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;

class DashboardWindow : public test::WindowTest {
protected:
    DashboardWindow() { open(); }

    QString label(const char* button) { return need(button).property("label").toString(); }
    QString value(const char* card) { return need(card).property("value").toString(); }
    /// The panel is laid out anew with the next frame.
    bool panelGrowsTo(double height)
    {
        return processEventsUntil([&] { return need("scanPanel").height() == height; });
    }
    bool enabled(const char* button) { return need(button).isEnabled(); }
};

TEST_F(DashboardWindow, TurnsItsScanButtonIntoAStopButtonAndBack)
{
    EXPECT_EQ(label("scanStorage"), "Scan Storage");
    EXPECT_FALSE(enabled("findDuplicates"));

    clickItem("scanStorage");
    EXPECT_TRUE(model->scanPhase().isScanning());
    EXPECT_EQ(label("scanStorage"), "Stop Scan");
    EXPECT_EQ(value("itemsScanned"), "0…");
    EXPECT_EQ(value("totalStorage"), "Scanning…");
    EXPECT_EQ(value("hiddenFiles"), "—");

    clickItem("scanStorage");
    EXPECT_FALSE(model->scanPhase().isScanning());
    EXPECT_EQ(label("scanStorage"), "Scan Storage");
}

TEST_F(DashboardWindow, BringsIntoSightWhatTheTabKeyReaches)
{
    window->resize(1180, 420);
    processEvents();
    const auto& button = need("scanStorage");
    const auto bottom = [&] { return button.mapToScene({0, button.height()}).y(); };
    ASSERT_GT(bottom(), 420);
    need("scanStorage").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(processEventsUntil([&] { return bottom() < 420; }));
}

TEST_F(DashboardWindow, StartsTheAnalysesOnceThereIsSomethingToAnalyse)
{
    scan({test::file("/home/alice/a", 1000), test::file("/home/alice/b", 1000)});
    EXPECT_EQ(value("itemsScanned"), "2");
    clickItem("findDuplicates");
    EXPECT_TRUE(model->duplicatePhase().isScanning());
    EXPECT_FALSE(enabled("findDuplicates"));
    EXPECT_EQ(model->section(), AppSection::dashboard) << "it goes on in the background";
    duplicateFinder->finishWith({{0, 1}});
    EXPECT_TRUE(processEventsUntil([&] { return enabled("findDuplicates"); }));
    EXPECT_EQ(model->duplicates()->size(), 1U);

    bool wasOffered = true; // over in a moment
    QObject::connect(model.get(), &AppModel::fieldChanged, [&](AppModel::Field) {
        if (model->securityPhase().isScanning())
            wasOffered = states->dashboard()->canReviewSecurity();
    });
    clickItem("securityScan");
    EXPECT_EQ(model->section(), AppSection::dashboard);
    EXPECT_TRUE(
        processEventsUntil([&] { return model->securityPhase() == ScanPhase::finished(); }));
    EXPECT_FALSE(wasOffered);
    EXPECT_EQ(model->history().front().title, "Security scan complete");
}

TEST_F(DashboardWindow, ShowsRecentActivityOnlyWhenThereWasSome)
{
    EXPECT_EQ(item("recentActivity"), nullptr);
    scan({test::file("/home/alice/a", 1000)});
    EXPECT_NE(item("recentActivity"), nullptr);
    EXPECT_TRUE(states->dashboard()->recentActivity()->ticking());

    model->setSection(AppSection::storage);
    processEvents();
    EXPECT_FALSE(states->dashboard()->recentActivity()->ticking())
        << "nobody reads the ages while another screen is shown";
}

TEST_F(DashboardWindow, DrawsEveryPhaseOfTheScan)
{
    // Each phase has its own layout; what QML has to complain about fails the test.
    scan({.records = RecordList::fromRecords("/home/alice", std::vector<FileRecord>{}),
        .hitMemoryLimit = true,
        .rootProblem = {},
        .unreadableFolders = 2});
    EXPECT_TRUE(panelGrowsTo(68));
    EXPECT_NE(item("scanNotice"), nullptr);

    clickItem("scanStorage");
    EXPECT_TRUE(panelGrowsTo(94));
    EXPECT_EQ(item("scanNotice"), nullptr) << "the new scan has nothing to tell yet";

    scanner->failWith("The disk is gone.");
    ASSERT_TRUE(processEventsUntil([&] { return !model->scanPhase().isScanning(); }));
    EXPECT_TRUE(panelGrowsTo(62));
}

TEST_F(DashboardWindow, TellsAScreenReaderHowFullTheDiskIs)
{
    machine.volumes->fallback = VolumeCapacity{1000, 250};
    model->refreshDiskSpace();
    auto* bar = QAccessible::queryAccessibleInterface(&need("diskBar"));
    ASSERT_TRUE(bar && bar->valueInterface());
    EXPECT_EQ(bar->valueInterface()->currentValue().toDouble(), 75);
    EXPECT_EQ(bar->valueInterface()->maximumValue().toDouble(), 100);
}

} // namespace
} // namespace kestavon
