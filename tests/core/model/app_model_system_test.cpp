#include "core/model/app_model.h"
#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEvents;
using test::processEventsUntil;
using testing::ElementsAre;
using Field = AppModel::Field;

MemorySnapshot memoryWith(std::uint64_t inactive)
{
    return {.freeBytes = 1, .activeBytes = 2, .inactiveBytes = inactive, .wiredBytes = 3};
}

RunningApplication application(std::int32_t process, std::uint64_t bytes)
{
    return {.name = "App " + std::to_string(process),
        .process = process,
        .startedAt = 7,
        .memoryBytes = bytes};
}

class AppModelSystem : public testing::Test {
protected:
    AppModelSystem() { machine.memory->value = memoryWith(100); }

    AppModel& model()
    {
        if (!m_model) {
            m_model = std::make_unique<AppModel>(
                std::make_shared<test::FakeScanner>(), machine.platform());
            QObject::connect(m_model.get(), &AppModel::fieldChanged, m_model.get(),
                [this](Field field) { changed.push_back(field); });
        }
        return *m_model;
    }
    void destroyModel() { m_model.reset(); }
    bool waitFor(Field field)
    {
        return processEventsUntil(
            [&] { return std::ranges::find(changed, field) != changed.end(); });
    }
    bool waitUntilOptimized()
    {
        return processEventsUntil([&] { return !model().isFreezingRAM(); });
    }
    std::vector<std::int32_t> listed()
    {
        std::vector<std::int32_t> ids;
        for (const auto& process : model().processes())
            ids.push_back(process.processIdentifier);
        return ids;
    }

    test::FakeMachine machine;
    std::vector<Field> changed;

private:
    std::unique_ptr<AppModel> m_model;
};

TEST_F(AppModelSystem, KnowsTheMemoryFromTheBeginningAndNoProcesses)
{
    EXPECT_EQ(model().memory(), memoryWith(100));
    EXPECT_THAT(listed(), ElementsAre());
    EXPECT_EQ(machine.runningApplications->asked, 0);
}

TEST_F(AppModelSystem, ReadsMemoryAndProcessesAnew)
{
    model();
    machine.memory->value = memoryWith(50);
    machine.runningApplications->applications = {application(300, 1), application(301, 2)};
    model().refreshMemory();
    model().refreshProcesses();
    EXPECT_EQ(model().memory(), memoryWith(100)) << "the main thread does not wait";
    ASSERT_TRUE(waitFor(Field::memory) && waitFor(Field::processes));
    EXPECT_EQ(model().memory(), memoryWith(50));
    EXPECT_THAT(listed(), ElementsAre(301, 300));

    changed.clear();
    machine.memory->value.reset();
    model().refreshMemory();
    ASSERT_TRUE(waitFor(Field::memory));
    EXPECT_EQ(model().memory(), std::nullopt) << "what cannot be read is not known any more";
}

TEST_F(AppModelSystem, DoesNotPileUpReadings)
{
    model();
    const auto memoryBefore = machine.memory->asked.load();
    {
        const std::scoped_lock hung(machine.memory->hung, machine.runningApplications->hung);
        for (int i = 0; i < 5; ++i) {
            model().refreshMemory();
            model().refreshProcesses();
        }
        ASSERT_TRUE(processEventsUntil([&] {
            return machine.memory->asked > memoryBefore && machine.runningApplications->asked > 0;
        }));
        processEvents();
    }
    ASSERT_TRUE(waitFor(Field::memory) && waitFor(Field::processes));
    processEvents();
    EXPECT_EQ(machine.memory->asked, memoryBefore + 1);
    EXPECT_EQ(machine.runningApplications->asked, 1);
    changed.clear();
    model().refreshProcesses();
    EXPECT_TRUE(waitFor(Field::processes)) << "the next one is read again";
}

TEST_F(AppModelSystem, AHungListOfProcessesDoesNotKeepTheMemoryFromBeingRead)
{
    model();
    const std::lock_guard hung(machine.runningApplications->hung);
    model().refreshProcesses();
    model().refreshMemory();
    EXPECT_TRUE(waitFor(Field::memory));
}

TEST_F(AppModelSystem, OptimizingTellsWhatItBroughtAndThatItIsOver)
{
    model();
    machine.runningApplications->applications = {application(300, 1)};
    machine.memory->value = memoryWith(268'435'556);
    model().refreshMemory();
    ASSERT_TRUE(waitFor(Field::memory));
    machine.memoryRelief->whenRelieved = [this] { machine.memory->value = memoryWith(100); };
    changed.clear();

    model().optimizeMemory();
    EXPECT_TRUE(model().isFreezingRAM());
    ASSERT_TRUE(waitUntilOptimized());
    EXPECT_THAT(changed,
        ElementsAre(Field::isFreezingRAM, Field::ramFreedBytes, Field::memory, Field::processes,
            Field::ramFreedBytes, Field::isFreezingRAM, Field::history));
    EXPECT_EQ(model().ramFreedBytes(), 268'435'456);
    EXPECT_EQ(model().memory(), memoryWith(100));
    EXPECT_THAT(listed(), ElementsAre(300));
    EXPECT_EQ(model().history().front().title, "RAM Optimized");
    EXPECT_EQ(model().history().front().detail, "256 MB reclaimed from inactive pages");
}

