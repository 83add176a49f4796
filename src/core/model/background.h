#pragma once

#include "concurrency/cancelled.h"
#include "concurrency/serial_queue.h"
#include "core/model/main_queue.h"

#include <QPointer>

#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace kestavon {

/// How a background job ended: with a value, cancelled, or with an error.
template <class T> struct Outcome {
    std::optional<T> value;
    std::string error; ///< in words, for a person; empty unless the job failed

    bool cancelled() const { return !value && error.empty(); }
};

/// Runs `work` on `queue`'s thread and then `done(Outcome)` on the main thread, unless `context` is
/// gone by then. `work` must own what it uses: it may run on after everybody lost interest.
/// Main thread.
template <class Work, class Done>
void runInBackground(SerialQueue& queue, QObject* context, Work work, Done done)
{
    using T = std::invoke_result_t<Work&>;
    struct Job {
        Work work;
        Done done;
        QPointer<QObject> context; // only looked at on the main thread
        Outcome<T> outcome;
    };
    auto job = std::make_shared<Job>(Job{std::move(work), std::move(done), context, {}});
    queue.post([job = std::move(job)]() mutable {
        try {
            job->outcome.value.emplace(job->work());
        } catch (const Cancelled&) {
        } catch (const std::bad_alloc&) {
            job->outcome.error = "There isn't enough memory.";
        } catch (const std::exception& failure) {
            job->outcome.error = failure.what();
            if (job->outcome.error.empty())
                job->outcome.error = "The work could not be completed.";
        } catch (...) {
            job->outcome.error = "The work could not be completed.";
        }
        // Moved, so that the last owner is the main thread: what `done` captured may belong there.
        MainQueue::instance().post([job = std::move(job)] {
            if (job->context)
                job->done(std::move(job->outcome));
        });
    });
}

} // namespace kestavon
