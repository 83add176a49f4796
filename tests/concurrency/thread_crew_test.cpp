#include "concurrency/cancelled.h"
#include "concurrency/thread_crew.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

using namespace std::chrono_literals;

TEST(ThreadCrew, ReturnsWhenEveryThreadHas)
{
    std::atomic<int> finished = 0;
    runOnThreads(4,
        [&finished] {
            std::this_thread::sleep_for(5ms);
            ++finished;
        },
        {});
    EXPECT_EQ(finished, 4);
}

TEST(ThreadCrew, PassesOnWhatAThreadThrew)
{
    EXPECT_THROW(
        runOnThreads(2, [] { throw std::runtime_error("no memory"); }, {}), std::runtime_error);
}

TEST(ThreadCrew, LeavesAThreadBehindThatAnswersNoStop)
{
    struct Disk {
        std::binary_semaphore answers{0};
        std::binary_semaphore asked{0};
        std::binary_semaphore left{0};
    };
    const auto disk = std::make_shared<Disk>();
    std::stop_source stop;
    std::jthread stopper([&] {
        disk->asked.acquire();
        stop.request_stop();
    });
    EXPECT_THROW(runOnThreads(
                     1,
                     [disk] {
                         disk->asked.release();
                         disk->answers.acquire();
                         disk->left.release();
                     },
                     stop.get_token()),
        Cancelled);
    disk->answers.release();
    disk->left.acquire();
}

} // namespace
} // namespace kestavon
