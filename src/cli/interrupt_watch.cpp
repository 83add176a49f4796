#include "cli/interrupt_watch.h"

#include <atomic>
#include <csignal>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace kestavon {

namespace {

// A signal handler may touch no more than this.
std::atomic<int> interruptFd{-1};

extern "C" void noteInterrupt(int)
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(interruptFd.load(), &one, sizeof one);
}

} // namespace

InterruptWatch::InterruptWatch(std::function<void()> onInterrupt)
    : m_onInterrupt(std::move(onInterrupt))
{
    const int fd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    interruptFd = fd;
    m_notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this, fd] {
        std::uint64_t ignored = 0;
        [[maybe_unused]] const auto got = ::read(fd, &ignored, sizeof ignored);
        m_onInterrupt();
    });
    std::signal(SIGINT, noteInterrupt);
    std::signal(SIGTERM, noteInterrupt);
}

InterruptWatch::~InterruptWatch()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    ::close(interruptFd.exchange(-1));
}

} // namespace kestavon
