#pragma once

#include <chrono>
#include <functional>
#include <stop_token>

namespace kestavon {

/// Runs `work` on `threads` threads at once and returns when every call has returned; rethrows what
/// one of them threw.
///
/// Throws `Cancelled` soon after a stop is requested, also when a thread is stuck in a read that
/// never returns: who has not returned after `patience` is left behind. So `work` must own, by
/// value or shared pointer, what it touches, and should itself return when it sees the stop.
void runOnThreads(unsigned threads, std::function<void()> work, const std::stop_token& stop,
    std::chrono::milliseconds patience = std::chrono::milliseconds(30));

} // namespace kestavon
