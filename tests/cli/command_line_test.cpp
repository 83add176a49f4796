#include "cli/command_line.h"
#include "cli/command_table.h"
#include "cli/completions.h"
#include "cli/manual.h"
#include "cli/printable.h"

#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(CommandLine, OpensTheWindowWithoutACommand)
{
    EXPECT_EQ(readCommandLine({}).verb, Verb::window);
    const auto line = readCommandLine({"--theme", "dark", "--system-root=/mnt/mac", "/srv/a b"});
    EXPECT_EQ(line.error, "");
    EXPECT_EQ(line.theme, "dark");
    EXPECT_EQ(line.systemRoot, "/mnt/mac");
    EXPECT_EQ(line.folder, "/srv/a b");
    EXPECT_EQ(readCommandLine({"--", "--help"}).folder, "--help");
    EXPECT_EQ(readCommandLine({"./scan"}).folder, "./scan");
    EXPECT_EQ(readCommandLine({"--section", "smart-clean"}).section, AppSection::smartClean);
}

TEST(CommandLine, ReadsWhatACommandTakes)
{
    const auto scan
        = readCommandLine({"--layout", "mac", "scan", "--memory-limit", "2GiB", "--json", "/x"});
    EXPECT_EQ(scan.error, "");
    EXPECT_EQ(scan.verb, Verb::scan);
    EXPECT_EQ(scan.layout, HomeKind::mac);
    EXPECT_EQ(scan.memoryLimit, 2'147'483'648U);
    EXPECT_EQ(scan.form, OutputForm::json);
    EXPECT_EQ(scan.folder, "/x");

    const auto clean = readCommandLine({"clean", "--junk", "App Caches", "mail-messages",
        "devTools", "--to", "trash", "-y", "--dry-run"});
    EXPECT_EQ(clean.error, "");
    EXPECT_THAT(clean.categories,
        ElementsAre(
            JunkCategory::appCaches, JunkCategory::mailAttachments, JunkCategory::devTools));
    EXPECT_EQ(clean.action, ActionKind::trash);
    EXPECT_TRUE(clean.yes && clean.dryRun && clean.cleansJunk);

    EXPECT_EQ(readCommandLine({"safe-area", "empty", "--yes"}).verb, Verb::safeAreaEmpty);
    const auto all = readCommandLine({"clean", "--junk", "all", "--to", "safe-area"});
    EXPECT_TRUE(all.cleansJunk);
    EXPECT_THAT(all.categories, IsEmpty());
}

TEST(CommandLine, KeepsPathsAsTheShellGaveThem)
{
    const std::vector<std::string> odd{
        "[a,b]", "{}", "%%", "\x01x", "a\nb", "caf\xE9", "memory", "scan", "a,b", "'q'"};
    std::vector<std::string> arguments{"remove", "--to", "trash"};
    arguments.insert(arguments.end(), odd.begin(), odd.end());
    EXPECT_EQ(readCommandLine(arguments).paths, odd);
    EXPECT_THAT(
        readCommandLine({"remove", "--to", "trash", "--", "--yes"}).paths, ElementsAre("--yes"));
    EXPECT_THAT(readCommandLine({"remove", "--to", "trash", "a", "--", "-b", "--", "--to"}).paths,
        ElementsAre("a", "-b", "--", "--to"));
    EXPECT_EQ(readCommandLine({"scan", "[x]"}).folder, "[x]");
}

TEST(CommandLine, RefusesWhatItDoesNotUnderstandInOneSentence)
{
    const std::vector<std::string> rows[]
        = {{"--colour"}, {"--theme"}, {"--theme", "blue"}, {"--system-root="}, {"--colour=blue"},
            {"/a", "/b"}, {""}, {"/a", "scan"}, {"scan", "/a", "/b"}, {"scan", ""},
            {"scan", "--json", "--null"}, {"memory", "--null"}, {"scan", "--memory-limit", "0"},
            {"scan", "--memory-limit", "99999999999GB"}, {"scan", "--layout", "amiga"},
            {"junk", "dust"}, {"clean", "--to", "trash"}, {"clean", "/a"},
            {"clean", "/a", "--to", "moon"}, {"remove", "--to", "trash"}, {"remove", "/a"},
            {"merge", "--to", "trash"}, {"merge", "/a", "--to", "safe-area"}, {"uninstall"},
            {"safe-area"}, {"safe-area", "restore"}, {"safe-area", "restore", "--all", "x"},
            {"safe-area", "delete"}, {"--section", "cellar"}, {"scan", "a\x1B[31m", "b"}};
    for (const auto& arguments : rows) {
        const auto line = readCommandLine(arguments);
        EXPECT_NE(line.error, "") << testing::PrintToString(arguments);
        EXPECT_TRUE(line.error.ends_with('.')) << line.error;
        EXPECT_EQ(line.error.find_first_of("\n\x1B"), std::string::npos) << line.error;
        EXPECT_EQ(line.answer, "");
    }
}

TEST(CommandLine, SaysWhatIsWrongInItsOwnWords)
{
    const std::pair<std::vector<std::string>, std::string> rows[]
        = {{{"remove", "--to", "trash"}, "remove needs a PATH."},
            {{"remove", "x"}, "remove needs --to."}, {{"uninstall"}, "uninstall needs a NAME."},
            {{"scan", "a", "b"}, "scan takes no more: b."},
            {{"scan", "--colour"}, "scan has no option --colour."},
            {{"scan", "--layout"}, "--layout needs a value: mac|native."},
            {{"scan", "--layout", "mac", "--layout", "mac"}, "--layout is given more than once."},
            {{"scan", "--json", "--null"}, "--json and --null do not go together."},
            {{"safe-area"}, "safe-area needs one of these: list, restore, delete, empty."},
            {{"clean", "--junk", "all", "trash", "--to", "trash"},
                "all stands for every category; no other is named beside it."},
            {{"clean", "--junk", "trash", "all", "--to", "trash"},
                "all stands for every category; no other is named beside it."}};
    for (const auto& [arguments, error] : rows)
        EXPECT_EQ(readCommandLine(arguments).error, error);
}

TEST(CommandLine, AnswersInsteadOfActing)
{
    EXPECT_THAT(readCommandLine({"--version"}).answer, HasSubstr("Kestavon "));
    EXPECT_THAT(readCommandLine({"remove", "--help"}).answer, HasSubstr("Usage: kestavon remove"));
    EXPECT_THAT(
        readCommandLine({"safe-area", "restore", "-h"}).answer, HasSubstr("safe-area restore"));
}

TEST(CommandLine, LeavesTheToolkitItsOptions)
{
    EXPECT_THAT(withoutToolkitOptions({"-platform", "offscreen", "--theme", "dark", "--style=x",
                    "-reverse", "--", "-platform"}),
        ElementsAre("--theme", "dark", "--", "-platform"));
    const auto window = readCommandLine({"-platform", "offscreen", "--theme", "dark", "/srv"});
    EXPECT_EQ(window.error, "");
    EXPECT_EQ(window.folder, "/srv");
    EXPECT_NE(readCommandLine({"remove", "a", "-style", "b", "--to", "trash"}).error, "")
        << "a name that looks like one is not dropped, nor is its neighbour";
}

TEST(CommandLine, NeedsAHomeForWhatIsInIt)
{
    const std::string none = "There is no home folder; set HOME.";
    for (const auto& arguments : std::vector<std::vector<std::string>>{{}, {"scan"}, {"disk"},
             {"junk"}, {"clean", "--junk", "all", "--to", "permanent"}, {"safe-area", "list"},
             {"remove", "/x", "--to", "trash"}, {"uninstall", "x"}}) {
        EXPECT_EQ(missingPlaceOf(readCommandLine(arguments), false), none);
        EXPECT_EQ(missingPlaceOf(readCommandLine(arguments), true), "");
    }
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"scan", "/srv"}, {"memory"}, {"remove", "/x", "--to", "permanent"}})
        EXPECT_EQ(missingPlaceOf(readCommandLine(arguments), false), "");
}

