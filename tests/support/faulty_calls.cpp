#include "support/faulty_calls.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

// These stand in for the C library's functions of the same names in the whole program.

namespace kestavon::test {

namespace {

FaultyCalls::Rule currentRule; // NOLINT(bugprone-throwing-static-initialization): empty
bool isInRule = false; // What a rule does itself passes.
bool hidesMountNumbers = false;

template <class... Arguments>
long answerOf(const SystemCall& call, long number, Arguments... arguments)
{
    std::optional<Fault> fault;
    if (currentRule && !isInRule) {
        isInRule = true;
        fault = currentRule(call);
        isInRule = false;
    }
    if (!fault)
        return ::syscall(number, arguments...);
    if (fault->isDone)
        ::syscall(number, arguments...);
    errno = fault->error;
    return fault->error == 0 ? 0 : -1;
}

std::string_view textOf(const char* name)
{
    return name ? name : "";
}

} // namespace

FaultyCalls::FaultyCalls(Rule rule)
{
    currentRule = std::move(rule);
}

FaultyCalls::~FaultyCalls()
{
    currentRule = nullptr;
}

WithoutMountNumbers::WithoutMountNumbers()
{
    hidesMountNumbers = true;
}

WithoutMountNumbers::~WithoutMountNumbers()
{
    hidesMountNumbers = false;
}

} // namespace kestavon::test

using kestavon::test::answerOf;
using kestavon::test::textOf;

extern "C" {

int renameat2(int from, const char* name, int to, const char* target, unsigned flags) noexcept
{
    return static_cast<int>(answerOf({"renameat2", textOf(name), textOf(target), flags},
        SYS_renameat2, from, name, to, target, flags));
}

int renameat(int from, const char* name, int to, const char* target) noexcept
{
    return static_cast<int>(answerOf(
        {"renameat", textOf(name), textOf(target), 0}, SYS_renameat2, from, name, to, target, 0U));
}

int linkat(int from, const char* name, int to, const char* target, int flags) noexcept
{
    return static_cast<int>(
        answerOf({"linkat", textOf(name), textOf(target), static_cast<unsigned>(flags)}, SYS_linkat,
            from, name, to, target, flags));
}

int unlinkat(int folder, const char* name, int flags) noexcept
{
    return static_cast<int>(answerOf({"unlinkat", textOf(name), {}, static_cast<unsigned>(flags)},
        SYS_unlinkat, folder, name, flags));
}

int mkdirat(int folder, const char* name, mode_t mode) noexcept
{
    return static_cast<int>(
        answerOf({"mkdirat", textOf(name), {}, mode}, SYS_mkdirat, folder, name, mode));
}

int fsync(int descriptor)
{
    return static_cast<int>(answerOf({"fsync", {}, {}, 0}, SYS_fsync, descriptor));
}

off_t lseek(int descriptor, off_t offset, int whence) noexcept
{
    return answerOf(
        {"lseek", {}, {}, static_cast<unsigned>(whence)}, SYS_lseek, descriptor, offset, whence);
}

int statx(int folder, const char* name, int flags, unsigned mask, struct statx* status) noexcept
{
    const auto result
        = answerOf({"statx", textOf(name), {}, mask}, SYS_statx, folder, name, flags, mask, status);
    if (result == 0 && kestavon::test::hidesMountNumbers)
        status->stx_mask &= ~STATX_MNT_ID;
    return static_cast<int>(result);
}

} // extern "C"
