#include "platform/linux/desktop_entries.h"

#include "core/domain/utf8.h"
#include "platform/linux/small_file.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <unordered_map>
#include <unordered_set>

namespace kestavon {

namespace {

constexpr std::size_t longestText = 4096;
constexpr std::string_view suffix = ".desktop";
constexpr std::string_view blanks = " \t\r\v\f";

using Keys = std::unordered_map<std::string_view, std::string_view>;

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Takes the text up to the next `separator` off the front of `left`, and that too.
std::string_view takeUpTo(std::string_view& left, char separator)
{
    const auto part = left.substr(0, left.find(separator));
    left.remove_prefix(std::min(part.size() + 1, left.size()));
    return part;
}

std::vector<std::string> partsOf(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (!text.empty()) {
        if (const auto part = takeUpTo(text, separator); !part.empty())
            parts.emplace_back(part);
    }
    return parts;
}

bool isText(std::string_view bytes)
{
    for (std::size_t i = 0; i < bytes.size();) {
        const auto length = utf8CharacterAt(bytes, i).length;
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

/// The lines of the first group of that name.
std::optional<Keys> desktopEntryGroup(std::string_view bytes)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    if (bytes.find('\0') != bytes.npos)
        return std::nullopt;
    std::optional<Keys> keys;
    while (!bytes.empty()) {
        const auto line = trimmed(takeUpTo(bytes, '\n'));
        if (line.starts_with('[')) {
            if (keys)
                break;
            if (line == "[Desktop Entry]")
                keys.emplace();
            continue;
        }
        const auto equals = line.find('=');
        if (!keys || line.starts_with('#') || equals == line.npos)
            continue;
        keys->insert_or_assign(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
    return keys;
}

/// The text that a value stands for, its escapes resolved; nothing for an empty or an unfit one.
std::optional<std::string> textOf(std::string_view value)
{
    if (value.empty() || value.size() > longestText || !isText(value))
        return std::nullopt;
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        constexpr std::string_view letters = "sntr\\";
        constexpr std::string_view meanings = " \n\t\r\\";
        const auto letter = letters.find(value[++i]);
        if (letter == letters.npos)
            text += '\\'; // a quote's in a command line, which is resolved there
        text += letter == letters.npos ? value[i] : meanings[letter];
    }
    return text;
}

std::optional<std::string> textAt(const Keys& keys, std::string_view key)
{
    const auto found = keys.find(key);
    return found == keys.end() ? std::nullopt : textOf(found->second);
}

std::optional<std::string> translatedTextAt(
    const Keys& keys, const std::string& key, std::span<const std::string> languages)
{
    for (const auto& language : languages) {
        if (auto text = textAt(keys, key + '[' + language + ']'))
            return text;
    }
    return textAt(keys, key);
}

bool isTrueAt(const Keys& keys, std::string_view key)
{
    const auto found = keys.find(key);
    return found != keys.end() && (found->second == "true" || found->second == "1");
}

std::vector<std::string> listAt(const Keys& keys, std::string_view key)
{
    return partsOf(textAt(keys, key).value_or(""), ';');
}

/// The words of a command line, as the Desktop Entry Specification and the shell quote them.
class CommandWords {
public:
    explicit CommandWords(std::string_view line)
        : m_left(line)
    {
    }

    std::optional<std::string> next()
    {
        while (true) {
            const auto start = m_left.find_first_not_of(" \t\n");
            if (start == m_left.npos)
                return std::nullopt;
            m_left.remove_prefix(start);
            auto word = takeWord();
            if (!word.empty())
                return word; // one that was only a field code is none
        }
    }

private:
    std::string takeWord()
    {
        std::string word;
        char quote = 0;
        std::size_t i = 0;
        for (; i < m_left.size(); ++i) {
            const char c = m_left[i];
            const bool hasNext = i + 1 < m_left.size();
            if (quote == 0 && (c == ' ' || c == '\t' || c == '\n'))
                break;
            if (c == quote)
                quote = 0;
            else if (quote == 0 && (c == '"' || c == '\''))
                quote = c;
            else if (c == '\\' && quote != '\'' && hasNext)
                word += m_left[++i];
            else if (c == '%' && hasNext && m_left[i + 1] == '%')
                word += m_left[++i];
            else if (c == '%' && hasNext)
                ++i;
            else
                word += c;
        }
        m_left.remove_prefix(i);
        return word;
    }

    std::string_view m_left;
};

std::string_view baseName(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

bool isAssignment(std::string_view word)
{
    const auto equals = word.find('=');
    return equals != word.npos && equals > 0 && word.find('/') > equals;
}

/// At least three elements, of which none begins with a digit, as D-Bus names have them: what tells
/// "org.example.App" from the value of an option.
bool isApplicationIdentifier(std::string_view word)
{
    const auto isLetter
        = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    std::size_t elements = 0;
    for (std::string_view left = word; !left.empty(); ++elements) {
        const auto element = takeUpTo(left, '.');
        if (element.empty() || !isLetter(element.front())
            || !std::ranges::all_of(
                element, [&](char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '-'; }))
            return false;
    }
    constexpr std::size_t fewest = 3;
    return elements >= fewest && !word.ends_with('.');
}

/// What `flatpak` (or `snap`) starts when the next word that is no option is "run".
std::optional<DesktopCommand> startedBy(DesktopCommand::Kind kind, CommandWords words)
{
    bool runs = false;
    while (auto word = words.next()) {
        if (word->starts_with('-'))
            continue;
        if (!runs && *word != "run")
            return std::nullopt;
        if (runs && (kind == DesktopCommand::Kind::snap || isApplicationIdentifier(*word)))
            return DesktopCommand{.kind = kind, .target = std::move(*word)};
        runs = true;
    }
    return std::nullopt;
}

/// Options of env(1) whose value is the next word.
constexpr std::array<std::string_view, 4> valuedOptions{"-u", "--unset", "-C", "--chdir"};

/// The first word after what prepares the start of a program.
std::optional<std::string> skipPreparation(CommandWords& words, std::string_view wrapper)
{
    while (auto word = words.next()) {
        if (word->starts_with('-')) {
            if (wrapper == "env" && std::ranges::find(valuedOptions, *word) != valuedOptions.end())
                words.next();
        } else if (wrapper != "env" || !isAssignment(*word)) {
            return word;
        }
    }
    return std::nullopt;
}

constexpr std::array<std::string_view, 4> wrappers{"env", "nohup", "pkexec", "setsid"};

/// Reads one set of folders.
class EntryReader {
public:
    explicit EntryReader(std::span<const std::string> languages)
        : m_languages(languages)
    {
    }

    void read(const std::string& folder, const std::string& prefix, int levelsLeft)
    {
        for (const auto& name : namesIn(folder)) {
            const auto path = folder + '/' + name;
            if (name.ends_with(suffix)) {
                const auto identifier = prefix + name.substr(0, name.size() - suffix.size());
                if (m_known.contains(identifier))
                    continue;
                // One that cannot be read, such as a link that leads nowhere, hides no other.
                if (auto entry = readDesktopEntry(path, m_languages)) {
                    entry->identifier = identifier;
                    m_entries.push_back(std::move(*entry));
                    m_known.insert(identifier);
                }
            } else if (std::error_code error;
                       levelsLeft > 0 && std::filesystem::is_directory(path, error)) {
                read(path, prefix + name + '-', levelsLeft - 1);
            }
        }
    }

    std::vector<DesktopEntry> takeEntries() { return std::move(m_entries); }

private:
    /// In byte order; those of a folder that grows without end are not all read.
    std::vector<std::string> namesIn(const std::string& folder)
    {
        std::vector<std::string> names;
        std::error_code error;
        std::filesystem::directory_iterator entries(folder, error);
        for (; !error && entries != std::filesystem::directory_iterator() && m_namesLeft > 0;
             entries.increment(error), --m_namesLeft)
            names.push_back(entries->path().filename().native());
        std::ranges::sort(names);
        return names;
    }

    std::span<const std::string> m_languages;
    std::unordered_set<std::string> m_known;
    std::vector<DesktopEntry> m_entries;
    int m_namesLeft = 50'000; ///< links may lead folders into themselves
};

std::string environmentValue(const char* name)
{
    const auto* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(
    std::string_view bytes, std::span<const std::string> languages)
{
    const auto keys = desktopEntryGroup(bytes);
    if (!keys)
        return std::nullopt;
    DesktopEntry entry;
    entry.name = translatedTextAt(*keys, "Name", languages);
    entry.icon = translatedTextAt(*keys, "Icon", languages);
    entry.command = desktopCommandOf(textAt(*keys, "Exec").value_or(""));
    entry.tryExec = textAt(*keys, "TryExec");
    entry.windowClass = textAt(*keys, "StartupWMClass");
    entry.flatpak = textAt(*keys, "X-Flatpak");
    entry.snap = textAt(*keys, "X-SnapInstanceName");
    entry.onlyShownIn = listAt(*keys, "OnlyShowIn");
    entry.notShownIn = listAt(*keys, "NotShowIn");
    entry.isApplication = textAt(*keys, "Type") == "Application";
    entry.isNotDisplayed = isTrueAt(*keys, "NoDisplay");
    entry.isHidden = isTrueAt(*keys, "Hidden");
    entry.runsInTerminal = isTrueAt(*keys, "Terminal");
    entry.startsWithSession = textAt(*keys, "X-GNOME-Autostart-enabled") != "false";
    return entry;
}

std::optional<DesktopEntry> readDesktopEntry(
    const std::string& path, std::span<const std::string> languages)
{
    const auto file = readSmallFile(path);
    if (file.error != 0)
        return std::nullopt;
    auto entry = parseDesktopEntry(file.bytes, languages);
    if (entry) {
        const auto name = baseName(path);
        entry->identifier
            = name.substr(0, name.size() - (name.ends_with(suffix) ? suffix.size() : 0));
        entry->path = path;
    }
    return entry;
}

std::vector<DesktopEntry> readDesktopEntriesIn(
    const std::string& folder, std::span<const std::string> languages)
{
    EntryReader reader(languages);
    reader.read(folder, "", 0);
    return reader.takeEntries();
}

std::vector<DesktopEntry> readDesktopEntries(
    std::span<const std::string> folders, std::span<const std::string> languages)
{
    constexpr int deepest = 6;
    EntryReader reader(languages);
    for (const auto& folder : folders)
        reader.read(folder, "", deepest);
    return reader.takeEntries();
}

DesktopCommand desktopCommandOf(std::string_view exec)
{
    CommandWords words(exec);
    auto word = words.next();
    while (word && std::ranges::find(wrappers, baseName(*word)) != wrappers.end()) {
        const std::string wrapper(baseName(*word));
        word = skipPreparation(words, wrapper);
    }
    if (!word)
        return {};
    using enum DesktopCommand::Kind;
    std::optional<DesktopCommand> started;
    if (baseName(*word) == "flatpak")
        started = startedBy(flatpak, words);
    else if (baseName(*word) == "snap")
        started = startedBy(snap, words);
    else if (word->starts_with("/snap/bin/"))
        started = DesktopCommand{.kind = snap, .target = std::string(baseName(*word))};
    return started ? *started : DesktopCommand{.kind = program, .target = std::move(*word)};
}

std::vector<std::string> languagesOf(std::string_view locale)
{
    const auto at = std::min(locale.find('@'), locale.size());
    const std::string modifier(locale.substr(at));
    const auto base = locale.substr(0, std::min(locale.find('.'), at));
    const std::string language(base.substr(0, base.find('_')));
    if (language.empty() || language == "C" || language == "POSIX")
        return {};
    std::vector<std::string> languages;
    for (const auto& name : {std::string(base), language}) {
        if (!modifier.empty())
            languages.push_back(name + modifier);
        languages.push_back(name);
        if (base == language)
            break;
    }
    return languages;
}

std::vector<std::string> userLanguages()
{
    std::string locale;
    for (const auto* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = environmentValue(variable);
        if (!locale.empty())
            break;
    }
    const auto byLocale = languagesOf(locale);
    if (byLocale.empty())
        return {}; // "C" asks for the texts as they were written, whatever LANGUAGE says
    std::vector<std::string> languages;
    for (const auto& wanted : partsOf(environmentValue("LANGUAGE"), ':'))
        std::ranges::copy(languagesOf(wanted), std::back_inserter(languages));
    return languages.empty() ? byLocale : languages;
}

bool isShownIn(const DesktopEntry& entry, std::span<const std::string> desktops)
{
    const auto names = [](const std::vector<std::string>& list, const std::string& desktop) {
        return std::ranges::find(list, desktop) != list.end();
    };
    for (const auto& desktop : desktops) {
        if (names(entry.onlyShownIn, desktop))
            return true;
        if (names(entry.notShownIn, desktop))
            return false;
    }
    return entry.onlyShownIn.empty();
}

std::vector<std::string> currentDesktops()
{
    return partsOf(environmentValue("XDG_CURRENT_DESKTOP"), ':');
}

} // namespace kestavon
