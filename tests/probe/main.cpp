// Runs one operation of the engines on real files and ends: for scripts that make system calls fail
// and kill programs half-way.
//
//     kestavon_probe verbs
//     kestavon_probe VERB [--hook COMMAND] [--] [PATH...]
//
// Status 0: the operation returned. 1: it failed, with a message on the standard error. 2: misuse.

#include "probe/verbs.h"

#include <cstdio>
#include <exception>
#include <string_view>

int main(int argc, char** argv)
{
    // NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
    using namespace kestavon::probe;
    const std::string name = argc > 1 ? argv[1] : "verbs";
    if (name == "verbs") {
        for (const auto& [verb, run] : verbs())
            std::puts(verb.c_str());
        return 0;
    }
    const auto verb = verbs().find(name);
    if (verb == verbs().end()) {
        std::fprintf(stderr, "kestavon_probe has no verb %s\n", name.c_str());
        return 2;
    }
    Arguments arguments;
    bool isPath = false;
    for (int i = 2; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (!isPath && argument == "--hook" && i + 1 < argc)
            arguments.hook = argv[++i];
        else if (!isPath && argument == "--")
            isPath = true;
        else
            arguments.paths.emplace_back(argument);
    }
    try {
        verb->second(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
