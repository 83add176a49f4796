#pragma once

#include "concurrency/serial_queue.h"
#include "core/model/main_queue.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace kestavon {

/// Asks the system what it nearly always answers in microseconds, and never hangs where it does
/// not: looking at a share whose server is gone may take for ever. Main thread.
class ImpatientAsker {
public:
    /// Gives the answer of `question`, which runs on another thread and must own what it uses, to
    /// `done`: before this returns, or else on the main thread as soon as it is there, unless
    /// `context` is gone by then. Answers come in the order of the questions. When there is still
    /// none to a question about something else, that one and those behind it are left behind and
    /// never answered.
    template <class Question, class Done>
    void ask(QObject* context, const std::string& about, Question question, Done done)
    {
        using Answer = std::invoke_result_t<Question&>;
        const auto exchange = std::make_shared<Exchange<Answer>>();
        if (*m_unanswered > 0 && about != m_waitsFor)
            leaveBehind();
        const bool answersAreComing = *m_unanswered == 0;
        if (answersAreComing)
            m_waitsFor = about;
        ++*m_unanswered;
        m_queue->post([exchange, question = std::move(question)]() mutable {
            exchange->put(question());
            MainQueue::instance().post([exchange] { exchange->deliverLate(); });
        });
        exchange->done = [context = QPointer<QObject>(context), asked = std::weak_ptr(m_unanswered),
                             done = std::move(done)](Answer answer) {
            const auto unanswered = asked.lock();
            if (!unanswered)
                return; // left behind
            --*unanswered;
            if (context)
                done(std::move(answer));
        };
        // Who has not answered the last question does not answer this one either.
        if (answersAreComing)
            exchange->deliverWithin(patience);
    }

private:
    static constexpr auto patience = std::chrono::milliseconds(40);

    template <class Answer> struct Exchange {
        std::function<void(Answer)> done; // main thread only; empty once called

        void put(Answer value)
        {
            const std::lock_guard lock(m_mutex);
            m_answer.emplace(std::move(value));
            m_answered.notify_one();
        }

        void deliverWithin(std::chrono::milliseconds longest)
        {
            std::unique_lock lock(m_mutex);
            if (!m_answered.wait_for(lock, longest, [this] { return m_answer.has_value(); }))
                return;
            lock.unlock();
            deliverLate();
        }

        void deliverLate()
        {
            if (const auto deliver = std::exchange(done, nullptr))
                deliver(std::move(*m_answer));
        }

    private:
        std::mutex m_mutex;
        std::condition_variable m_answered;
        std::optional<Answer> m_answer; // guarded by m_mutex until it is there
    };

    static std::unique_ptr<SerialQueue> newQueue()
    {
        return std::make_unique<SerialQueue>(SerialQueue::Urgency::asTheCaller);
    }

    void leaveBehind()
    {
        m_queue = newQueue();
        m_unanswered = std::make_shared<unsigned>(0);
    }

    std::unique_ptr<SerialQueue> m_queue = newQueue();
    // Main thread only. The number of questions to the queue that have no answer yet, gone with it.
    std::shared_ptr<unsigned> m_unanswered = std::make_shared<unsigned>(0);
    std::string m_waitsFor; // what the oldest of them is about
};

} // namespace kestavon
