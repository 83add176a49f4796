#include "cli/command_line.h"

#include "cli/command_table.h"
#include "cli/manual.h"
#include "cli/printable.h"
#include "core/model/updater_controller.h"
#include "platform/host_layout.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

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

/// What the parser gets. It refuses "--" where a positional stands before it, so the words behind
/// one are marked instead.
std::vector<std::string> markedArguments(const std::vector<std::string>& arguments)
{
    const auto end = std::ranges::find(arguments, "--");
    std::vector<std::string> all;
    std::transform(arguments.begin(), end, std::back_inserter(all), marked);
    if (end != arguments.end())
        std::transform(std::next(end), arguments.end(), std::back_inserter(all),
            [](const std::string& word) { return '\x01' + word; });
    return all;
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

/// What the parser's complaint begins with: the name of an option, or of a value.
std::string subjectOf(const std::string& complaint)
{
    return complaint.substr(0, complaint.find_first_of(": "));
}

std::string withArticle(const std::string& name)
{
    return (name.starts_with('-') ? "" : name.starts_with('I') ? "an " : "a ") + name;
}

/// The parser's complaint in our words.
std::string faultIn(const CLI::ParseError& error, const CLI::App& command)
{
    const std::string complaint = error.what();
    const auto subject = subjectOf(complaint);
    if (dynamic_cast<const CLI::RequiredError*>(&error)) {
        if (command.get_option_no_throw(subject))
            return command.get_name() + " needs " + withArticle(subject);
        std::string names;
        for (const auto* inner : command.get_subcommands({}))
            names += (names.empty() ? "" : ", ") + inner->get_name();
        return command.get_name() + " needs one of these: " + names;
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&error)) {
        const auto extra = complaint.substr(std::min(complaint.find(": ") + 2, complaint.size()));
        return extra.starts_with('-') ? command.get_name() + " has no option " + extra
                                      : command.get_name() + " takes no more: " + extra;
    }
    if (dynamic_cast<const CLI::ExcludesError*>(&error))
        return subject + " and " + complaint.substr(complaint.rfind(' ') + 1)
            + " do not go together";
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) {
        const auto* const option = command.get_option_no_throw(subject);
        if (option && option->count() > 1)
            return subject + " is given more than once";
        return subject + " needs a value: " + (option ? option->get_type_name() : "which");
    }
    return complaint;
}

CommandLine readAll(const std::vector<std::string>& arguments)
{
    CommandLine line;
    const auto table = makeCommandTable(line);
    auto words = markedArguments(arguments);
    std::ranges::reverse(words); // the parser takes them from the end
    try {
        table->parse(words);
        if (table->get_option("FOLDER")->count() > 0 && !table->get_subcommands().empty())
            line.error = "The folder comes after the command.";
        else
            line.error = faultOf(line);
    } catch (const CLI::CallForHelp&) {
        line.answer = helpText(readCommand(*table));
    } catch (const CLI::CallForVersion&) {
        line.answer = "Kestavon " + UpdaterController::version() + '\n';
    } catch (const CLI::ParseError& error) {
        line.error = sentence(faultIn(error, readCommand(*table)));
    }
    return line;
}

bool isRelative(const std::string& path)
{
    return !path.empty() && !path.starts_with('/');
}

/// Whether a path that was given means a place in the working folder.
bool needsWorkingFolder(const CommandLine& line)
{
    const auto isPath
        = [](const std::string& item) { return isRelative(item) && !isIdentifierStart(item); };
    return isRelative(line.folder) || isRelative(line.into) || isRelative(line.systemRoot)
        || std::ranges::any_of(line.paths, isRelative) || std::ranges::any_of(line.items, isPath);
}

bool needsHome(const CommandLine& line)
{
    switch (line.verb) {
    case Verb::window:
    case Verb::junk:
    case Verb::apps:
    case Verb::uninstall:
    case Verb::safeAreaList:
    case Verb::safeAreaRestore:
    case Verb::safeAreaDelete:
    case Verb::safeAreaEmpty: return true;
    case Verb::startup:
    case Verb::processes:
    case Verb::memory: return false;
    case Verb::clean:
    case Verb::remove:
    case Verb::merge: return line.cleansJunk || line.action != ActionKind::permanent;
    case Verb::scan:
    case Verb::large:
    case Verb::suggestions:
    case Verb::duplicates:
    case Verb::security:
    case Verb::disk: break;
    }
    return line.folder.empty();
}

} // namespace

CommandLine readCommandLine(const std::vector<std::string>& arguments)
{
    auto line = readAll(arguments);
    if (line.error.empty())
        return line;
    // A command's paths may look like the toolkit's options: they are never cut out.
    const auto own = withoutToolkitOptions(arguments);
    auto window = own.size() < arguments.size() ? readAll(own) : line;
    return window.verb == Verb::window ? window : line;
}

std::string missingPlaceOf(const CommandLine& line, bool isHomeKnown)
{
    std::error_code error;
    if (needsWorkingFolder(line)) {
        const auto folder = std::filesystem::current_path(error);
        if (error == std::errc::no_such_file_or_directory)
            return "The current folder no longer exists.";
        if (error)
            return "Where the current folder is cannot be told: " + error.message() + '.';
    }
    if (!isHomeKnown && needsHome(line))
        return "There is no home folder; set HOME.";
    if (!line.systemRoot.empty() && !std::filesystem::is_directory(line.systemRoot, error))
        return "There is no folder " + line.systemRoot + " for --system-root.";
    return {};
}

std::string folderFaultOf(const CommandLine& line)
{
    std::error_code error;
    if (line.verb != Verb::window || line.folder.empty()
        || std::filesystem::is_directory(line.folder, error))
        return {};
    if (!error || error == std::errc::not_a_directory)
        return line.folder + " is no folder.";
    if (error != std::errc::no_such_file_or_directory)
        return {}; // The window says why it cannot be read.
    return line.folder.find('/') == std::string::npos
        ? "There is neither a command nor a folder called " + line.folder + '.'
        : "There is no folder " + line.folder + '.';
}

bool isIdentifierStart(std::string_view text)
{
    constexpr std::size_t fewest = 8;
    return text.size() >= fewest
        && text.find_first_not_of("0123456789abcdefABCDEF-") == std::string_view::npos;
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
