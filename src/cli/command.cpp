#include "cli/command.h"

#include "cli/exit_code.h"

namespace kestavon {

namespace {

int run(const CommandLine& line, AppModel& model, const Console& console)
{
    switch (line.verb) {
    case Verb::clean:
    case Verb::remove:
    case Verb::merge:
    case Verb::uninstall: return runRemoval(line, model, console);
    case Verb::safeAreaList:
    case Verb::safeAreaRestore:
    case Verb::safeAreaDelete:
    case Verb::safeAreaEmpty: return runSafeArea(line, model, console);
    default: break;
    }
    return runListing(line, model, console);
}

} // namespace

int runCommand(const CommandLine& line, AppModel& model, const Console& console)
{
    if (!line.folder.empty())
        model.setSelectedRoot(typedPath(line.folder));
    const auto code = run(line, model, console);
    console.out.flush();
    if (console.out)
        return code;
    console.complain("The output could not be written.");
    return failedExitCode;
}

} // namespace kestavon
