#pragma once

#include "platform/host_layout.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kestavon {

/// Tells whose data an entry is by its name. Asked of every entry once, however many applications
/// there are. All comparisons are of lower-case letters.
class LeftoverMatcher {
public:
    /// Applications are known by their numbers, which ascend.
    void add(
        std::size_t application, std::string_view name, const std::optional<std::string>& bundleID);

    /// The applications whose data an entry of this name is by this rule, ascending, each once.
    std::vector<std::size_t> ownersOf(std::string_view name, LeftoverRule rule) const;

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>()(text);
        }
    };

    void addTerm(std::size_t application, std::string_view term);

    std::unordered_map<std::string, std::vector<std::size_t>, Hash, std::equal_to<>> m_owners;
};

} // namespace kestavon
