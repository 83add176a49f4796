#include "platform/process_signals.h"

#include "platform/linux/file_descriptor.h"
#include "platform/linux/process_stat.h"

#include <cerrno>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kestavon {

std::optional<std::uint64_t> SystemProcessSignals::startOf(std::int32_t process) const
{
    if (process <= 0)
        return std::nullopt;
    const auto path = "/proc/" + std::to_string(process) + "/stat";
    const auto stat = readProcessStat(AT_FDCWD, path.c_str());
    return stat ? std::optional(stat->startedAt) : std::nullopt;
}

bool SystemProcessSignals::terminate(std::int32_t process, std::uint64_t startedAt)
{
    // 0 and below are groups of processes; see kill(2).
    if (process <= 0 || process == ::getpid())
        return false;
    // The descriptor stands for the process that has the id now, also when the id is given to
    // another one later: what is compared below is what gets the signal. Not in C libraries before
    // 2.36.
    const FileDescriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    const bool hasNoDescriptors = !descriptor && errno != ESRCH;
    if (startOf(process) != startedAt)
        return false;
    if (descriptor)
        return ::syscall(SYS_pidfd_send_signal, descriptor.get(), SIGTERM, nullptr, 0) == 0;
    return hasNoDescriptors && ::kill(process, SIGTERM) == 0;
}

} // namespace kestavon
