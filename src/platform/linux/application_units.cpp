#include "platform/linux/application_units.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace kestavon {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const auto end = std::min(text.find(separator), text.size());
        parts.push_back(text.substr(0, end));
        if (end == text.size())
            return parts;
        text.remove_prefix(end + 1);
    }
}

/// The text that a part of a unit's name stands for: "\x2d" is a "-", see systemd.unit(5).
std::string unescaped(std::string_view part)
{
    constexpr std::string_view escape = "\\x";
    constexpr std::size_t digits = 2;
    std::string text;
    while (!part.empty()) {
        unsigned code = 0;
        const auto* const number = part.data() + escape.size();
        if (part.starts_with(escape) && part.size() >= escape.size() + digits
            && std::from_chars(number, number + digits, code, 16).ptr == number + digits) {
            text += static_cast<char>(code);
            part.remove_prefix(escape.size() + digits);
        } else {
            text += part.front();
            part.remove_prefix(1);
        }
    }
    return text;
}

std::optional<std::string> identifier(std::string_view part)
{
    auto text = unescaped(part);
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

/// "app[-LAUNCHER]-ID-RANDOM.scope" or "app[-LAUNCHER]-ID[@RANDOM].service": what the desktops have
/// agreed on.
std::optional<std::string> applicationOfDesktopUnit(std::string_view name, bool isScope)
{
    if (!isScope)
        name = name.substr(0, name.find('@'));
    auto parts = split(name, '-');
    if (isScope)
        parts.pop_back();
    constexpr std::size_t most = 3; // "app", the launcher, the identifier
    if (parts.size() < 2 || parts.size() > most)
        return std::nullopt;
    return identifier(parts.back());
}

} // namespace

std::optional<std::string> applicationOfControlGroup(std::string_view cgroup)
{
    // The innermost unit: an application may put its own processes into groups below it.
    auto components = split(cgroup, '/');
    std::ranges::reverse(components);
    for (const auto component : components) {
        constexpr std::string_view scope = ".scope";
        constexpr std::string_view service = ".service";
        const bool isScope = component.ends_with(scope);
        if (!isScope && !component.ends_with(service))
            continue;
        const auto name
            = component.substr(0, component.size() - (isScope ? scope.size() : service.size()));
        if (name.starts_with("app-"))
            return applicationOfDesktopUnit(name, isScope);
        if (name.starts_with("snap.") && isScope) // its services are daemons
            return identifier(split(name, '.')[1]);
    }
    return std::nullopt;
}

} // namespace kestavon
