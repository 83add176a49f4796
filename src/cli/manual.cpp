#include "cli/manual.h"

#include "cli/command_parts.h"
#include "cli/command_table.h"
#include "core/model/updater_controller.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace kestavon {

namespace {

constexpr std::size_t lineWidth = 79;

/// A long list of choices is called by one word where there is little room.
std::string shortValues(const CLI::Option& option)
{
    const auto values = option.get_type_name();
    constexpr std::size_t mostShown = 32;
    if (values.size() <= mostShown)
        return values;
    return option.get_name() == "--section" ? "SECTION" : "CATEGORY";
}

/// "--to trash|permanent".
std::string usageOf(const CLI::Option& option)
{
    std::string usage;
    if (!option.get_positional())
        usage
            = option.get_lnames().empty() ? option.get_name() : "--" + option.get_lnames().front();
    if (takesValue(option)) {
        if (option.get_positional())
            usage = option.get_name(true);
        else
            usage += ' ' + shortValues(option);
        if (takesMany(option))
            usage += "...";
    }
    return option.get_required() ? usage : '[' + usage + ']';
}

/// "-0, --null", with the value.
std::string namesOf(const CLI::Option& option)
{
    std::string names;
    for (const auto& name : option.get_snames())
        names += '-' + name + ", ";
    for (const auto& name : option.get_lnames())
        names += "--" + name + ", ";
    names.resize(names.size() - 2);
    return takesValue(option) ? names + ' ' + shortValues(option) : names;
}

std::string pathOf(const CLI::App& app)
{
    const auto* parent = app.get_parent();
    return parent ? pathOf(*parent) + ' ' + app.get_name() : app.get_name();
}

/// What a command takes, in one line; of options that every command takes there is one word.
std::string usageOf(const CLI::App& app)
{
    auto usage = pathOf(app);
    for (const auto* option : optionsOf(app)) {
        if (option->get_required())
            usage += ' ' + usageOf(*option);
    }
    usage += " [options]";
    for (const auto* option : positionalsOf(app))
        usage += ' ' + usageOf(*option);
    return usage;
}

/// Appends the text's words from column `column` on, in lines that start at `indent`.
void appendWrapped(
    std::string& out, const std::string& text, std::size_t indent, std::size_t column)
{
    bool atStart = true;
    for (const auto& word : wordsOf(text)) {
        if (!atStart && column + 1 + word.size() > lineWidth) {
            out += '\n' + std::string(indent, ' ');
            column = indent;
            atStart = true;
        }
        if (!atStart) {
            out += ' ';
            ++column;
        }
        out += word;
        column += word.size();
        atStart = false;
    }
    out += '\n';
}

void appendRow(std::string& out, const std::string& name, const std::string& text)
{
    constexpr std::size_t textColumn = 26;
    out += "  " + name;
    auto column = 2 + name.size();
    if (column + 2 > textColumn) {
        out += '\n';
        column = 0;
    }
    out += std::string(textColumn - column, ' ');
    appendWrapped(out, text, textColumn, textColumn);
}

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

bool isLiteral(std::string_view line)
{
    return line.starts_with("    ");
}

/// What an option may be, where the usage has only a word for it.
std::string descriptionOf(const CLI::Option& option)
{
    auto text = option.get_description();
    const auto values = option.get_type_name();
    if (values.find('|') != std::string::npos
        && (option.get_positional() || shortValues(option) != values)) {
        auto list = values;
        for (auto at = list.find('|'); at != std::string::npos; at = list.find('|', at))
            list.replace(at, 1, ", ");
        text += " One of " + list + '.';
    }
    return text;
}

void appendArguments(std::string& out, const CLI::App& app)
{
    for (const auto* option : positionalsOf(app))
        appendRow(out, option->get_name(true), descriptionOf(*option));
    for (const auto* option : optionsOf(app))
        appendRow(out, namesOf(*option), descriptionOf(*option));
}

/// Text as man(7) takes it: no line is taken for a request, no character for another.
std::string roff(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else if (c == '\'' && out.empty())
            out += "\\(aq";
        else if (c == '.' && out.empty())
            out += "\\&.";
        else
            out += c;
    }
    return out;
}

