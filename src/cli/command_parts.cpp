#include "cli/command_parts.h"

#include <sstream>

#include <CLI/CLI.hpp>

namespace kestavon {

Options optionsOf(const CLI::App& app)
{
    return app.get_options([](const CLI::Option* option) { return !option->get_positional(); });
}

Options positionalsOf(const CLI::App& app)
{
    return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::App*> commandsOf(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App*) { return true; });
}

bool takesValue(const CLI::Option& option)
{
    return option.get_expected_max() > 0;
}

bool takesMany(const CLI::Option& option)
{
    return option.get_expected_max() > 1;
}

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

} // namespace kestavon
