#pragma once

#include "duplicates/sha256.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <span>
#include <stop_token>
#include <thread>

namespace kestavon {

/// A thread that hashes one piece after the other while its owner reads the next. Its owner is one
/// thread.
class HashingThread {
public:
    /// Begins to hash a piece; the one before must be finished. Both arguments stay untouched until
    /// `finish` returns.
    void begin(Sha256& sha256, std::span<const char> piece);

    /// Waits for what was begun, if anything; rethrows what hashing it threw.
    void finish();

private:
    void run(const std::stop_token& stop);

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    Sha256* m_sha256 = nullptr; // guarded by m_mutex; null: nothing to do
    std::span<const char> m_piece; // guarded by m_mutex
    std::exception_ptr m_failure; // guarded by m_mutex
    std::jthread m_thread; // its owner's; ends before what it uses
};

} // namespace kestavon
