#include "cli/interrupt_watch.h"

#include "cli/exit_code.h"

#include <atomic>
#include <csignal>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace kestavon {

namespace {

// A signal handler may touch no more than this.
std::atomic<int> interruptFd{-1};
std::atomic<bool> isInterrupted{false};

extern "C" void noteInterrupt(int)
{
    if (isInterrupted.exchange(true))
        ::_exit(interruptedExitCode);
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(interruptFd.load(), &one, sizeof one);
}

} // namespace

InterruptWatch::InterruptWatch(std::function<void()> onInterrupt)
    : m_onInterrupt(std::move(onInterrupt))
{
    const int fd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    interruptFd = fd;
    isInterrupted = false;
    m_notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this, fd] {
        std::uint64_t ignored = 0;
        [[maybe_unused]] const auto got = ::read(fd, &ignored, sizeof ignored);
        m_onInterrupt();
    });
    m_earlier[0] = std::signal(SIGINT, noteInterrupt);
    m_earlier[1] = std::signal(SIGTERM, noteInterrupt);
}

InterruptWatch::~InterruptWatch()
{
    std::signal(SIGINT, m_earlier[0]);
    std::signal(SIGTERM, m_earlier[1]);
    ::close(interruptFd.exchange(-1));
}

} // namespace kestavon