TEST_F(AppModelSystem, OptimizingNeverTellsOfLessThanNothing)
{
    const std::pair<std::optional<MemorySnapshot>, std::optional<MemorySnapshot>> runs[]{
        {memoryWith(100), memoryWith(500)}, {std::nullopt, memoryWith(500)},
        {std::nullopt, std::nullopt}};
    for (const auto& [before, after] : runs) {
        machine.memory->value = before;
        destroyModel();
        machine.memoryRelief->whenRelieved = [&, value = after] { machine.memory->value = value; };
        model().optimizeMemory();
        ASSERT_TRUE(waitUntilOptimized());
        EXPECT_EQ(model().ramFreedBytes(), 0);
        EXPECT_EQ(model().history().front().detail, "Zero KB reclaimed from inactive pages");
    }
    // A counter that is gone counts as 0.
    machine.memory->value = memoryWith(2048);
    destroyModel();
    machine.memoryRelief->whenRelieved = [this] { machine.memory->value.reset(); };
    model().optimizeMemory();
    ASSERT_TRUE(waitUntilOptimized());
    EXPECT_EQ(model().ramFreedBytes(), 2048);
}

TEST_F(AppModelSystem, OptimizesOnceAtATimeAndOffTheMainThread)
{
    model();
    auto thread = std::this_thread::get_id();
    machine.memoryRelief->whenRelieved = [&thread] { thread = std::this_thread::get_id(); };
    {
        const std::lock_guard hung(machine.memoryRelief->hung);
        model().optimizeMemory();
        model().optimizeMemory();
        processEvents();
        EXPECT_TRUE(model().isFreezingRAM());
    }
    ASSERT_TRUE(waitUntilOptimized());
    processEvents();
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_EQ(machine.memoryRelief->times, 1);
    EXPECT_EQ(model().history().size(), 1U);
    model().optimizeMemory();
    EXPECT_EQ(model().ramFreedBytes(), 0);
    ASSERT_TRUE(waitUntilOptimized());
    EXPECT_EQ(machine.memoryRelief->times, 2);
}

/// Tells how often it was asked; the second answer takes as long as a test holds `slow`.
class OvertakenCounters final : public MemoryCounters {
public:
    std::optional<MemorySnapshot> snapshot() const override
    {
        const auto number = ++asked;
        if (number == 2) { // the first one is the model's own
            const std::lock_guard lock(slow);
        }
        return memoryWith(number);
    }
    mutable std::atomic<std::uint64_t> asked{0};
    mutable std::mutex slow;
};

TEST(AppModelReadings, OneThatBeganBeforeAnotherDoesNotReplaceIt)
{
    test::FakeMachine machine;
    const auto counters = std::make_shared<OvertakenCounters>();
    auto platform = machine.platform();
    platform.memory = counters;
    AppModel model(std::make_shared<test::FakeScanner>(), std::move(platform));
    {
        const std::lock_guard slow(counters->slow);
        model.refreshMemory();
        ASSERT_TRUE(processEventsUntil([&] { return counters->asked == 2; }));
        model.optimizeMemory();
        ASSERT_TRUE(processEventsUntil([&] { return !model.isFreezingRAM(); }));
        EXPECT_EQ(model.memory(), memoryWith(3));
    }
    model.refreshProcesses();
    // The late one is over when another can begin.
    ASSERT_TRUE(processEventsUntil([&] {
        EXPECT_NE(model.memory(), memoryWith(2));
        model.refreshMemory();
        return counters->asked > 3;
    }));
    EXPECT_TRUE(processEventsUntil([&] { return model.memory() == memoryWith(4); }));
}

TEST_F(AppModelSystem, MayGoWhileItReadsAndOptimizes)
{
    model();
    const auto relief = machine.memoryRelief;
    const auto before = machine.memory->asked.load();
    {
        const std::scoped_lock hung(relief->hung, machine.memory->hung);
        model().refreshMemory();
        model().optimizeMemory();
        ASSERT_TRUE(processEventsUntil([&] { return machine.memory->asked > before; }));
        destroyModel();
    }
    processEvents(); // what comes home finds nobody
}

TEST_F(AppModelSystem, AsksTheProcessThatWasListedToQuit)
{
    machine.runningApplications->applications = {application(300, 1)};
    machine.processSignals->starts = {{300, 7}};
    model().refreshProcesses();
    ASSERT_TRUE(waitFor(Field::processes));
    EXPECT_TRUE(model().quitProcess(model().processes().front()));
    EXPECT_THAT(machine.processSignals->terminated, ElementsAre(300));
    EXPECT_THAT(listed(), ElementsAre(300)) << "until the next refresh";
    machine.processSignals->starts = {{300, 8}}; // somebody else has the id now
    EXPECT_FALSE(model().quitProcess(model().processes().front()));
    EXPECT_EQ(machine.processSignals->terminated.size(), 1U);
}

} // namespace
} // namespace kestavon