/// Every command with the words that lead to it, and its options' long names.
std::vector<std::pair<std::string, std::vector<std::string>>> everyCommand(
    const CLI::App& app, const std::string& path = {})
{
    std::vector<std::pair<std::string, std::vector<std::string>>> all;
    for (const auto* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        const auto words = path.empty() ? command->get_name() : path + ' ' + command->get_name();
        auto& entry = all.emplace_back(words, std::vector<std::string>());
        for (const auto* option : command->get_options()) {
            for (const auto& name : option->get_lnames())
                entry.second.push_back(name);
        }
        const auto deeper = everyCommand(*command, words);
        all.insert(all.end(), deeper.begin(), deeper.end());
    }
    return all;
}

TEST(Manual, TellsOfEveryCommandAndOption)
{
    CommandLine line;
    const auto table = makeCommandTable(line);
    const auto help = helpText(*table);
    auto manual = manualPage(*table);
    std::erase(manual, '\\'); // the hyphens' escapes
    const auto bash = bashCompletions(*table);
    const auto zsh = zshCompletions(*table);
    const auto fish = fishCompletions(*table);
    for (const auto& [words, options] : everyCommand(*table)) {
        const auto last = words.substr(words.rfind(' ') + 1);
        if (words == last) {
            EXPECT_THAT(help, HasSubstr("\n  " + words));
        }
        EXPECT_THAT(bash, HasSubstr('\'' + words + "') words="));
        EXPECT_THAT(zsh, HasSubstr('\'' + words + "')"));
        EXPECT_THAT(fish, HasSubstr(" -a " + last + " -d"));
        if (words == "safe-area")
            continue; // its commands stand for it
        EXPECT_THAT(manual, HasSubstr(".SS kestavon " + words));
        for (const auto& option : options) {
            EXPECT_THAT(manual, HasSubstr("--" + option)) << words;
            EXPECT_THAT(bash, HasSubstr("--" + option)) << words;
            EXPECT_THAT(zsh, HasSubstr("--" + option + '[')) << words;
            EXPECT_THAT(fish, HasSubstr(" -l " + option)) << words;
        }
    }
    for (const auto& section : manualSections())
        EXPECT_THAT(manual, HasSubstr(".SH " + std::string(section.title)));
    EXPECT_THAT(help, HasSubstr("pathBase64"));
    for (const auto& text : {help, helpText(*table->get_subcommand("clean"))}) {
        for (std::size_t at = 0; at < text.size();) {
            const auto end = text.find('\n', at);
            EXPECT_LE(end - at, 79U) << text.substr(at, end - at);
            at = end + 1;
        }
    }
}

TEST(PrintablePath, NeitherBreaksALineNorDrivesTheTerminal)
{
    EXPECT_EQ(printablePath("/plain été 日本 \U0001F600"), "/plain été 日本 \U0001F600");
    EXPECT_EQ(printablePath("a\n\tb\x1B[31m"), "a\\n\\tb\\x1B[31m");
    EXPECT_EQ(printablePath("c\xC2\x9B"
                            "31mred"),
        "c\\xC2\\x9B31mred")
        << "a control sequence too";
    EXPECT_EQ(printablePath("\x9B\xFF(\xC3"), "\\x9B\\xFF(\\xC3");
    EXPECT_EQ(printablePath("photo\u202Egpj.exe"), "photo\\xE2\\x80\\xAEgpj.exe");
    EXPECT_EQ(printablePath("a\u2028b"), "a\\xE2\\x80\\xA8b");
}

} // namespace
} // namespace kestavon
