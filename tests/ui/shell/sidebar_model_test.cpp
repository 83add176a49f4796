#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "ui/shell/sidebar_model.h"

#include <gmock/gmock.h>

namespace kestavon::test {

namespace {

TEST(SidebarModel, RowsStandInTheirGroups)
{
    AppModel model(std::make_shared<FakeScanner>(), FakeMachine().platform());
    const SidebarModel sidebar(model);
    std::string rows;
    for (int row = 0; row < sidebar.rowCount(); ++row) {
        const auto text = [&](int role) {
            return sidebar.data(sidebar.index(row), role).toString().toStdString();
        };
        if (const auto group = text(SidebarModel::groupRole); !group.empty())
            rows += "[" + group + "] ";
        rows += text(SidebarModel::titleRole) + "; ";
    }
    EXPECT_EQ(rows,
        "[Analyze] Dashboard; Storage; Large Files; Duplicates; "
        "[Clean] Smart Clean; Cleaner; App Uninstaller; Safe Area; "
        "[Monitor] Performance; Processes; Startup Items; Security; "
        "[Manage] History; Settings; ");
}

TEST(SidebarModel, BadgesFollowAScan)
{
    FakeMachine machine;
    auto scanner = std::make_shared<FakeScanner>();
    AppModel model(scanner, machine.platform());
    SidebarModel sidebar(model);
    const auto cleaner = sidebar.index(sidebar.rowOf(AppSection::cleaner));
    EXPECT_EQ(sidebar.data(cleaner, SidebarModel::nameRole), QStringLiteral("Cleaner"));

    FileRecord cached;
    cached.path = "/home/alice/Library/Caches/a.db";
    cached.size = 10;
    model.startStorageScan();
    scanner->finishWith("/home/alice", {cached});
    ASSERT_TRUE(processEventsUntil([&] { return !model.scanPhase().isScanning(); }));
    EXPECT_EQ(sidebar.data(cleaner, SidebarModel::badgeRole), QStringLiteral("1"));
    EXPECT_EQ(sidebar.data(cleaner, SidebarModel::badgeColorRole), QStringLiteral("blue"));
    EXPECT_EQ(sidebar.data(cleaner, SidebarModel::nameRole), QStringLiteral("Cleaner, 1"));

    model.startStorageScan();
    EXPECT_EQ(sidebar.data(cleaner, SidebarModel::badgeRole), QString());
    model.stopStorageScan();
}

} // namespace

} // namespace kestavon::test
