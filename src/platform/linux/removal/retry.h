#pragma once

#include <cerrno>

namespace kestavon {

/// Calls again what a signal interrupted; not for ever, because a file system may claim that every
/// time. -1 with `errno` as the call left it.
template <class Call> auto retrying(Call call)
{
    constexpr int attempts = 1000;
    auto result = call();
    for (int attempt = 1; result == -1 && errno == EINTR && attempt < attempts; ++attempt)
        result = call();
    return result;
}

} // namespace kestavon
