#include "cli/removal_run.h"

#include "cli/exit_code.h"
#include "cli/printable.h"
#include "cli/report.h"
#include "cli/staying_reason.h"

#include <utility>

namespace kestavon {

RemovalRun::RemovalRun(const CommandLine& line, AppModel& model, const Console& console)
    : m_line(line)
    , m_model(model)
    , m_console(console)
    , m_run(model, console)
{
}

bool RemovalRun::canBeConfirmed()
{
    if (m_line.yes || m_line.dryRun || m_console.readLine)
        return true;
    m_isWrongUse = true;
    m_console.complain("Nobody can be asked here; --yes goes ahead and --dry-run only shows.");
    return false;
}

bool RemovalRun::confirm(const Question& question)
{
    if (m_line.yes)
        return true;
    if (!m_console.readLine)
        return canBeConfirmed();
    m_console.err << printablePath(question.title) << '\n'
                  << printablePath(question.message) << '\n'
                  << question.action << "? [y/N] " << std::flush;
    const auto answer = m_console.readLine();
    if (answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes")
        return true;
    m_run.fail("Nothing was changed.");
    return false;
}

void RemovalRun::tellWhatStayed(
    std::size_t count, const std::function<std::string(std::size_t)>& pathAt)
{
    constexpr std::size_t mostNamed = 20;
    const auto& platform = m_model.platform();
    std::size_t stayed = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto path = pathAt(i);
        if (!platform.places->kindOf(path) || ++stayed > mostNamed)
            continue;
        if (m_run.isInterrupted())
            m_run.fail(path
                + " is still there. If it is a folder that was being deleted, a part of it is "
                  "gone.");
        else
            m_run.fail(path + " is still there: " + stayingReason(path, platform));
    }
    if (stayed > mostNamed)
        m_run.fail("So are " + std::to_string(stayed - mostNamed) + " others.");
}

void RemovalRun::printDeeds()
{
    if (wants(OutputForm::json)) {
        if (!m_run.isInterrupted())
            m_run.perform([this](AppModel::Finished finished) {
                m_model.findEarlierHeldItems(std::move(finished));
            });
        return printDocument(
            m_model, {DocumentField::history, DocumentField::quarantine}, m_console.out);
    }
    const auto& history = m_model.history();
    for (auto event = history.rbegin(); event != history.rend(); ++event)
        m_console.out << printablePath(event->title + ": " + event->detail) << '\n';
}

void RemovalRun::printNothing(const std::string& sentence)
{
    if (wants(OutputForm::json))
        return printDeeds();
    m_console.out << printablePath(sentence) << '\n';
}

int RemovalRun::exitCode() const
{
    return m_isWrongUse ? usageExitCode : m_run.exitCode();
}

} // namespace kestavon
