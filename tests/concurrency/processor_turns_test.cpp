#include "concurrency/processor_turns.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <semaphore>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(ProcessorTurns, AreTakenByNoMoreThreadsThanThereAreProcessors)
{
    const int processors = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    ProcessorTurns turns({});
    std::atomic<int> computing = 0;
    std::atomic<int> most = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 3 * processors; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 200; ++round) {
                    const ProcessorTurns::Turn turn(turns);
                    const int now = ++computing;
                    int before = most;
                    while (now > before && !most.compare_exchange_weak(before, now)) { }
                    std::this_thread::yield();
                    --computing;
                }
            });
        }
    }
    EXPECT_LE(most, processors);
    EXPECT_GE(most, 1);
}

TEST(ProcessorTurns, PassToOthersWhileAThreadWaitsForItsDisk)
{
    ProcessorTurns turns({});
    const auto processors = std::max(1u, std::thread::hardware_concurrency());
    std::counting_semaphore<> disk{0};
    std::vector<std::future<int>> waiting;
    for (unsigned i = 0; i < processors; ++i) {
        waiting.push_back(std::async(std::launch::async, [&turns, &disk] {
            ProcessorTurns::Turn turn(turns);
            return turn.whileWaiting([&disk] {
                disk.acquire();
                return 7;
            });
        }));
    }
    // Would never return if the waiting ones kept theirs.
    for (unsigned i = 0; i < processors; ++i)
        const ProcessorTurns::Turn turn(turns);
    disk.release(processors);
    for (auto& thread : waiting)
        EXPECT_EQ(thread.get(), 7);
}

TEST(ProcessorTurns, HoldNobodyUpAfterAStop)
{
    std::stop_source stop;
    ProcessorTurns turns(stop.get_token());
    std::vector<std::unique_ptr<ProcessorTurns::Turn>> all;
    for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i)
        all.push_back(std::make_unique<ProcessorTurns::Turn>(turns));
    auto oneMore
        = std::async(std::launch::async, [&turns] { const ProcessorTurns::Turn turn(turns); });
    stop.request_stop();
    oneMore.get();
}

} // namespace
} // namespace kestavon
