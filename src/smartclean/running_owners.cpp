#include "smartclean/running_owners.h"

#include "platform/letter_case.h"

#include <algorithm>
#include <array>

namespace kestavon {

namespace {

/// Folders that are called the same whoever's data they hold; a program may be called so too.
bool isNobodysName(std::string_view name)
{
    constexpr std::array<std::string_view, 22> names{"application support", "backup", "backups",
        "cache", "caches", "config", "containers", "crash reports", "data", "documents", "download",
        "downloads", "library", "local", "log", "logs", "mail", "preferences", "share", "state",
        "temp", "tmp"};
    return std::ranges::binary_search(names, name);
}

} // namespace

RunningOwners::RunningOwners(
    const std::vector<RunningApplication>& applications, const std::string& home)
    : m_beginning(home.ends_with('/') ? home : home + '/')
{
    for (const auto& application : applications) {
        const auto& shown = application.name ? application.name : application.identifier;
        for (const auto& name : {application.name, application.program}) {
            if (name && !name->empty())
                m_byName.emplace(lowerCased(*name), *shown);
        }
        if (application.identifier && !application.identifier->empty())
            m_byIdentifier.emplace(lowerCased(*application.identifier), *shown);
    }
}

std::string_view RunningOwners::ownerOf(std::string_view path) const
{
    if (!path.starts_with(m_beginning) || (m_byName.empty() && m_byIdentifier.empty()))
        return {};
    const auto names = lowerCased(path.substr(m_beginning.size()));
    for (std::string_view left = names; !left.empty();) {
        const auto name = left.substr(0, left.find('/'));
        if (const auto owner = ownerOfName(name); !owner.empty())
            return owner;
        left.remove_prefix(std::min(name.size() + 1, left.size()));
    }
    return {};
}

/// The owner of what is called like an application, or like its identifier and on after a dot.
std::string_view RunningOwners::ownerOfName(std::string_view name) const
{
    if (const auto owner = m_byName.find(name); owner != m_byName.end() && !isNobodysName(name))
        return owner->second;
    for (auto end = name.size(); end != name.npos && end > 0; end = name.rfind('.', end - 1)) {
        const auto owner = m_byIdentifier.find(name.substr(0, end));
        if (owner != m_byIdentifier.end())
            return owner->second;
    }
    return {};
}

} // namespace kestavon
