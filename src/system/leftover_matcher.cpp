#include "system/leftover_matcher.h"

#include "core/domain/file_name.h"
#include "platform/letter_case.h"

#include <algorithm>

namespace kestavon {

void LeftoverMatcher::add(
    std::size_t application, std::string_view name, const std::optional<std::string>& bundleID)
{
    if (bundleID) {
        // Of "com.example.editor" also "example.editor" and "editor", but of no shorter one.
        const auto identifier = lowerCased(*bundleID);
        addTerm(application, identifier);
        const auto first = identifier.find('.');
        const auto last = identifier.rfind('.');
        if (first != last) {
            addTerm(application, std::string_view(identifier).substr(first + 1));
            addTerm(application, std::string_view(identifier).substr(last + 1));
        }
    }
    addTerm(application, lowerCased(name));
}

void LeftoverMatcher::addTerm(std::size_t application, std::string_view term)
{
    if (term.empty())
        return;
    auto& owners = m_owners[std::string(term)];
    if (owners.empty() || owners.back() != application)
        owners.push_back(application);
}

std::vector<std::size_t> LeftoverMatcher::ownersOf(std::string_view name, LeftoverRule rule) const
{
    std::vector<std::size_t> owners;
    const auto lookUp = [&](std::string_view term) {
        if (const auto found = m_owners.find(term); found != m_owners.end())
            owners.insert(owners.end(), found->second.begin(), found->second.end());
    };

    if (rule == LeftoverRule::propertyList && fileExtension(name) != "plist")
        return owners;
    const auto lower = lowerCased(rule == LeftoverRule::anyEntry ? name : withoutExtension(name));
    const std::string_view text(lower);
    const auto ends = rule == LeftoverRule::savedState ? std::string_view(".") : ". ";
    lookUp(text);
    for (auto end = text.find_first_of(ends); end != text.npos;
         end = text.find_first_of(ends, end + 1))
        lookUp(text.substr(0, end));
    if (rule == LeftoverRule::anyEntry) {
        for (auto begin = text.find('.'); begin != text.npos; begin = text.find('.', begin + 1)) {
            for (auto end = text.find('.', begin + 1); end != text.npos;
                 end = text.find('.', end + 1))
                lookUp(text.substr(begin + 1, end - begin - 1));
        }
    }
    std::ranges::sort(owners);
    const auto repeated = std::ranges::unique(owners);
    owners.erase(repeated.begin(), repeated.end());
    return owners;
}

} // namespace kestavon
