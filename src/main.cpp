#include "cli/command.h"
#include "cli/command_line.h"
#include "cli/console.h"
#include "cli/exit_code.h"
#include "concurrency/giving_way.h"
#include "platform/host_layout.h"
#include "program_model.h"

#include <QCoreApplication>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include <unistd.h>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

extern "C" void endAtOnce(int)
{
    ::_exit(interruptedExitCode);
}

int runWithoutWindow(int argc, char** argv, const CommandLine& line)
{
    // Between two operations there is nothing to be stopped cleanly.
    std::signal(SIGINT, endAtOnce);
    giveWayToNobody();
    QCoreApplication application(argc, argv);
    auto model = makeModel(line);
    return runCommand(line, model, processConsole());
}

/// The window is a program of its own, so that a command does not wait until everything is loaded
/// that it takes to draw one.
int becomeWindow(char** argv, const Console& console)
{
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto window = self.parent_path().parent_path() / KESTAVON_WINDOW_PROGRAM;
    ::execv(window.c_str(), argv);
    console.complain("The window could not be started (" + window.native() + ": "
        + std::generic_category().message(errno)
        + "); kestavon --help lists what works without it.");
    return failedExitCode;
}

bool hasDisplay()
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* value = std::getenv(name);
        if (value && *value)
            return true;
    }
    return false;
}

int run(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto line = readCommandLine(arguments);
    const auto console = processConsole();
    if (!line.error.empty()) {
        console.complain(line.error + " Try kestavon --help.");
        return usageExitCode;
    }
    if (!line.answer.empty()) {
        std::cout << line.answer;
        return doneExitCode;
    }
    if (const auto missing = missingPlaceOf(line, currentHostEnvironment().isHomeKnown);
        !missing.empty()) {
        console.complain(missing);
        if (line.form == OutputForm::json)
            std::cout << "{}\n";
        return failedExitCode;
    }
    if (const auto fault = folderFaultOf(line); !fault.empty()) {
        console.complain(fault + " Try kestavon --help.");
        return usageExitCode;
    }
    if (line.verb != Verb::window)
        return runWithoutWindow(argc, argv, line);
    if (!hasDisplay() && withoutToolkitOptions(arguments).size() == arguments.size()) {
        console.complain("There is no display here for the window; kestavon scan does its first "
                         "part in the terminal.");
        return failedExitCode;
    }
    return becomeWindow(argv, console);
}

} // namespace

int main(int argc, char** argv)
{
    const int code = run(argc, argv);
    // A worker may still sit in a read that never returns, using what exit() would destroy.
    std::cout.flush();
    std::fflush(nullptr);
    std::_Exit(code);
}
