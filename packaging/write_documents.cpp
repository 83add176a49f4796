// Writes the manual page and the shells' completions from the table of commands: write_documents
// FOLDER. Runs while the program is built.

#include "cli/command_table.h"
#include "cli/completions.h"
#include "cli/manual.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <CLI/CLI.hpp>

int main(int argc, char** argv)
{
    if (argc != 2)
        return EXIT_FAILURE;
    kestavon::CommandLine line;
    const auto table = kestavon::makeCommandTable(line);
    const auto write = [folder = std::string(argv[1])](const char* name, const std::string& text) {
        std::ofstream file(folder + '/' + name, std::ios::binary);
        file << text << std::flush;
        return file.good();
    };
    const bool isDone = write("kestavon.1", kestavon::manualPage(*table))
        && write("kestavon.bash", kestavon::bashCompletions(*table))
        && write("_kestavon", kestavon::zshCompletions(*table))
        && write("kestavon.fish", kestavon::fishCompletions(*table));
    return isDone ? EXIT_SUCCESS : EXIT_FAILURE;
}
