#pragma once

#include "core/domain/text_hash.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kestavon {

/// Tells whose data an entry is by its name, for programs that are known under several names each.
/// Asked of every entry once, however many programs there are. Everything is in lower case.
class NameOwners {
public:
    /// Owners are known by their numbers, which ascend.
    void add(std::size_t owner, std::string_view term);

    /// The owners of what is called exactly so, ascending, each once.
    std::vector<std::size_t> ownersOf(std::string_view name) const;

    /// And of what begins with a term of four letters or more, up to one of ". - _" or a blank, or
    /// has a term of several parts between two dots.
    std::vector<std::size_t> ownersByWords(std::string_view name) const;

    bool empty() const { return m_owners.empty(); }

private:
    void collect(std::string_view term, std::vector<std::size_t>& owners) const;

    std::unordered_map<std::string, std::vector<std::size_t>, TextHash, std::equal_to<>> m_owners;
};

} // namespace kestavon
