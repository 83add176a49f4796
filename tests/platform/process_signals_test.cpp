#include "platform/memory_relief.h"
#include "platform/process_signals.h"

#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestavon {
namespace {

/// A child that waits for ever, and is killed at last.
class Child {
public:
    Child()
        : m_id(::fork())
    {
        if (m_id == 0) {
            ::signal(SIGTERM, SIG_DFL);
            for (;;)
                ::pause();
        }
    }
    ~Child()
    {
        if (!m_ended) {
            ::kill(m_id, SIGKILL);
            ::waitpid(m_id, nullptr, 0);
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    ::pid_t id() const { return m_id; }
    bool runs() const { return ::waitpid(m_id, nullptr, WNOHANG) == 0; }
    /// The signal that ended it.
    int waitForEnd()
    {
        int status = 0;
        m_ended = ::waitpid(m_id, &status, 0) == m_id;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    ::pid_t m_id;
    bool m_ended = false;
};

TEST(ProcessSignals, EndTheProcessThatWasMeantAndNoOther)
{
    SystemProcessSignals signals;
    Child child;
    const auto started = signals.startOf(child.id());
    ASSERT_TRUE(started);
    EXPECT_FALSE(signals.terminate(child.id(), *started - 1)) << "another had the id before";
    EXPECT_TRUE(child.runs());
    EXPECT_TRUE(signals.terminate(child.id(), *started));
    EXPECT_EQ(child.waitForEnd(), SIGTERM);
    EXPECT_FALSE(signals.terminate(child.id(), *started)) << "it is gone";
    EXPECT_EQ(signals.startOf(child.id()), std::nullopt);
}

TEST(ProcessSignals, NeverReachGroupsOrThisProgram)
{
    SystemProcessSignals signals;
    // In a group of its own, so that a signal to the whole group would end this child only.
    const auto child = ::fork();
    if (child == 0) {
        ::setpgid(0, 0);
        ::signal(SIGTERM, SIG_DFL);
        const auto self = ::getpid();
        const auto started = signals.startOf(self).value_or(0);
        const bool refused = !signals.terminate(0, 0) && !signals.terminate(-self, started)
            && !signals.terminate(self, started);
        ::_exit(refused ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(signals.startOf(0), std::nullopt);
    EXPECT_EQ(signals.startOf(-1), std::nullopt);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(MemoryRelief, WritesToAllOfABlockAndHoldsOneOnly)
{
    const auto child = ::fork(); // with a peak of its own
    if (child == 0) {
        constexpr long kibibyte = 1024;
        constexpr auto block = static_cast<long>(SystemMemoryRelief::blockBytes) / kibibyte;
        const auto peak = [] {
            ::rusage usage{};
            ::getrusage(RUSAGE_SELF, &usage);
            return usage.ru_maxrss; // KiB
        };
        const auto before = peak();
        bool used = true;
        for (int i = 0; i < SystemMemoryRelief::blocks; ++i)
            used = SystemMemoryRelief::useBlock() && used;
        const auto grown = peak() - before;
        // Some pages were resident already.
        ::_exit(used && grown > block * 9 / 10 && grown < block * 3 / 2 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
#endif

} // namespace
} // namespace kestavon
