#include "ui/command_line.h"

namespace kestavon {

namespace {

bool readOption(const std::string& name, const std::string& value, CommandLine& line)
{
    if (name == "--theme") {
        if (value != "light" && value != "dark")
            line.error = "--theme is light or dark, not '" + value + "'.";
        line.theme = value;
    } else if (name == "--system-root") {
        if (value.empty())
            line.error = "--system-root needs a folder.";
        line.systemRoot = value;
    } else {
        return false;
    }
    return true;
}

} // namespace

CommandLine readCommandLine(const std::vector<std::string>& arguments)
{
    CommandLine line;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size() && line.error.empty(); ++i) {
        const auto& argument = arguments[i];
        if (optionsEnded || !argument.starts_with("-")) {
            if (!line.folder.empty() || argument.empty())
                line.error = argument.empty() ? "The folder's name is empty."
                                              : "One folder at most, please.";
            line.folder = argument;
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "--help" || argument == "-h") {
            line.help = true;
        } else if (argument == "--version") {
            line.version = true;
        } else if (const auto equals = argument.find('='); equals != std::string::npos) {
            if (!readOption(argument.substr(0, equals), argument.substr(equals + 1), line))
                line.error = "There is no option " + argument.substr(0, equals) + ".";
        } else if (const bool hasNext = i + 1 < arguments.size();
                   readOption(argument, hasNext ? arguments[i + 1] : "", line)) {
            if (!hasNext)
                line.error = argument + " needs a value.";
            ++i;
        } else {
            line.error = "There is no option " + argument + ".";
        }
    }
    return line;
}

std::string_view commandLineHelp()
{
    return "Usage: kestavon [options] [FOLDER]\n"
           "       kestavon scan [FOLDER]\n"
           "\n"
           "Finds and reclaims disk space. FOLDER is the folder to look at, the home folder\n"
           "unless given; a folder named \"scan\" is written ./scan. When Kestavon is already\n"
           "running, its window comes to the front instead of a second one.\n"
           "\n"
           "  --theme light|dark   do not follow the desktop's colours\n"
           "  --system-root DIR    where \"/\" of an attached disk is (normally found from HOME)\n"
           "  --help               show this text\n"
           "  --version            show the version\n"
           "\n"
           "KESTAVON_GPU=1 in the environment draws with the graphics processor.\n";
}

} // namespace kestavon
