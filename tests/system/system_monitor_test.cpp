#include "support/fake_platform.h"
#include "system/system_monitor.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using ::testing::ElementsAre;

class SystemMonitorTest : public ::testing::Test {
protected:
    test::FakeMachine machine;
    const SystemMonitor monitor{
        machine.memory, machine.runningApplications, machine.processSignals};

    std::vector<std::int32_t> listed() const
    {
        std::vector<std::int32_t> ids;
        for (const auto& process : monitor.runningProcesses())
            ids.push_back(process.processIdentifier);
        return ids;
    }
};

TEST_F(SystemMonitorTest, ListsApplicationsByMemoryAndEqualOnesAsTheyCome)
{
    auto& applications = machine.runningApplications->applications;
    applications = {{.process = 901, .memoryBytes = 5}, {.process = 300, .memoryBytes = 9},
        {.process = 700, .memoryBytes = 5}, {.process = 500, .memoryBytes = 0},
        {.process = 400, .memoryBytes = 5}};
    EXPECT_THAT(listed(), ElementsAre(300, 901, 700, 400, 500));
    applications.clear();
    EXPECT_THAT(listed(), ElementsAre()) << "without a desktop";
}

TEST_F(SystemMonitorTest, NamesAnApplicationAsWellAsItCan)
{
    machine.runningApplications->applications = {{.identifier = "org.example.Editor",
                                                     .name = "Editor",
                                                     .icon = "editor",
                                                     .process = 300,
                                                     .startedAt = 7,
                                                     .memoryBytes = 3},
        {.identifier = "org.example.Nameless", .process = 301, .memoryBytes = 2},
        {.process = 302, .memoryBytes = 1}};
    const auto processes = monitor.runningProcesses();
    EXPECT_EQ(processes[0],
        (AppProcessInfo{.processIdentifier = 300,
            .processName = "Editor",
            .bundleIdentifier = "org.example.Editor",
            .memoryBytes = 3,
            .isSystemProcess = false,
            .icon = "editor",
            .startedAt = 7}));
    EXPECT_EQ(processes[1].processName, "org.example.Nameless");
    EXPECT_EQ(processes[2].processName, "Unknown");
    EXPECT_EQ(processes[2].bundleIdentifier, std::nullopt);
}

TEST(IsSystemProcess, ProtectsWhatTheSystemAndTheSessionNeed)
{
    const std::pair<RunningApplication, bool> rows[]{
        {{.identifier = "com.apple.Safari", .process = 5000}, true},
        {{.identifier = "com.applesauce.tool", .process = 5000}, false},
        {{.identifier = "Com.Apple.Safari", .process = 5000}, false},
        {{.identifier = "com.apple", .process = 5000}, false},
        {{.process = 150}, true},
        {{.process = 199}, true},
        {{.process = 200}, false},
        {{.identifier = "com.apple.x", .process = 200}, true},
        {{.process = 5000, .isOthers = true}, true},
        {{.process = 5000, .isOfSession = true}, true},
        {{.process = ::getpid()}, true},
    };
    for (const auto& [application, isSystem] : rows)
        EXPECT_EQ(isSystemProcess(application), isSystem)
            << application.identifier.value_or("none") << ' ' << application.process;
}

TEST_F(SystemMonitorTest, AsksOnlyTheProcessThatWasListedToQuit)
{
    machine.processSignals->starts = {{300, 7}, {301, 8}};
    machine.processSignals->refusing = {301};
    EXPECT_FALSE(monitor.quitProcess({.processIdentifier = 300,
        .processName = {},
        .bundleIdentifier = {},
        .icon = {},
        .startedAt = 6}));
    EXPECT_FALSE(monitor.quitProcess(301));
    EXPECT_FALSE(monitor.quitProcess(302));
    EXPECT_TRUE(monitor.quitProcess(300));
    EXPECT_THAT(machine.processSignals->terminated, ElementsAre(300));
}

} // namespace
} // namespace kestavon
