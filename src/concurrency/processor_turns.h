#pragma once

#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace kestavon {

/// Lets only so many threads compute at a time. The others are those that wait for a disk: more
/// threads than processors keep a disk busy, but of what lies in memory they would only push each
/// other's pieces out of the processors' caches.
class ProcessorTurns {
public:
    /// As many at a time as the machine has processors.
    explicit ProcessorTurns(std::stop_token stop);

    /// The calling thread's turn to compute, from its construction to its destruction. Waits until
    /// there is one; once a stop is requested nobody waits any more.
    class Turn {
    public:
        explicit Turn(ProcessorTurns& turns)
            : m_turns(turns)
        {
            m_turns.take();
        }
        ~Turn() { m_turns.giveBack(); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        /// What `wait`, which may block, gives; meanwhile it is another thread's turn.
        template <class Wait> auto whileWaiting(Wait wait)
        {
            m_turns.giveBack();
            auto result = wait();
            m_turns.take();
            return result;
        }

    private:
        ProcessorTurns& m_turns;
    };

private:
    void take();
    void giveBack();

    std::stop_token m_stop;
    std::mutex m_mutex;
    std::condition_variable_any m_given;
    int m_free; // guarded by m_mutex; negative after a stop
};

} // namespace kestavon
