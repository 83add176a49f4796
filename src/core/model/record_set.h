#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kestavon {

/// A set of record positions of one list, a bit each: whole-list operations take a sixty-fourth of
/// the list's length.
class RecordSet {
public:
    static constexpr std::size_t wordBits = 64;

    RecordSet() = default;
    /// The empty set over positions 0 to `size` - 1.
    explicit RecordSet(std::size_t size)
        : m_size(size)
        , m_words((size + wordBits - 1) / wordBits)
    {
    }

    static RecordSet all(std::size_t size)
    {
        RecordSet set(size);
        for (auto& word : set.m_words)
            word = ~std::uint64_t{0};
        if (size % wordBits != 0)
            set.m_words.back() = (std::uint64_t{1} << size % wordBits) - 1;
        return set;
    }

    /// How many positions there are, in the set or not.
    std::size_t size() const { return m_size; }
    bool contains(std::size_t i) const { return m_words[i / wordBits] >> i % wordBits & 1; }

    void insert(std::size_t i) { m_words[i / wordBits] |= std::uint64_t{1} << i % wordBits; }
    void erase(std::size_t i) { m_words[i / wordBits] &= ~(std::uint64_t{1} << i % wordBits); }
    void assign(std::size_t i, bool in) { in ? insert(i) : erase(i); }
    /// Whether the set holds nothing.
    bool empty() const
    {
        return std::ranges::all_of(m_words, [](std::uint64_t word) { return word == 0; });
    }
    void clear() { m_words.assign(m_words.size(), 0); }

    /// `other` is a set over the same positions.
    RecordSet& operator|=(const RecordSet& other)
    {
        for (std::size_t w = 0; w < m_words.size(); ++w)
            m_words[w] |= other.m_words[w];
        return *this;
    }

    std::size_t count() const
    {
        std::size_t count = 0;
        for (const auto word : m_words)
            count += static_cast<std::size_t>(std::popcount(word));
        return count;
    }

    /// Position i is bit i % 64 of word i / 64; bits beyond the size are 0 and stay so.
    std::span<const std::uint64_t> words() const { return m_words; }
    std::span<std::uint64_t> words() { return m_words; }

    /// Calls `visit` with every position in the set, ascending.
    template <class Visit> void forEach(Visit visit) const
    {
        for (std::size_t w = 0; w < m_words.size(); ++w) {
            for (auto word = m_words[w]; word != 0; word &= word - 1)
                visit(w * wordBits + static_cast<std::size_t>(std::countr_zero(word)));
        }
    }

    friend bool operator==(const RecordSet&, const RecordSet&) = default;

private:
    std::size_t m_size = 0;
    std::vector<std::uint64_t> m_words;
};

} // namespace kestavon
