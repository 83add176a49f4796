#include "applications/name_owners.h"

#include <algorithm>

namespace kestavon {

namespace {

constexpr std::size_t shortestBeginning = 4;
constexpr std::string_view separators = ".-_ ";

void sortOut(std::vector<std::size_t>& owners)
{
    std::ranges::sort(owners);
    const auto repeated = std::ranges::unique(owners);
    owners.erase(repeated.begin(), repeated.end());
}

} // namespace

void NameOwners::add(std::size_t owner, std::string_view term)
{
    if (term.empty())
        return;
    auto& owners = m_owners[std::string(term)];
    if (owners.empty() || owners.back() != owner)
        owners.push_back(owner);
}

void NameOwners::collect(std::string_view term, std::vector<std::size_t>& owners) const
{
    if (const auto found = m_owners.find(term); found != m_owners.end())
        owners.insert(owners.end(), found->second.begin(), found->second.end());
}

std::vector<std::size_t> NameOwners::ownersOf(std::string_view name) const
{
    std::vector<std::size_t> owners;
    collect(name, owners);
    sortOut(owners);
    return owners;
}

std::vector<std::size_t> NameOwners::ownersByWords(std::string_view name) const
{
    std::vector<std::size_t> owners;
    collect(name, owners);
    for (auto end = name.find_first_of(separators); end != name.npos;
         end = name.find_first_of(separators, end + 1)) {
        if (end >= shortestBeginning)
            collect(name.substr(0, end), owners);
    }
    for (auto begin = name.find('.'); begin != name.npos; begin = name.find('.', begin + 1)) {
        // A term of one part, such as "editor", stands between two dots of many names.
        const auto inner = name.find('.', begin + 1);
        if (inner == name.npos)
            break;
        for (auto end = name.find('.', inner + 1); end != name.npos; end = name.find('.', end + 1))
            collect(name.substr(begin + 1, end - begin - 1), owners);
    }
    sortOut(owners);
    return owners;
}

} // namespace kestavon
