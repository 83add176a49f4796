#pragma once

#include <chrono>
#include <functional>

namespace kestavon {

/// Runs `work` on a thread of its own and waits for its end, but no longer than `patience`: then
/// the thread is left behind and goes on. So `work` must own, by value or shared pointer, what it
/// touches. False when it has not ended, or could not begin for want of threads.
bool runWithPatience(std::chrono::milliseconds patience, std::function<void()> work);

} // namespace kestavon
