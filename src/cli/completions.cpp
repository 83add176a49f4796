#include "cli/completions.h"

#include "cli/command_parts.h"

#include <algorithm>
#include <vector>

#include <CLI/CLI.hpp>

namespace kestavon {

namespace {

struct Completion {
    std::string path; ///< the words of the command, without the program's name
    const CLI::App* app;
};

/// The table itself and every command, the deepest last.
std::vector<Completion> completionsOf(const CLI::App& app, const std::string& path = {})
{
    std::vector<Completion> all{{path, &app}};
    for (const auto* command : commandsOf(app)) {
        const auto deeper = completionsOf(
            *command, path.empty() ? command->get_name() : path + ' ' + command->get_name());
        all.insert(all.end(), deeper.begin(), deeper.end());
    }
    return all;
}

std::string choicesOf(const CLI::Option& option)
{
    auto choices = option.get_type_name();
    if (choices.find('|') == std::string::npos)
        return {};
    std::ranges::replace(choices, '|', ' ');
    return choices;
}

std::string commandNames(const CLI::App& app)
{
    std::string names;
    for (const auto* command : commandsOf(app))
        names += (names.empty() ? "" : " ") + command->get_name();
    return names;
}

std::string optionNames(const CLI::App& app)
{
    std::string names;
    for (const auto* option : optionsOf(app)) {
        for (const auto& name : option->get_lnames())
            names += (names.empty() ? "--" : " --") + name;
    }
    return names;
}

/// For a word that is in single quotes in a shell.
std::string inQuotes(const std::string& text)
{
    std::string out;
    for (const char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out;
}

} // namespace

std::string bashCompletions(const CLI::App& table)
{
    std::string values;
    std::string commands;
    for (const auto& [path, app] : completionsOf(table)) {
        commands += "        '" + path + "') words='" + commandNames(*app) + "' options='"
            + optionNames(*app) + '\'';
        for (const auto* option : positionalsOf(*app)) {
            if (const auto choices = choicesOf(*option); !choices.empty())
                commands += " words='" + choices + '\'';
            else if (option->get_type_name() == "DIR")
                commands += " places=-d";
            else if (option->get_type_name() == "PATH")
                commands += " places=-f";
        }
        commands += " ;;\n";
        for (const auto* option : optionsOf(*app)) {
            if (!takesValue(*option))
                continue;
            const auto choices = choicesOf(*option);
            values += "        '" + path + ' ' + "--" + option->get_lnames().front() + "') "
                + (choices.empty()
                        ? std::string(option->get_type_name() == "DIR" ? "places=-d" : "words=")
                        : "words='" + choices + '\'')
                + " ;;\n";
        }
    }
    return "# Completes the commands and options of kestavon in bash.\n"
           "_kestavon() {\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
           "    local command= words= options= places= i\n"
           "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
           "        case \"${command:+$command }${COMP_WORDS[i]}\" in\n"
           "            "
        +
        [&] {
            std::string names;
            for (const auto& completion : completionsOf(table)) {
                if (!completion.path.empty())
                    names += (names.empty() ? "'" : "|'") + completion.path + '\'';
            }
            return names;
        }()
        + ") command=${command:+$command }${COMP_WORDS[i]} ;;\n"
          "        esac\n"
          "    done\n"
          "    case \"$command $previous\" in\n"
        + values + "        *) case \"$command\" in\n" + commands
        + "        esac ;;\n"
          "    esac\n"
          "    [[ $word != -* ]] || { words=$options places=; }\n"
          "    mapfile -t COMPREPLY < <(compgen ${places:+\"$places\"} -W \"$words\" -- "
          "\"$word\")\n"
          "    [[ -z $places ]] || compopt -o filenames\n"
          "}\n"
          "complete -F _kestavon kestavon\n";
}

std::string zshCompletions(const CLI::App& table)
{
    std::string cases;
    for (const auto& [path, app] : completionsOf(table)) {
        cases += "    '" + path + "')\n        _arguments -S";
        for (const auto* option : optionsOf(*app)) {
            for (const auto& name : option->get_lnames()) {
                auto text = option->get_description();
                std::erase_if(text, [](char c) { return c == '[' || c == ']' || c == ':'; });
                cases += " \\\n            '--" + name + '[' + inQuotes(text) + ']';
                if (takesValue(*option)) {
                    const auto choices = choicesOf(*option);
                    cases += ":value:"
                        + (choices.empty()
                                ? std::string(option->get_type_name() == "DIR" ? "_files -/" : " ")
                                : '(' + choices + ')');
                }
                cases += '\'';
            }
        }
        if (!commandsOf(*app).empty()) {
            cases += " \\\n            '*::command:((";
            for (const auto* command : commandsOf(*app)) {
                auto text = command->get_description();
                std::erase_if(text, [](char c) { return c == ':' || c == '"'; });
                cases += command->get_name() + "\\:\"" + inQuotes(text) + "\" ";
            }
            cases += "))'";
        }
        for (const auto* option : positionalsOf(*app)) {
            if (path.empty())
                continue;
            const auto choices = choicesOf(*option);
            const auto& type = option->get_type_name();
            cases += std::string(" \\\n            '") + (takesMany(*option) ? "*" : "1") + ":what:"
                + (!choices.empty()      ? '(' + choices + ')'
                        : type == "DIR"  ? std::string("_files -/")
                        : type == "PATH" ? std::string("_files")
                                         : std::string(" "))
                + '\'';
        }
        cases += "\n        ;;\n";
    }
    std::string names;
    for (const auto& completion : completionsOf(table)) {
        if (!completion.path.empty())
            names += " '" + completion.path + '\'';
    }
    return "#compdef kestavon\n"
           "# Completes the commands and options of kestavon in zsh.\n"
           "local command= position=1 i\n"
           "local -a known=("
        + names
        + " )\n"
          "for ((i = 2; i < CURRENT; i++)); do\n"
          "    if (( ${known[(Ie)${command:+$command }${words[i]}]} )); then\n"
          "        command=${command:+$command }${words[i]} position=$i\n"
          "    fi\n"
          "done\n"
          "words=(\"${(@)words[position,-1]}\") CURRENT=$((CURRENT - position + 1))\n"
          "case $command in\n"
        + cases + "esac\n";
}

std::string fishCompletions(const CLI::App& table)
{
    const auto top = commandNames(table);
    std::string out = "# Completes the commands and options of kestavon in fish.\n"
                      "complete -c kestavon -f\n";
    for (const auto& [path, app] : completionsOf(table)) {
        // "safe-area list" has been seen when both of its words have.
        std::string condition;
        for (const auto& word : wordsOf(path))
            condition
                += (condition.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + word);
        if (path.empty())
            condition = "not __fish_seen_subcommand_from " + top;
        const auto start = "complete -c kestavon -n '" + condition + "'";
        for (const auto* command : commandsOf(*app)) {
            auto shown = start;
            if (!path.empty())
                shown = "complete -c kestavon -n '" + condition
                    + "; and not __fish_seen_subcommand_from " + commandNames(*app) + '\'';
            out += shown + " -a " + command->get_name() + " -d '"
                + inQuotes(command->get_description()) + "'\n";
        }
        for (const auto* option : positionalsOf(*app)) {
            const auto choices = choicesOf(*option);
            const auto& type = option->get_type_name();
            if (!choices.empty())
                out += start + " -a '" + choices + "'\n";
            else if (type == "DIR")
                out += start + " -a '(__fish_complete_directories)'\n";
            else if (type == "PATH")
                out += start + " -F\n";
        }
        for (const auto* option : optionsOf(*app)) {
            out += start;
            for (const auto& name : option->get_snames())
                out += " -s " + name;
            for (const auto& name : option->get_lnames())
                out += " -l " + name;
            if (takesValue(*option)) {
                const auto choices = choicesOf(*option);
                out += choices.empty() ? std::string(option->get_type_name() == "DIR"
                               ? " -x -a '(__fish_complete_directories)'"
                               : " -x")
                                       : " -x -a '" + choices + '\'';
            }
            out += " -d '" + inQuotes(option->get_description()) + "'\n";
        }
    }
    return out;
}

} // namespace kestavon
