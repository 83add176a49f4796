#include "duplicates/hashing_thread.h"

#include <system_error>
#include <utility>

namespace kestavon {

void HashingThread::begin(Sha256& sha256, std::span<const char> piece)
{
    if (!m_thread.joinable()) {
        try {
            m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
        } catch (const std::system_error&) { // The system has no more threads to give.
            sha256.update(piece);
            return;
        }
    }
    const std::lock_guard lock(m_mutex);
    m_sha256 = &sha256;
    m_piece = piece;
    m_changed.notify_all();
}

void HashingThread::finish()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_sha256; });
    if (auto failure = std::exchange(m_failure, nullptr))
        std::rethrow_exception(std::move(failure));
}

void HashingThread::run(const std::stop_token& stop)
{
    std::unique_lock lock(m_mutex);
    while (m_changed.wait(lock, stop, [this] { return m_sha256 != nullptr; })) {
        auto& sha256 = *m_sha256;
        const auto piece = m_piece;
        std::exception_ptr failure;
        lock.unlock();
        try {
            sha256.update(piece);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        m_failure = std::move(failure);
        m_sha256 = nullptr;
        m_changed.notify_all();
    }
}

} // namespace kestavon
