#pragma once

#include <cerrno>

namespace kestavon {

/// Calls again what a signal interrupted. -1 with `errno` as the call left it.
template <class Call> auto retrying(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace kestavon
