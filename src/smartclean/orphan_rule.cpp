#include "smartclean/orphan_rule.h"

namespace kestavon {

void OrphanRule::add(std::string_view identifier)
{
    // Every name with a leading dot would go on where an empty one ends.
    if (identifier.empty())
        return;
    m_identifiers.emplace(identifier);
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
    std::string_view maker = *identifier;
    for (auto dot = maker.rfind('.'); dot != maker.npos; dot = maker.rfind('.')) {
        add(maker);
        maker = maker.substr(0, dot);
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
