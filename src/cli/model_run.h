#pragma once

#include "cli/console.h"
#include "core/domain/junk_category.h"
#include "core/model/app_model.h"

#include <functional>
#include <string>
#include <vector>

namespace kestavon {

/// Runs the model's operations, one after the other, each to its end: with a line that tells how
/// far it is, and stopped by Ctrl+C. What goes wrong is said on the console. Runs an event loop of
/// its own while an operation lasts. Main thread.
class ModelRun {
public:
    ModelRun(AppModel& model, const Console& console);

    /// Scans the model's root. True when the root could be scanned, if only in part; what is
    /// missing has been said then, and counts as a failure.
    bool scan();
    /// Looks for duplicates in what was scanned.
    bool findDuplicates();
    /// Looks for junk of these categories, or of all where there are none.
    bool findJunk(const std::vector<JunkCategory>& categories);

    /// Reviews what was scanned, and the machine's own places.
    bool reviewSecurity();
    /// Lists the installed applications.
    bool findApps();
    /// Starts what publishes `field` in the end, and waits for that.
    bool await(AppModel::Field field, const std::function<void()>& start);

    /// An operation on files: gets the function to call at its end.
    using Operation = std::function<void(AppModel::Finished)>;
    /// True when it ended without an error.
    bool perform(const Operation& operation);

    bool isInterrupted() const { return m_isInterrupted; }
    /// What the run amounts to: done, failed or interrupted.
    int exitCode() const;
    /// Something could not be done.
    void fail(std::string_view sentence);

private:
    void run(const std::function<void()>& start, const std::function<bool()>& isDone,
        const std::function<void()>& stop);
    std::string progressText() const;

    AppModel& m_model;
    const Console& m_console;
    bool m_isInterrupted = false;
    bool m_hasFailed = false;
};

} // namespace kestavon
