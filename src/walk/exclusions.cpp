#include "walk/exclusions.h"

#include "core/domain/removal_guard.h"

#include <algorithm>

namespace kestavon {

Exclusions::Exclusions(std::string_view root, std::span<const std::string> prefixes)
{
    const auto below = root == "/" ? std::string_view() : root;
    for (const std::string_view prefix : prefixes) {
        if (prefix == "/")
            continue; // else nothing at all would be walked
        if (isAtOrBelow(below, prefix))
            m_excludeAll = true;
        else if (isAtOrBelow(prefix, below))
            m_tails.push_back(prefix.substr(below.size() + 1));
    }
}

Exclusions Exclusions::below(std::string_view name) const
{
    Exclusions inner;
    for (const auto tail : m_tails) {
        if (tail.size() > name.size() && tail[name.size()] == '/' && tail.starts_with(name))
            inner.m_tails.push_back(tail.substr(name.size() + 1));
    }
    return inner;
}

bool Exclusions::excludes(std::string_view name) const
{
    return m_excludeAll || std::ranges::find(m_tails, name) != m_tails.end();
}

} // namespace kestavon