/// Options that the table itself takes are told of once, there.
bool isOfTable(const CLI::App& app, const CLI::Option& option)
{
    const auto* parent = app.get_parent();
    return parent
        && (parent->get_option_no_throw("--" + option.get_lnames().front())
            || isOfTable(*parent, option));
}

void appendManualOptions(std::string& out, const CLI::App& app)
{
    const auto append = [&out](const std::string& name, const CLI::Option& option) {
        out += ".TP\n.B " + roff(name) + '\n' + roff(descriptionOf(option)) + '\n';
    };
    for (const auto* option : positionalsOf(app))
        append(option->get_name(true), *option);
    for (const auto* option : optionsOf(app)) {
        if (!isOfTable(app, *option))
            append(namesOf(*option), *option);
    }
}

void appendManualCommands(std::string& out, const CLI::App& app)
{
    for (const auto* command : commandsOf(app)) {
        if (!commandsOf(*command).empty()) {
            appendManualCommands(out, *command);
            continue;
        }
        out += ".SS " + roff(usageOf(*command)) + '\n' + roff(command->get_description()) + '\n';
        if (const auto text = command->get_footer(); !text.empty())
            out += roff(text) + '\n';
        appendManualOptions(out, *command);
    }
}

} // namespace

std::string helpText(const CLI::App& app)
{
    const bool isTable = app.get_parent() == nullptr;
    std::string out = "Usage: ";
    if (isTable) {
        out += "kestavon [options] [FOLDER]\n       kestavon COMMAND [options] ...\n\n";
    } else {
        const bool hasCommands = !commandsOf(app).empty();
        appendWrapped(
            out, hasCommands ? pathOf(app) + " COMMAND [options] ..." : usageOf(app), 7, 7);
        out += '\n';
    }
    appendWrapped(out, app.get_description() + ' ' + app.get_footer(), 0, 0);

    if (const auto commands = commandsOf(app); !commands.empty()) {
        out += "\nCommands\n";
        for (const auto* command : commands)
            appendRow(out, command->get_name(), command->get_description());
        if (isTable)
            out += "\nWhat each takes is shown by kestavon COMMAND --help.\n";
    }
    out += isTable ? "\nOptions\n" : "\nArguments\n";
    appendArguments(out, app);
    if (!isTable)
        return out;
    for (const auto& [title, text] : manualSections()) {
        std::string heading(title);
        std::ranges::transform(heading.begin() + 1, heading.end(), heading.begin() + 1, [](char c) {
            return c >= 'A' && c <= 'Z' && c != ' ' ? static_cast<char>(c + 32) : c;
        });
        out += '\n' + (title == "JSON" ? std::string(title) : heading) + '\n';
        for (const auto line : linesOf(text)) {
            if (line.empty())
                out += '\n';
            else if (isLiteral(line))
                out += std::string(line.substr(2)) + '\n';
            else
                out += "  ", appendWrapped(out, std::string(line), 2, 2);
        }
    }
    return out;
}

std::string manualPage(const CLI::App& table)
{
    std::string out = ".TH KESTAVON 1 \"\" \"Kestavon " + UpdaterController::version()
        + "\" \"User Commands\"\n"
          ".SH NAME\nkestavon \\- find and reclaim disk space, and show the machine's state\n"
          ".SH SYNOPSIS\n.B kestavon\n[options] [FOLDER]\n.br\n.B kestavon\nCOMMAND [options] "
          "\\&...\n"
          ".SH DESCRIPTION\n"
        + roff(table.get_description()) + '\n' + roff(table.get_footer()) + "\n.SH OPTIONS\n";
    appendManualOptions(out, table);
    out += ".SH COMMANDS\n";
    appendManualCommands(out, table);
    for (const auto& [title, text] : manualSections()) {
        out += ".SH " + roff(title) + '\n';
        bool inLiteral = false;
        for (const auto line : linesOf(text)) {
            if (isLiteral(line) != inLiteral && !line.empty()) {
                inLiteral = isLiteral(line);
                out += inLiteral ? ".nf\n" : ".fi\n";
            }
            if (line.empty())
                out += inLiteral ? ".fi\n.PP\n" : ".PP\n", inLiteral = false;
            else
                out += roff(inLiteral ? line.substr(4) : line) + '\n';
        }
        if (inLiteral)
            out += ".fi\n";
    }
    return out;
}

} // namespace kestavon
