#include "smartclean/orphan_rule.h"

namespace kestavon {

namespace {

/// No file's name is longer, in bytes, so that nothing longer can be a part of one.
constexpr std::size_t longestName = 255;

} // namespace

void OrphanRule::add(std::string_view identifier)
{
    // Every name with a leading dot would go on where an empty one ends.
    if (identifier.empty())
        return;
    if (identifier.size() > longestName) {
        addBeginnings(identifier.substr(0, longestName + 1));
        return;
    }
    m_identifiers.emplace(identifier);
    addBeginnings(identifier);
}

void OrphanRule::addBeginnings(std::string_view identifier)
{
    for (auto dot = identifier.find('.'); dot != identifier.npos;
         dot = identifier.find('.', dot + 1))
        m_beginnings.emplace(identifier.substr(0, dot));
}

void OrphanRule::addInstalled(std::string_view name, const std::optional<std::string>& identifier)
{
    add(name);
    if (!identifier)
        return;
    add(*identifier);
    for (auto dot = identifier->rfind('.', longestName + 1); dot != identifier->npos && dot > 0;
         dot = identifier->rfind('.', dot - 1)) {
        const auto maker = std::string_view(*identifier).substr(0, dot);
        if (maker.find('.') != maker.npos)
            m_identifiers.emplace(maker);
    }
}

void OrphanRule::addRunning(
    const std::optional<std::string>& name, const std::optional<std::string>& identifier)
{
    if (name)
        add(*name);
    if (identifier)
        add(*identifier);
}

bool OrphanRule::isOwned(std::string_view name) const
{
    if (m_identifiers.contains(name) || m_beginnings.contains(name))
        return true;
    for (auto dot = name.find('.'); dot != name.npos; dot = name.find('.', dot + 1)) {
        if (m_identifiers.contains(name.substr(0, dot)))
            return true;
    }
    return false;
}

} // namespace kestavon
