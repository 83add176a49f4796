#pragma once

#include "core/domain/cleanup_candidate.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

namespace kestavon {

/// The items of a category as they were found. There may be very many: copies share them, and
/// nothing in the list changes. Any thread.
class JunkItems {
public:
    using List = std::vector<CleanupCandidate>;
    using value_type = List::value_type;
    using const_reference = List::const_reference;
    using const_iterator = List::const_iterator;
    using iterator = const_iterator;
    using size_type = List::size_type;
    using difference_type = List::difference_type;

    JunkItems();
    JunkItems(List items); // NOLINT(google-explicit-constructor): wherever there is a list
    JunkItems(std::initializer_list<CleanupCandidate> items);

    const_iterator begin() const { return m_shared->items.begin(); }
    const_iterator end() const { return m_shared->items.end(); }
    size_type size() const { return m_shared->items.size(); }
    bool empty() const { return m_shared->items.empty(); }
    const_reference operator[](size_type position) const { return m_shared->items[position]; }

    /// What all of them are estimated to free, at most the largest 64-bit number.
    std::int64_t bytes() const { return m_shared->bytes; }

    /// Whether this is the very same list, and no equal one.
    bool isCopyOf(const JunkItems& other) const { return m_shared == other.m_shared; }

    friend bool operator==(const JunkItems& a, const JunkItems& b)
    {
        return a.m_shared->items == b.m_shared->items;
    }

private:
    struct Shared {
        List items;
        std::int64_t bytes = 0;
    };
    std::shared_ptr<const Shared> m_shared; // never null
};

} // namespace kestavon
