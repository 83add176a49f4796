#include "system/unit_links.h"

#include "core/domain/file_name.h"
#include "platform/linux/small_file.h"
#include "walk/folder_names.h"
#include "walk/place_folders.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace kestavon {

namespace {

constexpr std::string_view blanks = " \t";

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The first value that "key=..." has in the group, once an empty one has taken back those before.
std::string_view valueIn(std::string_view text, std::string_view group, std::string_view key)
{
    bool isInGroup = false;
    std::string_view value;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with('['))
            isInGroup = line == group;
        const auto equals = line.find('=');
        if (!isInGroup || equals == line.npos || trimmed(line.substr(0, equals)) != key)
            continue;
        const auto next = trimmed(line.substr(equals + 1));
        if (value.empty() || next.empty())
            value = next;
    }
    return value;
}

/// The file of the unit: what the link leads to, or one beside it.
std::string textOfUnit(const std::string& path)
{
    return readSmallFile(path).bytes;
}

std::string withEnding(const std::string& unit, std::string_view ending)
{
    return std::string(withoutExtension(unit)).append(ending);
}

/// The service that a timer or a socket starts; empty for a service.
std::string triggeredUnit(const std::string& unit, const std::string& text)
{
    const auto kind = fileExtension(unit);
    std::string_view named;
    if (kind == "timer")
        named = valueIn(text, "[Timer]", "Unit");
    else if (kind == "socket")
        named = valueIn(text, "[Socket]", "Service");
    else
        return {};
    return named.empty() ? withEnding(unit, ".service") : std::string(named);
}

std::string programBehind(const std::string& link, const std::string& unit)
{
    const auto text = textOfUnit(link);
    const auto triggered = triggeredUnit(unit, text);
    if (triggered.empty())
        return programOfUnit(text);
    std::error_code error;
    const auto file = std::filesystem::canonical(link, error);
    if (error)
        return {};
    return programOfUnit(textOfUnit((file.parent_path() / triggered).native()));
}

} // namespace

std::string programOfUnit(const std::string& text)
{
    auto command = valueIn(text, "[Service]", "ExecStart");
    command.remove_prefix(std::min(command.find_first_not_of("-@:+!|"), command.size()));
    if (command.starts_with('"') || command.starts_with('\'')) {
        const auto end = command.find(command.front(), 1);
        return std::string(command.substr(1, end == command.npos ? end : end - 1));
    }
    return std::string(command.substr(0, command.find_first_of(blanks)));
}

std::vector<UnitLink> unitLinksIn(const std::string& folder)
{
    constexpr std::array<std::string_view, 3> kinds{"service", "timer", "socket"};
    std::vector<UnitLink> links;
    for (const auto* pattern : {"*.wants", "*.requires"}) {
        for (const auto& wanting : foldersNamedBy({.folder = folder, .below = pattern})) {
            const auto entries = namedEntriesOf(wanting);
            if (!entries)
                continue;
            for (const auto& unit : entries->names) {
                auto path = wanting + '/' + unit;
                std::error_code error;
                if (std::ranges::find(kinds, fileExtension(unit)) == kinds.end()
                    || !std::filesystem::is_symlink(path, error))
                    continue;
                auto program = programBehind(path, unit);
                links.push_back(
                    {.unit = unit, .path = std::move(path), .program = std::move(program)});
            }
        }
    }
    return links;
}

} // namespace kestavon
