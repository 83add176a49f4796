#include "cli/command_table.h"

#include "platform/host_layout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <utility>

#include <CLI/CLI.hpp>

namespace kestavon {

namespace {

using Take = std::function<void(const std::string& value)>;

/// The table's own mark before arguments that the parser would take for lists or for nothing: see
/// `readCommandLine`.
constexpr char literalMark = '\x01';

constexpr int any = CLI::detail::expected_max_vector_size; ///< number of values

std::string plain(const std::string& argument)
{
    return argument.starts_with(literalMark) ? argument.substr(1) : argument;
}

[[noreturn]] void refuse(const std::string& reason)
{
    throw CLI::ValidationError(reason);
}

/// Hands every value to `take` as the shell gave it: the parser's own conversions would cut names
/// such as "[a,b]" into pieces.
CLI::callback_t taking(Take take)
{
    return [take = std::move(take)](const CLI::results_t& values) {
        for (const auto& value : values)
            take(plain(value));
        return true;
    };
}

std::string lettersOf(std::string_view text)
{
    std::string letters;
    for (const char c : text) {
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
            letters += c;
        else if (c >= 'A' && c <= 'Z')
            letters += static_cast<char>(c - 'A' + 'a');
    }
    return letters;
}

template <class Enum> std::string wordOf(Enum value)
{
    std::string word;
    for (const char c : rawValue(value)) {
        if (const auto letter = lettersOf({&c, 1}); !letter.empty())
            word += letter;
        else if (!word.ends_with('-'))
            word += '-';
    }
    return word;
}

/// "a|b|c": what a value may be, as --help shows it and the completions offer it.
template <class Enum> std::string wordsOf()
{
    std::string words;
    for (const auto& entry : allCases<Enum>())
        words += (words.empty() ? "" : "|") + wordOf(entry.value);
    return words;
}

template <class Enum> std::optional<Enum> enumNamed(std::string_view text)
{
    for (const auto& entry : allCases<Enum>()) {
        if (lettersOf(entry.raw) == lettersOf(text))
            return entry.value;
    }
    return std::nullopt;
}

std::uint64_t byteCountOf(const std::string& text)
{
    struct Unit {
        std::string_view letters;
        std::uint64_t bytes;
    };
    static constexpr std::array units{Unit{"", 1}, Unit{"b", 1}, Unit{"k", 1000}, Unit{"kb", 1000},
        Unit{"m", 1'000'000}, Unit{"mb", 1'000'000}, Unit{"g", 1'000'000'000},
        Unit{"gb", 1'000'000'000}, Unit{"kib", 1024}, Unit{"mib", 1024 * 1024},
        Unit{"gib", 1024 * 1024 * 1024}};
    std::uint64_t number = 0;
    const auto* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    const auto letters = lettersOf({rest, end});
    const auto* unit = std::ranges::find(units, letters, &Unit::letters);
    std::uint64_t bytes = 0;
    if (error != std::errc{} || unit == units.end()
        || __builtin_mul_overflow(number, unit->bytes, &bytes) || bytes == 0)
        refuse("'" + text + "' is no number of bytes; 500000000 and 500MB are.");
    return bytes;
}

/// Builds the table, command by command.
class Table {
public:
    Table(CLI::App& app, CommandLine& line)
        : m_app(app)
        , m_line(line)
    {
    }

    void addWindow()
    {
        m_app.description("Finds and reclaims disk space, and shows the machine's state.");
        m_app.footer(
            "Without a command, Kestavon opens its window, on FOLDER if there is one. When "
            "it is already running, its window comes to the front instead of a second "
            "one. A folder that is called as a command is written ./scan.");
        m_app.require_subcommand(0, 1);
        addFolder(m_app, "The folder to look at, the home folder unless given.");
        addOption(m_app, "--theme", "light|dark", "Do not follow the desktop's colours.",
            [this](const std::string& value) {
                if (value != "light" && value != "dark")
                    refuse("--theme is light or dark, not '" + value + "'.");
                m_line.theme = value;
            });
        addOption(m_app, "--section", wordsOf<AppSection>(),
            "The section that the window shows first.", [this](const std::string& value) {
                m_line.section = enumNamed<AppSection>(value);
                if (!m_line.section)
                    refuse("There is no section '" + value + "'.");
            });
        m_app.add_flag_callback(
            "--scan", [this] { m_line.scansAtOnce = true; }, "Start with a storage scan.");
        addPlaces(m_app);
        m_app.set_help_flag("-h,--help", "Show this text; after a command, what it takes.");
        m_app.add_flag_callback(
            "--version", [] { throw CLI::CallForVersion("", 0); }, "Show the version.");
    }

    void addListings()
    {
        struct Listing {
            Verb verb;
            const char* name;
            const char* description;
            const char* text;
        };
        static constexpr std::array walks{
            Listing{Verb::scan, "scan", "Record every file and folder of FOLDER.",
                "Prints how many items there are, their bytes and those of hidden files, and the "
                "largest files; --json and --null give all items. A scan stops at its limit of "
                "memory, says so, and gives what it has by then."},
            Listing{Verb::large, "large", "List the hundred largest files of FOLDER.",
                "The largest come first."},
            Listing{Verb::suggestions, "suggestions",
                "List files in caches, and downloads that nobody changed for more than 90 days.",
                "These are what the Cleaner section shows and what clean FOLDER removes."},
            Listing{Verb::duplicates, "duplicates", "List files with the same content.",
                "They are told by SHA-256 over all of their content, the groups that free most "
                "first. The copy that merge keeps is marked; --null gives the other ones only."},
            Listing{Verb::security, "security",
                "List files at places where software starts by itself.",
                "Looks at the files of FOLDER and at the machine's own places. Nothing leaves the "
                "machine."},
        };
        for (const auto& [verb, name, description, text] : walks) {
            auto& command = addCommand(m_app, verb, name, description, text);
            addFolder(command, "The folder to look at, the home folder unless given.");
            addForms(command, true);
            addPlaces(command);
        }

        auto& junk = addCommand(m_app, Verb::junk, "junk",
            "List what lies at well-known places of junk.",
            "All categories with their totals, or the items of those that are named. In JSON the "
            "items are always there.");
        addCategories(junk, "CATEGORY", false);
        addForms(junk, true);
        addPlaces(junk);

        static constexpr std::array plain{
            Listing{Verb::apps, "apps",
                "List installed applications and what they leave in the home.", ""},
            Listing{Verb::startup, "startup", "List what starts by itself at login or boot.", ""},
            Listing{Verb::processes, "processes", "List running applications by their memory.", ""},
            Listing{Verb::memory, "memory", "Show how memory is used.", ""},
        };
        for (const auto& [verb, name, description, text] : plain) {
            auto& command = addCommand(m_app, verb, name, description, text);
            addForms(command, verb == Verb::apps || verb == Verb::startup);
            addPlaces(command);
        }

        auto& disk
            = addCommand(m_app, Verb::disk, "disk", "Show how full the volume of FOLDER is.", "");
        addFolder(disk, "A folder on the volume, the home folder unless given.");
        addForms(disk, false);
        addPlaces(disk);
    }

    void addRemovals()
    {
        auto& clean = addCommand(m_app, Verb::clean, "clean",
            "Remove what is suggested in FOLDER, or junk.",
            "Scans first, then removes what suggestions or junk would list.");
        addFolder(clean, "The folder whose suggestions go.");
        addCategories(clean, "--junk", true);
        addAction(clean, true);
        finishRemoval(clean);

        auto& remove = addCommand(m_app, Verb::remove, "remove", "Remove files and folders.",
            "Links are removed, never followed. System folders, mount points, keys and the like "
            "are refused, each with the reason; the other paths go all the same.");
        remove
            .add_option("PATH", taking([this](const std::string& path) {
                if (path.empty())
                    refuse("A path is empty.");
                m_line.paths.push_back(path);
            }),
                "What to remove.")
            ->required()
            ->expected(1, any)
            ->allow_extra_args()
            ->type_name("PATH");
        addAction(remove, true);
        finishRemoval(remove);

        auto& merge = addCommand(m_app, Verb::merge, "merge",
            "Keep the newest of files with the same content, remove the other copies.",
            "Looks again just before each removal, so that the last copy of nothing can go.");
        addFolder(merge, "The folder whose duplicates are merged.").required();
        addAction(merge, false);
        finishRemoval(merge);

        auto& uninstall = addCommand(m_app, Verb::uninstall, "uninstall",
            "Move an application and what it left in the home to the Trash.", "");
        uninstall
            .add_option("NAME", taking([this](const std::string& name) { m_line.name = name; }),
                "The application's name or identifier, as apps lists it.")
            ->required()
            ->type_name("NAME");
        uninstall.add_flag_callback(
            "--app-only", [this] { m_line.appOnly = true; },
            "Leave in the home what the application left there.");
        finishRemoval(uninstall);
    }

    void addSafeArea()
    {
        auto& safeArea = *m_app.add_subcommand(
            "safe-area", "List, put back or delete what was moved to the Safe Area.");
        safeArea.footer("The items' identifiers and places are what list shows.");
        safeArea.require_subcommand(1);
        safeArea.set_help_flag("-h,--help", "Show this text.");

        auto& list = addCommand(safeArea, Verb::safeAreaList, "list", "List the held items.",
            "The oldest come first. --null gives where they lie now.");
        addForms(list, true);
        addPlaces(list);

        auto& restore = addCommand(safeArea, Verb::safeAreaRestore, "restore",
            "Put held items back where they came from.",
            "An ITEM is the path it came from or its identifier as list shows it: 8 characters of "
            "it or more. Nothing that has come to lie there is replaced.");
        addItems(restore);
        restore.add_flag_callback(
            "--all", [this] { m_line.all = true; }, "Every item whose place is known.");
        addOption(restore, "--into", "DIR", "Put them into this folder instead.",
            [this](const std::string& value) { m_line.into = value; });
        finishRemoval(restore);

        auto& remove = addCommand(
            safeArea, Verb::safeAreaDelete, "delete", "Delete held items for good.", "");
        addItems(remove);
        finishRemoval(remove);

        auto& empty = addCommand(
            safeArea, Verb::safeAreaEmpty, "empty", "Delete every held item for good.", "");
        finishRemoval(empty);
    }

private:
    CLI::App& addCommand(
        CLI::App& parent, Verb verb, const char* name, const char* description, const char* text)
    {
        auto& command = *parent.add_subcommand(name, description);
        command.footer(text);
        command.set_help_flag("-h,--help", "Show this text.");
        command.parse_complete_callback([this, verb] { m_line.verb = verb; });
        return command;
    }

    static CLI::Option& addOption(CLI::App& command, const std::string& name,
        const std::string& values, const std::string& description, Take take)
    {
        return *command.add_option(name, taking(std::move(take)), description)
                    ->type_name(values)
                    ->expected(1);
    }

    CLI::Option& addFolder(CLI::App& command, const char* description)
    {
        return *command
                    .add_option("FOLDER", taking([this](const std::string& folder) {
                        if (folder.empty())
                            refuse("The folder's name is empty.");
                        m_line.folder = folder;
                    }),
                        description)
                    ->type_name("DIR")
                    ->expected(1);
    }

    void addCategories(CLI::App& command, const char* name, bool isOption)
    {
        auto* option = command.add_option(name, taking([this](const std::string& value) {
            m_line.cleansJunk = true;
            const bool isAll = lettersOf(value) == "all";
            if (m_line.allCategories || (isAll && !m_line.categories.empty()))
                refuse("all stands for every category; no other is named beside it.");
            m_line.allCategories = isAll;
            if (isAll)
                return;
            const auto category = categoryNamed(value);
            if (!category)
                refuse("There is no category '" + value + "'.");
            if (std::ranges::find(m_line.categories, *category) == m_line.categories.end())
                m_line.categories.push_back(*category);
        }),
            isOption ? "Remove the junk of these categories, or of all, instead."
                     : "What to look for, everything unless given.");
        option->type_name(wordsOf<JunkCategory>() + (isOption ? "|all" : ""))
            ->expected(1, any)
            ->allow_extra_args();
    }

    void addItems(CLI::App& command)
    {
        command
            .add_option("ITEM", taking([this](const std::string& item) {
                if (item.empty())
                    refuse("An item's name is empty.");
                m_line.items.push_back(item);
            }),
                "Which items.")
            ->type_name("ITEM")
            ->expected(1, any)
            ->allow_extra_args();
    }

    void addAction(CLI::App& command, bool withSafeArea)
    {
        const std::string values = withSafeArea ? "safe-area|trash|permanent" : "trash|permanent";
        addOption(command, "--to", values,
            withSafeArea
                ? "The Safe Area or the Trash, to be taken back, or permanent: deleted at once."
                : "The Trash, or permanent: deleted at once.",
            [this, withSafeArea](const std::string& value) {
                if (value == "safe-area" && withSafeArea)
                    m_line.action = ActionKind::safeArea;
                else if (value == "trash")
                    m_line.action = ActionKind::trash;
                else if (value == "permanent")
                    m_line.action = ActionKind::permanent;
                else
                    refuse("--to is " + std::string(withSafeArea ? "safe-area, " : "")
                        + "trash or permanent, not '" + value + "'.");
            })
            .required();
    }

    /// What every command that changes something takes.
    void finishRemoval(CLI::App& command)
    {
        command.add_flag_callback(
            "-y,--yes", [this] { m_line.yes = true; }, "Do not ask.");
        command.add_flag_callback(
            "-n,--dry-run", [this] { m_line.dryRun = true; },
            "Show what would happen, and touch nothing.");
        addForms(command, false);
        addPlaces(command);
    }

    void addForms(CLI::App& command, bool withPaths)
    {
        auto* json = command.add_flag_callback(
            "--json", [this] { m_line.form = OutputForm::json; }, "Print one JSON document.");
        if (!withPaths)
            return;
        auto* nulls = command.add_flag_callback(
            "-0,--null", [this] { m_line.form = OutputForm::nulls; },
            "Print the paths only, each ended by a NUL, as xargs -0 reads them.");
        nulls->excludes(json);
    }

    /// How the machine is to be seen; every command takes it.
    void addPlaces(CLI::App& command)
    {
        addOption(command, "--layout", "mac|native",
            "Take the home for a Mac's or for this desktop's, however it looks.",
            [this](const std::string& value) {
                if (value != "mac" && value != "native")
                    refuse("--layout is mac or native, not '" + value + "'.");
                m_line.layout = value == "mac" ? HomeKind::mac : HomeKind::native;
            });
        addOption(command, "--system-root", "DIR",
            "Where \"/\" of an attached disk is (normally found from HOME).",
            [this](const std::string& value) {
                if (value.empty())
                    refuse("--system-root needs a folder.");
                m_line.systemRoot = value;
            });
        addOption(command, "--memory-limit", "BYTES",
            "What a scan may take before it stops, 1 GiB unless given.",
            [this](const std::string& value) { m_line.memoryLimit = byteCountOf(value); });
    }

    CLI::App& m_app;
    CommandLine& m_line;
};

constexpr std::array<ManualSection, 6> sections{{
    {"CONFIRMATION",
        "Nothing is removed without a confirmation. On a terminal the commands that remove ask the "
        "question that the window asks; elsewhere they do nothing without --yes. With --dry-run "
        "they show what would happen and touch nothing. While they work, Ctrl+C stops them: what "
        "was done by then stays done, a copy that was being made is taken back, and of a folder "
        "that was being deleted a part may be gone. A second Ctrl+C ends the program at once; what "
        "was being moved is whole at one of its places then too, and the next start clears up."},
    {"JSON",
        "--json prints one document, in UTF-8. Its keys are named as the window's model names what "
        "it shows: records, storageSummary (count, bytes, hiddenBytes), cleanupCandidates, "
        "duplicates, junkGroups, installedApps, startupItems, findings, processes, memory, "
        "quarantine, history, diskTotal, diskFree, and the phases scanPhase, duplicatePhase and "
        "securityPhase: finished, partial, failed or idle, with the reason in scanPhaseText. A "
        "command prints those that it fills.\n\n"
        "Sizes are bytes, dates ISO 8601 in UTC with the letter Z, places plain paths, and what "
        "has "
        "a name in the window stands under that name. What is not known is left out.\n\n"
        "A file's name is bytes and need not be text. A path that is not UTF-8 has a second key "
        "beside it, with Base64 at the end of its name, that holds its bytes:\n\n"
        "    {\"path\": \"/tmp/caf\\uefe9\", \"pathBase64\": \"L3RtcC9jYWbp\"}\n\n"
        "In the path itself every byte that is not UTF-8 stands as the private character U+EF00 "
        "plus the byte. Without the second key the path stands as it is."},
    {"EXIT STATUS",
        "    0    done\n"
        "    1    something could not be done, the current folder or the home not\n"
        "         found too; what, stands on standard error\n"
        "    2    the command line is wrong\n"
        "    130  interrupted by Ctrl+C"},
    {"ENVIRONMENT",
        "    HOME             the home folder\n"
        "    XDG_DATA_HOME, XDG_CONFIG_HOME, XDG_CACHE_HOME, XDG_STATE_HOME\n"
        "                     the home's folders for data, settings, caches and state\n"
        "    KESTAVON_GPU     1 draws the window with the graphics processor"},
    {"FILES",
        "    ~/.local/share/Kestavon/Quarantine\n"
        "         the Safe Area: what was moved there, until it is put back or deleted\n"
        "    ~/.local/share/Trash\n"
        "         the Trash, shared with the other programs of the desktop"},
    {"EXAMPLES",
        "    kestavon scan --json /srv | jq '.storageSummary.bytes'\n"
        "    kestavon large --null ~/Videos | xargs -0 ls -l\n"
        "    kestavon clean --junk browser-caches --to safe-area --yes\n"
        "    kestavon merge ~/Pictures --to trash --dry-run"},
}};

} // namespace

std::optional<JunkCategory> categoryNamed(std::string_view text)
{
    // What the code calls them, where their titles are other words.
    if (lettersOf(text) == "devtools")
        return JunkCategory::devTools;
    if (lettersOf(text) == "mailattachments")
        return JunkCategory::mailAttachments;
    return enumNamed<JunkCategory>(text);
}

std::string categoryWord(JunkCategory category)
{
    return wordOf(category);
}

std::shared_ptr<CLI::App> makeCommandTable(CommandLine& line)
{
    struct Owned {
        CLI::App app;
        Table table;

        explicit Owned(CommandLine& read)
            : app("", "kestavon")
            , table(app, read)
        {
        }
    };
    auto owned = std::make_shared<Owned>(line);
    owned->table.addWindow();
    owned->table.addListings();
    owned->table.addRemovals();
    owned->table.addSafeArea();
    return {owned, &owned->app};
}

std::span<const ManualSection> manualSections()
{
    return sections;
}

} // namespace kestavon
