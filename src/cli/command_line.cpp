#include "cli/command_line.h"

#include "cli/command_table.h"
#include "cli/manual.h"
#include "cli/printable.h"
#include "core/model/updater_controller.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <CLI/CLI.hpp>

namespace kestavon {

namespace {

/// The parser takes some words for lists, for nothing, or for its own marks. A mark of ours, which
/// the table takes off again, keeps them words.
std::string marked(std::string argument)
{
    constexpr std::string_view special = "[{%\x01";
    const bool isSpecial = argument.empty() || special.find(argument.front()) != special.npos;
    return isSpecial ? '\x01' + argument : argument;
}

std::string sentence(const std::string& text)
{
    auto line = printablePath(text);
    if (!line.ends_with('.'))
        line += '.';
    return line;
}

/// What the table alone cannot see.
std::string faultOf(const CommandLine& line)
{
    switch (line.verb) {
    case Verb::clean:
        if (line.cleansJunk && !line.folder.empty())
            return "Clean a folder or junk, not both at once.";
        if (!line.cleansJunk && line.folder.empty())
            return "clean needs a folder, or --junk and categories.";
        break;
    case Verb::safeAreaRestore:
        if (line.all == !line.items.empty())
            return "restore needs the items, or --all.";
        break;
    case Verb::safeAreaDelete:
        if (line.items.empty())
            return "delete needs the items; empty deletes them all.";
        break;
    default: break;
    }
    return {};
}

/// The command whose help was asked for: the innermost that was read.
const CLI::App& readCommand(const CLI::App& app)
{
    const auto commands = app.get_subcommands();
    return commands.empty() ? app : readCommand(*commands.front());
}

} // namespace

CommandLine readCommandLine(std::vector<std::string> arguments)
{
    CommandLine line;
    const auto table = makeCommandTable(line);
    std::ranges::transform(arguments, arguments.begin(), marked);
    std::ranges::reverse(arguments); // the parser takes them from the end
    try {
        table->parse(arguments);
        if (table->get_option("FOLDER")->count() > 0 && !table->get_subcommands().empty())
            line.error = "The folder comes after the command.";
        else
            line.error = faultOf(line);
    } catch (const CLI::CallForHelp&) {
        line.answer = helpText(readCommand(*table));
    } catch (const CLI::CallForVersion&) {
        line.answer = "Kestavon " + UpdaterController::version() + '\n';
    } catch (const CLI::ParseError& error) {
        line.error = sentence(error.what());
    }
    return line;
}

std::vector<std::string> withoutToolkitOptions(const std::vector<std::string>& arguments)
{
    // What QApplication documents. All but the last take a value.
    static constexpr std::array<std::string_view, 12> options{"platform", "platformpluginpath",
        "platformtheme", "plugin", "qwindowgeometry", "qwindowicon", "qwindowtitle", "session",
        "display", "geometry", "style", "stylesheet"};
    std::vector<std::string> rest;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string_view name = arguments[i];
        if (name == "--") {
            rest.insert(
                rest.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end());
            break;
        }
        name.remove_prefix(name.starts_with("--") ? 2 : name.starts_with("-") ? 1 : name.size());
        const auto word = name.substr(0, name.find('='));
        if (name == "reverse")
            continue;
        if (std::ranges::find(options, word) == options.end()) {
            rest.push_back(arguments[i]);
            continue;
        }
        if (word.size() == name.size())
            ++i; // its value
    }
    return rest;
}

} // namespace kestavon
