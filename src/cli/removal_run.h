#pragma once

#include "cli/command_line.h"
#include "cli/console.h"
#include "cli/model_run.h"
#include "core/model/app_model.h"
#include "core/model/questions.h"

#include <cstddef>
#include <functional>
#include <string>

namespace kestavon {

/// What commands that change something share: the question before, and the account after. Main
/// thread.
class RemovalRun {
public:
    RemovalRun(const CommandLine& line, AppModel& model, const Console& console);

    ModelRun& run() { return m_run; }
    bool wants(OutputForm form) const { return m_line.form == form; }

    /// Whether a question can be answered: by --yes, by a person, or because nothing happens. Says
    /// so when it cannot; then nothing may be begun.
    bool canBeConfirmed();
    /// Puts the question; false when the answer is no, which has been said then.
    bool confirm(const Question& question);

    /// Says which of `count` paths still have something lying at them, as what could not be done.
    void tellWhatStayed(std::size_t count, const std::function<std::string(std::size_t)>& pathAt);
    /// Prints what the model's history tells of the deed, and in JSON what is held now.
    void printDeeds();
    /// Says to a person that there is nothing to do, and prints the document of no deeds otherwise.
    void printNothing(const std::string& sentence);
    /// The exit code so far; a question that nobody can answer is a wrong use.
    int exitCode() const;

private:
    const CommandLine& m_line;
    AppModel& m_model;
    const Console& m_console;
    ModelRun m_run;
    bool m_isWrongUse = false;
};

} // namespace kestavon
